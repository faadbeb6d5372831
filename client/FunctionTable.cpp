#include "FunctionTable.h"

#include <algorithm>
#include <string_view>

#include "catalogue/FunctionReader.h"
#include "DataFiles.h"
#include "platform/FalseOnException.h"
#include "xml/ZOTDefault.h"

namespace ZOTDam::Client {

namespace {

constexpr auto SelectId = [](const auto& entry) { return entry.first; };

}  // namespace

CFunctionTable ReadFunctionTable(const FunctionCatalogue& catalogue) {
    CFunctionTable table;
    FalseOnException([&] {
        const CXmlZOTDefault defaults;
        const IXMLDOMElementPtr functions = defaults.FindFunctions();
        return functions && LoadFunctionTable(functions, table);
    });
    if (!std::ranges::equal(table.functions, catalogue, {}, SelectId, SelectId))
        ThrowInUse(Defaults);
    return table;
}

// Compatibility: C48.
std::set<std::int32_t> LeadingFunctions(const CFunctionTable& table) {
    std::set<std::int32_t> leading;
    for (const auto& [id, function] : table.functions)
        if (std::wstring_view{function.group} == L"Group1Name")
            leading.insert(id);
    return leading;
}

// The first command of a scheme without parameters adds its function. Compatibility: C43.
std::vector<OwnedCommand> CommandsOf(const CFunctionTable& table, Params params) {
    std::vector<OwnedCommand> owned;
    for (const auto& [functionId, commands] : table.commands) {
        if (!params.empty() && !params.contains(functionId))
            continue;
        for (const CommandItem& command : commands) {
            owned.push_back({functionId, command});
            params.try_emplace(functionId);
        }
    }
    return owned;
}

}  // namespace ZOTDam::Client
