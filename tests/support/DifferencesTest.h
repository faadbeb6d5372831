// The fixture of tests for GetDiffFuncList: two schemes with different values for the functions.
#pragma once

#include <algorithm>

#include "support/FunctionMarkup.h"
#include "support/TranslationTest.h"

namespace ZOTDam::Test {

inline constexpr std::size_t LongestText = TextCapacity - 1;
inline constexpr std::uint32_t Ac = 1;
inline constexpr std::uint32_t Dc = 2;

inline const std::string LeadingGroup = "Group1Name";

// A function with a name, a group, and two labels on each power source: AcOff, AcOn, DcOff and DcOn.
inline std::string NamedFunction(std::int32_t id, const std::string& name,
                                 const std::string& group = "Other") {
    return FunctionWith(id, {.attributes = "Name=\"" + name + "\" Group=\"" + group + "\"",
                             .acItems = Labels({"AcOff", "AcOn"}),
                             .dcItems = Labels({"DcOff", "DcOn"})});
}

// The result of the call and the content of the buffers after it.
struct Difference {
    bool result;
    std::wstring names;
    std::wstring values;

    bool operator==(const Difference&) const = default;
};

inline void PrintTo(const Difference& difference, std::ostream* out) {
    *out << difference.result << ' ' << testing::PrintToString(difference.names) << ' '
         << testing::PrintToString(difference.values);
}

inline const Difference None = {false, L"untouched", L"untouched"};

// A caller's buffer, followed by a code unit that must not be written.
struct GuardedBuffer {
    Text text = L"untouched";
    wchar_t guard = L'#';
};

inline std::wstring TextIn(const GuardedBuffer& buffer) {
    EXPECT_EQ(buffer.guard, L'#');
    return {buffer.text, std::find(buffer.text, buffer.text + TextCapacity, L'\0')};
}

class DifferencesTest : public TranslationTest {
protected:
    Difference Compare(std::uint32_t mode = Ac, const GUID& schemeA = Balanced,
                       const GUID& schemeB = HighPerformance) {
        GuardedBuffer names;
        GuardedBuffer values;
        const bool result = Dll().GetDiffFuncList(&schemeA, &schemeB, mode, names.text, values.text);
        return {result, TextIn(names), TextIn(values)};
    }

    std::wstring CompareNames() { return Compare().names; }
    std::wstring CompareValues() { return Compare().values; }

    void Store(const std::string& balanced, const std::string& highPerformance) const {
        WriteSchemes(OldScheme(BalancedText, balanced) + OldScheme(HighPerformanceText, highPerformance));
    }

    // Stores these functions in both schemes: off in the first and on in the second, on both power sources.
    void StoreDifferent(std::initializer_list<std::int32_t> ids) const {
        std::string off;
        std::string on;
        for (const std::int32_t id : ids) {
            off += OldFunction(id, 0, 0);
            on += OldFunction(id, 1, 1);
        }
        Store(off, on);
    }

    // Function 1, named Dim, has position 0 in the first scheme and the given position in the second.
    void WriteDimAt(std::int32_t position) const {
        WriteFunctions(NamedFunction(1, "Dim"));
        Store(OldFunction(1, 0, 0), OldFunction(1, position, position));
    }

    void WriteDifferentDim() const { WriteDimAt(1); }

    struct Translation {
        std::string key;
        std::string text;
    };

    void Translate(std::initializer_list<Translation> translations) const {
        std::string entries;
        for (const auto& [key, text] : translations)
            entries += Entry(key, text);
        WriteEntries(entries);
    }

    std::vector<std::wstring> FunctionNames() {
        std::vector<std::wstring> names;
        for (const FunctionInfo& info : GetFunctionInfo())
            names.push_back(info.name);
        return names;
    }

    // The user settings after both schemes have been added, one after the other, with their defaults of
    // function 1.
    static std::string BothAdopted(const std::string& guidA = BalancedText) {
        return RewrittenUserFile(OldScheme(guidA, OldFunction(1, 0, 0)) +
                                 NewScheme(HighPerformanceText, NewFunction(1, 1, 1)));
    }

    // Function 1 has different defaults in the second scheme, and neither scheme is stored.
    void WriteDifferentDefaults() const {
        WriteFunctions(FunctionWith(1, {.attributes = R"(Name="Dim")",
                                        .acItems = Labels({"AcOff", "AcOn"}),
                                        .defaultItems = DefaultItem(HighPerformanceText, {1, 1})}));
    }
};

}  // namespace ZOTDam::Test
