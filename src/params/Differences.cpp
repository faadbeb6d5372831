#include "params/Differences.h"

#include <string>
#include <string_view>

#include "params/PowerSource.h"
#include "params/SchemeReader.h"
#include "platform/FalseOnException.h"
#include "platform/FixedText.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

// The group whose functions are listed first. Compatibility: C48.
constexpr std::wstring_view LeadingGroup = L"Group1Name";

// The line feed comes first. Compatibility: C45.
constexpr std::wstring_view LineEnd = L"\n\r";

struct DifferenceTexts {
    std::wstring names;
    std::wstring values;
};

// Returns null for an unknown mode.
const PowerSource* ComparedSource(std::uint32_t mode) noexcept {
    switch (mode) {
        case 1:
            return &AC;
        case 2:
            return &DC;
        default:
            return nullptr;
    }
}

// Appends the name of a function and the label of the option that scheme B selects. Without a text for the
// label, its line is empty. Compatibility: C47.
void AppendDifference(FunctionRecord& function, const DisplayItem* selected, DifferenceTexts& texts) {
    Text value = {};
    if (CStringTableControler* const stringTable = StringTableDocument.Get()) {
        stringTable->Lookup(function.name, function.name);
        stringTable->Lookup(selected != nullptr ? selected->label : L"", value);
    }
    texts.names.append(L"- ").append(function.name).append(LineEnd);
    texts.values.append(value).append(LineEnd);
}

DifferenceTexts ListDifferences(CFunctionTable& table, const ParamMap& paramsA, const ParamMap& paramsB,
                                const PowerSource& source) {
    DifferenceTexts leading;
    DifferenceTexts others;
    for (const auto& [functionId, paramB] : paramsB) {
        const auto entryA = paramsA.find(functionId);
        if (entryA == paramsA.end() || entryA->second.*source.paramIndex == paramB.*source.paramIndex)
            continue;
        const auto entry = table.functions.find(functionId);
        if (entry == table.functions.end())
            continue;
        FunctionRecord& function = entry->second;
        AppendDifference(function, SelectDisplayItem(function, paramB, source),
                         function.group == LeadingGroup ? leading : others);
    }
    return {leading.names + others.names, leading.values + others.values};
}

void CopyUnlessNull(const std::wstring& text, wchar_t* buffer) noexcept {
    if (buffer != nullptr)
        CopyTruncated(text, buffer);
}

}  // namespace

bool BuildDifferenceTexts(CFunctionTable& table, const GUID& schemeA, const GUID& schemeB, std::uint32_t mode,
                          wchar_t* names, wchar_t* values) noexcept {
    return FalseOnException([&] {
        ParamMap paramsA;
        ParamMap paramsB;
        if (!LoadSchemeParameters(table, schemeA, paramsA) || !LoadSchemeParameters(table, schemeB, paramsB))
            return false;
        const PowerSource* source = ComparedSource(mode);
        if (source == nullptr)
            return false;
        const DifferenceTexts texts = ListDifferences(table, paramsA, paramsB, *source);
        if (texts.names.empty())
            return false;
        CopyUnlessNull(texts.names, names);
        CopyUnlessNull(texts.values, values);
        return true;
    });
}

}  // namespace ZOTDam
