// Every allocation of the DLL fails in its turn, and every call that hands out memory or an object: no export
// crashes, lets an exception out, spoils the user settings or loses a block.
#include <objbase.h>
#include <windows.h>

#include <msxml2.h>
#include <oleauto.h>
#include <rpc.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <list>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

#include "support/DataFiles.h"
#include "support/FunctionDefaultsTest.h"
#include "support/ImportPatch.h"

namespace ZOTDam::Test {

namespace {

// ---- The calls that fail ----

// Which of the counted calls fails: the one that brings this down to zero, and those behind it when the
// shortage lasts.
int callsUntilFailure = 0;
bool shortageLasts = false;
bool hasFailed = false;

bool IsToFail() {
    if (hasFailed && shortageLasts)
        return true;
    if (callsUntilFailure == 0 || --callsUntilFailure != 0)
        return false;
    hasFailed = true;
    return true;
}

// While this lives, the n-th call fails.
class FailingCall {
public:
    FailingCall(int call, bool lasts) noexcept {
        callsUntilFailure = call;
        shortageLasts = lasts;
        hasFailed = false;
    }
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall() {
        callsUntilFailure = 0;
        shortageLasts = false;
    }
};

std::set<void*> liveBlocks;

void* Logged(void* block) {
    if (block != nullptr)
        liveBlocks.insert(block);
    return block;
}

void FreeStandIn(void* block) {
    liveBlocks.erase(block);
    std::free(block);
}

void* MallocStandIn(std::size_t size) {
    return Logged(std::malloc(size));
}

void* CallocStandIn(std::size_t count, std::size_t size) {
    return Logged(std::calloc(count, size));
}

void* ReallocStandIn(void* block, std::size_t size) {
    void* const moved = std::realloc(block, size);
    if (moved != nullptr)
        liveBlocks.erase(block);
    return Logged(moved);
}

void* FailingMalloc(std::size_t size) {
    return IsToFail() ? nullptr : MallocStandIn(size);
}

void* FailingCalloc(std::size_t count, std::size_t size) {
    return IsToFail() ? nullptr : CallocStandIn(count, size);
}

void* FailingRealloc(void* block, std::size_t size) {
    return IsToFail() ? nullptr : ReallocStandIn(block, size);
}

BSTR WINAPI FailingSysAllocString(const OLECHAR* text) {
    return IsToFail() ? nullptr : SysAllocString(text);
}

BSTR WINAPI FailingSysAllocStringLen(const OLECHAR* text, UINT length) {
    return IsToFail() ? nullptr : SysAllocStringLen(text, length);
}

BSTR WINAPI FailingSysAllocStringByteLen(LPCSTR text, UINT length) {
    return IsToFail() ? nullptr : SysAllocStringByteLen(text, length);
}

HRESULT WINAPI FailingVariantChangeType(VARIANTARG* target, const VARIANTARG* source, USHORT flags,
                                        VARTYPE type) {
    return IsToFail() ? E_OUTOFMEMORY
                      : VariantChangeType(target, const_cast<VARIANTARG*>(source), flags, type);
}

HRESULT WINAPI FailingVariantCopy(VARIANTARG* target, const VARIANTARG* source) {
    return IsToFail() ? E_OUTOFMEMORY : VariantCopy(target, const_cast<VARIANTARG*>(source));
}

RPC_STATUS RPC_ENTRY FailingUuidToString(const UUID* uuid, RPC_WSTR* text) {
    return IsToFail() ? RPC_S_OUT_OF_MEMORY : UuidToStringW(const_cast<UUID*>(uuid), text);
}

HRESULT WINAPI FailingCoCreateInstance(REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID iid,
                                       LPVOID* object) {
    return IsToFail() ? E_OUTOFMEMORY : CoCreateInstance(type, outer, context, iid, object);
}

HRESULT WINAPI FailingOleRun(LPUNKNOWN object) {
    return IsToFail() ? E_OUTOFMEMORY : OleRun(object);
}

DWORD WINAPI FailingExpandEnvironmentStrings(LPCWSTR source, LPWSTR target, DWORD size) {
    return IsToFail() ? 0 : ExpandEnvironmentStringsW(source, target, size);
}

HANDLE WINAPI FailingCreateMutex(LPSECURITY_ATTRIBUTES attributes, BOOL owner, LPCWSTR name) {
    if (!IsToFail())
        return CreateMutexW(attributes, owner, name);
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

// The imports of a loaded DLL, patched for a scope.
class PatchedImports {
public:
    explicit PatchedImports(HMODULE dll) : module{dll} {}

    // An import that the compiler did without stays as it is.
    template <class Function>
    void Patch(const char* name, Function* replacement) {
        try {
            patches.emplace_back(module, name, replacement);
        } catch (const std::invalid_argument&) {
            return;
        }
    }

private:
    HMODULE module;
    std::list<ImportPatch> patches;
};

void LogMemory(PatchedImports& imports) {
    imports.Patch("malloc", MallocStandIn);
    imports.Patch("calloc", CallocStandIn);
    imports.Patch("realloc", ReallocStandIn);
    imports.Patch("free", FreeStandIn);
}

// ---- What fails and what is done ----

constexpr char TwoFunctionsWithLabels[] = R"(<ZOTDefault><Functions>
    <Function ID="1">
        <Display><AC><DisplayItem Label="Key"/><DisplayItem/></AC></Display><Commands/>
        <Default ACParamIndex="2" DCParamIndex="3"/>
    </Function>
    <Function ID="2"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5"/></Function>
</Functions></ZOTDefault>)";

struct Shortage {
    std::string name;
    void (*install)(PatchedImports& imports);
};

const std::vector<Shortage> shortages = {
    {"Memory",
     [](PatchedImports& imports) {
         imports.Patch("malloc", FailingMalloc);
         imports.Patch("calloc", FailingCalloc);
         imports.Patch("realloc", FailingRealloc);
     }},
    {"Texts",
     [](PatchedImports& imports) {
         imports.Patch("SysAllocString", FailingSysAllocString);
         imports.Patch("SysAllocStringLen", FailingSysAllocStringLen);
         imports.Patch("SysAllocStringByteLen", FailingSysAllocStringByteLen);
     }},
    {"Variants",
     [](PatchedImports& imports) {
         imports.Patch("VariantChangeType", FailingVariantChangeType);
         imports.Patch("VariantCopy", FailingVariantCopy);
     }},
    {"GuidTexts", [](PatchedImports& imports) { imports.Patch("UuidToStringW", FailingUuidToString); }},
    {"Documents",
     [](PatchedImports& imports) {
         imports.Patch("CoCreateInstance", FailingCoCreateInstance);
         imports.Patch("OleRun", FailingOleRun);
     }},
    {"Paths",
     [](PatchedImports& imports) {
         imports.Patch("ExpandEnvironmentStringsW", FailingExpandEnvironmentStrings);
     }},
    {"Markers", [](PatchedImports& imports) { imports.Patch("CreateMutexW", FailingCreateMutex); }},
};

bool Enumerates(decltype(&ZOTDam::GetParameter) enumerate, const GUID& scheme) {
    auto ignore = MakeCallback<IGetParameterCallback>([](std::int32_t, const ParamValue*) {});
    return enumerate(&scheme, &ignore);
}

// Whether every label is a key or its translation; functions may be missing.
bool Translates(const Library& dll) {
    bool translated = true;
    auto look = MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t, const FunctionRecord* function) {
        for (const DisplayItem& item : function->acDisplayItems)
            translated &= item.label == std::wstring_view{L"Key"} || item.label == std::wstring_view{L"Text"};
    });
    return dll.GetFunctionInfo(&look) && translated;
}

