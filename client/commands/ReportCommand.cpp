// report.
#include <optional>

#include "commands/Commands.h"
#include "DataFileContent.h"
#include "Error.h"
#include "report/Page.h"
#include "Text.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

struct ReportArguments {
    std::string output;
};

// A report on a damaged installation contains at least the findings. Returns the error that a later attempt
// may not encounter, if there is one: another program is using a file.
std::optional<Error> ReadOverviewInto(ReportContent& content) {
    try {
        content.overview = ReadOverview();
    } catch (const Error& error) {
        content.problem = error.what();
        if (error.Kind() == ErrorKind::InUse)
            return error;
    } catch (const std::exception& error) {
        content.problem = error.what();
    }
    return {};
}

Report WriteReport(const ReportArguments& arguments) {
    const std::filesystem::path file = std::filesystem::absolute(ToUtf16(arguments.output));
    ReportContent content;
    content.diagnosis = ExamineInstallation({});
    const std::optional<Error> inUse = ReadOverviewInto(content);
    WriteNamedFile(file, PageOf(content));
    if (inUse)
        throw Error{*inUse};
    return {"The report was written to " + Utf8(file) + ".\n", {{"file", Utf8(file)}}};
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
