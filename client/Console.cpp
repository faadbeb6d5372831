#include "Console.h"

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <memory>
#include <new>

#include "Text.h"

namespace ZOTDam::Client {

namespace {

bool IsConsole(DWORD stream) noexcept {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != FALSE;
}

}  // namespace

std::vector<std::string> Arguments() {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> wide{CommandLineToArgvW(GetCommandLineW(), &count),
                                                               LocalFree};
    if (!wide)
        throw std::bad_alloc{};
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(ToUtf8(wide.get()[i]));
    return arguments;
}

bool EnableEscapeSequences() noexcept {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != FALSE &&
           SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

Utf8Output::Utf8Output() noexcept
    : consoleCodePage{IsConsole(STD_OUTPUT_HANDLE) || IsConsole(STD_ERROR_HANDLE) ? GetConsoleOutputCP()
                                                                                  : 0} {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    if (consoleCodePage != 0)
        SetConsoleOutputCP(CP_UTF8);
}

Utf8Output::~Utf8Output() {
    if (consoleCodePage != 0)
        SetConsoleOutputCP(consoleCodePage);
}

}  // namespace ZOTDam::Client
