// The answers of the fakes. A test passes them in environment variables.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

namespace ZOTDam::Test {

// Returns an empty string if the variable does not exist.
inline std::wstring Variable(const wchar_t* name) {
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

// Returns the pairs of a variable of the form "name=value;name=value;".
inline std::vector<std::pair<std::wstring, std::wstring>> Pairs(const wchar_t* variable) {
    const std::wstring list = Variable(variable);
    std::vector<std::pair<std::wstring, std::wstring>> pairs;
    std::size_t start = 0;
    for (auto end = list.find(L';'); end != std::wstring::npos; end = list.find(L';', start)) {
        const auto equals = list.find(L'=', start);
        pairs.emplace_back(list.substr(start, equals - start), list.substr(equals + 1, end - equals - 1));
        start = end + 1;
    }
    return pairs;
}

}  // namespace ZOTDam::Test
