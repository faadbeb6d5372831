#include <algorithm>

#include "doctor/Doctor.h"
#include "Style.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

enum DoctorExitCode : int { Clean = 0, Found = 1, NotExamined = 2 };

// Returns the kind followed by the problem, and the consequence on a second line.
std::string LinesOf(const Finding& finding, std::size_t kindWidth) {
    constexpr char indentation[] = "        ";
    return indentation + finding.kind + std::string(kindWidth - finding.kind.size() + 2, ' ') +
           finding.problem + "\n" +  //
           indentation + std::string(kindWidth + 2, ' ') + finding.consequence + "\n";
}

// Returns the findings grouped by element; those of the file as a whole come first.
std::string LinesOf(const Findings& file, std::size_t kindWidth) {
    std::string text = Heading(file.Title() + " " + Utf8(file.Path())) + "\n";
    std::string element;
    for (const Finding& finding : file.InOrder()) {
        if (finding.element != element)
            text += "    " + finding.element + "\n";
        element = finding.element;
        text += LinesOf(finding, kindWidth);
    }
    return text + "\n";
}

Json JsonOf(const Finding& finding, const Findings& file) {
    return {{"file", Utf8(file.Path())},
            {"element", finding.element.empty() ? Json() : Json(finding.element)},
            {"kind", finding.kind},
            {"problem", finding.problem},
            {"consequence", finding.consequence}};
}

std::string Counted(std::size_t count, const std::string& noun) {
    return (count == 0 ? "no" : std::to_string(count)) + " " + noun + (count == 1 ? "" : "s");
}

std::string Summary(std::size_t findings, std::size_t files, std::size_t notExamined) {
    std::string text = Counted(findings, "finding");
    if (files != 0)
        text += " in " + Counted(files, "file");
    if (notExamined != 0)
        text += "; " + Counted(notExamined, "file") + " could not be examined";
    return text + "\n";
}

}  // namespace

Report ReportOf(const Diagnosis& diagnosis) {
    std::size_t findings = 0;
    std::size_t kindWidth = 0;
    Json list = Json::array();
    for (const Findings& file : diagnosis)
        for (const Finding& finding : file.InOrder()) {
            ++findings;
            kindWidth = std::max(kindWidth, finding.kind.size());
            list.push_back(JsonOf(finding, file));
        }
    std::string text;
    std::size_t files = 0;
    std::size_t notExamined = 0;
    for (const Findings& file : diagnosis) {
        text += file.IsEmpty() ? "" : LinesOf(file, kindWidth);
        files += file.IsEmpty() ? 0 : 1;
        notExamined += file.IsExamined() ? 0 : 1;
    }
    const int exitCode = notExamined != 0 ? NotExamined : findings != 0 ? Found : Clean;
    return {text + Summary(findings, files, notExamined), {{"findings", list}}, exitCode};
}

}  // namespace ZOTDam::Client
