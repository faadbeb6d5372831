// Calls every export very often, both with success and with failures. After ZOTDamExit the library must hold
// no more resources than when it was loaded, and after FreeLibrary none.
#include <algorithm>
#include <memory>
#include <optional>

#include "support/ExportCalls.h"
#include "support/HookedDll.h"
#include "support/LoadedImage.h"
#include "support/ProcessResources.h"
#include "support/ResourceSnapshot.h"
#include "support/Stress.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

namespace {

// ---- Failures ----

void SetAttributes(const Installation& installation, DWORD attributes) {
    SetFileAttributesW(installation.UserFile().c_str(), attributes);
    SetFileAttributesW(installation.DefaultsFile().c_str(), attributes);
}

struct CloseMarker {
    void operator()(HANDLE marker) const noexcept { CloseHandle(marker); }
};

// The environment for the calls of a DLL that has read its documents.
struct Environment {
    const Installation& installation;
    PatchedImports& imports;
    std::vector<std::unique_ptr<void, CloseMarker>> markers = {};
};

struct Condition {
    std::string name;
    void (*begin)(Environment& environment);
    bool isIntermittent = false;  // each round makes a different call of the DLL fail
};

void BeginNone(Environment&) {}

void HoldMarkers(Environment& environment) {
    for (const wchar_t* name : {DefaultsMarker, UserMarker})
        environment.markers.emplace_back(CreateMutexW(nullptr, FALSE, name));
}

void ProtectFiles(Environment& environment) {
    SetAttributes(environment.installation, FILE_ATTRIBUTE_READONLY);
}

void RemoveFolders(Environment& environment) {
    std::filesystem::remove_all(environment.installation.ProgramFiles());
    std::filesystem::remove_all(environment.installation.ProgramData());
}

// Some DOMs leak memory with each XML declaration that they create. Creating one therefore fails here, where
// the library would otherwise replace a file that it could not read.
void FailAllocations(Environment& environment) {
    DomCalls::failInstructions = true;
    AllocationFailures::FailMemory(environment.imports);
    AllocationFailures::FailStrings(environment.imports);
}

void FailDomCalls(Environment& environment) {
    DomCalls::failInstructions = true;
    AllocationFailures::FailDom(environment.imports);
}

const std::vector<Condition> Conditions = {
    {"WithSuccess", &BeginNone},
    {"WithBusyFiles", &HoldMarkers},
    {"WithReadOnlyFiles", &ProtectFiles},
    {"WithoutFolders", &RemoveFolders},
    {"WithoutMemory", &FailAllocations, true},
    {"WithAFailingDom", &FailDomCalls, true},
};

struct LeakCase {
    std::string name;
    ExportCall call;
    Condition condition;
};

void PrintTo(const LeakCase& testCase, std::ostream* out) {
    *out << testCase.name;
}

std::vector<LeakCase> LeakCases() {
    std::vector<LeakCase> cases;
    for (const Condition& condition : Conditions)
        for (const ExportCall& call : CallsOfAllExports)
            cases.push_back({call.exportName + condition.name, call, condition});
    return cases;
}

}  // namespace

class LeakTest : public ExportCallsTest, public testing::WithParamInterface<LeakCase> {
protected:
    static void SetUpTestSuite() { domCalls.emplace(); }
    static void TearDownTestSuite() { domCalls.reset(); }

    // Calls the export the given number of times in a freshly loaded DLL, and returns the resources that the
    // DLL holds after ZOTDamExit. Checks that it holds none after FreeLibrary.
    ResourceSnapshot HeldAfter(int calls) {
        Restore();
        const ResourceSnapshot nothing{
            .heapAllocations = 0, .domReferences = 0, .errorInfos = 0, .resources = {}};
        const ResourceSnapshot held = HeldByALoadedDllAfter(calls);
        EXPECT_EQ(ResourceSnapshot{}, nothing);
        return held;
    }

    void TearDown() override { SetAttributes(installation, FILE_ATTRIBUTE_NORMAL); }

