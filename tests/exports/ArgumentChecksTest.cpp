// The results of the exports for invalid arguments, for the all-zero scheme, and without any data.
#include <windows.h>

#include "support/ClientMap.h"
#include "support/DataFiles.h"
#include "support/DomDocuments.h"
#include "support/ExportTest.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

constexpr GUID AllZero = {};
constexpr char AllZeroText[] = "00000000-0000-0000-0000-000000000000";

class ArgumentChecksTest : public ExportTest {
protected:
    bool HasUserFile() const { return std::filesystem::exists(installation.UserFile()); }

    Text buffer = L"untouched";
};

// ---- Null callbacks ----

// Expects that a rejected call creates no document.
class NullCallbackTest : public ArgumentChecksTest {
protected:
    void SetUp() override {
        WriteDefaults(TwoFunctions);
        documents.emplace(Dll().Handle());
    }
    void TearDown() override {
        EXPECT_EQ(documents->CreatedCount(), 0u);
        EXPECT_FALSE(HasUserFile());
        documents.reset();
    }

private:
    std::optional<DomDocuments> documents;
};

TEST_F(NullCallbackTest, GetFunctionBaseRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetFunctionBase(nullptr));
}

TEST_F(NullCallbackTest, GetFunctionBaseUnSupportedRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetFunctionBaseUnSupported(nullptr));
}

TEST_F(NullCallbackTest, GetFunctionInfoRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetFunctionInfo(nullptr));
}

TEST_F(NullCallbackTest, GetParameterRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetParameter(&Balanced, nullptr));
}

TEST_F(NullCallbackTest, GetParameterRejectsNullCallbackForZeroScheme) {
    EXPECT_FALSE(Dll().GetParameter(&AllZero, nullptr));
}

TEST_F(NullCallbackTest, GetParameterDefaultRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetParameterDefault(&Balanced, nullptr));
}

TEST_F(NullCallbackTest, GetParameterDefaultRejectsNullForZeroScheme) {
    EXPECT_FALSE(Dll().GetParameterDefault(&AllZero, nullptr));
}

TEST_F(NullCallbackTest, GetCommandInfoRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetCommandInfo(&Balanced, nullptr));
}

TEST_F(NullCallbackTest, GetCommandInfoRejectsNullForZeroScheme) {
    EXPECT_FALSE(Dll().GetCommandInfo(&AllZero, nullptr));
}

TEST_F(NullCallbackTest, GetSpecSchemeRejectsNullCallback) {
    EXPECT_FALSE(Dll().GetSpecScheme(nullptr));
}

// ---- Null strings ----

TEST_F(ArgumentChecksTest, NullSettingNameFailsAndLeavesBufferUnchanged) {
    WriteUserSettings(R"(<R><CommonSettings Name="value"/></R>)");
    EXPECT_FALSE(Dll().GetCommonSetting(nullptr, buffer));
    EXPECT_STREQ(buffer, L"untouched");
    EXPECT_FALSE(Dll().GetCommonSetting(nullptr, nullptr));
}

TEST_F(ArgumentChecksTest, MissingSettingFailsAndLeavesBufferUnchanged) {
    WriteUserSettings(R"(<R><CommonSettings Other="value"/></R>)");
    EXPECT_FALSE(Dll().GetCommonSetting(L"Name", buffer));
    EXPECT_STREQ(buffer, L"untouched");
}

TEST_F(ArgumentChecksTest, MissingSettingFailsWithNullBuffer) {
    EXPECT_FALSE(Dll().GetCommonSetting(L"Name", nullptr));
}

TEST_F(ArgumentChecksTest, SetCommonSettingRejectsNullNameOrValue) {
    EXPECT_FALSE(Dll().SetCommonSetting(nullptr, L"value"));
    EXPECT_FALSE(Dll().SetCommonSetting(L"Name", nullptr));
    EXPECT_FALSE(Dll().SetCommonSetting(nullptr, nullptr));
    EXPECT_FALSE(HasUserFile());
}

TEST_F(ArgumentChecksTest, InitCommonSettingFailsWithoutBaseCatalogue) {
    EXPECT_FALSE(Dll().InitCommonSetting());
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
    Unload();
    WriteBase("<ZOTBase><CommonSettings/></ZOTBase>");
    EXPECT_TRUE(Dll().InitCommonSetting());
}

// ---- Holders ----

TEST_F(ArgumentChecksTest, SetParameterRejectsNullHolder) {
    EXPECT_FALSE(Dll().SetParameter(&Balanced, nullptr));
    EXPECT_FALSE(Dll().SetParameter(&AllZero, nullptr));
    EXPECT_FALSE(HasUserFile());
}

TEST_F(ArgumentChecksTest, SetParameterRejectsEmptyMap) {
    EXPECT_FALSE(SetParameter(Balanced, {}));
    EXPECT_FALSE(HasUserFile());
}

TEST_F(ArgumentChecksTest, SetParameterRejectsEmptyMapForZeroScheme) {
    EXPECT_FALSE(SetParameter(AllZero, {}));
}

TEST_F(ArgumentChecksTest, SetParameterDetectsEmptyMapByCountAlone) {
    ClientMap map{{{1, {5, 6}}}};
    EXPECT_FALSE(Dll().SetParameter(&Balanced, map.WithCount(0)));
    EXPECT_TRUE(Dll().SetParameter(&AllZero, map.WithCount(1)));
    ClientMap withoutNodes{{}};
    EXPECT_TRUE(Dll().SetParameter(&AllZero, withoutNodes.WithCount(1)));
    EXPECT_FALSE(HasUserFile());
}

// A holder for AddFunctionDefault with a list that the test links itself.
struct RawFunctionBaseHolder {
    void* clientWord;
    ListLinks* head;
    std::uint64_t count;

