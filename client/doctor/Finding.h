#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "doctor/Element.h"

namespace ZOTDam::Client {

// Something that the library silently ignores, drops, inherits or rejects.
struct Finding {
    std::string kind;         // stable, in kebab case
    std::string element;      // the path; empty for the file as a whole
    std::string problem;      // a clause without a full stop
    std::string consequence;  // the library's behaviour, likewise
    std::size_t number = 0;   // of the element, in the order of the file
    Position position;        // of the element, or of the problem in a file without elements
};

// The findings of one file.
class Findings {
public:
    Findings(std::string fileTitle, std::filesystem::path filePath)
        : title{std::move(fileTitle)}, path{std::move(filePath)} {}

    void Add(const Element& element, std::string kind, std::string problem, std::string consequence) {
        list.push_back({std::move(kind), element.path, std::move(problem), std::move(consequence),
                        element.number, element.position});
    }

    void AddToFile(std::string kind, std::string problem, std::string consequence, Position position = {}) {
        list.push_back({std::move(kind), {}, std::move(problem), std::move(consequence), 0, position});
    }

    // The same for a problem that prevents the examination of the file.
    void AddObstacle(std::string kind, std::string problem, std::string consequence, Position position = {}) {
        examined = false;
        AddToFile(std::move(kind), std::move(problem), std::move(consequence), position);
    }

    const std::string& Title() const noexcept { return title; }
    const std::filesystem::path& Path() const noexcept { return path; }
    bool IsEmpty() const noexcept { return list.empty(); }
    bool IsExamined() const noexcept { return examined; }

    // Returns whether any finding has this consequence.
    bool HasConsequence(std::string_view consequence) const;

    // Returns the findings in the order of their elements in the file.
    std::vector<Finding> InOrder() const;

private:
    std::string title;
    std::filesystem::path path;
    std::vector<Finding> list;
    bool examined = true;
};

}  // namespace ZOTDam::Client
