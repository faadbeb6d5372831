// A version of the library, and the calls of its exports that are measured.
#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "ZOTDamClient.h"

namespace ZOTDam::Bench {

class Version {
public:
    explicit Version(std::filesystem::path dll) : dll{std::move(dll)} { Load(); }

    void Load() { library.emplace(dll); }
    void Unload();

    // Makes the library load all data that it can hold.
    void Fill();

    // Keeps the functions that AddFunctionDefault adds.
    void KeepBaseFunctions();

    void GetFuncCount() const { library->GetFuncCount(); }
    void GetFunctionBase() const;
    void GetFunctionBaseUnSupported() const;
    void GetFunctionInfo() const;
    void GetSpecScheme() const;
    void GetParameter() const;
    void GetParameterDefault() const;
    void TEVGetParam() const;
    void GetFuncCurValue(int position) const;
    void GetCommandInfo() const;
    void GetDiffFuncList() const;
    void GetCommonSetting() const;
    void SetParameter(const ParamHolder& params) const;
    void SetCommonSetting() const { library->SetCommonSetting(L"User", L"value"); }
    void ResetDefault() const { library->ResetDefault(); }
    void InitCommonSetting() const { library->InitCommonSetting(); }
    void AddFunctionDefault() { library->AddFunctionDefault(&baseFunctions); }
    void Exit() const { library->ZOTDamExit(); }

private:
    std::filesystem::path dll;
    std::optional<Library> library;
    FunctionBaseHolder baseFunctions;
};

}  // namespace ZOTDam::Bench
