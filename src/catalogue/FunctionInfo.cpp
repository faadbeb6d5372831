#include "catalogue/FunctionInfo.h"

#include "platform/FalseOnException.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

void TranslateLabels(CStringTableControler& stringTable, List<DisplayItem>& items) noexcept {
    for (DisplayItem& item : items)
        stringTable.Lookup(item.label, item.label);
}

}  // namespace

bool CollectFunctionInfo(CFunctionTable& table, std::map<std::int32_t, FunctionRecord>& output) noexcept {
    return FalseOnException([&] {
        if (!EnsureFunctionTable(table))
            return false;
        for (const auto& [id, function] : table.functions)
            output.try_emplace(id, LocaliseFunctionRecord(function));
        return true;
    });
}

FunctionRecord LocaliseFunctionRecord(FunctionRecord record) noexcept {
    // Each key is replaced in place, so the user sees the key itself when it has no text. Compatibility: C27.
    if (CStringTableControler* const stringTable = StringTableDocument.Get()) {
        stringTable->Lookup(record.group, record.group);
        stringTable->Lookup(record.name, record.name);
        TranslateLabels(*stringTable, record.acDisplayItems);
        TranslateLabels(*stringTable, record.dcDisplayItems);
    }
    return record;
}

}  // namespace ZOTDam
