// Makes each allocation of the DLL fail in turn, and each other call that returns memory or an object. No
// export may crash, throw an exception, return an incomplete result, damage a file, or leak memory or a
// reference. The next call must work.
#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "support/EveryExport.h"
#include "support/ExportCalls.h"
#include "support/HookedDll.h"
#include "support/LoadHook.h"
#include "support/Stress.h"

namespace ZOTDam::Test {

namespace {

// ---- Allowed results of an export when an allocation fails ----

// Each item must be one of the alternatives for its position. Items after a failure may be missing.
bool IsPrefixOf(const Lines& items, const std::vector<Lines>& alternatives) {
    return items.size() <= alternatives.size() &&
           std::equal(items.begin(), items.end(), alternatives.begin(),
                      [](const std::wstring& item, const Lines& allowed) {
                          return std::ranges::count(allowed, item) != 0;
                      });
}

bool IsTrue(const Answer& answer, const Answer&) {
    return answer.result == 1;
}

// The export returns only its failure value and leaves the buffers unchanged.
bool IsFailure(const Answer& answer, const Answer&) {
    const Lines untouched = {L"untouched", L"0 0 0"};
    return answer.result == 0 && std::ranges::all_of(answer.items, [&](const std::wstring& item) {
               return std::ranges::count(untouched, item) != 0;
           });
}

bool IsUnavailable(const Answer& answer, const Answer&) {
    return answer.result == CatalogueUnavailable;
}

bool IsPrefix(const Answer& answer, const Answer& whole) {
    return answer.result == 1 && answer.items.size() <= whole.items.size() &&
           std::equal(answer.items.begin(), answer.items.end(), whole.items.begin());
}

bool IsEmpty(const Answer& answer, const Answer&) {
    return answer == Answer{1, {}};
}

// All returned items are complete and in the right order.
bool HasSome(const Answer& answer, const Answer& whole) {
    auto place = whole.items.begin();
    return answer.result == 1 && std::ranges::all_of(answer.items, [&](const std::wstring& item) {
               place = std::find(place, whole.items.end(), item);
               return place != whole.items.end() && place++ != whole.items.end();
           });
}

// A text may be replaced with its key. A function is returned with all its display items or not at all.
bool HasKeysOrTexts(const Answer& answer, const Answer&) {
    std::vector<Lines> functions(3);
    for (const wchar_t* name : {L"Key", L"Text"})
        for (const wchar_t* first : {L"Key", L"Text"}) {
            for (const wchar_t* second : {L"Key", L"Text"})
                functions[0].push_back(Line(L"1: Group1Name", name, 11, first, 12, second));
            for (const wchar_t* second : {L"Key", L"Text"})
                functions[2].push_back(Line(L"7: Group1Name Other", 60, first, 48, second));
        }
    functions[1] = {L"2: Group1Name Other"};
    return answer.result == 1 && IsPrefixOf(answer.items, functions);
}

// The values are stored ones, or defaults where the stored values could not be read.
bool HasKnownValues(const Answer& answer, const Answer&) {
    static const Lines known = {L"1: 0 8", L"1: 1 1", L"1: 1 3", L"1: 0 0", L"2: 9 10",
                                L"2: 4 5", L"2: 6 7", L"2: 0 0", L"7: 0 1", L"7: 1 1"};
    std::set<wchar_t> ids;
    return answer.result == 1 && std::ranges::all_of(answer.items, [&](const std::wstring& item) {
               return std::ranges::count(known, item) != 0 && ids.insert(item.front()).second;
           });
}

// The options are those of the stored values, or of the defaults where these could not be read.
bool HasCommands(const Answer& answer, const Answer&) {
    return answer.result == 1 &&
           IsPrefixOf(answer.items, {{L"21 11 11 a text that no small buffer holds",
                                      L"21 12 12 a text that no small buffer holds"},
                                     {L"22 0 11 another text that none of them holds",
                                      L"22 0 12 another text that none of them holds"}});
}

// A text that cannot be obtained is empty or replaced with its key.
bool HasDifferences(const Answer& answer, const Answer& whole) {
    if (IsFailure(answer, whole))
        return true;
    const auto lines = [](const std::wstring& text) { return std::ranges::count(text, L'\r'); };
    static const Lines names = {L"- Key\n\r", L"- Text\n\r", L"- Other\n\r", L"- Key\n\r- Other\n\r",
                                L"- Text\n\r- Other\n\r"};
    return answer.result == 1 && std::ranges::count(names, answer.items[0]) != 0 &&
           lines(answer.items[0]) == lines(answer.items[1]);
}

// The setting comes from a later source if an earlier one could not be read.
bool IsOfAnySource(const Answer& answer, const Answer& whole) {
    return IsFailure(answer, whole) || answer == Answer{1, {L"default"}} || answer == Answer{1, {L"base"}};
}

// ---- Uses of the exports ----

struct Use {
    std::string name;
    ExportCall call;
    bool (*isAllowed)(const Answer& answer, const Answer& whole);
    // The allowed content of the files after the call.
    enum Effect {
        OldOrNew,
        NewUnlessFailed,  // the new content, unless the export reports a failure
        Partly,           // some of the new content
    } effect = OldOrNew;
};

Use UseOf(const std::string& exportName, bool (*isAllowed)(const Answer&, const Answer&),
          Use::Effect effect = Use::OldOrNew) {
    const auto call = std::ranges::find(CallsOfAllExports, exportName, &ExportCall::exportName);
    return {exportName, *call, isAllowed, effect};
}

const std::vector<Use> UsesOfExports = {
    UseOf("GetFuncCount", &IsUnavailable),
    UseOf("GetFunctionBase", &IsPrefix),
    UseOf("GetFunctionBaseUnSupported", &IsEmpty),
    UseOf("GetFunctionInfo", &HasKeysOrTexts),
    UseOf("AddFunctionDefault", &IsTrue, Use::Partly),
    UseOf("GetParameter", &HasKnownValues, Use::Partly),
    {"GetParameterOfANewScheme",
     {"GetParameter",
      {1, {L"1: 1 3", L"2: 4 5"}},
      [](const Library& dll) { return Enumerate(dll.GetParameter, PowerSaver); }},
     &HasKnownValues,
     Use::Partly},
    {"GetParameterOfAnIncompleteScheme",
     {"GetParameter",
      {1, {L"1: 1 1", L"2: 4 5"}},
      [](const Library& dll) { return Enumerate(dll.GetParameter, Balanced); }},
     &HasKnownValues,
     Use::Partly},
    UseOf("GetParameterDefault", &IsPrefix),
    UseOf("SetParameter", &IsTrue),
    {"SetParameterOfANewScheme",
     {"SetParameter", {1}, [](const Library& dll) { return Store(dll, PowerSaver); }},
     &IsTrue},
    UseOf("ResetDefault", &IsFailure),
    UseOf("TEVGetParam", &IsFailure, Use::Partly),
    UseOf("GetFuncCurValue", &IsFailure),
    UseOf("GetCommandInfo", &HasCommands, Use::Partly),
    UseOf("GetDiffFuncList", &HasDifferences, Use::Partly),
    UseOf("GetSpecScheme", &HasSome),
    UseOf("GetCommonSetting", &IsFailure),
    {"GetCommonSettingOfTheUser",
     {"GetCommonSetting", {1, {L"user"}}, [](const Library& dll) { return CommonSetting(dll, L"user"); }},
     &IsFailure},
    {"GetCommonSettingOfTheDefaults",
     {"GetCommonSetting",
      {1, {L"default"}},
      [](const Library& dll) { return CommonSetting(dll, L"default"); }},
     &IsOfAnySource},
    UseOf("SetCommonSetting", &IsFailure, Use::NewUnlessFailed),
    UseOf("InitCommonSetting", &IsFailure, Use::NewUnlessFailed),
    UseOf("ZOTDamExit", &IsTrue),
};

// The number of failures that were injected into the calls of an export.
struct Injections {
    int atFirstUse = 0;
    int atLaterUse = 0;
};

void PrintTo(const Injections& injections, std::ostream* out) {
    *out << injections.atFirstUse << " at the first use, " << injections.atLaterUse << " at a later one";
}

// The DLL with maps whose constructors allocate memory.
constexpr wchar_t AllocatingDll[] = L"allocating\\ZOTDam.dll";

struct Case {
    std::string name;
    AllocationFailure kind;
    Use use;
    std::filesystem::path dll = L"ZOTDam.dll";
};

void PrintTo(const Case& testCase, std::ostream* out) {
    *out << testCase.name;
}

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const Use& use : UsesOfExports)
        for (const AllocationFailure& kind : KindsOfAllocationFailures)
            cases.push_back({use.name + "Without" + kind.name, kind, use});
    return cases;
}

