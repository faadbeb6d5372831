// zotdamctl: the settings of QUEN Power Management on the command line.
#include <exception>
#include <iostream>

#include "Commands.h"
#include "Console.h"
#include "DataFiles.h"
#include "Error.h"
#include "Options.h"
#include "Output.h"

namespace ZOTDam::Client {

namespace {

enum ExitStatus : int { Success = 0, Failure = 1, WrongUsage = 2 };

void CarryOut(const Options& options) {
    if (options.programFiles)
        RedirectProgramFiles(*options.programFiles);
    if (options.programData)
        RedirectProgramData(*options.programData);
    const Library library;
    (options.json ? WriteJson : WriteText)(std::cout, Execute(library, options.command));
}

ExitStatus Run() {
    const auto parsed = ParseOptions(Arguments());
    if (const auto* const information = std::get_if<Information>(&parsed))
        std::cout << *information;
    else
        CarryOut(std::get<Options>(parsed));
    if (!std::cout.flush())
        throw Error{"The output cannot be written."};
    return Success;
}

ExitStatus Fail(const std::exception& error, ExitStatus status) {
    std::cerr << "zotdamctl: " << error.what() << '\n';
    return status;
}

ExitStatus Main() {
    const Utf8Output output;
    try {
        return Run();
    } catch (const UsageError& error) {
        return Fail(error, WrongUsage);
    } catch (const std::exception& error) {
        return Fail(error, Failure);
    }
}

}  // namespace

}  // namespace ZOTDam::Client

int main() {
    return ZOTDam::Client::Main();
}
