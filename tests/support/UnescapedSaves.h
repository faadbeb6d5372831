// Makes the DOM save tabs and line breaks in attributes without character references, for a scope. A parser
// reads each of them as a space. COM must be initialised.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "support/DomOutput.h"

namespace ZOTDam::Test {

class UnescapedSaves {
private:
    static std::string Unescape(std::string_view escaped) {
        constexpr std::pair<std::string_view, char> references[] = {{"&#9;", '\t'},  {"&#10;", '\n'},
                                                                    {"&#13;", '\r'}, {"&#x9;", '\t'},
                                                                    {"&#xA;", '\n'}, {"&#xD;", '\r'}};
        std::string text{escaped};
        for (const auto& [reference, character] : references)
            for (std::size_t i = text.find(reference); i != std::string::npos; i = text.find(reference, i))
                text.replace(i, reference.size(), 1, character);
        return text;
    }

    DomOutput output{&Unescape};
};

}  // namespace ZOTDam::Test
