#include "Suggestion.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "platform/AsciiCase.h"

namespace ZOTDam::Client {

namespace {

// Returns the number of characters to insert, delete, replace or swap with the next one, so that `a` becomes
// `b`.
std::size_t DistanceBetween(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> distances(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    std::iota(distances[0].begin(), distances[0].end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        distances[i][0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = distances[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            distances[i][j] = std::min({replaced, distances[i - 1][j] + 1, distances[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                distances[i][j] = std::min(distances[i][j], distances[i - 2][j - 2] + 1);
        }
    }
    return distances[a.size()][b.size()];
}

}  // namespace

std::string FindSimilar(std::string_view mistyped, const std::vector<std::string>& words) {
    const std::string sought = ToLowerAscii(std::string{mistyped});
    std::string similar;
    if (sought.empty())
        return similar;
    // A quarter of the characters may differ: at least one, and two of six.
    std::size_t limit = std::max<std::size_t>(sought.size() / 4, sought.size() < 6 ? 1 : 2) + 1;
    for (const std::string& word : words) {
        const std::size_t distance = DistanceBetween(sought, ToLowerAscii(word));
        if (distance < limit) {
            limit = distance;
            similar = word;
        }
    }
    return similar;
}

std::string SuggestionFor(std::string_view mistyped, const std::vector<std::string>& words) {
    const std::string similar = FindSimilar(mistyped, words);
    return similar.empty() ? "." : ". Did you mean \"" + similar + "\"?";
}

}  // namespace ZOTDam::Client
