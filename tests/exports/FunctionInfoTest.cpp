// Tests of GetFunctionInfo, which enumerates the functions of the catalogue with their strings in the user's
// language.
#include <windows.h>

#include <cstring>

#include "support/DomDocuments.h"
#include "support/HeapAllocations.h"
#include "support/TranslationTest.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

namespace {

std::string FunctionWithItems(const std::string& ac, const std::string& dc) {
    return "<Function ID=\"1\"><Display><AC>" + ac + "</AC><DC>" + dc +
           "</DC></Display><Commands/></Function>";
}

std::string Item(const std::string& label, std::int32_t option) {
    return "<DisplayItem Label=\"" + label + "\" Option=\"" + std::to_string(option) + "\"/>";
}

// A function with all attributes and elements, and a second function with different strings.
constexpr char DimAndRate[] = R"(
    <Function ID="3" Type="1" Flag="2" Name="Dim" Group="Display"><Display>
        <AC><DisplayItem Label="Never" Option="0"/><DisplayItem Label="Soon" Option="60"/></AC>
        <DC><DisplayItem Label="Soon" Option="30"/></DC>
    </Display><Commands/></Function>
    <Function ID="7" Type="-3" Flag="-4" Name="Rate" Group="Panel"><Display>
        <AC><DisplayItem Label="Fast" Option="120"/></AC>
        <DC><DisplayItem Label="Slow" Option="60"/></DC>
    </Display><Commands/></Function>)";

const std::vector<FunctionInfo> DimAndRateAsKeys = {
    {3, 1, 2, L"Dim", L"Display", {{0, L"Never"}, {60, L"Soon"}}, {{30, L"Soon"}}},
    {7, -3, -4, L"Rate", L"Panel", {{120, L"Fast"}}, {{60, L"Slow"}}},
};

const std::vector<FunctionInfo> DimAndRateInGerman = {
    {3, 1, 2, L"Abdunkeln", L"Anzeige", {{0, L"Nie"}, {60, L"Bald"}}, {{30, L"Bald"}}},
    {7, -3, -4, L"Bildrate", L"Bildschirm", {{120, L"Schnell"}}, {{60, L"Langsam"}}},
};

std::string German() {
    return Entry("Dim", "Abdunkeln") + Entry("Display", "Anzeige") + Entry("Never", "Nie") +
           Entry("Soon", "Bald") + Entry("Rate", "Bildrate") + Entry("Panel", "Bildschirm") +
           Entry("Fast", "Schnell") + Entry("Slow", "Langsam");
}

}  // namespace

class FunctionInfoTest : public TranslationTest {
protected:
    std::vector<FunctionInfo> InfoOf(const std::string& functions) {
        WriteFunctions(functions);
        return GetFunctionInfo();
    }

    std::vector<std::uint32_t> IdsOf(const std::string& functions) {
        std::vector<std::uint32_t> ids;
        for (const FunctionInfo& info : InfoOf(functions))
            ids.push_back(info.id);
        return ids;
    }

    FunctionInfo OnlyInfo() {
        const std::vector<FunctionInfo> infos = GetFunctionInfo();
        EXPECT_EQ(infos.size(), 1u);
        return infos.empty() ? FunctionInfo{} : infos.front();
    }

    FunctionInfo InfoOfOnly(const std::string& function) {
        WriteFunctions(function);
        return OnlyInfo();
    }

    FunctionInfo InfoOfFull(const std::string& entries) {
        WriteEntries(entries);
        return InfoOfOnly("<Function ID=\"1\" Name=\"Name\" Group=\"Group\"><Display><AC>" + Item("Ac", 1) +
                          "</AC><DC>" + Item("Dc", 2) + "</DC></Display><Commands/></Function>");
    }
};

// ---- Functions ----

TEST_F(FunctionInfoTest, AllFieldsOfEachFunctionAreReturned) {
    EXPECT_EQ(InfoOf(DimAndRate), DimAndRateAsKeys);
}

TEST_F(FunctionInfoTest, StringsAreReturnedInUserLanguage) {
    WriteEntries(German());
    EXPECT_EQ(InfoOf(DimAndRate), DimAndRateInGerman);
}

