#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ZOTDam::Client {

// Returns the word that the user has probably mistyped: the one with the fewest different characters, without
// the case of ASCII letters. Returns an empty string if no word is similar.
std::string FindSimilar(std::string_view mistyped, const std::vector<std::string>& words);

// Returns ". Did you mean "word"?" for a similar word, otherwise ".": the end of a message.
std::string SuggestionFor(std::string_view mistyped, const std::vector<std::string>& words);

}  // namespace ZOTDam::Client
