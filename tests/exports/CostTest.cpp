// Tests that frequent calls do no expensive work. They count operations and do not measure time.
#include "support/AllocationFailures.h"
#include "support/DomDocuments.h"
#include "support/DomMethods.h"
#include "support/FileOpens.h"
#include "support/FileStateQueries.h"
#include "support/FileTimes.h"
#include "support/TranslationTest.h"

namespace ZOTDam::Test {

namespace {

int allocations = 0;

void* CountedMalloc(std::size_t size) {
    ++allocations;
    return std::malloc(size);
}

BSTR WINAPI CountedSysAllocString(const OLECHAR* text) {
    ++allocations;
    return SysAllocString(text);
}

}  // namespace

// After the catalogue and the current values are loaded, GetFuncCount and GetFuncCurValue read from memory.
class CallCostTest : public SettingsTest {
protected:
    void SetUp() override {
        WriteFunctions(Function(1, R"(<Default ACParamIndex="1" DCParamIndex="2"/>)") +
                       Function(2, R"(<Default ACParamIndex="3" DCParamIndex="4"/>)"));
        EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
        allocations = 0;
    }

    const ComScope com;
};

TEST_F(CallCostTest, GetFuncCountAfterLoadAllocatesNothing) {
    const ImportPatch heap{Dll().Handle(), "malloc", &CountedMalloc};
    const ImportPatch texts{Dll().Handle(), "SysAllocString", &CountedSysAllocString};
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(allocations, 0);
}

TEST_F(CallCostTest, GetFuncCurValueAfterLoadAllocatesNothing) {
    const ImportPatch heap{Dll().Handle(), "malloc", &CountedMalloc};
    const ImportPatch texts{Dll().Handle(), "SysAllocString", &CountedSysAllocString};
    FuncCurValue value = {};
    EXPECT_TRUE(Dll().GetFuncCurValue(1, &value));
    EXPECT_EQ(value.FunctionId, 2u);
    EXPECT_EQ(allocations, 0);
}

TEST_F(CallCostTest, AllocatingReadIsDetected) {
    const ImportPatch heap{Dll().Handle(), "malloc", &CountedMalloc};
    GetParameter(Balanced);
    EXPECT_GT(allocations, 0);
}

TEST_F(CallCostTest, GetFuncCountDoesNotReadDocument) {
    const FailingDomMethod attributes{DomMethod::GetAttribute};
    const FailingDomMethod children{DomMethod::GetNamedItem};
    EXPECT_FALSE(Dll().TEVGetParam(&HighPerformance));
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

// ---- Unchanged files ----

namespace {

int otherQueries = 0;

DWORD WINAPI CountedGetFileAttributes(LPCWSTR path) {
    ++otherQueries;
    return GetFileAttributesW(path);
}

BOOL WINAPI CountedPathFileExists(LPCWSTR path) {
    ++otherQueries;
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

HANDLE WINAPI CountedFindFirstFile(LPCWSTR path, WIN32_FIND_DATAW* found) {
    ++otherQueries;
    return FindFirstFileW(path, found);
}

// A call that reads the user settings and does not change them.
struct ReadingCall {
    std::string name;
    bool (*call)(const Library& dll);
    std::size_t reads;  // how often the call reads the file
};

void PrintTo(const ReadingCall& call, std::ostream* out) {
    *out << call.name;
}

const ReadingCall ReadingCalls[] = {
    {"GetParameter",
     [](const Library& dll) {
         auto ignore = MakeCallback<IGetParameterCallback>([](std::int32_t, const ParamValue*) {});
         return dll.GetParameter(&Balanced, &ignore);
     },
     1},
    {"TEVGetParam", [](const Library& dll) { return dll.TEVGetParam(&Balanced); }, 1},
    {"GetCommandInfo",
     [](const Library& dll) {
         auto ignore = MakeCallback<IGetCommandInfoCallback>([](const CommandInfoRecord*) {});
         return dll.GetCommandInfo(&Balanced, &ignore);
     },
     1},
    {"GetDiffFuncList",
     [](const Library& dll) {
         Text names;
         Text values;
         return dll.GetDiffFuncList(&Balanced, &HighPerformance, 1, names, values);
     },
     2},
    {"GetCommonSetting",
     [](const Library& dll) {
         Text value;
         return dll.GetCommonSetting(L"Name", value);
     },
     1},
};

}  // namespace

class UnchangedFileCostTest : public SettingsTest, public testing::WithParamInterface<ReadingCall> {
protected:
    void SetUp() override {
        WriteFunctions(Functions({1, 2}));
        WriteUserSettings("<OrloPowerCfg><PowerSchemes>" +
                          OldScheme(BalancedText, OldFunction(1, 1, 1) + OldFunction(2, 1, 1)) +
                          OldScheme(HighPerformanceText, OldFunction(1, 2, 2) + OldFunction(2, 2, 2)) +
                          "</PowerSchemes><CommonSettings Name=\"v\"/></OrloPowerCfg>");
    }

    FileStateQueries queries;
};

INSTANTIATE_TEST_SUITE_P(, UnchangedFileCostTest, testing::ValuesIn(ReadingCalls), CaseName<ReadingCall>);

TEST_P(UnchangedFileCostTest, UnchangedFileCostsOneQueryForEachRead) {
    const FakeClock clock{Dll().Handle()};
    EXPECT_TRUE(GetParam().call(Dll()));
    PatchedImports imports{Dll().Handle()};
    imports.Patch("GetFileAttributesW", &CountedGetFileAttributes);
    imports.Patch("PathFileExistsW", &CountedPathFileExists);
    imports.Patch("FindFirstFileW", &CountedFindFirstFile);
    const FileOpens opens{Dll().Handle()};
    const DomDocuments documents{Dll().Handle()};
    queries.paths.clear();
    otherQueries = 0;
    EXPECT_TRUE(GetParam().call(Dll()));
    const std::wstring path = L"\\??\\" + installation.UserFile().wstring();
    EXPECT_EQ(queries.paths, std::vector<std::wstring>(GetParam().reads, path));
    EXPECT_EQ(otherQueries, 0);
    EXPECT_TRUE(opens.calls.empty());
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

// ---- Large string tables ----

class StringTableCostTest : public StringTableTest {
protected:
    static constexpr int Entries = 10000;

    // Returns how many references to DOM objects a call acquires that reads a large table and looks up a key.
    long long ReferencesForLookup(int entry) {
        std::string table;
        for (int i = 0; i < Entries; ++i)
            table += Entry("Key" + std::to_string(i), "Text " + std::to_string(i));
        const ImportPatch patch = DomCalls::Track(Dll().Handle());
        const DomCalls calls;
        EXPECT_EQ(TextOf("Key" + std::to_string(entry), table), L"Text " + std::to_wstring(entry));
        return DomCalls::AcquiredReferences();
    }
};

TEST_F(StringTableCostTest, LookupsOfFirstAndLastEntryCostSame) {
    const long long first = ReferencesForLookup(0);
    Unload();
    EXPECT_EQ(ReferencesForLookup(Entries - 1), first);
    EXPECT_GT(first, Entries);
}

TEST_F(StringTableCostTest, TextIsReadOnlyOnce) {
    EXPECT_EQ(FirstName(), L"neutral");
    const ImportPatch patch = DomCalls::Track(Dll().Handle());
    const DomCalls calls;
    EXPECT_EQ(FirstName(), L"neutral");
    EXPECT_EQ(DomCalls::AcquiredReferences(), 0);
}

}  // namespace ZOTDam::Test
