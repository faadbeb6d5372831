// A client in C++ that uses each kind of declaration in ZOTDam.h. It is compiled, but not run.
#include "ZOTDam.h"

namespace {

struct Sum : ZOTDam::IGetFunctionInfoCallback {
    void OnItem(std::uint32_t, const ZOTDam::FunctionRecord* record) override {
        for (const ZOTDam::DisplayItem& item : record->acDisplayItems)
            options += item.option;
    }
    std::int32_t options = 0;
};

struct Ignore : ZOTDam::IGetParameterDefaultCallback {
    void OnItem(std::int32_t, const ZOTDam::ParamValue*) override {}
};

std::int32_t SumOptions() {
    Sum sum;
    return ZOTDam::GetFunctionInfo(&sum) ? sum.options : -1;
}

std::size_t CopyLists() {
    ZOTDam::FunctionRecord record;
    record.dcDisplayItems.push_back({1, L"one"});
    record.dcDisplayItems.push_back(ZOTDam::DisplayItem{});
    record.acDisplayItems = record.dcDisplayItems;
    record.acDisplayItems.remove_if([](const ZOTDam::DisplayItem& item) { return item.option == 0; });
    for (ZOTDam::DisplayItem& item : record.acDisplayItems)
        ++item.option;
    const ZOTDam::List<ZOTDam::FunctionRecord> empty;
    return ZOTDam::FunctionRecord{record}.acDisplayItems.size() + (empty.begin() != empty.end() ? 1 : 0);
}

bool HasDefault(const ZOTDam::ParamTree& params) {
    for (const ZOTDam::ParamTreeNode& node : params)
        if (node.value == ZOTDam::ParamValue{})
            return true;
    return params.empty();
}

bool CallOthers(const GUID& scheme) {
    Ignore params;
    ZOTDam::FunctionBaseHolder functions;
    ZOTDam::ParamTreeNode nil = {&nil, &nil, &nil, 0, 1, 0, {}};
    const ZOTDam::ParamMapHolder map = {nullptr, {&nil, 0}};
    ZOTDam::FuncCurValue value{};
    ZOTDam::Text names;
    wchar_t values[ZOTDam::TextCapacity];
    using namespace ZOTDam;
    return HasDefault(map.params) && GetFunctionBase(nullptr) && GetFunctionBaseUnSupported(nullptr) &&
           AddFunctionDefault(&functions) && GetParameter(&scheme, &params) &&
           GetParameterDefault(&scheme, &params) && SetParameter(&scheme, &map) && TEVGetParam(&scheme) &&
           GetFuncCurValue(0, &value) && GetCommandInfo(&scheme, nullptr) &&
           GetDiffFuncList(&scheme, &scheme, 1, names, values) && GetSpecScheme(nullptr) &&
           GetCommonSetting(L"Beep", values) && SetCommonSetting(L"Beep", L"loud") && InitCommonSetting() &&
           ResetDefault() && ZOTDamExit();
}

}  // namespace

// The type that <msxml6.h> declares. The copies of a record's nodes require it.
struct IXMLDOMNode {
    virtual void AddRef() = 0;
    virtual void Release() = 0;

protected:
    ~IXMLDOMNode() = default;
};

int main() {
    constexpr GUID scheme = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
    if (ZOTDam::GetFuncCount() == ZOTDam::CatalogueUnavailable || SumOptions() < 0 || CopyLists() != 1)
        return 1;
    return CallOthers(scheme) ? 0 : 1;
}
