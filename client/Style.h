// How texts stand out on the console.
#pragma once

#include <string>

namespace ZOTDam::Client {

enum class Styling : unsigned char { Automatic, Always, Never };

// Until this is called, texts are plain. Automatic styles them on a console that can show it, unless the
// environment variable NO_COLOR is set.
void SetStyling(Styling styling);

// A heading, in bold where texts are styled.
std::string Heading(const std::string& text);

}  // namespace ZOTDam::Client