TEST_F(FunctionInfoTest, FunctionsAreReturnedByAscendingId) {
    EXPECT_EQ(IdsOf(Functions({30, 4, 200})), (std::vector<std::uint32_t>{4, 30, 200}));
}

TEST_F(FunctionInfoTest, SmallestIdIsReturnedBeforeLargestId) {
    EXPECT_EQ(IdsOf(Functions({2147483647, 0})), (std::vector<std::uint32_t>{0, 2147483647}));
}

TEST_F(FunctionInfoTest, ThousandFunctionsAreAllReturned) {
    std::string functions;
    std::vector<std::uint32_t> ids;
    for (std::int32_t id = 0; id < 1000; ++id) {
        functions += Function(999 - id);
        ids.push_back(static_cast<std::uint32_t>(id));
    }
    EXPECT_EQ(IdsOf(functions), ids);
}

TEST_F(FunctionInfoTest, FirstFunctionWithSameIdIsReturned) {
    WriteEntries(Entry("First", "Erste") + Entry("Second", "Zweite"));
    EXPECT_EQ(InfoOfOnly(R"(<Function ID="1" Name="First"><Display/><Commands/></Function>
        <Function ID="1" Name="Second"><Display/><Commands/></Function>)")
                  .name,
              L"Erste");
}

TEST_F(FunctionInfoTest, InheritedKeyIsTranslatedOnce) {
    WriteEntries(Entry("Dim", "Abdunkeln") + Entry("Abdunkeln", "again"));
    const std::vector<FunctionInfo> infos =
        InfoOf(R"(<Function ID="1" Name="Dim"><Display/><Commands/></Function>)" + Function(2));
    ASSERT_EQ(infos.size(), 2u);
    EXPECT_EQ(infos.at(1).name, L"Abdunkeln");
}

TEST_F(FunctionInfoTest, MissingStringsAndItemsAreEmpty) {
    EXPECT_EQ(InfoOfOnly(Function(5)), (FunctionInfo{5, 0, 0, L"", L"", {}, {}}));
}

// ---- Items ----

TEST_F(FunctionInfoTest, AcItemsAreReturnedInFileOrder) {
    WriteEntries(Entry("a", "1") + Entry("c", "3") + Entry("d", "4"));
    EXPECT_EQ(InfoOfOnly(FunctionWithItems(
                             Item("d", 7) + Item("b", -2) + Item("a", 7) + Item("c", 0) + Item("a", 5), ""))
                  .ac,
              (Items{{7, L"4"}, {-2, L"b"}, {7, L"1"}, {0, L"3"}, {5, L"1"}}));
}

TEST_F(FunctionInfoTest, DcItemsAreReturnedInFileOrder) {
    WriteEntries(Entry("a", "1") + Entry("c", "3"));
    EXPECT_EQ(InfoOfOnly(FunctionWithItems("", Item("c", 2) + Item("b", 3) + Item("a", 1))).dc,
              (Items{{2, L"3"}, {3, L"b"}, {1, L"1"}}));
}

TEST_F(FunctionInfoTest, FunctionCanHaveAcItemsOnly) {
    WriteEntries(Entry("a", "1"));
    const FunctionInfo info = InfoOfOnly(FunctionWithItems(Item("a", 1), ""));
    EXPECT_EQ(info.ac, (Items{{1, L"1"}}));
    EXPECT_EQ(info.dc, Items{});
}

TEST_F(FunctionInfoTest, FunctionCanHaveDcItemsOnly) {
    WriteEntries(Entry("a", "1"));
    const FunctionInfo info = InfoOfOnly(FunctionWithItems("", Item("a", 1)));
    EXPECT_EQ(info.ac, Items{});
    EXPECT_EQ(info.dc, (Items{{1, L"1"}}));
}

TEST_F(FunctionInfoTest, ThousandItemsAreAllReturned) {
    WriteEntries(Entry("Even", "Gerade"));
    std::string items;
    Items expected;
    for (std::int32_t option = 0; option < 1000; ++option) {
        items += Item(option % 2 == 0 ? "Even" : "Odd", option);
        expected.emplace_back(option, option % 2 == 0 ? L"Gerade" : L"Odd");
    }
    EXPECT_EQ(InfoOfOnly(FunctionWithItems(items, items)).ac, expected);
    EXPECT_EQ(OnlyInfo().dc, expected);
}

