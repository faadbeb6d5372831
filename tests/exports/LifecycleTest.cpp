// Tests of the library's life cycle: loading, ZOTDamExit, unloading and process shutdown.
#include <windows.h>

#include <cstdlib>
#include <set>
#include <thread>
#include <utility>

#include "support/DataFiles.h"
#include "support/DomDocuments.h"
#include "support/ExportTest.h"
#include "support/HeapAllocations.h"
#include "support/ImportPatch.h"
#include "support/ParentInstallation.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

namespace {

template <class Action>
void OnThreadWithoutCom(Action&& action) {
    const std::jthread thread{std::forward<Action>(action)};
}

// The DLL as loaded by a client that frees it without calling ZOTDamExit.
class BareDll {
public:
    HMODULE Handle() const noexcept { return module.Handle(); }

    template <class Function>
    Function* Get(const char* name) const {
        return module.Export<Function*>(name);
    }

    // Makes the library load everything that it caches: four documents, the catalogue and the current values.
    void Fill() const {
        auto ignore = MakeCallback<IGetFunctionInfoCallback>([](std::uint32_t, const FunctionRecord*) {});
        EXPECT_TRUE(Get<decltype(ZOTDam::GetFunctionInfo)>("GetFunctionInfo")(&ignore));
        Text setting;
        EXPECT_FALSE(Get<decltype(ZOTDam::GetCommonSetting)>("GetCommonSetting")(L"Missing", setting));
        EXPECT_TRUE(
            Get<decltype(ZOTDam::SetParameter)>("SetParameter")(&Balanced, ParamHolder{{{1, {5, 6}}}}.get()));
        EXPECT_TRUE(Get<decltype(ZOTDam::TEVGetParam)>("TEVGetParam")(&Balanced));
    }

    void Exit() const { EXPECT_TRUE(Get<decltype(ZOTDam::ZOTDamExit)>("ZOTDamExit")()); }

private:
    Module module{Library::ProgramFolder() / L"ZOTDam.dll"};
};

}  // namespace

class LifecycleTest : public ExportTest {
protected:
    void SetUp() override {
        WriteDefaults(TwoFunctions);
        WriteStringTable("<root><data name=\"\"><value>Text</value></data></root>");
    }

    bool HasUserFile() const { return std::filesystem::exists(installation.UserFile()); }

    // Returns the number of heap allocations that remain after the DLL is loaded, used and freed.
    template <class Use>
    static std::size_t AllocationsLeftBy(Use&& use) {
        {
            const BareDll dll;
            HeapAllocations::Track(dll.Handle());
            use(dll);
        }
        return HeapAllocations::Count();
    }

    const Params defaults = {{1, {2, 3}}, {2, {4, 5}}};
    ComScope com;
};

// ---- Loading ----

