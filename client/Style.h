// Text styles on the console.
#pragma once

#include <string>

namespace ZOTDam::Client {

enum class Styling : unsigned char { Automatic, Always, Never };

// Until this is called, texts are not styled. Automatic styles them on a console that supports it, unless the
// environment variable NO_COLOR is set.
void SetStyling(Styling styling);

// Returns a heading, in bold if texts are styled.
std::string Heading(const std::string& text);

}  // namespace ZOTDam::Client
