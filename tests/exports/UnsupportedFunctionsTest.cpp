// Tests of GetFunctionBaseUnSupported, which enumerates the functions of the base catalogue that are not in
// the catalogue.
#include "support/DomDocuments.h"
#include "support/FunctionBaseTest.h"
#include "support/HeapAllocations.h"
#include "support/UnreadableValue.h"

namespace ZOTDam::Test {

namespace {

using IdList = std::vector<std::int32_t>;

}  // namespace

class UnsupportedFunctionsTest : public FunctionBaseTest {
protected:
    IdList UnsupportedIds() { return Ids(GetFunctionBaseUnSupported()); }

    // Returns the unsupported ids for a base catalogue and a catalogue with these functions.
    IdList UnsupportedIn(std::initializer_list<std::int32_t> base,
                         std::initializer_list<std::int32_t> catalogue) {
        WriteBaseFunctions(BaseFunctions(base));
        WriteFunctions(Functions(catalogue));
        return UnsupportedIds();
    }
};

// ---- Functions ----

TEST_F(UnsupportedFunctionsTest, FunctionsMissingInCatalogueAreReturned) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3, 4, 5}, {2, 4}), (IdList{1, 3, 5}));
}

TEST_F(UnsupportedFunctionsTest, FunctionsAreReturnedInFileOrder) {
    EXPECT_EQ(UnsupportedIn({9, 3, 300, 1, 4}, {3}), (IdList{9, 300, 1, 4}));
}

TEST_F(UnsupportedFunctionsTest, CompleteCatalogueReturnsNone) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {3, 2, 1}), IdList{});
}

TEST_F(UnsupportedFunctionsTest, CatalogueWithOtherFunctionsReturnsAll) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {4, 5}), (IdList{1, 2, 3}));
}

TEST_F(UnsupportedFunctionsTest, EmptyCatalogueReturnsAll) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {}), (IdList{1, 2, 3}));
}

TEST_F(UnsupportedFunctionsTest, SupportedFirstFunctionIsOmitted) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {1}), (IdList{2, 3}));
}

TEST_F(UnsupportedFunctionsTest, SupportedLastFunctionIsOmitted) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {3}), (IdList{1, 2}));
}

TEST_F(UnsupportedFunctionsTest, ConsecutiveSupportedFunctionsAreOmitted) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3, 4}, {1, 2}), (IdList{3, 4}));
    Unload();
    EXPECT_EQ(UnsupportedIn({1, 2, 3, 4}, {3, 4}), (IdList{1, 2}));
    Unload();
    EXPECT_EQ(UnsupportedIn({1, 2, 3, 4}, {2, 3}), (IdList{1, 4}));
}

TEST_F(UnsupportedFunctionsTest, OnlyFunctionIsReturnedIfUnsupported) {
    EXPECT_EQ(UnsupportedIn({7}, {1}), IdList{7});
}

TEST_F(UnsupportedFunctionsTest, OnlyFunctionIsOmittedIfSupported) {
    EXPECT_EQ(UnsupportedIn({7}, {7}), IdList{});
}

TEST_F(UnsupportedFunctionsTest, DuplicatesOfUnsupportedIdAreReturned) {
    EXPECT_EQ(UnsupportedIn({1, 2, 1}, {2}), (IdList{1, 1}));
}

TEST_F(UnsupportedFunctionsTest, DuplicatesOfSupportedIdAreOmitted) {
    EXPECT_EQ(UnsupportedIn({1, 2, 1, 1}, {1}), IdList{2});
}

TEST_F(UnsupportedFunctionsTest, FunctionsWithNegativeIdsAreReturned) {
    EXPECT_EQ(UnsupportedIn({-1, 1, -2147483647, 0}, {1, 0}), (IdList{-1, -2147483647}));
}

TEST_F(UnsupportedFunctionsTest, InheritedIdDecidesSupport) {
    WriteBaseFunctions(BaseFunction(1) + R"(<Function Name="a"><Commands/></Function>)" + BaseFunction(2) +
                       R"(<Function Name="b"><Commands/></Function>)");
    WriteFunctions(Function(1));
    EXPECT_EQ(UnsupportedIds(), (IdList{2, 2}));
}

