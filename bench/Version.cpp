#include "Version.h"

namespace ZOTDam::Bench {

namespace {

constexpr GUID Balanced = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
constexpr GUID HighPerformance = {
    0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}};

// A callback that does nothing, because the baselines have no callbacks.
template <class Interface>
Interface* IgnoreItems() {
    static auto callback = MakeCallback<Interface>([](auto...) {});
    return &callback;
}

}  // namespace

void Version::Unload() {
    // Freed first, because these records hold nodes of the library's documents.
    baseFunctions.records.clear();
    library.reset();
}

void Version::Fill() {
    Text text;
    GetFunctionInfo();
    GetSpecScheme();
    library->GetCommonSetting(L"Missing", text);
    TEVGetParam();
}

void Version::KeepBaseFunctions() {
    auto keep = MakeCallback<IGetFunctionBaseCallback>(
        [&](const FunctionBaseRecord* record) { baseFunctions.records.push_back(*record); });
    library->GetFunctionBase(&keep);
}

void Version::GetFunctionBase() const {
    library->GetFunctionBase(IgnoreItems<IGetFunctionBaseCallback>());
}

void Version::GetFunctionBaseUnSupported() const {
    library->GetFunctionBaseUnSupported(IgnoreItems<IGetFunctionBaseCallback>());
}

void Version::GetFunctionInfo() const {
    library->GetFunctionInfo(IgnoreItems<IGetFunctionInfoCallback>());
}

void Version::GetSpecScheme() const {
    library->GetSpecScheme(IgnoreItems<IGetSpecSchemeCallback>());
}

void Version::GetParameter() const {
    library->GetParameter(&Balanced, IgnoreItems<IGetParameterCallback>());
}

void Version::GetParameterDefault() const {
    library->GetParameterDefault(&Balanced, IgnoreItems<IGetParameterDefaultCallback>());
}

void Version::TEVGetParam() const {
    library->TEVGetParam(&Balanced);
}

void Version::GetFuncCurValue(int position) const {
    FuncCurValue value;
    library->GetFuncCurValue(static_cast<std::uint32_t>(position), &value);
}

void Version::GetCommandInfo() const {
    library->GetCommandInfo(&Balanced, IgnoreItems<IGetCommandInfoCallback>());
}

void Version::GetDiffFuncList() const {
    Text names;
    Text values;
    library->GetDiffFuncList(&Balanced, &HighPerformance, 1, names, values);
}

void Version::GetCommonSetting() const {
    Text value;
    library->GetCommonSetting(L"User", value);
}

void Version::SetParameter(const ParamHolder& params) const {
    library->SetParameter(&Balanced, params.get());
}

}  // namespace ZOTDam::Bench