TEST_F(FunctionInfoTest, ListsCanBeTraversedInBothDirections) {
    WriteFunctions(FunctionWithItems(Item("a", 1) + Item("b", 2), ""));
    struct RawList {
        const ListLinks* head;
        std::uint64_t count;
    };
    auto walk = MakeCallback<IGetFunctionInfoCallback>([](std::uint32_t, const FunctionRecord* function) {
        RawList lists[2];
        std::memcpy(lists, reinterpret_cast<const char*>(function) + 1048, sizeof lists);
        EXPECT_EQ(lists[0].count, 2u);
        EXPECT_EQ(lists[0].head->next->next, lists[0].head->prev);
        EXPECT_EQ(lists[0].head->prev->prev, lists[0].head->next);
        EXPECT_EQ(lists[0].head->prev->next, lists[0].head);
        EXPECT_EQ(lists[0].head->next->prev, lists[0].head);
        EXPECT_EQ(lists[1].count, 0u);
        EXPECT_EQ(lists[1].head->next, lists[1].head);
        EXPECT_EQ(lists[1].head->prev, lists[1].head);
    });
    EXPECT_TRUE(Dll().GetFunctionInfo(&walk));
}

// ---- Translation ----

TEST_F(FunctionInfoTest, EntryOfNameTranslatesNameOnly) {
    EXPECT_EQ(InfoOfFull(Entry("Name", "Text")),
              (FunctionInfo{1, 0, 0, L"Text", L"Group", {{1, L"Ac"}}, {{2, L"Dc"}}}));
}

TEST_F(FunctionInfoTest, EntryOfGroupTranslatesGroupOnly) {
    EXPECT_EQ(InfoOfFull(Entry("Group", "Text")),
              (FunctionInfo{1, 0, 0, L"Name", L"Text", {{1, L"Ac"}}, {{2, L"Dc"}}}));
}

TEST_F(FunctionInfoTest, EntryOfAcLabelTranslatesAcLabelOnly) {
    EXPECT_EQ(InfoOfFull(Entry("Ac", "Text")),
              (FunctionInfo{1, 0, 0, L"Name", L"Group", {{1, L"Text"}}, {{2, L"Dc"}}}));
}

TEST_F(FunctionInfoTest, EntryOfDcLabelTranslatesDcLabelOnly) {
    EXPECT_EQ(InfoOfFull(Entry("Dc", "Text")),
              (FunctionInfo{1, 0, 0, L"Name", L"Group", {{1, L"Ac"}}, {{2, L"Text"}}}));
}

TEST_F(FunctionInfoTest, MissingEntriesLeaveKeys) {
    EXPECT_EQ(InfoOfFull(Entry("Other", "Text")),
              (FunctionInfo{1, 0, 0, L"Name", L"Group", {{1, L"Ac"}}, {{2, L"Dc"}}}));
}

TEST_F(FunctionInfoTest, EntriesWithoutValueLeaveKeys) {
    EXPECT_EQ(InfoOfFull(R"(<data name="Name"/><data name="Group"/><data name="Ac"/><data name="Dc"/>)"),
              (FunctionInfo{1, 0, 0, L"Name", L"Group", {{1, L"Ac"}}, {{2, L"Dc"}}}));
}

TEST_F(FunctionInfoTest, EmptyValuesReplaceKeys) {
    EXPECT_EQ(InfoOfFull(Entry("Name", "") + Entry("Group", "") + Entry("Ac", "") + Entry("Dc", "")),
              (FunctionInfo{1, 0, 0, L"", L"", {{1, L""}}, {{2, L""}}}));
}

TEST_F(FunctionInfoTest, StringsAreTruncatedTo259CodeUnits) {
    const std::string longText(300, 't');
    const std::wstring cut(259, L't');
    EXPECT_EQ(InfoOfFull(Entry("Name", longText) + Entry("Group", longText) + Entry("Ac", longText) +
                         Entry("Dc", longText)),
              (FunctionInfo{1, 0, 0, cut, cut, {{1, cut}}, {{2, cut}}}));
}

