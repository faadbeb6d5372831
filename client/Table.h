#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ZOTDam::Client {

enum class Align : unsigned char { Left, Right };

// A table of strings, aligned in columns with headings.
class Table {
public:
    struct Column {
        std::string heading;
        Align align = Align::Right;
    };

    explicit Table(std::vector<Column> tableColumns);

    void Add(std::vector<std::string> row);

    std::string Text() const;

private:
    std::string Line(const std::vector<std::string>& row) const;

    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
    std::vector<std::size_t> widths;
};

}  // namespace ZOTDam::Client
