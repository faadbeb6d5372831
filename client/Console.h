// The command line and the standard streams, both in UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ZOTDam::Client {

// Returns the arguments of the process, without the name of the program.
std::vector<std::string> Arguments();

// Makes the console process escape sequences in the output. Returns false if the output is redirected, or if
// the console does not support them.
bool EnableEscapeSequences() noexcept;

// For its scope, the standard streams write UTF-8 and do not convert line endings.
class Utf8Output {
public:
    Utf8Output() noexcept;
    Utf8Output(const Utf8Output&) = delete;
    Utf8Output& operator=(const Utf8Output&) = delete;
    ~Utf8Output();

private:
    UINT consoleCodePage;  // restored because it outlives the process; 0 without a console
};

}  // namespace ZOTDam::Client
