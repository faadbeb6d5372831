#include "Table.h"

#include <algorithm>
#include <utility>

#include "DisplayWidth.h"
#include "Style.h"

namespace ZOTDam::Client {

Table::Table(std::vector<Column> tableColumns) : columns{std::move(tableColumns)}, widths(columns.size()) {
    std::vector<std::string> headings;
    for (const Column& column : columns)
        headings.push_back(column.heading);
    Add(std::move(headings));
}

void Table::Add(std::vector<std::string> row) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    rows.push_back(std::move(row));
}

std::string Table::Text() const {
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        const std::string line = Line(row);
        text += (text.empty() ? Heading(line) : line) + '\n';
    }
    return text;
}

std::string Table::Line(const std::vector<std::string>& row) const {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string padding(widths[i] - DisplayWidth(row[i]), ' ');
        line += i == 0 ? "" : "  ";
        line += columns[i].align == Align::Right ? padding + row[i] : row[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace ZOTDam::Client
