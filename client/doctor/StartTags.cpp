#include "doctor/StartTags.h"

#include <algorithm>
#include <string>

#include "Text.h"

namespace ZOTDam::Client {

namespace {

// A place in a text that moves forward and counts lines and columns.
class Cursor {
public:
    explicit Cursor(std::string_view document) : rest{document} {}

    const Position& Where() const noexcept { return position; }
    bool IsAt(std::string_view part) const noexcept { return rest.starts_with(part); }

    // Moves to the next occurrence, or to the end of the text. Returns whether there is one.
    bool MoveTo(std::string_view part) {
        Skip(std::min(rest.find(part), rest.size()));
        return !rest.empty();
    }

    void MovePast(std::string_view part) {
        if (MoveTo(part))
            Skip(part.size());
    }

    // Moves past the tag at this place. Returns whether the tag is that of an empty element.
    bool MovePastTag() {
        char last = 0;
        while (!rest.empty() && rest.front() != '>') {
            last = rest.front();
            Skip(1);
            // An attribute value may contain the character that ends the tag.
            if (last == '"' || last == '\'')
                MovePast({&last, 1});
        }
        MovePast(">");
        return last == '/';
    }

private:
    void Skip(std::size_t count) {
        for (const char byte : rest.substr(0, count))
            Count(byte);
        rest.remove_prefix(count);
    }

    // A line ends with LF, CR LF or CR.
    void Count(char byte) noexcept {
        const bool isContinuation = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
        if (byte == '\r' || (byte == '\n' && previous != '\r'))
            position = {position.line + 1, 1};
        else if (byte != '\n' && !isContinuation)
            ++position.column;
        previous = byte;
    }

    std::string_view rest;
    Position position = {1, 1};
    char previous = 0;
};

// Returns a document in UTF-16 as UTF-8, and any other document without the byte order mark of UTF-8.
std::string ToAsciiBased(std::string_view content) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    const bool isLittleEndian = content.starts_with("\xFF\xFE");
    if (!isLittleEndian && !content.starts_with("\xFE\xFF"))
        return std::string{content.substr(content.starts_with(utf8Mark) ? utf8Mark.size() : 0)};
    std::wstring text;
    for (std::size_t i = 2; i + 1 < content.size(); i += 2) {
        const auto first = static_cast<unsigned char>(content[i]);
        const auto second = static_cast<unsigned char>(content[i + 1]);
        text += static_cast<wchar_t>(isLittleEndian ? first | second << 8 : second | first << 8);
    }
    return ToUtf8(text);
}

}  // namespace

std::vector<Position> FindStartTags(std::string_view content, std::size_t maxDepth) {
    const std::string document = ToAsciiBased(content);
    std::vector<Position> positions;
    std::size_t depth = 0;
    Cursor cursor{document};
    while (cursor.MoveTo("<")) {
        if (cursor.IsAt("<!--")) {
            cursor.MovePast("-->");
        } else if (cursor.IsAt("<![CDATA[")) {
            cursor.MovePast("]]>");
        } else if (cursor.IsAt("<?")) {
            cursor.MovePast("?>");
        } else if (cursor.IsAt("</")) {
            --depth;
            cursor.MovePast(">");
        } else {
            if (++depth <= maxDepth)
                positions.push_back(cursor.Where());
            if (cursor.MovePastTag())
                --depth;
        }
    }
    return positions;
}

}  // namespace ZOTDam::Client
