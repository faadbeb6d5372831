// The command line and the standard streams, both in UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ZOTDam::Client {

// The arguments of the running program, without its own name.
std::vector<std::string> Arguments();

// Lets the console carry out the escape sequences in the output. False where the output goes elsewhere, or
// the console cannot.
bool EnableEscapeSequences() noexcept;

// For its scope, what goes to the standard streams is UTF-8 and stays as written, without carriage returns.
class Utf8Output {
public:
    Utf8Output() noexcept;
    Utf8Output(const Utf8Output&) = delete;
    Utf8Output& operator=(const Utf8Output&) = delete;
    ~Utf8Output();

private:
    UINT consoleCodePage;  // the console keeps its code page when the program ends; 0 without a console
};

}  // namespace ZOTDam::Client