TEST_F(UnsupportedFunctionsTest, IdsAreComparedAsNumbers) {
    WriteBaseFunctions(
        R"(<Function ID="abc"><Commands/></Function><Function ID=" +07"><Commands/></Function>)" +
        BaseFunction(8));
    WriteFunctions(Functions({0, 7}));
    EXPECT_EQ(UnsupportedIds(), IdList{8});
}

TEST_F(UnsupportedFunctionsTest, NamesDoNotAffectSupport) {
    WriteBaseFunctions(R"(<Function ID="1" Name="Dim"><Commands/></Function>)");
    WriteFunctions(R"(<Function ID="2" Name="Dim"><Display/><Commands/></Function>)");
    EXPECT_EQ(UnsupportedIds(), IdList{1});
}

TEST_F(UnsupportedFunctionsTest, AllFieldsOfRecordAreReturned) {
    WriteBaseFunctions(BaseFunction(1, CommandFamilies(R"(<CommandItem SpecInfo1="s"/>)")) + R"(
        <Function ID="2" Type="3" Flag="4" Name="n" Group="g">
            <Display><AC/></Display>
            <Commands>
                <CommandFamily><CommandItem ID="5"/><CheckExistItem Param2="p"/></CommandFamily>
            </Commands>
            <Default ACParamIndex="6"/>
        </Function>)" + BaseFunction(7));
    WriteFunctions(Functions({1, 7}));
    EXPECT_EQ(GetFunctionBaseUnSupported(),
              (std::vector<FunctionBase>{{2,
                                          3,
                                          4,
                                          L"n",
                                          L"g",
                                          L"<Display><AC/></Display>",
                                          L"<Default ACParamIndex=\"6\"/>",
                                          {{{{.id = 5, .specInfo1 = L"s"}}, {{.param2 = L"p"}}}}}}));
}

TEST_F(UnsupportedFunctionsTest, RecordHoldsOneReferencePerNode) {
    WriteBaseFunctions("<Function ID=\"1\"><Display/><Commands/><Default/></Function>");
    WriteFunctions(Function(2));
    CountedPointer<IXMLDOMNode> display;
    auto hold = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
        EXPECT_EQ(References(record->displayNode.get()), 1u);
        EXPECT_EQ(References(record->defaultNode.get()), 1u);
        display = record->displayNode;
    });
    EXPECT_TRUE(Dll().GetFunctionBaseUnSupported(&hold));
    EXPECT_EQ(References(display.get()), 1u);
    EXPECT_EQ(XmlOf(display.get()), L"<Display/>");
}

// Removing the supported functions one by one must not make the call too slow.
TEST_F(UnsupportedFunctionsTest, UnsupportedFunctionsAmongTenThousandAreReturned) {
    std::string base;
    std::string catalogue;
    IdList odd;
    for (std::int32_t id = 0; id < 10000; ++id) {
        base += BaseFunction(id);
        if (id % 2 == 0)
            catalogue += Function(id);
        else
            odd.push_back(id);
    }
    WriteBaseFunctions(base);
    WriteFunctions(catalogue);
    EXPECT_EQ(UnsupportedIds(), odd);
}

TEST_F(UnsupportedFunctionsTest, TenThousandSupportedFunctionsAreOmitted) {
    std::string base;
    std::string catalogue;
    for (std::int32_t id = 0; id < 10000; ++id) {
        base += BaseFunction(id);
        catalogue += Function(id);
    }
    WriteBaseFunctions(base);
    WriteFunctions(catalogue);
    EXPECT_EQ(UnsupportedIds(), IdList{});
}

// ---- Without a catalogue ----

class UnsupportedWithoutCatalogueTest : public UnsupportedFunctionsTest,
                                        public testing::WithParamInterface<XmlCase> {
protected:
    void SetUp() override {
        WriteBaseFunctions(BaseFunctions({1, 2}));
        WriteDefaults(GetParam().xml);
    }
};

TEST_P(UnsupportedWithoutCatalogueTest, UnavailableCatalogueReturnsNone) {
    EXPECT_EQ(UnsupportedIds(), IdList{});
    EXPECT_EQ(Ids(GetFunctionBase()), (IdList{1, 2}));
}

