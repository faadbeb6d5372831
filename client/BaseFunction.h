#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "DisplayOptions.h"
#include "Report.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

// What a function of the base catalogue has by default: in general, or in one power scheme.
struct DefaultValue {
    std::string scheme;  // its GUID as it stands; empty for the general default
    std::int32_t ac = 0;
    std::int32_t dc = 0;
};

// A function of the base catalogue, with the content of the elements to which its record points. It can be
// made only while the record is valid.
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
