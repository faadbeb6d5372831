// Parts of HTML pages.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam::Client {

// Returns a text in which no character has a meaning in HTML, neither in content nor in a quoted attribute.
std::string Escaped(std::string_view text);

// Returns an element on one line. The content is HTML. `attributes` is empty or begins with a space.
std::string Tag(std::string_view name, std::string_view content, std::string_view attributes = {});

}  // namespace ZOTDam::Client
