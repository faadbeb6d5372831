#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "doctor/Element.h"

namespace ZOTDam::Client {

// Something that the library ignores, drops, carries over or refuses without a word.
struct Finding {
    std::string kind;         // stable, in kebab case
    std::string element;      // its path; empty for the file as a whole
    std::string problem;      // what is wrong, as the half of a sentence
    std::string consequence;  // what the library does, likewise
    std::size_t number = 0;   // of the element in its file
};

// What is found in one file.
class Findings {
public:
    Findings(std::string fileTitle, std::filesystem::path filePath)
        : title{std::move(fileTitle)}, path{std::move(filePath)} {}

    void Add(const Element& element, std::string kind, std::string problem, std::string consequence) {
        list.push_back(
            {std::move(kind), element.path, std::move(problem), std::move(consequence), element.number});
    }

    void AddToFile(std::string kind, std::string problem, std::string consequence) {
        list.push_back({std::move(kind), {}, std::move(problem), std::move(consequence)});
    }

    // The same for what keeps the file from being examined.
    void AddObstacle(std::string kind, std::string problem, std::string consequence) {
        examined = false;
        AddToFile(std::move(kind), std::move(problem), std::move(consequence));
    }

    const std::string& Title() const noexcept { return title; }
    const std::filesystem::path& Path() const noexcept { return path; }
    bool IsEmpty() const noexcept { return list.empty(); }
    bool IsExamined() const noexcept { return examined; }

    // Whether the library does this somewhere in the file.
    bool HasConsequence(std::string_view consequence) const;

    // In the order of the file.
    std::vector<Finding> InOrder() const;

private:
    std::string title;
    std::filesystem::path path;
    std::vector<Finding> list;
    bool examined = true;
};

}  // namespace ZOTDam::Client
