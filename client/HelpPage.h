// The help of the program and of its commands.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace ZOTDam::Client {

// Returns the help of a command, or of the program. `path` is its name, preceded by those of the program and
// of the commands that contain it.
std::string HelpPage(const CLI::App& command, const std::string& path);

}  // namespace ZOTDam::Client