TEST_F(LifecycleTest, LoadingReadsNoFile) {
    WriteDefaults("broken");
    Dll();
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(LifecycleTest, LoadingAndFreeingWritesNoFile) {
    Dll();
    Unload();
    EXPECT_EQ(Defaults(), TwoFunctions);
    EXPECT_TRUE(std::filesystem::is_empty(installation.UserFile().parent_path()));
}

TEST_F(LifecycleTest, LoadingDoesNotRequireCom) {
    OnThreadWithoutCom([] { EXPECT_NO_THROW(BareDll{}); });
}

TEST_F(LifecycleTest, ReloadedLibraryReadsFilesAgain) {
    EXPECT_EQ(GetParameter(Balanced), defaults);
    Unload();
    EXPECT_EQ(GetModuleHandleW(L"ZOTDam.dll"), nullptr);
    WriteDefaults("<ZOTDefault><Functions/></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
    EXPECT_EQ(GetParameterDefault(Balanced), Params{});
}

// ---- ZOTDamExit and FreeLibrary ----

TEST_F(LifecycleTest, ExitOfUnusedLibraryReturnsTrue) {
    EXPECT_TRUE(Dll().ZOTDamExit());
}

TEST_F(LifecycleTest, SecondExitReturnsTrue) {
    EXPECT_EQ(GetParameter(Balanced), defaults);
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_TRUE(Dll().ZOTDamExit());
}

TEST_F(LifecycleTest, ExitReleasesDocuments) {
    DomDocuments documents{Dll().Handle()};
    EXPECT_EQ(GetParameter(Balanced), defaults);
    EXPECT_FALSE(Dll().GetCommonSetting(L"Missing", nullptr));
    EXPECT_EQ(documents.HeldCount(), 3u);
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_EQ(documents.HeldCount(), 0u);
}

TEST_F(LifecycleTest, FreeingWithoutExitReleasesDocuments) {
    std::optional<BareDll> dll{std::in_place};
    DomDocuments documents{dll->Handle()};
    dll->Fill();
    documents.StopCounting();
    EXPECT_EQ(documents.HeldCount(), 4u);
    dll.reset();
    EXPECT_EQ(documents.HeldCount(), 0u);
}

TEST_F(LifecycleTest, FreeingWithoutExitLeaksNoHeapAllocation) {
    EXPECT_EQ(AllocationsLeftBy([](const BareDll& dll) { dll.Fill(); }), 0u);
}

TEST_F(LifecycleTest, FreeingAfterExitLeaksNoHeapAllocation) {
    EXPECT_EQ(AllocationsLeftBy([](const BareDll& dll) {
                  dll.Fill();
                  dll.Exit();
              }),
              0u);
}

TEST_F(LifecycleTest, DocumentWithoutDomLeaksNoHeapAllocation) {
    EXPECT_EQ(AllocationsLeftBy([](const BareDll& dll) {
                  DomDocuments documents{dll.Handle()};
                  documents.Fail(E_OUTOFMEMORY);
                  EXPECT_EQ(dll.Get<decltype(ZOTDam::GetFuncCount)>("GetFuncCount")(), CatalogueUnavailable);
              }),
              0u);
}

TEST_F(LifecycleTest, FreeingWithoutExitFreesAllocationsOfLoad) {
    AllocationsLeftBy([](const BareDll& dll) { dll.Exit(); });
    const int withExit = HeapAllocations::FreedUntracked();
    AllocationsLeftBy([](const BareDll&) {});
    EXPECT_EQ(HeapAllocations::FreedUntracked(), withExit);
}

TEST_F(LifecycleTest, RepeatedUseLeaksNoHeapAllocation) {
    const auto use = [this] {
        EXPECT_EQ(GetParameter(Balanced), defaults);
        EXPECT_EQ(GetParameterDefault(Balanced), defaults);
        EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
        EXPECT_TRUE(SetParameter(Balanced, {{1, {2, 3}}}));
        EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"value"));
        EXPECT_FALSE(Dll().GetCommonSetting(L"Missing", nullptr));
    };
    HeapAllocations::Track(Dll().Handle());
    use();
    const std::size_t before = HeapAllocations::Count();
    for (int i = 0; i < 5; ++i)
        use();
    EXPECT_EQ(HeapAllocations::Count(), before);
}

// ---- After ZOTDamExit ----

// Calls the exports with valid arguments and data. Expects that they create no document and write no file.
class ExportAfterExitTest : public LifecycleTest {
protected:
    void SetUp() override {
        LifecycleTest::SetUp();
        EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
        std::filesystem::remove(installation.UserFile());
        EXPECT_TRUE(Dll().ZOTDamExit());
        documents.emplace(Dll().Handle());
    }
    void TearDown() override {
        EXPECT_EQ(documents->CreatedCount(), 0u);
        documents.reset();
        EXPECT_EQ(items, 0);
        EXPECT_FALSE(HasUserFile());
        EXPECT_EQ(Defaults(), TwoFunctions);
    }

    int items = 0;
    const GUID allZero = {};
    Text buffer = L"untouched";

private:
    std::optional<DomDocuments> documents;
};

TEST_F(ExportAfterExitTest, GetFuncCountReportsUnavailableCatalogueAfterExit) {
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(ExportAfterExitTest, FunctionBaseExportsReturnFalseAfterExit) {
    auto count = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord*) { ++items; });
    EXPECT_FALSE(Dll().GetFunctionBase(&count));
    EXPECT_FALSE(Dll().GetFunctionBaseUnSupported(&count));
}

TEST_F(ExportAfterExitTest, GetFunctionInfoReturnsFalseAfterExit) {
    auto count =
        MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t, const FunctionRecord*) { ++items; });
    EXPECT_FALSE(Dll().GetFunctionInfo(&count));
}

TEST_F(ExportAfterExitTest, AddFunctionDefaultReturnsFalseAfterExit) {
    FunctionBaseHolder holder;
    holder.records.push_back({});
    EXPECT_FALSE(Dll().AddFunctionDefault(&holder));
}