    // The number of calls after which the sequence of failing calls repeats.
    const int fewCalls = Rounds(20, 100);
    const Condition& condition = GetParam().condition;
    long long references = 0;
    int memoryInUse = 0;

private:
    ResourceSnapshot HeldByALoadedDllAfter(int calls) {
        const LoadHook counting{&CountResources};
        HookedDll dll;
        const ResourceSnapshot loaded;
        EXPECT_EQ(Call(dll), GetParam().call.answer);
        Environment environment{installation, dll.Imports()};
        condition.begin(environment);
        for (int i = 1; i < calls; ++i) {
            const std::optional<FailingCall> failure = FailureOf(i);
            const bool isSame = Call(dll) == GetParam().call.answer;
            EXPECT_TRUE(isSame || condition.begin != &BeginNone);
        }
        memoryInUse = CommittedKilobytes();
        EXPECT_TRUE(dll.Exports().ZOTDamExit());
        environment.markers.clear();
        references = DomCalls::AcquiredReferences();
        const ResourceSnapshot held;
        EXPECT_LE(held.heapAllocations, loaded.heapAllocations);
        EXPECT_EQ(held, (ResourceSnapshot{.heapAllocations = held.heapAllocations,
                                          .comAllocations = loaded.comAllocations,
                                          .domReferences = 0,
                                          .errorInfos = 0,
                                          .resources = loaded.resources}));
        return held;
    }

    void Restore() const {
        std::filesystem::create_directories(installation.BaseFile().parent_path());
        std::filesystem::create_directories(installation.UserFile().parent_path());
        SetAttributes(installation, FILE_ATTRIBUTE_NORMAL);
        WriteInstallation();
    }

    static Answer Call(const HookedDll& dll) {
        const ExportCall& call = GetParam().call;
        call.before(dll.Exports());
        return call.call(dll.Exports());
    }

    std::optional<FailingCall> FailureOf(int call) const {
        if (!condition.isIntermittent)
            return std::nullopt;
        return std::optional<FailingCall>{std::in_place, call % fewCalls + 1, false};
    }

    inline static std::optional<DomCalls> domCalls;
};

INSTANTIATE_TEST_SUITE_P(, LeakTest, testing::ValuesIn(LeakCases()), CaseName<LeakCase>);

TEST_P(LeakTest, ManyCallsHoldNoMoreResourcesThanFew) {
    const int calls = Rounds(2 * fewCalls, condition.begin == &BeginNone ? 10000 : 1000);
    const ResourceSnapshot heldByAFew = HeldAfter(fewCalls);
    const int memoryOfAFew = memoryInUse;
    EXPECT_EQ(HeldAfter(calls), heldByAFew);
    ShowFigure(GetParam().name, std::to_string(calls) + " calls, " + std::to_string(references) +
                                    " references acquired and released, before ZOTDamExit " +
                                    std::to_string(memoryInUse - memoryOfAFew) +
                                    " KiB of private memory more than after " + std::to_string(fewCalls));
}

// ---- Checks that no export is left out and that leaks are detected ----

TEST(AllExportCallsTest, ListOfCallsNamesEveryExport) {
    std::vector<std::string> names;
    names.reserve(std::size(CallsOfAllExports));
    for (const ExportCall& call : CallsOfAllExports)
        names.push_back(call.exportName);
    std::ranges::sort(names);
    EXPECT_EQ(names, LoadedImage{Library{}.Handle()}.ExportedNames());
}

// Calls functions as the library does: through its import table.
class ResourceSnapshotTest : public testing::Test {
protected:
    template <class Function>
    Function* Imported(const char* name) const {
        return reinterpret_cast<Function*>(*ImportSlot(dll.Exports().Handle(), name));
    }

    DomCalls domCalls;
    const LoadHook counting{&CountResources};
    const HookedDll dll;
    const ResourceSnapshot before{};
};

TEST_F(ResourceSnapshotTest, HeapAllocationsOfLoadAreCounted) {
    EXPECT_GT(before.heapAllocations, 0u);
    EXPECT_GT(before.resources[CriticalSections], 0);
}

TEST_F(ResourceSnapshotTest, AllocationByCRuntimeIsCounted) {
    void* const block = Imported<decltype(std::malloc)>("malloc")(16);
    EXPECT_EQ(ResourceSnapshot{}.heapAllocations, before.heapAllocations + 1);
    Imported<decltype(std::free)>("free")(block);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, ComStringIsCounted) {
    const BSTR text = Imported<decltype(SysAllocString)>("SysAllocString")(L"text");
    EXPECT_EQ(ResourceSnapshot{}.comAllocations, before.comAllocations + 1);
    Imported<decltype(SysFreeString)>("SysFreeString")(text);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, StringInVariantIsCounted) {
    const OwnedBstr text{SysAllocString(L"text")};
    const ResourceSnapshot beforeTheCopy;
    VARIANT source;
    V_VT(&source) = VT_BSTR;
    V_BSTR(&source) = text.get();
    VARIANT copy;
    VariantInit(&copy);
    Imported<decltype(VariantCopy)>("VariantCopy")(&copy, &source);
    EXPECT_EQ(ResourceSnapshot{}.comAllocations, beforeTheCopy.comAllocations + 1);
    Imported<decltype(VariantClear)>("VariantClear")(&copy);
    EXPECT_EQ(ResourceSnapshot{}, beforeTheCopy);
}

