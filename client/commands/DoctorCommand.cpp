// doctor.
#include "commands/Commands.h"
#include "DataFiles.h"
#include "doctor/Doctor.h"

namespace ZOTDam::Client {

namespace {

struct DoctorArguments {
    std::optional<std::string> language;
};

constexpr char ExitStatuses[] =
    "The exit status is 0 when there is nothing to tell, 1 when there are findings, and 2 when a file\n"
    "could not be examined: it cannot be opened, is no XML, or is missing though the suite installs it.\n"
    "(The user settings file may be missing.) Wrong arguments give 2 as well, without any output.\n\n";

Report Examine(const DoctorArguments& arguments) {
    return ReportOf(
        ExamineDataFiles(arguments.language ? StringTableFor(*arguments.language) : StringTableOfUser()));
}

}  // namespace

void AddDoctorCommand(CommandSet& commands) {
    commands.Add<DoctorArguments>(
        "doctor", "Tell what the library ignores, drops, carries over or refuses in its files, and why",
        {"doctor", "doctor --language de-DE", "doctor --json --program-files D:\\Copy"},
        [](CLI::App& command, DoctorArguments& arguments) {
            AddOption(command, "--language", "TAG", arguments.language,
                      "Examine the string table of a language, such as de-DE, instead of the user's");
            AddToHelp(command, ExitStatuses);
        },
        Examine);
}

}  // namespace ZOTDam::Client
