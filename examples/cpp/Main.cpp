// Runs all examples on a copy of an installation. FOLDER must contain the folders "Program Files" and
// "ProgramData":
//     examples_cpp FOLDER
#include <cstdio>
#include <exception>

#include "Examples.h"

namespace Examples {

namespace {

// [begin DataFolders]
// These two environment variables of the process determine the folders of the library's files.
void WorkOn(const std::filesystem::path& folder) {
    SetEnvironmentVariableW(L"ProgramFiles", (folder / L"Program Files").c_str());
    SetEnvironmentVariableW(L"ProgramData", (folder / L"ProgramData").c_str());
}
// [end DataFolders]

void RunAll() {
    LoadAndUnload();
    {
        const ZOTDam::Library library;
        CountFunctions(library);
        ListFunctions(library);
        ListBase(library);
        ListUnsupported(library);
        ListParameters(library, Balanced);
        ListDefaults(library, Balanced);
        ChangeParameters(library, Balanced);
        LoadCurrentValues(library, Balanced);
        ListCurrentValues(library);
        ListCommands(library, Balanced);
        ListDifferences(library, Balanced, PowerSaver);
        ListSpecSchemes(library);
        ReadSetting(library);
        ChangeSetting(library);
        ReadSetting(library);
        InitialiseSettings(library);
        ForgetEverything(library);
        ReadSetting(library);
    }
    ReplaceCatalogueAndReload();
    LoadByHand();
}

}  // namespace

}  // namespace Examples

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: examples_cpp FOLDER, a copy of an installation, which is changed\n", stderr);
        return 2;
    }
    try {
        SetConsoleOutputCP(CP_UTF8);
        Examples::WorkOn(std::filesystem::absolute(argv[1]));
        Examples::RunAll();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