TEST_F(ResourceSnapshotTest, DomDocumentIsCounted) {
    void* document = nullptr;
    Imported<decltype(CoCreateInstance)>("CoCreateInstance")(DomDocument60, nullptr, CLSCTX_ALL, IID_IUnknown,
                                                             &document);
    EXPECT_EQ(ResourceSnapshot{}.domReferences, before.domReferences + 1);
    static_cast<IUnknown*>(document)->Release();
}

TEST_F(ResourceSnapshotTest, ErrorInformationObjectIsCounted) {
    IErrorInfo* information = nullptr;
    Imported<decltype(GetErrorInfo)>("GetErrorInfo")(0, &information);
    EXPECT_EQ(ResourceSnapshot{}.errorInfos, before.errorInfos + 1);
    information->Release();
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, GuidStringIsCounted) {
    RPC_WSTR text = nullptr;
    Imported<decltype(UuidToStringW)>("UuidToStringW")(const_cast<GUID*>(&Balanced), &text);
    EXPECT_EQ(ResourceSnapshot{}.resources[GuidTexts], before.resources[GuidTexts] + 1);
    Imported<decltype(RpcStringFreeW)>("RpcStringFreeW")(&text);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, MutexAndFileHandlesAreCounted) {
    const wchar_t name[] = L"zotdam-test-resource-snapshot";
    const HANDLE handles[] = {
        Imported<decltype(CreateMutexW)>("CreateMutexW")(nullptr, FALSE, name),
        Imported<decltype(OpenMutexW)>("OpenMutexW")(SYNCHRONIZE, FALSE, name),
        Imported<decltype(CreateFileW)>("CreateFileW")(L"NUL", GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    EXPECT_EQ(ResourceSnapshot{}.resources[Handles], before.resources[Handles] + 3);
    for (const HANDLE handle : handles)
        Imported<decltype(CloseHandle)>("CloseHandle")(handle);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, FailedOpenIsNotCounted) {
    EXPECT_EQ(Imported<decltype(OpenMutexW)>("OpenMutexW")(SYNCHRONIZE, FALSE, L"zotdam-test-none"), nullptr);
    EXPECT_EQ(Imported<decltype(CreateFileW)>("CreateFileW")(L"zotdam-test-none", GENERIC_READ,
                                                             FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                                             FILE_ATTRIBUTE_NORMAL, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, CriticalSectionAndItsLockAreCounted) {
    CRITICAL_SECTION section;
    Imported<decltype(InitializeCriticalSection)>("InitializeCriticalSection")(&section);
    Imported<decltype(EnterCriticalSection)>("EnterCriticalSection")(&section);
    const ResourceSnapshot locked;
    EXPECT_EQ(locked.resources[CriticalSections], before.resources[CriticalSections] + 1);
    EXPECT_EQ(locked.resources[Locks], before.resources[Locks] + 1);
    Imported<decltype(LeaveCriticalSection)>("LeaveCriticalSection")(&section);
    Imported<decltype(DeleteCriticalSection)>("DeleteCriticalSection")(&section);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

// The DLL for the UCRT imports no functions for thread slots.
TEST_F(ResourceSnapshotTest, ThreadSlotIsCounted) {
    if (ImportSlot(dll.Exports().Handle(), "TlsAlloc") == nullptr)
        return;
    const DWORD slot = Imported<decltype(TlsAlloc)>("TlsAlloc")();
    EXPECT_EQ(ResourceSnapshot{}.resources[ThreadSlots], before.resources[ThreadSlots] + 1);
    Imported<decltype(TlsFree)>("TlsFree")(slot);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

TEST_F(ResourceSnapshotTest, LoadedLibraryIsCounted) {
    const HMODULE library = Imported<decltype(LoadLibraryW)>("LoadLibraryW")(L"kernel32.dll");
    EXPECT_EQ(ResourceSnapshot{}.resources[Libraries], before.resources[Libraries] + 1);
    Imported<decltype(FreeLibrary)>("FreeLibrary")(library);
    EXPECT_EQ(ResourceSnapshot{}, before);
}

}  // namespace ZOTDam::Test