TEST_F(FunctionInfoTest, TranslatedStringIsNotTranslatedAgain) {
    WriteEntries(Entry("Dim", "Display") + Entry("Display", "Soon") + Entry("Soon", "Dim"));
    WriteFunctions(DimAndRate);
    const FunctionInfo dim = GetFunctionInfo().front();
    EXPECT_EQ(dim.name, L"Display");
    EXPECT_EQ(dim.group, L"Soon");
    EXPECT_EQ(dim.ac, (Items{{0, L"Never"}, {60, L"Dim"}}));
}

TEST_F(FunctionInfoTest, SecondCallReturnsSameStrings) {
    WriteEntries(German());
    EXPECT_EQ(InfoOf(DimAndRate), DimAndRateInGerman);
    EXPECT_EQ(GetFunctionInfo(), DimAndRateInGerman);
}

// A string that the first call translated in the catalogue would be translated again by the second call.
TEST_F(FunctionInfoTest, CatalogueKeepsKeysAfterTranslation) {
    const std::string entries = Entry("Name", "N") + Entry("Group", "G") + Entry("Ac", "A") +
                                Entry("Dc", "D") + Entry("N", "NN") + Entry("G", "GG") + Entry("A", "AA") +
                                Entry("D", "DD");
    const FunctionInfo expected = {1, 0, 0, L"N", L"G", {{1, L"A"}}, {{2, L"D"}}};
    EXPECT_EQ(InfoOfFull(entries), expected);
    EXPECT_EQ(OnlyInfo(), expected);
}

TEST_F(FunctionInfoTest, NameTranslatedByDifferenceListServesAsKey) {
    WriteEntries(Entry("Dim", "Abdunkeln") + Entry("Abdunkeln", "again") + Entry("Rate", "Bildrate") +
                 Entry("Bildrate", "again") + Entry("Now", "Sofort"));
    WriteFunctions(R"(
        <Function ID="1" Name="Dim"><Display><AC><DisplayItem Label="Never"/><DisplayItem Label="Now"/></AC>
            </Display><Commands/></Function>
        <Function ID="2" Name="Rate"><Display/><Commands/></Function>)");
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 0, 0) + OldFunction(2, 0, 0)) +
                 OldScheme(HighPerformanceText, OldFunction(1, 1, 0) + OldFunction(2, 0, 0)));
    Text names;
    Text values;
    EXPECT_TRUE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, 1, names, values));
    const std::vector<FunctionInfo> infos = GetFunctionInfo();
    ASSERT_EQ(infos.size(), 2u);
    EXPECT_EQ(infos.at(0).name, L"again");
    EXPECT_EQ(infos.at(0).ac, (Items{{0, L"Never"}, {0, L"Sofort"}}));
    EXPECT_EQ(infos.at(1).name, L"Bildrate");
}

// ---- Without a catalogue ----

class InfoWithoutCatalogueTest : public FunctionInfoTest, public testing::WithParamInterface<XmlCase> {
protected:
    void SetUp() override {
        WriteDefaults(GetParam().xml);
        WriteEntries(German());
    }
};

TEST_P(InfoWithoutCatalogueTest, UnavailableOrEmptyCatalogueReturnsNoFunctions) {
    EXPECT_EQ(GetFunctionInfo(), std::vector<FunctionInfo>{});
}

