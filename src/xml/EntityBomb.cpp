#include "xml/EntityBomb.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/File.h"

namespace ZOTDam {

namespace {

// A DOM builds a text by appending one entity after the other, each time to a new copy of the previous text.
// It copies this many bytes in a tenth of a second.
constexpr std::uint64_t MaxCopiedBytes = 1'000'000'000;

// Returns the bytes of a file without zeros. The keywords searched for are ASCII, so without the zeros they
// are the same in UTF-8, UTF-16 and UTF-32.
std::string ReadMarkup(const std::wstring& path) {
    const CFile file{CreateFileW(path.c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    std::string bytes;
    if (!file.IsOpen() || !file.Read(bytes))
        return {};
    if (bytes.find('\0') != std::string::npos)
        std::erase(bytes, '\0');
    return bytes;
}

// Removes a string and everything before it, or everything when the string is not found.
void SkipPast(std::string_view& markup, std::string_view text) {
    const std::size_t found = markup.find(text);
    markup.remove_prefix(found == std::string_view::npos ? markup.size() : found + text.size());
}

// Removes everything up to the end of the next quoted string. Returns the length of that string.
std::size_t SkipLiteral(std::string_view& markup) {
    const std::size_t open = markup.find_first_of("'\"");
    if (open == std::string_view::npos)
        return 0;
    const std::string_view quote = markup.substr(open, 1);
    markup.remove_prefix(open + 1);
    const std::size_t length = markup.find(quote);
    SkipPast(markup, quote);
    return length == std::string_view::npos ? 0 : length;
}

bool DeclaresParameterEntity(std::string_view afterKeyword) {
    const std::size_t first = afterKeyword.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && afterKeyword[first] == '%';
}

}  // namespace

bool IsEntityBomb(const std::wstring& path) {
    const std::string markup = ReadMarkup(path);
    std::string_view unread = markup;
    std::uint64_t declared = 0;
    SkipPast(unread, "<!DOCTYPE");
    for (SkipPast(unread, "<!ENTITY"); !unread.empty(); SkipPast(unread, "<!ENTITY")) {
        if (DeclaresParameterEntity(unread))
            return true;
        declared += SkipLiteral(unread);
    }
    if (declared == 0)
        return false;
    const auto uses = static_cast<std::uint64_t>(std::ranges::count(markup, '&'));
    return uses != 0 && declared > MaxCopiedBytes / (uses * uses);
}

}  // namespace ZOTDam