std::vector<Case> CasesWithAllocatingMaps() {
    const AllocationFailure memory = {"Memory", &AllocationFailures::FailMemory};
    std::vector<Case> cases;
    cases.reserve(UsesOfExports.size());
    for (const Use& use : UsesOfExports)
        cases.push_back({use.name, memory, use, AllocatingDll});
    return cases;
}

// A freshly loaded DLL whose calls can be made to fail. At the end, the DLL must have released every
// reference and freed all memory.
class Session {
public:
    explicit Session(const AllocationFailure& kind, const std::filesystem::path& dll) : watched{dll} {
        HeapAllocations::Track(Dll().Handle());
        kind.install(watched.Imports());
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() {
        EXPECT_TRUE(Dll().ZOTDamExit());
        EXPECT_EQ(DomCalls::HeldReferences(), 0);
    }

    const Library& Dll() const noexcept { return watched.Exports(); }

private:
    struct ExpectNoAllocations {
        ~ExpectNoAllocations() { EXPECT_EQ(HeapAllocations::Count(), 0u); }
    };

    ExpectNoAllocations whenTheDllIsFreed;
    HookedDll watched;
};

}  // namespace

class AllocationFailureTest : public ExportCallsTest, public testing::WithParamInterface<Case> {
protected:
    static void SetUpTestSuite() { domCalls.emplace(); }

