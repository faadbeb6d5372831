// Tests of the effect of AddFunctionDefault on other exports: the loaded catalogue stays, and the next load
// reads the new one.
#include "support/FunctionDefaultsTest.h"

namespace ZOTDam::Test {

class ReplacedCatalogueTest : public FunctionDefaultsTest {
protected:
    // The first option and the string of each command, preceded by the command's id.
    using Commands = std::vector<std::pair<std::int32_t, std::pair<std::int32_t, std::wstring>>>;

    Commands GetCommandInfo() {
        Commands commands;
        auto collect = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord* command) {
            commands.push_back({command->id, {command->option1, command->specInfo1}});
        });
        EXPECT_TRUE(Dll().GetCommandInfo(&Balanced, &collect));
        return commands;
    }

    // Returns a record that can be loaded into the catalogue.
    static FunctionBaseRecord LoadableRecord(std::int32_t id) {
        FunctionBaseRecord record = RecordWithDefault(id, id, -id);
        record.displayNode = XmlTree::OfText(L"<Display/>").Root();
        return record;
    }
};

// ---- The catalogue of this process ----

TEST_F(ReplacedCatalogueTest, LoadedCatalogueIsKeptUntilLibraryIsReloaded) {
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    const std::vector<FunctionInfo> before = GetFunctionInfo();
    Replace({LoadableRecord(1)});
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    EXPECT_EQ(GetFunctionInfo(), before);
    Unload();
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
}

TEST_F(ReplacedCatalogueTest, NewFunctionsProvideDefaultsDespiteLoadedCatalogue) {
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    Replace({LoadableRecord(4)});
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{4, {4, -4}}}));
}

TEST_F(ReplacedCatalogueTest, FirstLoadAfterReplacementReadsNewFunctions) {
    Replace({LoadableRecord(1), LoadableRecord(2)});
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(ReplacedCatalogueTest, EmptyCatalogueIsLoadedAgainAfterReplacement) {
    WriteFunctions("");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
    Replace({LoadableRecord(1), LoadableRecord(2)});
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(ReplacedCatalogueTest, CatalogueWithoutFileIsLoadedAfterReplacement) {
    RemoveDefaults();
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    Replace({LoadableRecord(1)});
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
}

TEST_F(ReplacedCatalogueTest, UnloadableCatalogueIsLoadedAfterReplacement) {
    WriteFunctions("<Function/>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    Replace({LoadableRecord(1)});
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
}

TEST_F(ReplacedCatalogueTest, ReplacementOverwritesNewerFileWithLoadedDocument) {
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    WriteDefaults("<Newer><Functions/></Newer>");
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))});
}

