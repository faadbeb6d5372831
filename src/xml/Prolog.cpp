#include "xml/Prolog.h"

#include <cstddef>
#include <string>

#include "platform/AsciiCase.h"

namespace ZOTDam {

namespace {

// The number of bytes in a code unit, the position of its lowest byte, and the size of the byte order mark.
struct Encoding {
    std::size_t unitSize = 1;
    std::size_t lowByte = 0;
    std::size_t markSize = 0;
};

// Determines the encoding from the byte order mark, or from "<", with which a file without one begins.
Encoding EncodingOf(std::string_view file) noexcept {
    struct {
        std::string_view begin;
        Encoding encoding;
    } constexpr encodings[] = {
        {{"\xFF\xFE\0\0", 4}, {4, 0, 4}}, {{"\0\0\xFE\xFF", 4}, {4, 3, 4}}, {{"<\0\0\0", 4}, {4, 0, 0}},
        {{"\0\0\0<", 4}, {4, 3, 0}},      {{"\xFF\xFE", 2}, {2, 0, 2}},     {{"\xFE\xFF", 2}, {2, 1, 2}},
        {{"<\0", 2}, {2, 0, 0}},          {{"\0<", 2}, {2, 1, 0}},          {{"\xEF\xBB\xBF", 3}, {1, 0, 3}},
    };
    for (const auto& [begin, encoding] : encodings)
        if (file.starts_with(begin))
            return encoding;
    return {};
}

// The unread rest of a file, as characters. A character outside ASCII is a zero.
class CReader {
public:
    explicit CReader(std::string_view file) noexcept : encoding{EncodingOf(file)}, rest{file} {
        rest.remove_prefix(encoding.markSize);
    }

    bool IsAtEnd() const noexcept { return rest.size() < encoding.unitSize; }

    bool StartsWith(std::string_view text) const noexcept {
        if (rest.size() / encoding.unitSize < text.size())
            return false;
        for (std::size_t i = 0; i < text.size(); ++i)
            if (CharacterAt(i) != text[i])
                return false;
        return true;
    }

    void Skip(std::size_t characters) noexcept { rest.remove_prefix(characters * encoding.unitSize); }

    // Returns whether the rest begins with this markup, and skips it up to its end or to the end of the file.
    // Both delimiters are complete: "<!-->" is no comment.
    bool SkipMarkup(std::string_view begin, std::string_view end) noexcept {
        if (!StartsWith(begin))
            return false;
        Skip(begin.size());
        while (!IsAtEnd() && !StartsWith(end))
            Skip(1);
        if (!IsAtEnd())
            Skip(end.size());
        return true;
    }

    void SkipWhiteSpace() noexcept {
        while (!IsAtEnd() && std::string_view{" \t\r\n"}.find(CharacterAt(0)) != std::string_view::npos)
            Skip(1);
    }

private:
    char CharacterAt(std::size_t index) const noexcept {
        const std::string_view unit = rest.substr(index * encoding.unitSize, encoding.unitSize);
        for (std::size_t i = 0; i < unit.size(); ++i)
            if (i != encoding.lowByte && unit[i] != '\0')
                return '\0';
        return unit[encoding.lowByte];
    }

    Encoding encoding;
    std::string_view rest;
};

}  // namespace

Prolog ExamineProlog(std::string_view file) noexcept {
    CReader reader{file};
    do
        reader.SkipWhiteSpace();
    while (reader.SkipMarkup("<?", "?>") || reader.SkipMarkup("<!--", "-->"));
    if (reader.StartsWith("<!DOCTYPE"))
        return Prolog::DocumentType;
    return reader.StartsWith("<") && !reader.StartsWith("<!") ? Prolog::Valid : Prolog::Invalid;
}

bool IsUtf8(std::string_view file) {
    const Encoding encoding = EncodingOf(file);
    if (encoding.unitSize != 1)
        return false;
    file.remove_prefix(encoding.markSize);
    if (!file.starts_with("<?xml"))
        return true;
    const std::string_view declaration = file.substr(0, file.find("?>"));
    const std::size_t name = declaration.find("encoding");
    if (name == std::string_view::npos)
        return true;
    // The case of the letters of an encoding is ignored.
    return ToLowerAscii(std::string{declaration.substr(name)}).find("utf-8") != std::string::npos;
}

}  // namespace ZOTDam
