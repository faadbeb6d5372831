// Asks the platform each question and prints one line for each answer:
//
//     ok  same    NAME: ANSWER; assumed: ANSWERS; documented: ANSWER
//
// "ok" or "NO" tells whether the library works with the answer. "same" or "differs" compares the answer with
// the documentation of Windows, and "open" marks a question that the documentation does not answer. The exit
// code is 0 if the library works with all answers.
#include <cstdio>
#include <string_view>

#include "windows/probe/Questions.h"

namespace ZOTDam::Probe {

namespace {

bool IsOneOf(std::string_view answer, std::string_view answers) {
    constexpr std::string_view separator = " or ";
    for (;;) {
        const std::size_t end = answers.find(separator);
        if (answer == answers.substr(0, end))
            return true;
        if (end == std::string_view::npos)
            return false;
        answers.remove_prefix(end + separator.size());
    }
}

const char* Comparison(std::string_view answer, std::string_view documented) {
    if (documented == "?")
        return "open";
    return answer == documented ? "same" : "differs";
}

// Returns whether the library works with the answer.
bool AskAndPrint(const Question& question) {
    const std::string answer = question.ask();
    const bool isHandled = question.assumed == std::string_view{"any"} || IsOneOf(answer, question.assumed);
    std::printf("%s  %-7s %s: %s; assumed: %s; documented: %s\n", isHandled ? "ok" : "NO",
                Comparison(answer, question.documented), question.name, answer.c_str(), question.assumed,
                question.documented);
    return isHandled;
}

bool AskAll() {
    bool areHandled = true;
    for (const auto& questions : {FileQuestions(), SystemQuestions(), DomQuestions()})
        for (const Question& question : questions)
            areHandled = AskAndPrint(question) && areHandled;
    return areHandled;
}

}  // namespace

}  // namespace ZOTDam::Probe

int main() {
    return ZOTDam::Probe::AskAll() ? 0 : 1;
}
