#include "Style.h"

#include <windows.h>

#include "Console.h"

namespace ZOTDam::Client {

namespace {

bool isStyled = false;

bool HasNoColor() {
    constexpr DWORD sizeOfEmptyText = 1;
    return GetEnvironmentVariableW(L"NO_COLOR", nullptr, 0) > sizeOfEmptyText;
}

}  // namespace

void SetStyling(Styling styling) {
    isStyled = styling == Styling::Always ||
               (styling == Styling::Automatic && !HasNoColor() && EnableEscapeSequences());
}

std::string Heading(const std::string& text) {
    return isStyled ? "\x1b[1m" + text + "\x1b[0m" : text;
}

}  // namespace ZOTDam::Client
