#pragma once

namespace ZOTDam {

// Returns the string with its ASCII letters in lower case. _wcsicmp compares strings in this way.
template <class String>
String ToLowerAscii(String string) {
    for (auto& character : string)
        if (character >= 'A' && character <= 'Z')
            character += 'a' - 'A';
    return string;
}

}  // namespace ZOTDam
