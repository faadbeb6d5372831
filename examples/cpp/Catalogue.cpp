// Required because the records of the base catalogue refer to nodes of its document.
#include <msxml2.h>

#include <cstdio>

#include "Examples.h"

namespace Examples {

// [begin GetFuncCount]
void CountFunctions(const ZOTDam::Library& library) {
    const std::uint32_t count = library.GetFuncCount();
    if (count == ZOTDam::CatalogueUnavailable)
        std::puts("The catalogue cannot be loaded.");
    else
        std::printf("%u functions\n", count);
}
// [end GetFuncCount]

// [begin GetFunctionInfo]
void ListFunctions(const ZOTDam::Library& library) {
    // The records are valid only during the callback. Copying a record also copies its lists.
    std::map<std::uint32_t, ZOTDam::FunctionRecord> functions;
    auto keep = ZOTDam::MakeCallback<ZOTDam::IGetFunctionInfoCallback>(
        [&](std::uint32_t id, const ZOTDam::FunctionRecord* record) { functions.emplace(id, *record); });
    library.GetFunctionInfo(&keep);

    for (const auto& [id, function] : functions) {
        std::printf("%u: %s, %s\n", id, ToUtf8(function.group).c_str(), ToUtf8(function.name).c_str());
        for (const ZOTDam::DisplayItem& item : function.acDisplayItems)
            std::printf("    %s (%d)\n", ToUtf8(item.label).c_str(), item.option);
    }
}
// [end GetFunctionInfo]

// [begin GetFunctionBase]
void ListBase(const ZOTDam::Library& library) {
    auto print =
        ZOTDam::MakeCallback<ZOTDam::IGetFunctionBaseCallback>([](const ZOTDam::FunctionBaseRecord* record) {
            std::printf("%d: %s\n", record->id, ToUtf8(record->name).c_str());
            for (const ZOTDam::CommandFamily& family : record->commandFamilies) {
                std::printf("    %zu commands\n", family.commandItems.size());
                for (const ZOTDam::CheckExistItem& check : family.checkExistItems)
                    std::printf("    check %d: %s\n", check.checkFlag, ToUtf8(check.param1).c_str());
            }
        });
    library.GetFunctionBase(&print);
}
// [end GetFunctionBase]

// [begin GetFunctionBaseUnSupported]
void ListUnsupported(const ZOTDam::Library& library) {
    auto print =
        ZOTDam::MakeCallback<ZOTDam::IGetFunctionBaseCallback>([](const ZOTDam::FunctionBaseRecord* record) {
            std::printf("not in use: %d, %s\n", record->id, ToUtf8(record->name).c_str());
        });
    library.GetFunctionBaseUnSupported(&print);
}
// [end GetFunctionBaseUnSupported]

// [begin AddFunctionDefault]
void AdoptAll(const ZOTDam::Library& library) {
    // A real program performs each record's checks and keeps only the supported functions.
    ZOTDam::FunctionBaseHolder holder;
    auto keep = ZOTDam::MakeCallback<ZOTDam::IGetFunctionBaseCallback>(
        [&](const ZOTDam::FunctionBaseRecord* record) { holder.records.push_back(*record); });
    library.GetFunctionBase(&keep);
    std::printf("%zu functions adopted: %s\n", holder.records.size(),
                library.AddFunctionDefault(&holder) ? "yes" : "no");
}  // the copies release their nodes here, while COM is still initialised
// [end AddFunctionDefault]

}  // namespace Examples