TEST_F(ExportAfterExitTest, ParameterReadsReturnFalseAfterExit) {
    auto count = MakeCallback<IGetParameterCallback>([&](std::int32_t, const ParamValue*) { ++items; });
    for (const GUID& scheme : {Balanced, allZero}) {
        EXPECT_FALSE(Dll().GetParameter(&scheme, &count));
        EXPECT_FALSE(Dll().GetParameterDefault(&scheme, &count));
    }
}

TEST_F(ExportAfterExitTest, SetParameterReturnsFalseAfterExit) {
    EXPECT_FALSE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_FALSE(SetParameter(allZero, {{1, {5, 6}}}));
}

TEST_F(ExportAfterExitTest, ResetDefaultReturnsFalseAfterExit) {
    EXPECT_FALSE(Dll().ResetDefault());
}

TEST_F(ExportAfterExitTest, CurrentValueExportsReturnFalseAfterExit) {
    FuncCurValue value = {11, 12, 13};
    EXPECT_FALSE(Dll().GetFuncCurValue(0, &value));
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    EXPECT_FALSE(Dll().GetFuncCurValue(0, &value));
    EXPECT_EQ(value.FunctionId, 11u);
}

TEST_F(ExportAfterExitTest, GetCommandInfoReturnsFalseAfterExit) {
    auto count = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord*) { ++items; });
    EXPECT_FALSE(Dll().GetCommandInfo(&Balanced, &count));
    EXPECT_FALSE(Dll().GetCommandInfo(&allZero, &count));
}

TEST_F(ExportAfterExitTest, GetDiffFuncListReturnsFalseAfterExit) {
    Text values = L"untouched";
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, 1, buffer, values));
    EXPECT_STREQ(buffer, L"untouched");
    EXPECT_STREQ(values, L"untouched");
}

TEST_F(ExportAfterExitTest, GetSpecSchemeReturnsFalseAfterExit) {
    auto count = MakeCallback<IGetSpecSchemeCallback>([&](const SpecSchemeRecord*) { ++items; });
    EXPECT_FALSE(Dll().GetSpecScheme(&count));
}

TEST_F(ExportAfterExitTest, CommonSettingExportsReturnFalseAfterExit) {
    WriteBase(R"(<ZOTBase><CommonSettings Name="base"/></ZOTBase>)");
    EXPECT_FALSE(Dll().GetCommonSetting(L"Name", buffer));
    EXPECT_STREQ(buffer, L"untouched");
    EXPECT_FALSE(Dll().SetCommonSetting(L"Name", L"value"));
    EXPECT_FALSE(Dll().InitCommonSetting());
}

TEST_F(ExportAfterExitTest, InvalidArgumentsAreRejectedAfterExit) {
    EXPECT_FALSE(Dll().GetFunctionBase(nullptr));
    EXPECT_FALSE(Dll().GetParameter(&allZero, nullptr));
    EXPECT_FALSE(Dll().SetParameter(&allZero, nullptr));
    EXPECT_FALSE(Dll().AddFunctionDefault(nullptr));
    EXPECT_FALSE(Dll().GetCommonSetting(nullptr, nullptr));
}

TEST_F(ExportAfterExitTest, RepeatedExitReturnsTrue) {
    EXPECT_TRUE(Dll().ZOTDamExit());
}

// ---- Documents without a DOM ----

class DocumentWithoutDomTest : public LifecycleTest {
protected:
    // Expects the results that exports return if they cannot create a document.
    void ExpectNothingFound() {
        EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
        EXPECT_EQ(GetParameter(Balanced), Params{});
        EXPECT_EQ(GetParameterDefault(Balanced), Params{});
        EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
        EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
        EXPECT_FALSE(Dll().ResetDefault());
        Text value = {};
        EXPECT_FALSE(Dll().GetCommonSetting(L"Name", value));
        EXPECT_FALSE(Dll().SetCommonSetting(L"Name", L"value"));
        EXPECT_FALSE(Dll().InitCommonSetting());
        EXPECT_FALSE(HasUserFile());
        EXPECT_EQ(Defaults(), TwoFunctions);
    }
    void SetUp() override {
        LifecycleTest::SetUp();
        WriteBase(R"(<ZOTBase><CommonSettings Name="base"/></ZOTBase>)");
    }
};

TEST_F(DocumentWithoutDomTest, ThreadWithoutComFindsNoData) {
    Dll();
    OnThreadWithoutCom([this] { ExpectNothingFound(); });
}

TEST_F(DocumentWithoutDomTest, ResetReturnsFalseWithoutDom) {
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_FALSE(Dll().ResetDefault());
}