bool Stores(const Library& dll, const GUID& scheme) {
    return dll.SetParameter(&scheme, ParamHolder{{{1, {11, 12}}, {3, {13, 14}}}}.get());
}

// A base catalogue in which each function and each scheme is whole.
constexpr char Base[] = R"(<ZOTBase><CommonSettings base="base"/><Functions>
    <Function ID="1" Name="Dim"><Display/><Default/><Commands><CommandFamily>
        <CommandItem SpecInfo1="s"/><CheckExistItem Param1="p"/></CommandFamily></Commands></Function>
    <Function ID="5"><Display/><Default/><Commands><CommandFamily><CommandItem/><CheckExistItem/>
        </CommandFamily></Commands></Function>
    <Function ID="6"><Display/><Default/><Commands><CommandFamily><CommandItem/><CheckExistItem/>
        </CommandFamily></Commands></Function>
</Functions><SpecSchemes>
    <SchemeItem SchemeGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <SubGroup SubGroupGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
            <PowerSetting PowerSettingGUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACValue="1" DCValue="2"/>
        </SubGroup>
    </SchemeItem>
    <SchemeItem SchemeGUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c">
        <SubGroup SubGroupGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
            <PowerSetting PowerSettingGUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACValue="1" DCValue="2"/>
        </SubGroup>
    </SchemeItem>
</SpecSchemes></ZOTBase>)";

bool IsWhole(const FunctionBaseRecord& function) {
    return function.name == std::wstring_view{L"Dim"} && function.displayNode.get() != nullptr &&
           function.defaultNode.get() != nullptr && function.commandFamilies.size() == 1 &&
           function.commandFamilies.begin()->commandItems.size() == 1 &&
           function.commandFamilies.begin()->checkExistItems.size() == 1;
}

using Ids = std::vector<std::int32_t>;

