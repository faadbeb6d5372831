#include "doctor/Doctor.h"
#include "Style.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

enum DoctorExitCode : int { Clean = 0, Found = 1, NotExamined = 2 };

// Returns "file:line: kind: problem; consequence", the form that editors recognise.
std::string LineOf(const Finding& finding, const Findings& file) {
    const std::string line = finding.position.line != 0 ? ":" + std::to_string(finding.position.line) : "";
    return Heading(Utf8(file.Path()) + line + ":") + " " + finding.kind + ": " + finding.problem + "; " +
           finding.consequence + "\n";
}

Json CountJson(std::size_t count) {
    return count != 0 ? Json(count) : Json();
}

Json JsonOf(const Finding& finding, const Findings& file) {
    return {{"file", Utf8(file.Path())},
            {"line", CountJson(finding.position.line)},
            {"column", CountJson(finding.position.column)},
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
    std::string text;
    Json list = Json::array();
    std::size_t files = 0;
    std::size_t notExamined = 0;
    for (const Findings& file : diagnosis) {
        for (const Finding& finding : file.InOrder()) {
            text += LineOf(finding, file);
            list.push_back(JsonOf(finding, file));
        }
        files += file.IsEmpty() ? 0 : 1;
        notExamined += file.IsExamined() ? 0 : 1;
    }
    const int exitCode = notExamined != 0 ? NotExamined : files != 0 ? Found : Clean;
    return {text + Summary(list.size(), files, notExamined), {{"findings", list}}, exitCode};
}

}  // namespace ZOTDam::Client