    static void TearDownTestSuite() {
        domCalls.reset();
        for (const ExportCall& call : CallsOfAllExports)
            ShowFigure("failures injected into " + call.exportName,
                       testing::PrintToString(injections[call.exportName]));
    }

    // The effect of the export on the files is the same for all kinds of failure, so it is determined only
    // once.
    void SetUp() override {
        const auto [known, isNew] = knownFiles.try_emplace(use.name);
        if (isNew) {
            const Session session{NoFailure, GetParam().dll};
            use.call.before(session.Dll());
            EXPECT_EQ(Call(session), whole);
            known->second = Files();
        }
        wholeFiles = known->second;
    }

    // The content of the two files that the library writes.
    using FileTexts = std::pair<std::string, std::string>;
    FileTexts Files() const { return {UserSettings(), Defaults()}; }

    Answer Call(const Session& session) const {
        try {
            return use.call.call(session.Dll());
        } catch (...) {
            ADD_FAILURE() << "an exception came out";
            return {};
        }
    }

    void Prepare(const Session& session) const {
        WriteSettings();
        std::filesystem::remove(KeptUserSettings());
        std::filesystem::remove(KeptDefaults());
        use.call.before(session.Dll());
    }

    std::filesystem::path KeptUserSettings() const { return UnreadableCopyOf(installation.UserFile()); }

    // Makes the n-th call fail during a use of the export. Returns false if the export made fewer calls.
    bool CallWithFailure(const Session& session, int failingCall, bool lasts) {
        Prepare(session);
        const FileTexts old = Files();
        Answer answer;
        {
            const FailingCall failure{failingCall, lasts};
            answer = Call(session);
        }
        ExpectAllowed(answer);
        ExpectNothingLost(old, answer == whole);
        return FailingCall::HasFailed();
    }

    void ExpectAllowed(const Answer& answer) const {
        EXPECT_TRUE(answer == whole || (FailingCall::HasFailed() && use.isAllowed(answer, whole)))
            << testing::PrintToString(answer);
    }

    void ExpectNothingLost(const FileTexts& old, bool succeeded) const {
        const FileTexts now = Files();
        const bool isStored = now == wholeFiles;
        const bool isOld = now == old && !(succeeded && use.effect == Use::NewUnlessFailed);
        const bool isPartly =
            use.effect == Use::Partly && HoldsStoredScheme(now.first) && HoldsWholeFunctions(now.second);
        EXPECT_TRUE(isStored || isOld || isPartly || IsKept(old)) << now.first << now.second;
        EXPECT_TRUE(isStored || isOld ||
                    (IsWellFormed(installation.UserFile()) && IsWellFormed(installation.DefaultsFile())));
    }