// The ids that one of the two exports for the base catalogue enumerates, if all functions are whole.
std::optional<Ids> IdsOfWholeFunctions(decltype(&ZOTDam::GetFunctionBase) enumerate) {
    Ids ids;
    bool whole = true;
    auto look = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* function) {
        ids.push_back(function->id);
        whole &= IsWhole(*function);
    });
    return enumerate(&look) && whole ? std::optional{ids} : std::nullopt;
}

// Those behind a failure may be missing.
bool ListsTheBase(const Library& dll) {
    const std::optional<Ids> ids = IdsOfWholeFunctions(dll.GetFunctionBase);
    return ids == Ids{1, 5, 6} || (hasFailed && (ids == Ids{1, 5} || ids == Ids{1} || ids == Ids{}));
}

// After a failure there may be none, but never only some of them.
bool ListsTheUnsupported(const Library& dll) {
    const std::optional<Ids> ids = IdsOfWholeFunctions(dll.GetFunctionBaseUnSupported);
    return ids == Ids{5, 6} || (hasFailed && ids == Ids{});
}

// Whether each scheme has all that it has in the file; schemes may be missing.
bool ListsTheSpecSchemes(const Library& dll) {
    int schemes = 0;
    bool whole = true;
    auto look = MakeCallback<IGetSpecSchemeCallback>([&](const SpecSchemeRecord* scheme) {
        ++schemes;
        whole &= scheme->subGroups.size() == 1 && scheme->subGroups.begin()->powerSettings.size() == 1;
    });
    return dll.GetSpecScheme(&look) && whole && (hasFailed || schemes == 2);
}

// Each common setting has the name of its source, and that name as its value.
bool Finds(const Library& dll, const wchar_t* source) {
    Text value = {};
    return dll.GetCommonSetting(source, value) && std::wstring{source} == value;
}

// Hands over two functions, the second of them with what the base catalogue has for it.
bool Replaces(const Library& dll) {
    FunctionBaseHolder holder = HolderOf({Record(1)});
    auto keep = MakeCallback<IGetFunctionBaseCallback>(
        [&](const FunctionBaseRecord* record) { holder.records.push_back(*record); });
    return dll.GetFunctionBase(&keep) && dll.AddFunctionDefault(&holder);
}

// The first use of a freshly loaded DLL.
struct Use {
    std::string name;
    bool (*succeeds)(const Library& dll);
    bool mayFail = false;  // and tell so by its result
    bool removes = false;
    bool replacesFunctions = false;
};

const std::vector<Use> uses = {
    {"Counting", [](const Library& dll) { return dll.GetFuncCount() == 2; }, true},
    {"ReadingAStoredScheme",
     [](const Library& dll) { return Enumerates(dll.GetParameter, HighPerformance); }},
    {"ReadingASchemeForTheFirstTime",
     [](const Library& dll) { return Enumerates(dll.GetParameter, PowerSaver); }},
    {"CompletingAScheme", [](const Library& dll) { return Enumerates(dll.GetParameter, Balanced); }},
    {"ReadingTheDefaults", [](const Library& dll) { return Enumerates(dll.GetParameterDefault, Balanced); }},
    {"TranslatingTheFunctions", [](const Library& dll) { return Translates(dll); }},
    {"StoringAScheme", [](const Library& dll) { return Stores(dll, PowerSaver); }},
    {"StoringIntoAScheme", [](const Library& dll) { return Stores(dll, Balanced); }},
    {"LoadingCurrentValues", [](const Library& dll) { return dll.TEVGetParam(&Balanced); }, true},
    {"ResettingWhatWasRead",
     [](const Library& dll) { return Enumerates(dll.GetParameter, HighPerformance) && dll.ResetDefault(); },
     true, true},
    {"ReadingACommonSetting", [](const Library& dll) { return Finds(dll, L"user"); }, true},
    {"ReadingADefaultSetting", [](const Library& dll) { return Finds(dll, L"default"); }, true},
    {"ReadingASettingOfTheBase", [](const Library& dll) { return Finds(dll, L"base"); }, true},
    {"StoringACommonSetting", [](const Library& dll) { return dll.SetCommonSetting(L"user", L"new"); }, true},
    {"ListingTheBase", [](const Library& dll) { return ListsTheBase(dll); }},
    {"ListingTheUnsupported", [](const Library& dll) { return ListsTheUnsupported(dll); }},
    {"ListingTheSpecSchemes", [](const Library& dll) { return ListsTheSpecSchemes(dll); }},
    {"InitialisingTheCommonSettings", [](const Library& dll) { return dll.InitCommonSetting(); }, true},
    {"ReplacingTheFunctions", [](const Library& dll) { return Replaces(dll); }, false, false, true},
};

struct Trial {
    std::string name;
    Shortage shortage;
    Use use;
    bool lasts;
};

void PrintTo(const Trial& trial, std::ostream* out) {
    *out << trial.name;
}