TEST_P(InfoWithoutCatalogueTest, StringTableIsNotLoadedWithoutFunctions) {
    DomDocuments documents{Dll().Handle()};
    GetFunctionInfo();
    EXPECT_EQ(documents.CreatedCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    , InfoWithoutCatalogueTest,
    testing::Values(XmlCase{"EmptyFile", ""}, XmlCase{"NoSection", "<ZOTDefault/>"},
                    XmlCase{"NoFunctions", "<ZOTDefault><Functions/></ZOTDefault>"},
                    XmlCase{"NegativeId", "<ZOTDefault><Functions>" + Function(1) + Function(-1) +
                                              "</Functions></ZOTDefault>"},
                    XmlCase{"OverlongLabel", "<ZOTDefault><Functions>" +
                                                 FunctionWithItems("", Item(std::string(260, 'l'), 1)) +
                                                 "</Functions></ZOTDefault>"}),
    CaseName<XmlCase>);

TEST_F(FunctionInfoTest, MissingDefaultsFileReturnsNoFunctions) {
    EXPECT_EQ(GetFunctionInfo(), std::vector<FunctionInfo>{});
}

TEST_F(FunctionInfoTest, FailedDomCreationReturnsNoFunctions) {
    WriteFunctions(DimAndRate);
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_EQ(GetFunctionInfo(), std::vector<FunctionInfo>{});
}

TEST_F(FunctionInfoTest, ChangedDefaultsAreIgnoredUntilReload) {
    EXPECT_EQ(InfoOf(DimAndRate), DimAndRateAsKeys);
    EXPECT_EQ(InfoOf(Function(1)), DimAndRateAsKeys);
    Unload();
    EXPECT_EQ(OnlyInfo(), (FunctionInfo{1, 0, 0, L"", L"", {}, {}}));
}

TEST_F(FunctionInfoTest, EnumerationWritesNoFile) {
    WriteEntries(German());
    InfoOf(DimAndRate);
    Unload();
    EXPECT_EQ(Content(installation.StringTableFile()), StringTable(German()));
    EXPECT_EQ(Defaults(), "<ZOTDefault><Functions>" + std::string{DimAndRate} + "</Functions></ZOTDefault>");
    EXPECT_FALSE(HasUserSettings());
}

// ---- OnItem ----

class InfoOnItemTest : public FunctionInfoTest {
protected:
    struct ClientFailure {};

    void SetUp() override {
        WriteFunctions(DimAndRate);
        WriteEntries(German());
    }

    // Performs the action in OnItem at the first item. Returns all items.
    template <class Action>
    std::vector<FunctionInfo> InfosWhile(Action&& atFirstItem) {
        std::vector<FunctionInfo> infos;
        auto callback =
            MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t id, const FunctionRecord* function) {
                if (infos.empty())
                    atFirstItem();
                infos.push_back(CopyOf(id, *function));
            });
        EXPECT_TRUE(Dll().GetFunctionInfo(&callback));
        return infos;
    }

    void ThrowAtItem(int failingItem) {
        auto callback = MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t, const FunctionRecord*) {
            if (--failingItem == 0)
                throw ClientFailure{};
        });
        EXPECT_THROW(Dll().GetFunctionInfo(&callback), ClientFailure);
        EXPECT_EQ(failingItem, 0);
    }
};

TEST_F(InfoOnItemTest, CallbackCanEnumerateAgain) {
    EXPECT_EQ(InfosWhile([this] { EXPECT_EQ(GetFunctionInfo(), DimAndRateInGerman); }), DimAndRateInGerman);
}

TEST_F(InfoOnItemTest, CallbackCanCallOtherExports) {
    EXPECT_EQ(InfosWhile([this] {
                  EXPECT_EQ(Dll().GetFuncCount(), 2u);
                  EXPECT_TRUE(SetParameter(Balanced, {{3, {1, 0}}}));
              }),
              DimAndRateInGerman);
}

TEST_F(InfoOnItemTest, ExitInOnItemDoesNotEndEnumeration) {
    EXPECT_EQ(InfosWhile([this] { EXPECT_TRUE(Dll().ZOTDamExit()); }), DimAndRateInGerman);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(InfoOnItemTest, ExceptionReachesClientAndEndsEnumeration) {
    ThrowAtItem(1);
    ThrowAtItem(2);
    EXPECT_EQ(GetFunctionInfo(), DimAndRateInGerman);
}

TEST_F(InfoOnItemTest, ExceptionLeaksNoHeapAllocation) {
    GetFunctionInfo();
    HeapAllocations::Track(Dll().Handle());
    ThrowAtItem(1);
    ThrowAtItem(2);
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

TEST_F(InfoOnItemTest, EnumerationLeaksNoHeapAllocation) {
    GetFunctionInfo();
    HeapAllocations::Track(Dll().Handle());
    GetFunctionInfo();
    InfosWhile([this] { GetFunctionInfo(); });
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

TEST_F(InfoOnItemTest, CallbackIsNotCalledAfterExit) {
    EXPECT_EQ(GetFunctionInfo(), DimAndRateInGerman);
    EXPECT_TRUE(Dll().ZOTDamExit());
    int items = 0;
    auto count =
        MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t, const FunctionRecord*) { ++items; });
    EXPECT_FALSE(Dll().GetFunctionInfo(&count));
    EXPECT_EQ(items, 0);
}

}  // namespace ZOTDam::Test
