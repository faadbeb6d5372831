#pragma once

#include <filesystem>
#include <string>

namespace ZOTDam::Client {

// Returns the programs that have a file open, as far as the system reports them: "notepad.exe (process
// 4711)". Otherwise returns "another program".
std::string ProgramsUsing(const std::filesystem::path& file);

}  // namespace ZOTDam::Client
