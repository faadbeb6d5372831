#include "params/CommandInfo.h"

#include "params/PowerSource.h"
#include "params/SchemeReader.h"
#include "platform/FalseOnException.h"
#include "platform/FixedText.h"

namespace ZOTDam {

namespace {

// Index 0 selects AC, and any other index selects DC. Compatibility: C44.
std::int32_t ResolveOption(const FunctionRecord& function, const ParamValue& param,
                           std::int32_t paramIndex) noexcept {
    const DisplayItem* item = SelectDisplayItem(function, param, paramIndex == 0 ? AC : DC);
    return item != nullptr ? item->option : 0;
}

CommandInfoRecord ResolveCommand(const CommandItem& command, const FunctionRecord& function,
                                 const ParamValue& param) noexcept {
    CommandInfoRecord record;
    record.id = command.id;
    record.event = command.event;
    record.state = command.state;
    record.option1 = ResolveOption(function, param, command.paramIndex1);
    record.option2 = ResolveOption(function, param, command.paramIndex2);
    record.flag = command.flag;
    CopyTruncated(command.specInfo1, record.specInfo1);
    return record;
}

}  // namespace

bool CollectCommandInfo(CFunctionTable& table, const GUID& scheme, List<CommandInfoRecord>& output) noexcept {
    const bool isComplete = FalseOnException([&] {
        ParamMap params;
        if (!EnsureFunctionTable(table) || !LoadSchemeParameters(table, scheme, params))
            return false;
        ResolveCommands(table, params, output);
        return true;
    });
    // A client must not apply a part of a scheme. Compatibility: C36.
    if (!isComplete)
        output.clear();
    return isComplete;
}

void ResolveCommands(CFunctionTable& table, ParamMap& params, List<CommandInfoRecord>& output) {
    for (const auto& [functionId, commands] : table.commands) {
        // Checked again for each function: the first command adds an entry to an empty map.
        // Compatibility: C43.
        if (!params.empty() && !params.contains(functionId))
            continue;
        for (const CommandItem& command : commands)
            output.push_back(ResolveCommand(command, table.functions[functionId], params[functionId]));
    }
}

}  // namespace ZOTDam