void AppendTrials(std::vector<Trial>& trials, const Shortage& shortage, bool lasts) {
    for (const Use& use : uses)
        trials.push_back(
            {(lasts ? "NoMore" : "One") + shortage.name + "When" + use.name, shortage, use, lasts});
}

std::vector<Trial> Trials() {
    std::vector<Trial> trials;
    for (const Shortage& shortage : shortages) {
        AppendTrials(trials, shortage, false);
        AppendTrials(trials, shortage, true);
    }
    return trials;
}

// Whether the result of the use is one that it may have.
bool GivesAnAllowedResult(const Library& dll, const Use& use, int failingCall, bool lasts) {
    const FailingCall failure{failingCall, lasts};
    const bool succeeded = use.succeeds(dll);
    return dll.ZOTDamExit() && (succeeded || (hasFailed && use.mayFail));
}

}  // namespace

class AllocationFailureTest : public SettingsTest, public testing::WithParamInterface<Trial> {
protected:
    AllocationFailureTest() {
        WriteBase(Base);
        WriteStringTable("<root><data name=\"Key\"><value>Text</value></data></root>");
    }

    static std::string Stored() {
        return "<OrloPowerCfg><PowerSchemes>" +
               OldScheme(HighPerformanceText, OldFunction(1, 7, 8) + OldFunction(2, 9, 10)) +
               OldScheme(BalancedText, OldFunction(1, 1, 1)) +
               "</PowerSchemes><CommonSettings user=\"user\"/></OrloPowerCfg>\n";
    }

    static std::string StoredDefaults() {
        std::string defaults = TwoFunctionsWithLabels;
        return defaults.insert(defaults.find("</ZOTDefault>"), "<CommonSettings default=\"default\"/>");
    }

    void RestoreFiles() const {
        WriteUserSettings(Stored());
        WriteDefaults(StoredDefaults());
        std::filesystem::remove(KeptFile());
        std::filesystem::remove(KeptDefaults());
    }

    void ExpectThatNothingStoredIsLost() const {
        EXPECT_TRUE(IsXml(installation.UserFile()));
        const bool hasStoredScheme = UserSettings().find(HighPerformanceText) != std::string::npos;
        const bool isKept = ReadFile(KeptFile()) == Stored();
        EXPECT_TRUE(hasStoredScheme || isKept || GetParam().use.removes) << UserSettings();
        EXPECT_TRUE(IsXml(installation.DefaultsFile()));
        const bool hasFunctions = Defaults().find("<Function ID=\"2\"") != std::string::npos;
        const bool areKept = ReadFile(KeptDefaults()) == StoredDefaults();
        EXPECT_TRUE(hasFunctions || areKept || GetParam().use.replacesFunctions) << Defaults();
        const bool hasSettings = Defaults().find("<CommonSettings ") != std::string::npos;
        EXPECT_TRUE(hasSettings || areKept) << Defaults();
    }

    void ExpectThatEverythingWorksAgain() {
        RestoreFiles();
        EXPECT_EQ(Dll().GetFuncCount(), 2u);
        EXPECT_TRUE(SetParameter(HighPerformance, {{1, {21, 22}}, {2, {23, 24}}}));
        EXPECT_EQ(GetParameter(HighPerformance), (Params{{1, {21, 22}}, {2, {23, 24}}}));
        Unload();
    }

    // Gives the blocks that are left when the DLL has been told to release everything.
    static std::size_t BlocksLeftBehind(int failingCall) {
        const Library dll;
        PatchedImports imports{dll.Handle()};
        LogMemory(imports);
        GetParam().shortage.install(imports);
        EXPECT_TRUE(GivesAnAllowedResult(dll, GetParam().use, failingCall, GetParam().lasts));
        return std::exchange(liveBlocks, {}).size();
    }

private:
    std::filesystem::path KeptFile() const { return UnreadableCopyOf(installation.UserFile()); }
    std::filesystem::path KeptDefaults() const { return UnreadableCopyOf(installation.DefaultsFile()); }
};

INSTANTIATE_TEST_SUITE_P(, AllocationFailureTest, testing::ValuesIn(Trials()), CaseName<Trial>);

TEST_P(AllocationFailureTest, IsSurvivedAndLosesNoBlock) {
    std::vector<std::size_t> blocksLeft;
    do {
        SCOPED_TRACE(blocksLeft.size() + 1);
        RestoreFiles();
        blocksLeft.push_back(BlocksLeftBehind(static_cast<int>(blocksLeft.size() + 1)));
        ExpectThatNothingStoredIsLost();
    } while (hasFailed);
    const std::size_t leftBySuccess = blocksLeft.back();
    EXPECT_LE(std::ranges::max(blocksLeft), leftBySuccess);
    ExpectThatEverythingWorksAgain();
}

}  // namespace ZOTDam::Test
