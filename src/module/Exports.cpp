// The eighteen exports. Each one checks its arguments, applies the rule for the all-zero scheme, calls the
// operation and enumerates the result. The operations convert their own failures into results, which most
// exports ignore (Compatibility: C1). Enumerations are not part of a try block, so that an exception from a
// client's OnItem reaches that client (Compatibility: C10).

#include <optional>

#include "catalogue/FunctionBase.h"
#include "catalogue/FunctionDefaults.h"
#include "catalogue/FunctionInfo.h"
#include "module/Globals.h"
#include "params/CommandInfo.h"
#include "params/CurrentValues.h"
#include "params/DefaultReader.h"
#include "params/Differences.h"
#include "params/SchemeReader.h"
#include "params/SchemeWriter.h"
#include "platform/FalseOnException.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

template <class Record, class Callback>
void Enumerate(const List<Record>& records, Callback& callback) {
    for (const Record& record : records)
        callback.OnItem(&record);
}

template <class Record, class Callback>
void Enumerate(const std::map<std::int32_t, Record>& records, Callback& callback) {
    for (const auto& [id, record] : records)
        callback.OnItem(id, &record);
}

// Collects items in a map and enumerates them. Without memory for the map, enumerates nothing: the maps of
// some standard libraries allocate memory in their default constructors.
template <class Map, class Collect, class Callback>
void CollectAndEnumerate(Callback& callback, Collect collect) {
    std::optional<Map> items;
    const auto create = [&] {
        items.emplace();
        return true;
    };
    if (!FalseOnException(create))
        return;
    collect(*items);
    Enumerate(*items, callback);
}

// Only four exports apply the rule for the all-zero scheme. Compatibility: C5.
bool IsZero(const GUID& scheme) noexcept {
    return IsEqualGUID(scheme, GUID{}) != FALSE;
}

}  // namespace

extern "C" {

std::uint32_t GetFuncCount() {
    if (FunctionTable == nullptr || !EnsureFunctionTable(*FunctionTable))
        return CatalogueUnavailable;
    return static_cast<std::uint32_t>(FunctionTable->functions.size());
}

bool GetFunctionBase(IGetFunctionBaseCallback* callback) {
    if (callback == nullptr || FunctionTable == nullptr)
        return false;
    List<FunctionBaseRecord> records;
    ReadFunctionBase(records);
    Enumerate(records, *callback);
    return true;
}

bool GetFunctionBaseUnSupported(IGetFunctionBaseCallback* callback) {
    if (callback == nullptr || FunctionTable == nullptr)
        return false;
    List<FunctionBaseRecord> records;
    SelectUnsupportedFunctions(*FunctionTable, records);
    Enumerate(records, *callback);
    return true;
}

bool GetFunctionInfo(IGetFunctionInfoCallback* callback) {
    if (callback == nullptr || FunctionTable == nullptr)
        return false;
    using Functions = std::map<std::int32_t, FunctionRecord>;
    CollectAndEnumerate<Functions>(
        *callback, [](Functions& functions) { CollectFunctionInfo(*FunctionTable, functions); });
    return true;
}

bool AddFunctionDefault(const FunctionBaseHolder* holder) {
    if (holder == nullptr || holder->records.empty() || FunctionTable == nullptr)
        return false;
    ReplaceFunctionDefaults(holder->records);
    return true;
}

bool GetParameter(const GUID* scheme, IGetParameterCallback* callback) {
    if (callback == nullptr || FunctionTable == nullptr)
        return false;
    CollectAndEnumerate<ParamMap>(*callback, [scheme](ParamMap& params) {
        if (!IsZero(*scheme))
            LoadSchemeParameters(*FunctionTable, *scheme, params);
    });
    return true;
}

bool GetParameterDefault(const GUID* scheme, IGetParameterDefaultCallback* callback) {
    if (callback == nullptr || FunctionTable == nullptr)
        return false;
    CollectAndEnumerate<ParamMap>(*callback, [scheme](ParamMap& params) {
        if (!IsZero(*scheme))
            ReadDefaultSchemeParameters(*scheme, params);
    });
    return true;
}

bool SetParameter(const GUID* scheme, const ParamMapHolder* holder) {
    if (holder == nullptr || holder->params.empty() || FunctionTable == nullptr)
        return false;
    if (!IsZero(*scheme))
        SaveSchemeParameters(*scheme, holder->params);
    return true;
}

bool ResetDefault() {
    return FunctionTable != nullptr && ResetUserSettings();
}

bool TEVGetParam(const GUID* scheme) {
    return FunctionTable != nullptr && CurrentParamCache != nullptr &&
           ReloadCurrentValues(*FunctionTable, *scheme, *CurrentParamCache);
}

bool GetFuncCurValue(std::uint32_t position, FuncCurValue* value) {
    if (FunctionTable == nullptr || CurrentParamCache == nullptr || CurrentParamCache->empty())
        return false;
    return ReadCurrentValue(*FunctionTable, *CurrentParamCache, position, *value);
}

bool GetCommandInfo(const GUID* scheme, IGetCommandInfoCallback* callback) {
    if (callback == nullptr || FunctionTable == nullptr)
        return false;
    List<CommandInfoRecord> commands;
    if (!IsZero(*scheme))
        CollectCommandInfo(*FunctionTable, *scheme, commands);
    Enumerate(commands, *callback);
    return true;
}

bool GetDiffFuncList(const GUID* schemeA, const GUID* schemeB, std::uint32_t mode, wchar_t* names,
                     wchar_t* values) {
    if (FunctionTable == nullptr)
        return false;
    const bool different = BuildDifferenceTexts(*FunctionTable, *schemeA, *schemeB, mode, names, values);
    // The buffers are checked last. Compatibility: C6.
    return names != nullptr && values != nullptr && different;
}

bool GetSpecScheme(IGetSpecSchemeCallback* callback) {
    if (callback == nullptr || SpecSchemeReader == nullptr)
        return false;
    List<SpecSchemeRecord> schemes;
    SpecSchemeReader->ReadSchemes(schemes);
    Enumerate(schemes, *callback);
    return true;
}

bool GetCommonSetting(const wchar_t* name, wchar_t* value) {
    if (name == nullptr || CommonSettingStore == nullptr)
        return false;
    return CommonSettingStore->ReadFromUserSettings(name, value) ||
           CommonSettingStore->ReadFromDefaults(name, value) || CommonSettingStore->ReadFromBase(name, value);
}

bool SetCommonSetting(const wchar_t* name, const wchar_t* value) {
    return name != nullptr && value != nullptr && CommonSettingStore != nullptr &&
           CommonSettingStore->Write(name, value);
}

bool InitCommonSetting() {
    return CommonSettingStore != nullptr && CommonSettingStore->Initialise();
}

bool ZOTDamExit() {
    ReleaseDocuments();
    ReleaseGlobals();
    return true;
}

}  // extern "C"

}  // namespace ZOTDam