    // A file that could not be read may have been replaced. In this case a copy of it exists.
    bool IsKept(const FileTexts& old) const {
        return ReadFile(KeptUserSettings()) == old.first || ReadFile(KeptDefaults()) == old.second;
    }

    static bool HoldsStoredScheme(const std::string& userSettings) {
        const std::string stored = FullUserSettings();
        const std::size_t begin = stored.find("<PowerScheme ");
        return userSettings.find(stored.substr(begin, stored.find("</PowerScheme>") - begin)) !=
               std::string::npos;
    }

    // Returns whether these are all functions of the complete file, or the first ones.
    bool HoldsWholeFunctions(const std::string& defaults) const {
        const bool isEmpty = defaults.find("<Functions/>") != std::string::npos;
        return wholeFiles.second.starts_with(
            defaults.substr(0, defaults.find(isEmpty ? "/>" : "</Functions>")));
    }

    // The distance from one failing call to the next. The short run skips calls where there are many.
    int Step(bool lasts) const { return Rounds(kind.stepInShortRun * (lasts ? 3 : 1), 1); }

    int& InjectionsOf(int Injections::*when) const { return injections[use.call.exportName].*when; }

    const Use& use = GetParam().use;
    const AllocationFailure& kind = GetParam().kind;
    const Answer& whole = use.call.answer;
    FileTexts wholeFiles;

private:
    inline static const AllocationFailure NoFailure = {"Nothing", [](PatchedImports&) {}};
    inline static std::optional<DomCalls> domCalls;
    inline static std::map<std::string, Injections> injections;
    inline static std::map<std::string, FileTexts> knownFiles;
};

INSTANTIATE_TEST_SUITE_P(, AllocationFailureTest, testing::ValuesIn(Cases()), CaseName<Case>);
INSTANTIATE_TEST_SUITE_P(AllocatingMaps, AllocationFailureTest, testing::ValuesIn(CasesWithAllocatingMaps()),
                         CaseName<Case>);

TEST_P(AllocationFailureTest, FirstUseSurvivesFailure) {
    for (const bool lasts : {false, true}) {
        bool hasFailed = true;
        for (int call = 1; hasFailed; call += Step(lasts)) {
            SCOPED_TRACE(call);
            const Session session{kind, GetParam().dll};
            hasFailed = CallWithFailure(session, call, lasts);
            InjectionsOf(&Injections::atFirstUse) += hasFailed;
            // Data that could not be read at the first use is read again only after the library is reloaded.
            Prepare(session);
            ExpectAllowed(Call(session));
        }
    }
}

TEST_P(AllocationFailureTest, LaterUseSurvivesFailure) {
    const Session session{kind, GetParam().dll};
    Prepare(session);
    EXPECT_EQ(Call(session), whole);
    for (const bool lasts : {false, true})
        for (int call = 1; CallWithFailure(session, call, lasts); call += Step(lasts)) {
            SCOPED_TRACE(call);
            ++InjectionsOf(&Injections::atLaterUse);
            Prepare(session);
            EXPECT_EQ(Call(session), whole);
        }
}

// ---- Loading ----

class LoadingFailureTest : public ExportCallsTest, public testing::WithParamInterface<const wchar_t*> {};

INSTANTIATE_TEST_SUITE_P(Dll, LoadingFailureTest, testing::Values(L"ZOTDam.dll"));
INSTANTIATE_TEST_SUITE_P(AllocatingMaps, LoadingFailureTest, testing::Values(AllocatingDll));

// The exports of a library that could not create its global objects return their failure values.
TEST_P(LoadingFailureTest, LoadingSurvivesAllocationFailure) {
    bool hasFailed = true;
    for (int call = 1; hasFailed; ++call) {
        SCOPED_TRACE(call);
        std::optional<FailingCall> failure;
        const LoadHook hook{[&](HMODULE dll) {
            HeapAllocations::Reset();
            PatchPermanently(dll, "malloc", &AllocationFailures::Malloc);
            PatchPermanently(dll, "free", &HeapAllocations::Free);
            failure.emplace(call, false);
        }};
        {
            const Library dll{Library::ProgramFolder() / GetParam()};
            hasFailed = FailingCall::HasFailed();
            failure.reset();
            CallEveryExport(dll, Balanced);
        }
        EXPECT_EQ(HeapAllocations::Count(), 0u);
    }
}

}  // namespace ZOTDam::Test
