// report.
#include "commands/Commands.h"
#include "DataFileContent.h"
#include "report/Page.h"
#include "Text.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

struct ReportArguments {
    std::string output;
};

// A report on a damaged installation contains at least the findings.
void ReadOverviewInto(ReportContent& content) {
    try {
        content.overview = ReadOverview();
    } catch (const std::exception& error) {
        content.problem = error.what();
    }
}

Report WriteReport(const ReportArguments& arguments) {
    const std::filesystem::path file = ToUtf16(arguments.output);
    ReportContent content;
    content.diagnosis = ExamineInstallation({});
    ReadOverviewInto(content);
    WriteNamedFile(file, PageOf(content));
    return {"The report was written to " + Utf8(file) + ".\n", {{"file", Utf8(absolute(file))}}};
}

}  // namespace

void AddReportCommand(CommandSet& commands) {
    commands.Add<ReportArguments>(
        "report", "Write a page for a browser with all schemes, all settings and the findings of doctor",
        {"report --output settings.html", "report --output D:\\settings.html --program-files D:\\Copy"},
        [](CLI::App& command, ReportArguments& arguments) {
            AddRequiredOption(command, "--output", "FILE", arguments.output,
                              "The file to write; it is replaced if it exists");
        },
        WriteReport);
}

}  // namespace ZOTDam::Client