TEST_F(ReplacedCatalogueTest, FunctionWithoutDisplayNodeMakesCatalogueUnavailable) {
    Replace({Record(1)});
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

// ---- Ids ----

TEST_F(ReplacedCatalogueTest, NegativeIdIsWrittenButMakesCatalogueUnavailable) {
    Replace({LoadableRecord(1), LoadableRecord(-2)});
    EXPECT_NE(Defaults().find("<Function ID=\"-2\" "), std::string::npos);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(ReplacedCatalogueTest, DuplicateIdsAreWrittenAndFirstIsLoaded) {
    FunctionBaseRecord second = LoadableRecord(1);
    second.type = 2;
    Replace({LoadableRecord(1), second});
    EXPECT_NE(Defaults().find(R"(<Function ID="1" Flag="0" Type="0")"), std::string::npos);
    EXPECT_NE(Defaults().find(R"(<Function ID="1" Flag="0" Type="2")"), std::string::npos);
    EXPECT_EQ(GetFunctionInfo(), (std::vector<FunctionInfo>{{1, 0, 0, L"", L"", {}, {}}}));
}

// ---- Number of records ----

TEST_F(ReplacedCatalogueTest, ThousandFunctionsArePreserved) {
    FunctionBaseHolder holder;
    Params expected;
    for (std::int32_t id = 0; id < 1000; ++id) {
        holder.records.push_back(LoadableRecord(id));
        expected.push_back({id, {id, -id}});
    }
    Replace(holder);
    Unload();
    EXPECT_EQ(Dll().GetFuncCount(), 1000u);
    EXPECT_EQ(GetParameterDefault(Balanced), expected);
}

TEST_F(ReplacedCatalogueTest, ThousandCommandsOfOneFunctionArePreserved) {
    FunctionBaseRecord record = LoadableRecord(1);
    record.commandFamilies.clear();
    for (std::int32_t id = 0; id < 1000; ++id)
        record.commandFamilies.push_back(FamilyWith({id}));
    Replace({record});
    Unload();
    const Commands commands = GetCommandInfo();
    ASSERT_EQ(commands.size(), 1000u);
    for (std::int32_t id = 0; id < 1000; ++id)
        EXPECT_EQ(commands[static_cast<std::size_t>(id)].first, id);
}

// ---- Strings ----

class StringRoundTripTest : public ReplacedCatalogueTest {
protected:
    // Writes a function with the given string in all its fields. Expects the string from a newly loaded
    // library.
    void ExpectRoundTrip(const std::wstring& text) {
        FunctionBaseRecord record = LoadableRecord(1);
        Assign(record.name, text);
        Assign(record.group, text);
        record.commandFamilies.begin()->commandItems.push_back(Command(2, text));
        Replace({record});
        Unload();
        const std::vector<FunctionInfo> infos = GetFunctionInfo();
        ASSERT_EQ(infos.size(), 1u);
        EXPECT_EQ(infos.front().name, text);
        EXPECT_EQ(infos.front().group, text);
        EXPECT_EQ(GetCommandInfo(), (Commands{{1, {0, L""}}, {2, {0, text}}}));
    }
};

TEST_F(StringRoundTripTest, MarkupIsPreserved) {
    ExpectRoundTrip(L"<a b='c' d=\"e\">&amp;&#65;&unknown;]]></a>");
}

TEST_F(StringRoundTripTest, WhiteSpaceIsPreserved) {
    ExpectRoundTrip(L" \t\r\n a  b\n\n\r\t ");
}

TEST_F(StringRoundTripTest, CharactersOfEveryScriptArePreserved) {
    ExpectRoundTrip(L"\xe4\x20ac\x4e2d\xd7ff\xe000\xfffd\xd83d\xde00\xdbff\xdfff");
}

TEST_F(StringRoundTripTest, StringOfMaximumLengthIsPreserved) {
    ExpectRoundTrip(std::wstring(259, L'x'));
    ExpectRoundTrip(std::wstring(259, L'<'));
}

TEST_F(StringRoundTripTest, FormatSpecifiersArePreserved) {
    ExpectRoundTrip(L"%s%d%n%%");
}

// ---- Round trip from the base catalogue ----

class BaseCatalogueRoundTripTest : public ReplacedCatalogueTest {
protected:
    BaseCatalogueRoundTripTest() {
        WriteBase(R"(<Base><Functions>
            <Function ID="10" Type="1" Flag="2" Name="Ten" Group="First">
                <Display>
                    <AC><DisplayItem Option="100" Label="A"/><DisplayItem Option="101" Label="B"/></AC>
                    <DC><DisplayItem Option="102" Label="C"/></DC>
                </Display>
                <Default ACParamIndex="1" DCParamIndex="0"/>
                <Commands>
                    <CommandFamily>
                        <CommandItem ID="1" Event="2" State="3" ParamIndex1="0" ParamIndex2="1" Flag="4"
                            SpecInfo1="x"/>
                        <CheckExistItem CheckFlag="1" Param1="p"/>
                    </CommandFamily>
                    <CommandFamily><CommandItem ID="2" ParamIndex1="1" SpecInfo1="y"/></CommandFamily>
                </Commands>
            </Function>
            <Function ID="20" Name="Twenty"><Display/><Default ACParamIndex="0" DCParamIndex="0"/>
                <Commands><CommandFamily><CheckExistItem/></CommandFamily></Commands></Function>
            <Function ID="30" Name="Thirty"><Display/><Default ACParamIndex="0" DCParamIndex="0"/>
                <Commands><CommandFamily><CommandItem ID="3"/></CommandFamily></Commands></Function>
            <Function ID="5" Type="6" Flag="7" Name="Five" Group="Second">
                <Display><AC><DisplayItem Option="500" Label="D"/></AC></Display>
                <Default ACParamIndex="3" DCParamIndex="4">
                    <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="0"
                        DCParamIndex="9"/>
                </Default>
                <Commands><CommandFamily><CommandItem ID="4" ParamIndex1="0" SpecInfo1="z"/></CommandFamily>
                </Commands>
            </Function>
        </Functions></Base>)");
        AdoptAllButThirty();
    }

    std::vector<std::int32_t> UnsupportedIds() {
        const FunctionBaseHolder unsupported = Unsupported();
        std::vector<std::int32_t> ids;
        for (const FunctionBaseRecord& record : unsupported.records)
            ids.push_back(record.id);
        return ids;
    }

    void AdoptAllButThirty() {
        FunctionBaseHolder chosen = Base();
        chosen.records.remove_if([](const FunctionBaseRecord& record) { return record.id == 30; });
        EXPECT_EQ(chosen.records.size(), 3u);
        Replace(chosen);
        Unload();
    }
};

TEST_F(BaseCatalogueRoundTripTest, FunctionInfoMatchesBaseCatalogue) {
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(GetFunctionInfo(), (std::vector<FunctionInfo>{
                                     {5, 6, 7, L"Five", L"Second", {{500, L"D"}}, {}},
                                     {10, 1, 2, L"Ten", L"First", {{100, L"A"}, {101, L"B"}}, {{102, L"C"}}},
                                 }));
}

TEST_F(BaseCatalogueRoundTripTest, DefaultsMatchBaseCatalogue) {
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{5, {0, 9}}, {10, {1, 0}}}));
    EXPECT_EQ(GetParameterDefault(HighPerformance), (Params{{5, {3, 4}}, {10, {1, 0}}}));
    EXPECT_EQ(GetParameter(HighPerformance), (Params{{5, {3, 4}}, {10, {1, 0}}}));
}

TEST_F(BaseCatalogueRoundTripTest, CommandInfoMatchesBaseCatalogue) {
    EXPECT_EQ(GetCommandInfo(), (Commands{{4, {500, L"z"}}, {1, {101, L"x"}}, {2, {102, L"y"}}}));
}

TEST_F(BaseCatalogueRoundTripTest, DroppedAndOmittedFunctionsStayUnsupported) {
    EXPECT_EQ(UnsupportedIds(), (std::vector<std::int32_t>{20, 30}));
}

TEST_F(BaseCatalogueRoundTripTest, WrittenUnsupportedFunctionIsSupportedAfterReload) {
    Replace(Unsupported());
    EXPECT_EQ(UnsupportedIds(), (std::vector<std::int32_t>{20, 30}));
    Unload();
    EXPECT_EQ(UnsupportedIds(), (std::vector<std::int32_t>{10, 20, 5}));
}

}  // namespace ZOTDam::Test
