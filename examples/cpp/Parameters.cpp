#include <cstdio>

#include "Examples.h"

namespace Examples {

// [begin GetParameter]
void ListParameters(const ZOTDam::Library& library, const GUID& scheme) {
    std::map<std::int32_t, ZOTDam::ParamValue> params;
    auto keep = ZOTDam::MakeCallback<ZOTDam::IGetParameterCallback>(
        [&](std::int32_t id, const ZOTDam::ParamValue* value) { params.emplace(id, *value); });
    library.GetParameter(&scheme, &keep);
    for (const auto& [id, value] : params)
        std::printf("%d: position %d plugged in, %d on battery\n", id, value.ACParamIndex,
                    value.DCParamIndex);
}
// [end GetParameter]

// [begin GetParameterDefault]
void ListDefaults(const ZOTDam::Library& library, const GUID& scheme) {
    auto print = ZOTDam::MakeCallback<ZOTDam::IGetParameterDefaultCallback>(
        [](std::int32_t id, const ZOTDam::ParamValue* value) {
            std::printf("%d: by default %d and %d\n", id, value->ACParamIndex, value->DCParamIndex);
        });
    library.GetParameterDefault(&scheme, &print);
}
// [end GetParameterDefault]

// [begin SetParameter]
void ChangeParameters(const ZOTDam::Library& library, const GUID& scheme) {
    // Function 1: first option when plugged in, third on battery. Function 2: last of six for both.
    const ZOTDam::ParamHolder changes{{{1, {0, 2}}, {2, {5, 5}}}};
    std::printf("accepted: %s\n", library.SetParameter(&scheme, changes.get()) ? "yes" : "no");

    // True does not mean that the file was written. To verify it, read the values again.
    auto print = ZOTDam::MakeCallback<ZOTDam::IGetParameterCallback>(
        [](std::int32_t id, const ZOTDam::ParamValue* value) {
            if (id == 1 || id == 2)
                std::printf("%d is now %d and %d\n", id, value->ACParamIndex, value->DCParamIndex);
        });
    library.GetParameter(&scheme, &print);
}
// [end SetParameter]

// [begin TEVGetParam]
void LoadCurrentValues(const ZOTDam::Library& library, const GUID& scheme) {
    std::printf("scheme loaded: %s\n", library.TEVGetParam(&scheme) ? "yes" : "no");
}
// [end TEVGetParam]

// [begin GetFuncCurValue]
void ListCurrentValues(const ZOTDam::Library& library) {
    constexpr std::uint32_t none = 0xFFFFFFFF;
    // Initialise before each call: a field is unchanged if its parameter selects no option.
    ZOTDam::FuncCurValue value{none, none, none};
    for (std::uint32_t position = 0; library.GetFuncCurValue(position, &value); ++position) {
        std::printf("function %u: option %u plugged in, %u on battery\n", value.FunctionId, value.ACValue,
                    value.DCValue);
        value = {none, none, none};
    }
}
// [end GetFuncCurValue]

// [begin ResetDefault]
void ForgetEverything(const ZOTDam::Library& library) {
    // ResetDefault uses the settings that this process last read. Reading a setting reads the file.
    wchar_t ignored[ZOTDam::TextCapacity];
    library.GetCommonSetting(L"any", ignored);
    std::printf("reset: %s\n", library.ResetDefault() ? "yes" : "no");
    std::printf("reset again: %s\n", library.ResetDefault() ? "yes" : "no");  // there are no schemes left
}
// [end ResetDefault]

}  // namespace Examples
