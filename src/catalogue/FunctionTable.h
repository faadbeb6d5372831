// The catalogue: the functions in use on this machine, as listed in ZOTDefault.xml.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// A command that the client executes to apply a function's parameters. Each parameter index selects the power
// source for one of the two options of the command: 0 for AC, any other number for DC. Compatibility: C44.
struct CommandItem {
    std::int32_t preset0 = 0;  // the presets are constant; no file contains them
    std::int32_t preset1 = 1;
    std::int32_t id = 0;
    std::int32_t event = 0;
    std::int32_t state = 0;
    std::int32_t paramIndex1 = 0;
    std::int32_t paramIndex2 = 0;
    std::int32_t flag = 0;
    std::wstring specInfo1;
};

// The catalogue in memory. It counts as loaded when neither map is empty. Both maps have function ids as
// keys. Compatibility: C26.
struct CFunctionTable {
    using Functions = std::map<std::int32_t, FunctionRecord>;

    Functions functions;
    std::map<std::int32_t, std::vector<CommandItem>> commands;

    // The functions in ascending order of their ids, for access by position.
    std::vector<Functions::const_iterator> positions;

    bool IsLoaded() const noexcept { return !functions.empty() && !commands.empty(); }
    void Clear() noexcept {
        positions.clear();
        functions.clear();
        commands.clear();
    }
};

// Loads the table from the defaults unless it is already loaded; later changes of the file have no effect.
// Returns false when the table cannot be loaded.
bool EnsureFunctionTable(CFunctionTable& table) noexcept;

}  // namespace ZOTDam
