// The catalogue: the functions in use on this machine, as the defaults file lists them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// A command that carries out a function's parameter; the parameter indices say which option it takes.
struct CommandItem {
    std::int32_t preset0 = 0;  // no file sets the presets
    std::int32_t preset1 = 1;
    std::int32_t id = 0;
    std::int32_t event = 0;
    std::int32_t state = 0;
    std::int32_t paramIndex1 = 0;
    std::int32_t paramIndex2 = 0;
    std::int32_t flag = 0;
    std::wstring specInfo1;
};

// Both maps are keyed by function id. The table counts as loaded when neither is empty.
struct CFunctionTable {
    using Functions = std::map<std::int32_t, FunctionRecord>;

    Functions functions;
    std::map<std::int32_t, std::vector<CommandItem>> commands;

    // The functions by position, in ascending order of their ids: clients ask for one position after the
    // other.
    std::vector<Functions::const_iterator> positions;

    bool IsLoaded() const noexcept { return !functions.empty() && !commands.empty(); }
    void Clear() noexcept {
        positions.clear();
        functions.clear();
        commands.clear();
    }
};

// Loads the table from the defaults unless it is loaded already: later changes of the file are not seen.
bool EnsureFunctionTable(CFunctionTable& table) noexcept;

}  // namespace ZOTDam
