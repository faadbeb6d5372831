// Scripts that complete the words of a command line in a shell.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace ZOTDam::Client {

std::string BashCompletion(const CLI::App& app);
std::string PowerShellCompletion(const CLI::App& app);

}  // namespace ZOTDam::Client