TEST_P(UnsupportedWithoutCatalogueTest, BaseIsNotLoadedIfCatalogueIsUnavailable) {
    DomDocuments documents{Dll().Handle()};
    EXPECT_EQ(UnsupportedIds(), IdList{});
    EXPECT_EQ(documents.CreatedCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    , UnsupportedWithoutCatalogueTest,
    testing::Values(
        XmlCase{"EmptyFile", ""}, XmlCase{"NotWellFormed", "<ZOTDefault>"},
        XmlCase{"NoFunctions", "<ZOTDefault><CommonSettings/></ZOTDefault>"},
        XmlCase{"NegativeId",
                "<ZOTDefault><Functions>" + Function(3) + Function(-1) + "</Functions></ZOTDefault>"},
        XmlCase{"FunctionWithoutCommands",
                R"(<ZOTDefault><Functions><Function ID="3"><Display/></Function></Functions></ZOTDefault>)"}),
    CaseName<XmlCase>);

TEST_F(UnsupportedFunctionsTest, MissingDefaultsFileReturnsNone) {
    WriteBaseFunctions(BaseFunctions({1, 2}));
    EXPECT_EQ(UnsupportedIds(), IdList{});
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(UnsupportedFunctionsTest, DefaultsBusyAtLoadReturnNoneLater) {
    WriteBaseFunctions(BaseFunctions({1, 2}));
    WriteFunctions(Function(1));
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        EXPECT_EQ(UnsupportedIds(), IdList{});
    }
    EXPECT_EQ(UnsupportedIds(), IdList{});
}

TEST_F(UnsupportedFunctionsTest, FailedDomCreationReturnsNone) {
    WriteBaseFunctions(BaseFunctions({1, 2}));
    WriteFunctions(Function(1));
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_EQ(UnsupportedIds(), IdList{});
}

// ---- Without a base catalogue ----

class UnsupportedUnreadableFunctionTest : public UnsupportedFunctionsTest,
                                          public testing::WithParamInterface<XmlCase> {};

TEST_P(UnsupportedUnreadableFunctionTest, UnreadableBaseFunctionReturnsNone) {
    WriteBaseFunctions(BaseFunctions({1, 5}) + GetParam().xml + BaseFunction(3));
    WriteFunctions(Function(1));
    EXPECT_EQ(UnsupportedIds(), IdList{});
    EXPECT_EQ(Ids(GetFunctionBase()), (IdList{1, 5}));
}

INSTANTIATE_TEST_SUITE_P(, UnsupportedUnreadableFunctionTest, testing::ValuesIn(UnreadableFunctions()),
                         CaseName<XmlCase>);

TEST_F(UnsupportedFunctionsTest, FailedReadReturnsNone) {
    WriteBaseFunctions(BaseFunctions({1, 2}) + R"(<Function ID="3" Name="fails"><Commands/></Function>)");
    WriteFunctions(Function(1));
    {
        const UnreadableValue failure{L"fails"};
        EXPECT_EQ(UnsupportedIds(), IdList{});
    }
    EXPECT_EQ(UnsupportedIds(), (IdList{2, 3}));
}

TEST_F(UnsupportedFunctionsTest, MissingBaseCatalogueReturnsNone) {
    WriteFunctions(Function(1));
    EXPECT_EQ(UnsupportedIds(), IdList{});
}

class UnsupportedWithoutBaseTest : public UnsupportedFunctionsTest,
                                   public testing::WithParamInterface<XmlCase> {};

TEST_P(UnsupportedWithoutBaseTest, BaseCatalogueWithoutFunctionsReturnsNone) {
    WriteBase(GetParam().xml);
    WriteFunctions(Function(1));
    EXPECT_EQ(UnsupportedIds(), IdList{});
}

INSTANTIATE_TEST_SUITE_P(, UnsupportedWithoutBaseTest,
                         testing::Values(XmlCase{"EmptyFile", ""},
                                         XmlCase{"NotWellFormed", "<ZOTBase><Functions>"},
                                         XmlCase{"NoFunctions", "<ZOTBase/>"},
                                         XmlCase{"EmptySection", "<ZOTBase><Functions/></ZOTBase>"}),
                         CaseName<XmlCase>);

// ---- When the files are read ----

TEST_F(UnsupportedFunctionsTest, ChangedFilesAreIgnoredUntilReload) {
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {1}), (IdList{2, 3}));
    EXPECT_EQ(UnsupportedIn({1, 2, 3, 4}, {2}), (IdList{2, 3}));
    Unload();
    EXPECT_EQ(UnsupportedIds(), (IdList{1, 3, 4}));
}

