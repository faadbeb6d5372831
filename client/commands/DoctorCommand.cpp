// doctor.
#include "commands/Commands.h"
#include "doctor/Doctor.h"
#include "Error.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

struct DoctorArguments {
    std::optional<std::string> file;
    std::optional<std::string> language;
    bool allLanguages;
};

constexpr char ExitCodes[] =
    "The exit code is 0 if there are no findings, 1 if there are findings, and 2 if a file could not be\n"
    "examined, for example because it is missing, in use, or not well-formed. Only the user settings file\n"
    "may be missing. The exit code is also 2 if the arguments are invalid.\n\n";

Report Examine(const DoctorArguments& arguments) {
    if ((arguments.file || arguments.allLanguages) && arguments.language)
        throw UsageError{"--language cannot be combined with FILE or --all-languages."};
    return ReportOf(arguments.file ? ExamineFile(ToUtf16(*arguments.file))
                                   : ExamineInstallation(arguments.language));
}

}  // namespace

void AddDoctorCommand(CommandSet& commands) {
    commands.Add<DoctorArguments>(
        "doctor", "Report what is wrong with the installation, or with one data file, and the consequences",
        {"doctor", "doctor D:\\Work\\ZOTBase.xml", "doctor --language de-DE",
         "doctor --json --program-files D:\\Copy"},
        [](CLI::App& command, DoctorArguments& arguments) {
            AddOption(command, "FILE", "", arguments.file,
                      "Examine only this data file, which may be in any folder");
            AddOption(command, "--language", "TAG", arguments.language,
                      "Examine only the string table of this language, such as de-DE");
            AddFlag(command, "--all-languages", arguments.allLanguages,
                    "Examine the string tables of all languages (the default)");
            AddToHelp(command, ExitCodes);
        },
        Examine);
}

}  // namespace ZOTDam::Client
