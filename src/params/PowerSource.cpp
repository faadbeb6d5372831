#include "params/PowerSource.h"

namespace ZOTDam {

const DisplayItem* SelectDisplayItem(const FunctionRecord& function, const ParamValue& param,
                                     const PowerSource& source) noexcept {
    std::int32_t position = 0;
    for (const DisplayItem& item : function.*source.displayItems)
        if (position++ == param.*source.paramIndex)
            return &item;
    return nullptr;
}

}  // namespace ZOTDam
