// Calls of all exports, for tests that only check that the calls return and that the results are valid.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

#include "support/ExportTest.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

// Returns the byte that an export returns as its bool, as a client in another language sees it.
template <class... Arguments>
int RawResult(bool (*exported)(Arguments...), std::type_identity_t<Arguments>... arguments) {
    return reinterpret_cast<unsigned char (*)(Arguments...)>(reinterpret_cast<void*>(exported))(arguments...);
}

inline std::vector<int> RawResultsOfReadingExports(const Library& dll, const GUID& scheme) {
    auto base = MakeCallback<IGetFunctionBaseCallback>([](const FunctionBaseRecord*) {});
    auto functions = MakeCallback<IGetFunctionInfoCallback>([](std::uint32_t, const FunctionRecord*) {});
    auto params = MakeCallback<IGetParameterCallback>([](std::int32_t, const ParamValue*) {});
    auto commands = MakeCallback<IGetCommandInfoCallback>([](const CommandInfoRecord*) {});
    auto specSchemes = MakeCallback<IGetSpecSchemeCallback>([](const SpecSchemeRecord*) {});
    FuncCurValue value = {};
    Text names = {};
    Text values = {};
    Text setting = {};
    dll.GetFuncCount();
    return {
        RawResult(dll.GetFunctionBase, &base),
        RawResult(dll.GetFunctionBaseUnSupported, &base),
        RawResult(dll.GetFunctionInfo, &functions),
        RawResult(dll.GetParameter, &scheme, &params),
        RawResult(dll.GetParameterDefault, &scheme, &params),
        RawResult(dll.TEVGetParam, &scheme),
        RawResult(dll.GetFuncCurValue, 0, &value),
        RawResult(dll.GetCommandInfo, &scheme, &commands),
        RawResult(dll.GetDiffFuncList, &scheme, &PowerSaver, 1, names, values),
        RawResult(dll.GetSpecScheme, &specSchemes),
        RawResult(dll.GetCommonSetting, L"Setting", setting),
    };
}

inline std::vector<int> RawResultsOfWritingExports(const Library& dll, const GUID& scheme) {
    const ParamHolder params{{{1, {5, 6}}, {900, {7, 8}}}};
    FunctionBaseHolder defaults;
    defaults.records.push_back(FunctionBaseRecord{});
    return {
        RawResult(dll.SetParameter, &scheme, params.get()),
        RawResult(dll.SetCommonSetting, L"Setting", L"value"),
        RawResult(dll.InitCommonSetting),
        RawResult(dll.AddFunctionDefault, &defaults),
    };
}

// Calls every export. ResetDefault and ZOTDamExit, which discard state, come last.
inline void CallEveryExport(const Library& dll, const GUID& scheme) {
    const auto isBool = [](int result) { return result == 0 || result == 1; };
    EXPECT_TRUE(std::ranges::all_of(RawResultsOfReadingExports(dll, scheme), isBool));
    EXPECT_TRUE(std::ranges::all_of(RawResultsOfWritingExports(dll, scheme), isBool));
    EXPECT_PRED1(isBool, RawResult(dll.ResetDefault));
    EXPECT_EQ(RawResult(dll.ZOTDamExit), 1);
}

}  // namespace ZOTDam::Test