    const FunctionBaseHolder* get() const noexcept {
        return reinterpret_cast<const FunctionBaseHolder*>(this);
    }
};

static_assert(sizeof(RawFunctionBaseHolder) == sizeof(FunctionBaseHolder));

TEST_F(ArgumentChecksTest, AddFunctionDefaultRejectsNullHolder) {
    EXPECT_FALSE(Dll().AddFunctionDefault(nullptr));
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(ArgumentChecksTest, AddFunctionDefaultRejectsEmptyList) {
    WriteDefaults(TwoFunctions);
    const FunctionBaseHolder holder;
    EXPECT_FALSE(Dll().AddFunctionDefault(&holder));
    EXPECT_EQ(Defaults(), TwoFunctions);
}

TEST_F(ArgumentChecksTest, AddFunctionDefaultAcceptsOneRecord) {
    FunctionBaseHolder holder;
    holder.records.push_back({});
    EXPECT_TRUE(Dll().AddFunctionDefault(&holder));
}

TEST_F(ArgumentChecksTest, AddFunctionDefaultDetectsEmptyListByCount) {
    ListLinks sentinel;
    ListLinks node = {&sentinel, &sentinel};
    sentinel = {&node, &node};
    EXPECT_FALSE(Dll().AddFunctionDefault(RawFunctionBaseHolder{nullptr, &sentinel, 0}.get()));
    sentinel = {&sentinel, &sentinel};
    EXPECT_TRUE(Dll().AddFunctionDefault(RawFunctionBaseHolder{nullptr, &sentinel, 1}.get()));
}

// ---- The all-zero scheme ----

class AllZeroSchemeTest : public ArgumentChecksTest {
protected:
    void SetUp() override { WriteDefaults(TwoFunctions); }
};

TEST_F(AllZeroSchemeTest, ZeroSchemeHasNoParametersAndStaysUnsaved) {
    EXPECT_EQ(GetParameter(AllZero), Params{});
    EXPECT_FALSE(HasUserFile());
}

TEST_F(AllZeroSchemeTest, StoredZeroSchemeHasNoParameters) {
    WriteUserSettings(OldUserFile(OldScheme(AllZeroText, OldFunction(1, 5, 6))));
    EXPECT_EQ(GetParameter(AllZero), Params{});
}

TEST_F(AllZeroSchemeTest, ZeroSchemeHasNoDefaultParameters) {
    EXPECT_EQ(GetParameterDefault(AllZero), Params{});
}

TEST_F(AllZeroSchemeTest, ZeroSchemeHasNoCommands) {
    int items = 0;
    auto count = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord*) { ++items; });
    EXPECT_TRUE(Dll().GetCommandInfo(&AllZero, &count));
    EXPECT_EQ(items, 0);
    EXPECT_FALSE(HasUserFile());
}

TEST_F(AllZeroSchemeTest, SetParameterForZeroSchemeSucceedsWithoutSaving) {
    EXPECT_TRUE(SetParameter(AllZero, {{1, {5, 6}}}));
    EXPECT_FALSE(HasUserFile());
    const std::string file = OldUserFile(OldScheme(AllZeroText, OldFunction(1, 2, 3)));
    WriteUserSettings(file);
    EXPECT_TRUE(SetParameter(AllZero, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(AllZeroSchemeTest, ZeroSchemeCallsCreateNoDocument) {
    DomDocuments documents{Dll().Handle()};
    GetParameter(AllZero);
    GetParameterDefault(AllZero);
    SetParameter(AllZero, {{1, {5, 6}}});
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

TEST_F(AllZeroSchemeTest, ZeroSchemeBecomesCurrentAndIsStored) {
    EXPECT_TRUE(Dll().TEVGetParam(&AllZero));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewUserFile(NewScheme(AllZeroText, NewFunction(1, 2, 3) + NewFunction(2, 4, 5)))});
}

TEST_F(AllZeroSchemeTest, HalfZeroGuidIsOrdinaryScheme) {
    constexpr GUID lowHalfOnly = {1, 0, 0, {}};
    constexpr GUID highHalfOnly = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
    for (const GUID& scheme : {lowHalfOnly, highHalfOnly}) {
        EXPECT_EQ(GetParameterDefault(scheme), (Params{{1, {2, 3}}, {2, {4, 5}}}));
        EXPECT_TRUE(SetParameter(scheme, {{1, {5, 6}}}));
        EXPECT_EQ(GetParameter(scheme), (Params{{1, {5, 6}}, {2, {4, 5}}}));
    }
    EXPECT_NE(UserSettings().find("\"00000001-0000-0000-0000-000000000000\""), std::string::npos);
    EXPECT_NE(UserSettings().find("\"00000000-0000-0000-0000-000000000001\""), std::string::npos);
}

// ---- Nothing to enumerate ----

TEST_F(ArgumentChecksTest, EnumerationsWithoutFilesReturnTrueWithoutItems) {
    int items = 0;
    auto bases = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord*) { ++items; });
    auto functions =
        MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t, const FunctionRecord*) { ++items; });
    auto commands = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord*) { ++items; });
    auto schemes = MakeCallback<IGetSpecSchemeCallback>([&](const SpecSchemeRecord*) { ++items; });
    EXPECT_TRUE(Dll().GetFunctionBase(&bases));
    EXPECT_TRUE(Dll().GetFunctionBaseUnSupported(&bases));
    EXPECT_TRUE(Dll().GetFunctionInfo(&functions));
    EXPECT_TRUE(Dll().GetCommandInfo(&Balanced, &commands));
    EXPECT_TRUE(Dll().GetSpecScheme(&schemes));
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_EQ(GetParameterDefault(Balanced), Params{});
    EXPECT_EQ(items, 0);
}

}  // namespace ZOTDam::Test
