#include "Style.h"

#include <cstdlib>

#include "Console.h"

namespace ZOTDam::Client {

namespace {

bool isStyled = false;

bool HasNoColor() {
    const char* const value = std::getenv("NO_COLOR");
    return value != nullptr && *value != '\0';
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
