// doctor.
#include "commands/Commands.h"
#include "DataFiles.h"
#include "doctor/Doctor.h"

namespace ZOTDam::Client {

namespace {

struct DoctorArguments {
    std::optional<std::string> language;
};

constexpr char ExitCodes[] =
    "The exit code is 0 if there are no findings, 1 if there are findings, and 2 if a file could not be\n"
    "examined, for example because it is missing, in use, or not well-formed. Only the user settings file\n"
    "may be missing. The exit code is also 2 if the arguments are invalid.\n\n";

Report Examine(const DoctorArguments& arguments) {
    return ReportOf(
        ExamineDataFiles(arguments.language ? StringTableFor(*arguments.language) : StringTableOfUser()));
}

}  // namespace

void AddDoctorCommand(CommandSet& commands) {
    commands.Add<DoctorArguments>(
        "doctor", "Report what the library ignores, drops, inherits or rejects in the data files, and why",
        {"doctor", "doctor --language de-DE", "doctor --json --program-files D:\\Copy"},
        [](CLI::App& command, DoctorArguments& arguments) {
            AddOption(command, "--language", "TAG", arguments.language,
                      "Examine the string table of this language, such as de-DE, instead of the user's");
            AddToHelp(command, ExitCodes);
        },
        Examine);
}

}  // namespace ZOTDam::Client