TEST_F(DocumentWithoutDomTest, FailureOnThreadWithoutComIsNotRetried) {
    Dll();
    OnThreadWithoutCom([this] { ExpectNothingFound(); });
    ExpectNothingFound();
}

TEST_F(DocumentWithoutDomTest, FailedDomCreationIsNotRetried) {
    DomDocuments documents{Dll().Handle()};
    documents.Fail(REGDB_E_CLASSNOTREG);
    ExpectNothingFound();
    documents.Fail(S_OK);
    ExpectNothingFound();
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

TEST_F(DocumentWithoutDomTest, DocumentWithoutDomDoesNotAffectOtherDocuments) {
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    documents.Fail(S_OK);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(GetParameterDefault(Balanced), defaults);
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_EQ(GetParameter(Balanced), Params{});
}

TEST_F(DocumentWithoutDomTest, ExistingFileIsUnchangedWithoutDom) {
    const std::string file = OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3)));
    WriteUserSettings(file);
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_FALSE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(DocumentWithoutDomTest, ReloadedLibraryFindsDataAgain) {
    Dll();
    OnThreadWithoutCom([this] { ExpectNothingFound(); });
    EXPECT_TRUE(Dll().ZOTDamExit());
    Unload();
    EXPECT_EQ(GetParameter(Balanced), defaults);
}

TEST_F(DocumentWithoutDomTest, LibraryDoesNotInitialiseCom) {
    Dll();
    OnThreadWithoutCom([this] {
        ExpectNothingFound();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        CoUninitialize();
    });
}

TEST_F(LifecycleTest, LibraryWorksOnAnyThreadWithCom) {
    OnThreadWithoutCom([this] {
        EXPECT_EQ(GetParameter(Balanced), defaults);
        EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
        Unload();
    });
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {5, 6}}, {2, {4, 5}}}));
}

// ---- Process shutdown ----

namespace {

using Folders = std::vector<std::wstring>;

// Loads the DLL and the defaults, in a process that neither frees the DLL nor calls ZOTDamExit.
Library& LoadPermanently(const Folders& folders) {
    EnterInstallation(folders);
    Library& dll = *new Library;
    dll.GetFuncCount();
    return dll;
}

HANDLE InsideEvent() {
    static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return event;
}

[[noreturn]] void BlockInside() {
    SetEvent(InsideEvent());
    for (;;)
        Sleep(INFINITE);
}

// Starts a thread with COM and waits until the action on it calls BlockInside.
template <class Action>
void BlockThreadInside(Action action) {
    std::thread{[action] {
        const ComScope com;
        action();
    }}.detach();
    WaitForSingleObject(InsideEvent(), INFINITE);
}

// Fails the process after an operation that is not allowed at process shutdown: entering or deleting a lock
// of the library, or releasing a document.
[[noreturn]] void EndWithFailure() {
    TerminateProcess(GetCurrentProcess(), 1);
    std::abort();
}

// The locks that the library has entered so far. (The C runtime in the DLL has locks of its own.)
std::set<CRITICAL_SECTION*>& LocksOfLibrary() {
    static auto& locks = *new std::set<CRITICAL_SECTION*>;
    return locks;
}

void WINAPI EnterAndRecord(CRITICAL_SECTION* lock) {
    LocksOfLibrary().insert(lock);
    EnterCriticalSection(lock);
}

template <auto Original>
void WINAPI UnlessOfTheLibrary(CRITICAL_SECTION* lock) {
    if (LocksOfLibrary().contains(lock))
        EndWithFailure();
    Original(lock);
}

ULONG WINAPI ForbiddenRelease(IUnknown*) {
    EndWithFailure();
}

// Replaces Release in the virtual function table, which all documents share.
void ForbidRelease(IUnknown* document) {
    void** const release = *reinterpret_cast<void***>(document) + 2;
    DWORD protection = 0;
    VirtualProtect(release, sizeof *release, PAGE_READWRITE, &protection);
    *release = reinterpret_cast<void*>(&ForbiddenRelease);
}

const RegisterRole JustEndsRole{L"just-ends", [](const Folders& folders) {
                                    return LoadPermanently(folders).TEVGetParam(&Balanced) ? 0 : 1;
                                }};

const RegisterRole EndsWatchedRole{
    L"ends-watched", [](const Folders& folders) {
        EnterInstallation(folders);
        Library& dll = *new Library;
        auto& documents = *new DomDocuments{dll.Handle()};
        PatchPermanently(dll.Handle(), "EnterCriticalSection", &EnterAndRecord);
        if (!dll.TEVGetParam(&Balanced) || documents.CreatedCount() != 2 || LocksOfLibrary().size() != 2)
            return 1;
        PatchPermanently(dll.Handle(), "EnterCriticalSection", &UnlessOfTheLibrary<&EnterCriticalSection>);
        PatchPermanently(dll.Handle(), "DeleteCriticalSection", &UnlessOfTheLibrary<&DeleteCriticalSection>);
        ForbidRelease(documents.Last());
        return 0;
    }};

const RegisterRole EndsAfterExitRole{L"ends-after-exit", [](const Folders& folders) {
                                         Library& dll = LoadPermanently(folders);
                                         return dll.TEVGetParam(&Balanced) && dll.ZOTDamExit() ? 0 : 1;
                                     }};

const RegisterRole EndsInOnItemRole{L"ends-in-on-item", [](const Folders& folders) {
                                        auto end = MakeCallback<IGetParameterCallback>(
                                            [](std::int32_t, const ParamValue*) { ExitProcess(0); });
                                        LoadPermanently(folders).GetParameter(&Balanced, &end);
                                        return 1;
                                    }};

const RegisterRole EndsDuringOnItemRole{L"ends-during-on-item", [](const Folders& folders) {
                                            BlockThreadInside([&dll = LoadPermanently(folders)] {
                                                auto stay = MakeCallback<IGetParameterCallback>(
                                                    [](std::int32_t, const ParamValue*) { BlockInside(); });
                                                dll.GetParameter(&Balanced, &stay);
                                            });
                                            return 0;
                                        }};

// The other thread holds the critical section of the document that it creates.
const RegisterRole EndsDuringCreationRole{
    L"ends-during-creation", [](const Folders& folders) {
        Library& dll = LoadPermanently(folders);
        PatchPermanently(dll.Handle(), "CoCreateInstance",
                         [](REFCLSID, IUnknown*, DWORD, REFIID, void**) -> HRESULT { BlockInside(); });
        BlockThreadInside([&dll] { dll.TEVGetParam(&Balanced); });
        return 0;
    }};

// The other thread holds the busy marker of the file that it saves.
const RegisterRole EndsDuringASaveRole{
    L"ends-during-a-save", [](const Folders& folders) {
        Library& dll = LoadPermanently(folders);
        PatchPermanently(dll.Handle(), "FlushFileBuffers", [](HANDLE) -> BOOL { BlockInside(); });
        BlockThreadInside([&dll] { dll.SetParameter(&Balanced, ParamHolder{{{1, {5, 6}}}}.get()); });
        return 0;
    }};

}  // namespace

