// Every export is called very often, with success and in trouble: after a ZOTDamExit the process holds no
// more than after a few calls, and no reference to an object of the DOM; after FreeLibrary no more than
// before.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "support/Endurance.h"
#include "support/ExportCalls.h"
#include "support/Holdings.h"
#include "support/WatchedDll.h"

namespace ZOTDam::Test {

namespace {

// ---- What the DLL takes and gives back through imported functions ----

enum Taken { Locks, CriticalSections, TlsSlots, Libraries, TakenCount };

std::array<int, TakenCount> takenThroughImports;

// In the place of an imported function: counts the call.
template <auto Original, Taken What, int Step>
struct Counted;

template <class Result, class... Arguments, Result(WINAPI* Original)(Arguments...), Taken What, int Step>
struct Counted<Original, What, Step> {
    static Result WINAPI Call(Arguments... arguments) {
        takenThroughImports[What] += Step;
        return Original(arguments...);
    }
};

template <auto Take, auto GiveBack, Taken What>
void CountPair(PatchedImports& imports, const char* take, const char* giveBack) {
    imports.Patch(take, &Counted<Take, What, 1>::Call);
    imports.Patch(giveBack, &Counted<GiveBack, What, -1>::Call);
}

void CountWhatIsTaken(PatchedImports& imports) {
    takenThroughImports = {};
    CountPair<&EnterCriticalSection, &LeaveCriticalSection, Locks>(imports, "EnterCriticalSection",
                                                                   "LeaveCriticalSection");
    CountPair<&InitializeCriticalSection, &DeleteCriticalSection, CriticalSections>(
        imports, "InitializeCriticalSection", "DeleteCriticalSection");
    CountPair<&TlsAlloc, &TlsFree, TlsSlots>(imports, "TlsAlloc", "TlsFree");
    CountPair<&LoadLibraryW, &FreeLibrary, Libraries>(imports, "LoadLibraryW", "FreeLibrary");
}

// ---- Trouble ----

void SetAttributes(const Installation& installation, DWORD attributes) {
    SetFileAttributesW(installation.UserFile().c_str(), attributes);
    SetFileAttributesW(installation.DefaultsFile().c_str(), attributes);
}

struct CloseMarker {
    void operator()(HANDLE marker) const noexcept { CloseHandle(marker); }
};

// What surrounds the calls of a DLL that has read its documents.
struct Surroundings {
    const Installation& installation;
    PatchedImports& imports;
    std::vector<std::unique_ptr<void, CloseMarker>> markers = {};
};

struct Trouble {
    std::string name;
    void (*begin)(Surroundings& surroundings);
    bool comesAndGoes = false;  // in each round, another call of the DLL fails
};

void BeginNone(Surroundings&) {}

void HoldMarkers(Surroundings& surroundings) {
    for (const wchar_t* name : {DefaultsMarker, UserMarker})
        surroundings.markers.emplace_back(CreateMutexW(nullptr, FALSE, name));
}

void ProtectFiles(Surroundings& surroundings) {
    SetAttributes(surroundings.installation, FILE_ATTRIBUTE_READONLY);
}

void RemoveFolders(Surroundings& surroundings) {
    std::filesystem::remove_all(surroundings.installation.ProgramFiles());
    std::filesystem::remove_all(surroundings.installation.ProgramData());
}

// Some DOMs lose memory of their own with each declaration that they make. So none is made where a file that
// could not be read would be written anew.
void LackMemory(Surroundings& surroundings) {
    DomCalls::refusesInstructions = true;
    surroundings.imports.Patch("free", &Blocks::Free);
    Shortages::OfMemory(surroundings.imports);
    Shortages::OfTexts(surroundings.imports);
}

void LetTheDomFail(Surroundings& surroundings) {
    DomCalls::refusesInstructions = true;
    Shortages::OfTheDom(surroundings.imports);
}

const std::vector<Trouble> troubles = {
    {"WithSuccess", &BeginNone},          {"WithBusyFiles", &HoldMarkers},
    {"WithReadOnlyFiles", &ProtectFiles}, {"WithoutFolders", &RemoveFolders},
    {"WithoutMemory", &LackMemory, true}, {"WithAFailingDom", &LetTheDomFail, true},
};

struct Trial {
    std::string name;
    ExportCall call;
    Trouble trouble;
};

void PrintTo(const Trial& trial, std::ostream* out) {
    *out << trial.name;
}

std::vector<Trial> Trials() {
    std::vector<Trial> trials;
    for (const Trouble& trouble : troubles)
        for (const ExportCall& call : callsOfAllExports)
            trials.push_back({call.exportName + trouble.name, call, trouble});
    return trials;
}

}  // namespace

class LeakTest : public ExportCallsTest, public testing::WithParamInterface<Trial> {
protected:
    static void SetUpTestSuite() {
        DoNotCacheTexts();
        domCalls.emplace();
    }
    static void TearDownTestSuite() { domCalls.reset(); }

