#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "DisplayOptions.h"
#include "Report.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

// The default parameters of a function of the base catalogue, for all schemes or for one power scheme.
struct DefaultValue {
    std::string scheme;  // its GUID as in the file; empty for the general default
    std::int32_t ac = 0;
    std::int32_t dc = 0;
};

// A function of the base catalogue, with the content of the elements that its record refers to. It refers to
// the record, so the record must outlive it.
class BaseFunction {
public:
    explicit BaseFunction(const FunctionBaseRecord& functionRecord);

    std::string Text() const;
    Json ToJson() const;

private:
    const FunctionBaseRecord& record;
    Options acOptions;
    Options dcOptions;
    std::vector<DefaultValue> defaults;
};

}  // namespace ZOTDam::Client