class ProcessShutdownTest : public LifecycleTest {
protected:
    DWORD ExitCodeOf(const wchar_t* role) const {
        return SecondProcess{role, WithFolders(installation)}.WaitForExit();
    }
};

class ShutdownCaseTest : public ProcessShutdownTest, public testing::WithParamInterface<const wchar_t*> {};

TEST_P(ShutdownCaseTest, ProcessEndsWithExitCodeZero) {
    EXPECT_EQ(ExitCodeOf(ShutdownCaseTest::GetParam()), 0u);
}

INSTANTIATE_TEST_SUITE_P(NoExitAndNoFreeing, ShutdownCaseTest, testing::Values(L"just-ends"));
INSTANTIATE_TEST_SUITE_P(NoReleaseAndNoLock, ShutdownCaseTest, testing::Values(L"ends-watched"));
INSTANTIATE_TEST_SUITE_P(ExitWithoutFreeing, ShutdownCaseTest, testing::Values(L"ends-after-exit"));
INSTANTIATE_TEST_SUITE_P(ShutdownInOnItem, ShutdownCaseTest, testing::Values(L"ends-in-on-item"));
INSTANTIATE_TEST_SUITE_P(OtherThreadInOnItem, ShutdownCaseTest, testing::Values(L"ends-during-on-item"));
INSTANTIATE_TEST_SUITE_P(OtherThreadInCriticalSection, ShutdownCaseTest,
                         testing::Values(L"ends-during-creation"));
INSTANTIATE_TEST_SUITE_P(OtherThreadInSave, ShutdownCaseTest, testing::Values(L"ends-during-a-save"));

TEST_F(ProcessShutdownTest, ShutdownDuringSaveLeavesNoMarker) {
    EXPECT_EQ(ExitCodeOf(L"ends-during-a-save"), 0u);
    EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, UserMarker), nullptr);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {7, 8}}, {2, {9, 9}}}));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {7, 8}}, {2, {9, 9}}}));
}

}  // namespace ZOTDam::Test
