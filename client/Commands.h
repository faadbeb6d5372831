// The commands, and what they report.
#pragma once

#include <cstdint>
#include <map>
#include <variant>

#include "ZOTDamClient.h"

namespace ZOTDam::Client {

using Params = std::map<std::int32_t, ParamValue>;

struct CountCommand {};

struct ParamsCommand {
    GUID scheme;
    bool defaults;
};

struct SetCommand {
    GUID scheme;
    std::int32_t functionId;
    ParamValue value;
};

struct ResetCommand {};

using Command = std::variant<CountCommand, ParamsCommand, SetCommand, ResetCommand>;

struct CountReport {
    std::uint32_t functions;
};

struct ParamsReport {
    GUID scheme;
    bool defaults;
    Params params;
};

struct SetReport {
    SetCommand stored;
    bool hidden;  // on this display; then the library does not give the value back
};

struct ResetReport {
    bool reset;  // false when there was nothing to reset
};

using Report = std::variant<CountReport, ParamsReport, SetReport, ResetReport>;

// Throws Error.
Report Execute(const Library& library, const Command& command);

}  // namespace ZOTDam::Client