    // Calls the export so often in a DLL of its own, and gives what the process holds after a ZOTDamExit.
    Holdings HeldAfter(int calls) {
        Restore();
        Blocks::Forget();
        WatchedDll dll;
        CountWhatIsTaken(dll.Imports());
        EXPECT_EQ(Call(dll), GetParam().call.answer);
        Surroundings surroundings{installation, dll.Imports()};
        trouble.begin(surroundings);
        for (int i = 1; i < calls; ++i) {
            const std::optional<FailingCall> failure = FailureOf(i);
            const bool isSame = Call(dll) == GetParam().call.answer;
            EXPECT_TRUE(isSame || trouble.begin != &BeginNone);
        }
        memoryInUse = CommittedKilobytes();
        EXPECT_TRUE(dll.Exports().ZOTDamExit());
        surroundings.markers.clear();
        EXPECT_EQ(DomCalls::HeldReferences(), 0);
        EXPECT_EQ(takenThroughImports, (std::array<int, TakenCount>{}));
        references = DomCalls::TakenReferences();
        return {};
    }

    static Holdings HeldUnloaded() {
        Blocks::Forget();
        return {};
    }

    void TearDown() override { SetAttributes(installation, FILE_ATTRIBUTE_NORMAL); }

    // So many that each of the calls that fail in turn has failed.
    const int fewCalls = Rounds(20, 100);
    const Trouble& trouble = GetParam().trouble;
    long long references = 0;
    int memoryInUse = 0;

private:
    void Restore() const {
        std::filesystem::create_directories(installation.BaseFile().parent_path());
        std::filesystem::create_directories(installation.UserFile().parent_path());
        SetAttributes(installation, FILE_ATTRIBUTE_NORMAL);
        WriteInstallation();
    }

    static Answer Call(const WatchedDll& dll) {
        const ExportCall& call = GetParam().call;
        call.before(dll.Exports());
        return call.call(dll.Exports());
    }

    std::optional<FailingCall> FailureOf(int call) const {
        if (!trouble.comesAndGoes)
            return std::nullopt;
        return std::optional<FailingCall>{std::in_place, call % fewCalls + 1, false};
    }

    inline static std::optional<DomCalls> domCalls;
};

INSTANTIATE_TEST_SUITE_P(, LeakTest, testing::ValuesIn(Trials()), CaseName<Trial>);

TEST_P(LeakTest, ManyCallsHoldNoMoreThanAFew) {
    const int calls = Rounds(2 * fewCalls, trouble.begin == &BeginNone ? 10000 : 1000);
    HeldAfter(fewCalls);
    const Holdings heldByAFew = HeldAfter(fewCalls);
    const Holdings heldUnloaded = HeldUnloaded();
    const int memoryOfAFew = memoryInUse;
    EXPECT_EQ(HeldAfter(calls), heldByAFew);
    EXPECT_EQ(HeldUnloaded(), heldUnloaded);
    ShowFigure(GetParam().name, std::to_string(calls) + " calls, " + std::to_string(references) +
                                    " references taken and given back, before ZOTDamExit " +
                                    std::to_string(memoryInUse - memoryOfAFew) +
                                    " KiB of private memory more than after " + std::to_string(fewCalls));
}

// ---- That no export is left out, and that a leak would be seen ----

TEST(CallsOfAllExports, AreThoseOfTheDll) {
    std::vector<std::string> names;
    for (const ExportCall& call : callsOfAllExports)
        names.push_back(call.exportName);
    std::ranges::sort(names);
    EXPECT_EQ(names, LoadedImage{Library{}.Handle()}.ExportedNames());
}

TEST(HoldingsTest, CountABlockOfTheCRuntime) {
    const Holdings before;
    void* volatile block = std::malloc(16);
    const Holdings with;
    std::free(block);
    EXPECT_EQ(with.heapBlocks, before.heapBlocks + 1);
    EXPECT_EQ(Holdings{}, before);
}

TEST(HoldingsTest, CountATextOfCom) {
    DoNotCacheTexts();
    const Holdings before;
    OwnedBstr text{SysAllocString(L"text")};
    const Holdings with;
    text.reset();
    EXPECT_EQ(with.heapBlocks, before.heapBlocks + 1);
    EXPECT_EQ(Holdings{}, before);
}

TEST(HoldingsTest, CountANodeOfTheDom) {
    const ComScope com;
    XmlTree::OfText(L"<A/>");
    const Holdings before;
    Node node = XmlTree::OfText(L"<A/>").Root();
    const Holdings with;
    node = {};
    EXPECT_GT(with.heapBlocks, before.heapBlocks);
    EXPECT_EQ(Holdings{}, before);
}

TEST(HoldingsTest, CountAHandle) {
    const Holdings before;
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const Holdings with;
    CloseHandle(event);
    EXPECT_EQ(with.openHandles, before.openHandles + 1);
    EXPECT_EQ(Holdings{}, before);
}

}  // namespace ZOTDam::Test