TEST_F(UnsupportedFunctionsTest, LoadedCatalogueDecidesSupport) {
    WriteFunctions(Functions({1, 2}));
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(UnsupportedIn({1, 2, 3}, {}), IdList{3});
}

TEST_F(UnsupportedFunctionsTest, CallLoadsCatalogueForOtherExports) {
    EXPECT_EQ(UnsupportedIn({1}, {1, 2}), IdList{});
    WriteFunctions(Function(1));
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(UnsupportedFunctionsTest, RepeatedCallsCreateTwoDocuments) {
    WriteBaseFunctions(BaseFunctions({1, 2}));
    WriteFunctions(Function(1));
    DomDocuments documents{Dll().Handle()};
    EXPECT_EQ(UnsupportedIds(), IdList{2});
    EXPECT_EQ(UnsupportedIds(), IdList{2});
    EXPECT_EQ(documents.CreatedCount(), 2u);
}

TEST_F(UnsupportedFunctionsTest, NullCallbackCreatesNoDocument) {
    WriteBaseFunctions(BaseFunction(1));
    WriteFunctions(Function(2));
    DomDocuments documents{Dll().Handle()};
    EXPECT_FALSE(Dll().GetFunctionBaseUnSupported(nullptr));
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

TEST_F(UnsupportedFunctionsTest, EnumerationWritesNoFile) {
    const std::string base = BaseFunctions({1, 2});
    WriteBaseFunctions(base);
    WriteFunctions(Function(1));
    EXPECT_EQ(UnsupportedIds(), IdList{2});
    Unload();
    EXPECT_EQ(Content(installation.BaseFile()), "<ZOTBase><Functions>" + base + "</Functions></ZOTBase>");
    EXPECT_EQ(Defaults(), "<ZOTDefault><Functions>" + Function(1) + "</Functions></ZOTDefault>");
    EXPECT_FALSE(HasUserSettings());
}

// ---- OnItem ----

class UnsupportedOnItemTest : public UnsupportedFunctionsTest {
protected:
    void SetUp() override {
        WriteBaseFunctions(BaseFunctions({1, 2, 3}));
        WriteFunctions(Function(1));
    }

    template <class Action>
    IdList IdsWhile(Action&& atFirstItem) {
        IdList ids;
        auto callback = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
            if (ids.empty())
                atFirstItem();
            ids.push_back(record->id);
        });
        EXPECT_TRUE(Dll().GetFunctionBaseUnSupported(&callback));
        return ids;
    }
};

TEST_F(UnsupportedOnItemTest, CallbackCanEnumerateAgain) {
    EXPECT_EQ(IdsWhile([this] { EXPECT_EQ(UnsupportedIds(), (IdList{2, 3})); }), (IdList{2, 3}));
}

TEST_F(UnsupportedOnItemTest, ExitInOnItemDoesNotEndEnumeration) {
    EXPECT_EQ(IdsWhile([this] { EXPECT_TRUE(Dll().ZOTDamExit()); }), (IdList{2, 3}));
}

TEST_F(UnsupportedOnItemTest, ExceptionReachesClientWithoutHeapLeak) {
    UnsupportedIds();
    HeapAllocations::Track(Dll().Handle());
    auto fail = MakeCallback<IGetFunctionBaseCallback>([](const FunctionBaseRecord*) { throw 1; });
    EXPECT_THROW(Dll().GetFunctionBaseUnSupported(&fail), int);
    EXPECT_EQ(UnsupportedIds(), (IdList{2, 3}));
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

}  // namespace ZOTDam::Test
