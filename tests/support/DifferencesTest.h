// The fixture of tests about GetDiffFuncList: two schemes, whose functions are set differently.
#pragma once

#include <algorithm>

#include "support/FunctionMarkup.h"
#include "support/TranslationTest.h"

namespace ZOTDam::Test {

inline constexpr std::size_t LongestText = TextCapacity - 1;
inline constexpr std::uint32_t Mains = 1;
inline constexpr std::uint32_t Battery = 2;

inline const std::string LeadingGroup = "Group1Name";

// A function with its name, its group, and two labels on either power source: AcOff, AcOn, DcOff and DcOn.
inline std::string NamedFunction(std::int32_t id, const std::string& name,
                                 const std::string& group = "Other") {
    return FunctionWith(id, {.attributes = "Name=\"" + name + "\" Group=\"" + group + "\"",
                             .acItems = Labels({"AcOff", "AcOn"}),
                             .dcItems = Labels({"DcOff", "DcOn"})});
}

// The result and what then stands in the buffers.
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

// A caller's buffer, with a unit behind it that nobody may write.
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
    Difference Compare(std::uint32_t mode = Mains, const GUID& schemeA = Balanced,
                       const GUID& schemeB = HighPerformance) {
        GuardedBuffer names;
        GuardedBuffer values;
        const bool result = Dll().GetDiffFuncList(&schemeA, &schemeB, mode, names.text, values.text);
        return {result, TextIn(names), TextIn(values)};
    }

    std::wstring ComparedNames() { return Compare().names; }
    std::wstring ComparedValues() { return Compare().values; }

    void Store(const std::string& balanced, const std::string& highPerformance) const {
        WriteSchemes(OldScheme(BalancedText, balanced) + OldScheme(HighPerformanceText, highPerformance));
    }

    // Both schemes hold these functions; the first has them off on both power sources, the second on.
    void StoreDifferent(std::initializer_list<std::int32_t> ids) const {
        std::string off;
        std::string on;
        for (const std::int32_t id : ids) {
            off += OldFunction(id, 0, 0);
            on += OldFunction(id, 1, 1);
        }
        Store(off, on);
    }

    // The function 1, called Dim, is at 0 in the first scheme and at a position in the second.
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

    std::vector<std::wstring> InformedNames() {
        std::vector<std::wstring> names;
        for (const FunctionInfo& info : GetFunctionInfo())
            names.push_back(info.name);
        return names;
    }

    // The user settings when both schemes entered them one after the other, with their defaults of the
    // function 1.
    static std::string BothAdopted(const std::string& guidA = BalancedText) {
        return RewrittenUserFile(OldScheme(guidA, OldFunction(1, 0, 0)) +
                                 NewScheme(HighPerformanceText, NewFunction(1, 1, 1)));
    }

    // The function 1 has other defaults in the second scheme, and neither scheme is stored.
    void WriteDifferentDefaults() const {
        WriteFunctions(FunctionWith(1, {.attributes = R"(Name="Dim")",
                                        .acItems = Labels({"AcOff", "AcOn"}),
                                        .defaultItems = DefaultItem(HighPerformanceText, {1, 1})}));
    }
};

}  // namespace ZOTDam::Test
