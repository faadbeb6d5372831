// Files in the form of those that MSXML writes: with an XML declaration in double quotes, and with a carriage
// return before each line feed. The environment variable ZOTDAM_TEST_DOM=msxml selects this form for the
// files that the tests write, and for those that the DOM saves.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace ZOTDam::Test {

inline bool ImitatesMsxml() {
    static const char* const dom = std::getenv("ZOTDAM_TEST_DOM");
    return dom != nullptr && std::string_view{dom} == "msxml";
}

inline std::string AsMsxmlWrites(std::string_view xml) {
    std::string text;
    for (const char character : xml)
        text.append(character == '\n' && !text.ends_with('\r') ? "\r" : "").append(1, character);
    if (text.starts_with("<?xml"))
        std::replace(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(text.find('>')), '\'', '"');
    return text;
}

inline constexpr std::string_view AddedDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

// Returns a file of a test in the selected form. Files that do not begin with an element in UTF-8 stay
// unchanged.
inline std::string InSelectedForm(std::string_view xml) {
    constexpr std::string_view otherBeginnings{"?!\0", 3};
    if (!ImitatesMsxml() || !xml.starts_with('<') || xml.substr(1, 1).find_first_of(otherBeginnings) == 0)
        return std::string{xml};
    return std::string{AddedDeclaration} + AsMsxmlWrites(std::string{xml} + "\n");
}

// Returns the content of a file without what the selected form has added to it.
inline std::string FromSelectedForm(std::string_view xml) {
    if (!ImitatesMsxml() || !xml.starts_with(AddedDeclaration))
        return std::string{xml};
    std::string text{xml.substr(AddedDeclaration.size())};
    std::erase(text, '\r');
    if (text.ends_with('\n'))
        text.pop_back();
    return text;
}

}  // namespace ZOTDam::Test
