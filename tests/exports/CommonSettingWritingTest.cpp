// Tests of SetCommonSetting, which loads the user settings file, changes a setting and saves the file.
#include <thread>

#include "support/CommonSettingsTest.h"
#include "support/DataFiles.h"
#include "support/DomDocuments.h"
#include "support/DomMethods.h"
#include "support/MarkerCalls.h"
#include "support/SaveCalls.h"
#include "support/UnescapedSaves.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

constexpr wchar_t ReadSetting[] = L"read-setting";
constexpr wchar_t StoreSetting[] = L"store-setting";

const RegisterRole ReadSettingRole{
    ReadSetting, [](const std::vector<std::wstring>& arguments) {
        const Library dll;
        Text value = {};
        return dll.GetCommonSetting(arguments.at(0).c_str(), value) && arguments.at(1) == value ? 0 : 1;
    }};

const RegisterRole StoreSettingRole{
    StoreSetting, [](const std::vector<std::wstring>& arguments) {
        const Library dll;
        return dll.SetCommonSetting(arguments.at(0).c_str(), arguments.at(1).c_str()) ? 0 : 1;
    }};

// The section that a further use adds if the file does not exist yet, because it looks for schemes to clear.
constexpr char SecondUse[] = "<PowerSchemes/>";

std::string NewFileWith(const std::string& settings, const std::string& further = {}) {
    return "<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><CommonSettings " + settings + "/>" +
           further + "</OrloPowerCfg>\n";
}

}  // namespace

class CommonSettingWritingTest : public CommonSettingsTest {
protected:
    // Unloads the library and reads the stored value with a newly loaded one.
    std::optional<std::wstring> ReloadAndRead(const std::wstring& name) {
        Unload();
        return Setting(name);
    }

    void ExpectRejected(const std::wstring& name, const std::wstring& value) {
        EXPECT_FALSE(Set(name, value));
        EXPECT_EQ(UserSettings(), FileWith("Old=\"1\""));
        EXPECT_EQ(Setting(L"Old"), L"1");
    }
};

// ---- The file ----

TEST_F(CommonSettingWritingTest, FirstWriteCreatesFileWithRootAndSection) {
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="value")")});
}

TEST_F(CommonSettingWritingTest, MissingSectionIsAppendedToRoot) {
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3))));
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg><PowerSchemes>" + OldScheme(BalancedText, OldFunction(1, 2, 3)) +
                       "</PowerSchemes><CommonSettings Name=\"value\"/></OrloPowerCfg>\n"});
}

TEST_F(CommonSettingWritingTest, NewSettingIsAppendedToOthers) {
    WriteUserSettings("<R><CommonSettings A=\"1\" B=\"2\"/></R>");
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), SavedXml{"<R><CommonSettings A=\"1\" B=\"2\" Name=\"value\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, ExistingSettingIsReplacedInPlace) {
    WriteUserSettings("<R><CommonSettings A=\"1\" Name=\"old\" B=\"2\"/></R>");
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ(UserSettings(), SavedXml{"<R><CommonSettings A=\"1\" Name=\"new\" B=\"2\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, SettingInDifferentCaseIsNotReplaced) {
    WriteUserSettings("<R><CommonSettings NAME=\"1\" name=\"2\"/></R>");
    EXPECT_TRUE(Set(L"Name", L"3"));
    EXPECT_EQ(UserSettings(), SavedXml{"<R><CommonSettings NAME=\"1\" name=\"2\" Name=\"3\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, AttributeInNamespaceIsNotReplaced) {
    WriteUserSettings(R"(<R xmlns:x="urn:x"><CommonSettings x:Name="1"/></R>)");
    EXPECT_TRUE(Set(L"Name", L"2"));
    EXPECT_EQ(UserSettings(),
              SavedXml{"<R xmlns:x=\"urn:x\"><CommonSettings x:Name=\"1\" Name=\"2\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, OnlyFirstSectionIsWritten) {
    WriteUserSettings(R"(<R><CommonSettings/><CommonSettings Name="1"/></R>)");
    EXPECT_TRUE(Set(L"Name", L"2"));
    EXPECT_EQ(UserSettings(), SavedXml{"<R><CommonSettings Name=\"2\"/><CommonSettings Name=\"1\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, SectionInNamespaceIsNotUsed) {
    WriteUserSettings(R"(<R><CommonSettings xmlns="urn:x"/></R>)");
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(),
              SavedXml{"<R><CommonSettings xmlns=\"urn:x\"/><CommonSettings Name=\"value\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, WriteKeepsAllOtherContent) {
    const std::string before =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--head-->\n<Any A=\"a\"><Other/>"
        "<PowerSchemes>" +
        OldScheme(BalancedText, OldFunction(1, 2, 3)) + "</PowerSchemes><CommonSettings B=\"&lt;b&gt;\" ";
    const std::string after =
        "><Inner C=\"c\"/>text<![CDATA[d < e]]><!--note--></CommonSettings><Last/></Any>\n<!--tail-->\n";
    WriteUserSettings(before + "Name=\"old\"" + after);
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ(UserSettings(), SavedXml{before + "Name=\"new\"" + after});
}

TEST_F(CommonSettingWritingTest, WriteLeavesOtherFilesUnchanged) {
    WriteDefaultValues(R"(Name="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_TRUE(Set(L"Name", L"user"));
    Unload();
    EXPECT_EQ(Defaults(), FileWith(R"(Name="default")"));
    EXPECT_EQ(Base(), FileWith(R"(Name="base")"));
}

TEST_F(CommonSettingWritingTest, WriteAppliesToCurrentFileContent) {
    EXPECT_TRUE(Set(L"A", L"1"));
    WriteUserSettings("<R><CommonSettings B=\"2\"/></R>");
    EXPECT_TRUE(Set(L"C", L"3"));
    EXPECT_EQ(UserSettings(), SavedXml{"<R><CommonSettings B=\"2\" C=\"3\"/></R>\n"});
}

TEST_F(CommonSettingWritingTest, NotWellFormedFileIsCopiedAndReplaced) {
    WriteUserSettings("<broken");
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="value")")});
    EXPECT_EQ(Content(UnreadableCopyOf(installation.UserFile())), "<broken");
}

TEST_F(CommonSettingWritingTest, SettingsAndSchemesShareOneFile) {
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {7, 8}}}));
    EXPECT_EQ(Setting(L"Name"), L"value");
    EXPECT_NE(UserSettings().find(OldScheme(BalancedText, OldFunction(1, 7, 8))), std::string::npos);
}

// ---- Reading back ----

TEST_F(CommonSettingWritingTest, StoredSettingIsReadImmediately) {
    EXPECT_TRUE(Set(L"Name", L"1"));
    EXPECT_EQ(Setting(L"Name"), L"1");
    EXPECT_TRUE(Set(L"Name", L"2"));
    EXPECT_EQ(Setting(L"Name"), L"2");
}

TEST_F(CommonSettingWritingTest, ReloadedLibraryReadsStoredSetting) {
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(ReloadAndRead(L"Name"), L"value");
}

TEST_F(CommonSettingWritingTest, AnotherProcessReadsStoredSetting) {
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ((SecondProcess{ReadSetting, {L"Name", L"value"}}.WaitForExit()), 0u);
    EXPECT_EQ((SecondProcess{ReadSetting, {L"Name", L"other"}}.WaitForExit()), 1u);
}

TEST_F(CommonSettingWritingTest, NextReadSeesSettingOfAnotherProcess) {
    EXPECT_TRUE(Set(L"Name", L"mine"));
    EXPECT_EQ((SecondProcess{StoreSetting, {L"Name", L"yours"}}.WaitForExit()), 0u);
    EXPECT_EQ(Setting(L"Name"), L"yours");
}

TEST_F(CommonSettingWritingTest, NextWriteKeepsSettingOfAnotherProcess) {
    EXPECT_TRUE(Set(L"Mine", L"1"));
    EXPECT_EQ((SecondProcess{StoreSetting, {L"Yours", L"2"}}.WaitForExit()), 0u);
    EXPECT_TRUE(Set(L"Mine", L"3"));
    EXPECT_EQ(Setting(L"Mine"), L"3");
    EXPECT_EQ(Setting(L"Yours"), L"2");
}

TEST_F(CommonSettingWritingTest, StoredSettingHidesDefault) {
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_TRUE(Set(L"Name", L"user"));
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingWritingTest, EmptyStoredSettingHidesDefault) {
    WriteDefaultValues(R"(Name="default")");
    EXPECT_TRUE(Set(L"Name", L""));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="")")});
    EXPECT_EQ(ReloadAndRead(L"Name"), L"");
}

TEST_F(CommonSettingWritingTest, ValueOf259UnitsIsReadBack) {
    EXPECT_TRUE(Set(L"Name", std::wstring(259, L'x')));
    EXPECT_EQ(ReloadAndRead(L"Name"), std::wstring(259, L'x'));
}

TEST_F(CommonSettingWritingTest, LongerValueIsStoredButNotRead) {
    WriteDefaultValues(R"(Name="default")");
    for (const std::size_t length : {260, 5000, 100000}) {
        EXPECT_TRUE(Set(L"Name", std::wstring(length, L'x')));
        EXPECT_EQ(UserSettings().find("Name=\"" + std::string(length, 'x') + "\""),
                  UserSettings().find("Name="));
        EXPECT_EQ(ReloadAndRead(L"Name"), L"default");
    }
}

TEST_F(CommonSettingWritingTest, HundredSettingsAreReadBack) {
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(Set(L"Name" + std::to_wstring(i), std::to_wstring(i)));
    Unload();
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(Setting(L"Name" + std::to_wstring(i)), std::to_wstring(i));
}

// ---- Names ----

TEST_F(CommonSettingWritingTest, XmlNamesWithoutColonAreAccepted) {
    const std::wstring names[] = {L"a",
                                  L"Z",
                                  L"_",
                                  L"_1",
                                  L"a-b.c_d",
                                  L"xml",
                                  L"XMLNS",
                                  L"xmlns1",
                                  L"Xmlns",
                                  L"\xe9t\xe9",
                                  L"\x4e2d",
                                  L"\xc0\xd6\xd8\xf6\xf8\x2c1",
                                  L"\x386\x3f3\x401\x1ffc",
                                  L"\x2126\x2182\x3007\x3105",
                                  L"\x4e00\x9fa5\xac00\xd7a3",
                                  L"a\xb7\x300\x345\x660\x20d0\x30fe",
                                  std::wstring(5000, L'n')};
    for (const std::wstring& name : names)
        EXPECT_TRUE(Set(name, name)) << testing::PrintToString(std::wstring{name});
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
    Unload();
    for (const std::wstring& name : names)
        EXPECT_EQ(Setting(name), name.size() < TextCapacity ? std::optional{name} : Missing)
            << testing::PrintToString(std::wstring{name});
}

TEST_F(CommonSettingWritingTest, InvalidXmlNamesAreRejected) {
    WriteUserValues(R"(Old="1")");
    for (const wchar_t* const name :
         {L"",   L" ",  L"1",  L"1a",  L"-a", L".a", L"a b", L" a", L"a ", L"a\t",  L"a\n",   L"a<",
          L"a>", L"a&", L"a'", L"a\"", L"a=", L"a/", L"a?",  L"a!", L"a@", L"a$",   L"a(",    L"a+",
          L"a,", L"a;", L"a[", L"a\\", L"a^", L"a`", L"a{",  L"a|", L"a~", L"\xb7", L"\x300", L"\x203f"})
        ExpectRejected(name, L"value");
}

TEST_F(CommonSettingWritingTest, InvalidNameCharactersAreRejected) {
    WriteUserValues(R"(Old="1")");
    for (const wchar_t character :
         {L'\x1',    L'\x1f',   L'\x7f',   L'\xa0',   L'\xbf',   L'\xd7',   L'\xf7',   L'\x37e',
          L'\x2000', L'\x200b', L'\x200e', L'\x203e', L'\x2041', L'\x206f', L'\x2190', L'\x2bff',
          L'\x2ff0', L'\x3000', L'\xe000', L'\xf8ff', L'\xfdd0', L'\xfdef', L'\xfffe', L'\xffff'}) {
        ExpectRejected(std::wstring{character}, L"value");
        ExpectRejected(std::wstring{L'a', character}, L"value");
    }
}

// Characters that the fifth edition of XML 1.0 has added. MSXML follows the fourth edition.
TEST_F(CommonSettingWritingTest, NameCharactersOfLaterEditionAreRejected) {
    WriteUserValues(R"(Old="1")");
    for (const wchar_t* const name :
         {L"\x132", L"\x2ff", L"\x370", L"\x37f", L"\x1fff", L"\x200c", L"\x218f", L"\x2c00", L"\x3001",
          L"\x3400", L"\xd7ff", L"\xf900", L"\xfffd", L"\xd800\xdc00", L"a\x36f", L"a\x203f"})
        ExpectRejected(name, L"value");
}

TEST_F(CommonSettingWritingTest, NamesWithColonAreRejected) {
    WriteUserValues(R"(xmlns:p="urn:p" Old="1")");
    const std::string file = UserSettings();
    for (const wchar_t* const name :
         {L":", L":a", L"a:", L"a:b", L"p:a", L"xml:space", L"xmlns:a", L"a:b:c"}) {
        EXPECT_FALSE(Set(name, L"value"));
        EXPECT_EQ(UserSettings(), file);
    }
}

TEST_F(CommonSettingWritingTest, NamespaceDeclarationNameIsRejected) {
    WriteUserValues(R"(Old="1")");
    ExpectRejected(L"xmlns", L"urn:x");
    ExpectRejected(L"xmlns", L"");
    ExpectRejected(L"xmlns:a", L"urn:x");
}

TEST_F(CommonSettingWritingTest, NamesWithInvalidSurrogatesAreRejected) {
    WriteUserValues(R"(Old="1")");
    for (const wchar_t* const name :
         {L"\xd83d", L"\xde00", L"a\xd83d", L"a\xde00", L"\xde00\xd83d", L"\xd83d\x61", L"\xd83d\xd83d\xde00",
          L"\xdb80\xdc00", L"a\xdbff\xdfff"})
        ExpectRejected(name, L"value");
}

// ---- Values ----

TEST_F(CommonSettingWritingTest, ValuesValidInXmlAreReadBack) {
    const std::wstring values[] = {L" ",
                                   L"  a  ",
                                   L"\t",
                                   L"\n",
                                   L"\r",
                                   L"\r\n",
                                   L"\ta\nb\rc\r\nd\t",
                                   L"\"",
                                   L"'",
                                   L"<",
                                   L"&",
                                   L">",
                                   L"]]>",
                                   L"<&\">'",
                                   L"&amp;",
                                   L"&#65;",
                                   L"<!--x-->",
                                   L"a=\"b\"",
                                   L"%20",
                                   L"\\",
                                   L"\x7f\x80\x9f\xa0",
                                   L"\xe4\x20ac\x4e2d",
                                   L"\xd7ff\xe000\xfffd",
                                   L"\x2028\xfeff",
                                   L"\xd83d\xde00",
                                   L"\xd800\xdc00\xdbff\xdfff",
                                   L"\xd83f\xdffe"};
    for (int i = 0; const std::wstring& value : values)
        EXPECT_TRUE(Set(L"V" + std::to_wstring(i++), value)) << i;
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
    Unload();
    for (int i = 0; const std::wstring& value : values)
        EXPECT_EQ(Setting(L"V" + std::to_wstring(i++)), value) << i;
}

// ---- Values that a DOM may save in a form that a load reads differently ----

class UnescapedSaveTest : public CommonSettingWritingTest, public testing::WithParamInterface<wchar_t> {
protected:
    static std::wstring Value() { return {L'a', GetParam(), L'b'}; }
    static std::string Reference() { return "&#" + std::to_string(GetParam()) + ";"; }
};

INSTANTIATE_TEST_SUITE_P(Tab, UnescapedSaveTest, testing::Values(L'\t'));
INSTANTIATE_TEST_SUITE_P(LineFeed, UnescapedSaveTest, testing::Values(L'\n'));
INSTANTIATE_TEST_SUITE_P(CarriageReturn, UnescapedSaveTest, testing::Values(L'\r'));

TEST_P(UnescapedSaveTest, ValueThatSaveChangesIsNotStored) {
    WriteUserValues(R"(Name="old")");
    const std::string file = UserSettings();
    const UnescapedSaves saves;
    EXPECT_FALSE(Set(L"Name", Value()));
    EXPECT_EQ(UserSettings(), file);
    EXPECT_EQ(Setting(L"Name"), L"old");
}

TEST_P(UnescapedSaveTest, SaveThatChangesLoadedValueFails) {
    WriteUserValues("Name=\"a" + Reference() + "b\"");
    const std::string file = UserSettings();
    const UnescapedSaves saves;
    EXPECT_FALSE(Set(L"Other", L"value"));
    EXPECT_EQ(UserSettings(), file);
    EXPECT_EQ(Setting(L"Name"), Value());
}

TEST_P(UnescapedSaveTest, InitThatChangesValueFails) {
    WriteBaseValues("Name=\"a" + Reference() + "b\"");
    WriteDefaultValues(R"(Name="old")");
    const std::string file = Defaults();
    const UnescapedSaves saves;
    EXPECT_FALSE(Dll().InitCommonSetting());
    EXPECT_EQ(Defaults(), file);
}

TEST_P(UnescapedSaveTest, ValueIsNotStoredWithoutMemoryForCheck) {
    WriteUserValues(R"(Name="old")");
    const std::string file = UserSettings();
    EXPECT_EQ(Setting(L"Name"), L"old");
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_FALSE(Set(L"Name", Value()));
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(CommonSettingWritingTest, OrdinaryValuesAreSavedWithoutCheck) {
    WriteUserValues(R"(Old="a b &lt; c")");
    DomDocuments documents{Dll().Handle()};
    EXPECT_TRUE(Set(L"Name", L"a & b"));
    EXPECT_EQ(documents.CreatedCount(), 1u);
}

TEST_F(CommonSettingWritingTest, ControlCharactersAreRejected) {
    WriteUserValues(R"(Old="1")");
    for (wchar_t character = 1; character < L' '; ++character) {
        if (character == L'\t' || character == L'\n' || character == L'\r')
            continue;
        ExpectRejected(L"Name", std::wstring{character});
        ExpectRejected(L"Name", std::wstring{L'a', character, L'b'});
    }
}

TEST_F(CommonSettingWritingTest, InvalidUnicodeValuesAreRejected) {
    WriteUserValues(R"(Old="1")");
    for (const wchar_t* const value :
         {L"\xd83d", L"\xde00", L"a\xd83d",
          L"\xd83d"
          L"a",
          L"a\xde00"
          L"b",
          L"\xde00\xd83d", L"\xd83d\xd83d\xde00", L"\xd83d\xde00\xde00", L"\xfffe", L"\xffff",
          L"a\xffff"
          L"b"})
        ExpectRejected(L"Name", value);
}

TEST_F(CommonSettingWritingTest, RejectedValueKeepsOldValue) {
    EXPECT_TRUE(Set(L"Name", L"old"));
    EXPECT_FALSE(Set(L"Name", L"new\x1"));
    EXPECT_EQ(Setting(L"Name"), L"old");
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="old")")});
}

TEST_F(CommonSettingWritingTest, RejectedSettingCreatesNoFile) {
    EXPECT_FALSE(Set(L"Name", L"\x1"));
    EXPECT_FALSE(Set(L"a b", L"value"));
    EXPECT_FALSE(HasUserFile());
}

TEST_F(CommonSettingWritingTest, RejectedSettingIsMissingFromNextSave) {
    EXPECT_FALSE(Set(L"Name", L"\x1"));
    EXPECT_FALSE(Set(L"a b", L"value"));
    EXPECT_TRUE(Set(L"Other", L"value"));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Other="value")", SecondUse)});
}

// ---- Busy files ----

class CommonSettingBusyFileTest : public CommonSettingWritingTest {};

TEST_F(CommonSettingBusyFileTest, WriteToBusyFileIsReadFromMemory) {
    WriteUserValues(R"(Name="old")");
    EXPECT_EQ(Setting(L"Name"), L"old");
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ(UserSettings(), FileWith(R"(Name="old")"));
    EXPECT_EQ(Setting(L"Name"), L"new");
    EXPECT_EQ(Setting(L"Name"), L"new");
}

TEST_F(CommonSettingBusyFileTest, NextReadOfFileDiscardsUnsavedSetting) {
    WriteUserValues(R"(Name="old")");
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(Set(L"Name", L"new"));
        EXPECT_EQ(Setting(L"Name"), L"new");
    }
    EXPECT_EQ(Setting(L"Name"), L"old");
    EXPECT_TRUE(Set(L"Other", L"1"));
    EXPECT_EQ(UserSettings(), SavedXml{"<Any><CommonSettings Name=\"old\" Other=\"1\"/></Any>\n"});
}

TEST_F(CommonSettingBusyFileTest, NextWriteThatLoadsDiscardsUnsavedSetting) {
    WriteUserValues(R"(Name="old")");
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(Set(L"Name", L"new"));
    }
    EXPECT_TRUE(Set(L"Other", L"1"));
    EXPECT_EQ(Setting(L"Name"), L"old");
}

TEST_F(CommonSettingBusyFileTest, NextSaveWithoutLoadWritesUnsavedSetting) {
    WriteUserValues(R"(Name="old")");
    EXPECT_EQ(Setting(L"Name"), L"old");
    MarkerCalls calls{Dll().Handle()};
    calls.onOpen = [&]() -> std::optional<HANDLE> {
        if (calls.opened.size() <= 3)
            return UnnamedMutex(ERROR_SUCCESS);
        return std::nullopt;
    };
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ(UserSettings(), FileWith(R"(Name="old")"));
    EXPECT_TRUE(Set(L"Other", L"1"));
    EXPECT_EQ(UserSettings(), SavedXml{"<Any><CommonSettings Name=\"new\" Other=\"1\"/></Any>\n"});
    EXPECT_EQ(calls.opened, (Names{UserMarker, UserMarker, UserMarker, UserMarker}));
}

TEST_F(CommonSettingBusyFileTest, NextSaveWithoutFileWritesUnsavedSetting) {
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(Set(L"Name", L"value"));
        EXPECT_FALSE(HasUserFile());
    }
    EXPECT_EQ(Setting(L"Name"), L"value");
    EXPECT_TRUE(Set(L"Other", L"1"));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="value" Other="1")", SecondUse)});
}

TEST_F(CommonSettingBusyFileTest, OtherProcessesDoNotSeeUnsavedSetting) {
    WriteUserValues(R"(Name="old")");
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ((SecondProcess{ReadSetting, {L"Name", L"new"}}.WaitForExit()), 1u);
}

TEST_F(CommonSettingBusyFileTest, InvalidTextIsRejectedWhileFileIsBusy) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_FALSE(Set(L"a b", L"value"));
    EXPECT_FALSE(Set(L"Name", L"\x1"));
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingBusyFileTest, DefaultsMarkerDoesNotBlockSave) {
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    EXPECT_TRUE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="value")")});
}

TEST_F(CommonSettingBusyFileTest, WriteOpensMarkerBeforeLoadAndSave) {
    WriteUserValues(R"(Name="old")");
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ(calls.opened, (Names{UserMarker, UserMarker}));
    EXPECT_EQ(calls.created, (Names{UserMarker, UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

// ---- Failures ----

class CommonSettingWriteFailureTest : public CommonSettingWritingTest {
protected:
    void ExpectFailure() {
        EXPECT_FALSE(Set(L"Name", L"new"));
        EXPECT_EQ(UserSettings(), FileWith(R"(Name="old")"));
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.UserFile())));
    }
    void ExpectOldValue() { EXPECT_EQ(Setting(L"Name"), L"old"); }
};

TEST_F(CommonSettingWriteFailureTest, ReadOnlyFileStaysUnchanged) {
    WriteUserValues(R"(Name="old")");
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectFailure();
    ExpectOldValue();
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_TRUE(Set(L"Name", L"new"));
}

TEST_F(CommonSettingWriteFailureTest, FileOpenForReadingStaysUnchanged) {
    WriteUserValues(R"(Name="old")");
    const HANDLE reader = CreateFileW(installation.UserFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ExpectFailure();
    CloseHandle(reader);
    ExpectOldValue();
}

TEST_F(CommonSettingWriteFailureTest, MissingFolderIsNotCreated) {
    std::filesystem::remove_all(installation.ProgramData());
    EXPECT_FALSE(Set(L"Name", L"value"));
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramData()));
}

TEST_F(CommonSettingWriteFailureTest, UnsavedSettingIsSavedOnceFolderExists) {
    const std::filesystem::path folder = installation.UserFile().parent_path();
    std::filesystem::remove_all(folder);
    EXPECT_FALSE(Set(L"Name", L"value"));
    EXPECT_EQ(Setting(L"Name"), L"value");
    std::filesystem::create_directories(folder);
    EXPECT_TRUE(Set(L"Other", L"1"));
    EXPECT_EQ(UserSettings(), SavedXml{NewFileWith(R"(Name="value" Other="1")", SecondUse)});
}

TEST_F(CommonSettingWriteFailureTest, FolderNamedLikeFileStays) {
    std::filesystem::create_directory(installation.UserFile());
    EXPECT_FALSE(Set(L"Name", L"value"));
    EXPECT_TRUE(std::filesystem::is_directory(installation.UserFile()));
}

TEST_F(CommonSettingWriteFailureTest, FileThatCannotBeReplacedStaysUnchanged) {
    WriteUserValues(R"(Name="old")");
    SaveCalls calls{Dll().Handle()};
    calls.Fail(Replacements);
    ExpectFailure();
    ExpectOldValue();
}

TEST_F(CommonSettingWriteFailureTest, UnreadableFileIsNotReplacedIfCopyFails) {
    WriteUserSettings("<broken");
    std::filesystem::create_directory(UnreadableCopyOf(installation.UserFile()));
    EXPECT_FALSE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), "<broken");
}

TEST_F(CommonSettingWriteFailureTest, FailedSetAttributeStoresNothing) {
    WriteUserValues(R"(Name="old")");
    const FailingDomMethod failure{DomMethod::SetAttribute};
    ExpectFailure();
    ExpectOldValue();
}

TEST_F(CommonSettingWriteFailureTest, FailedSectionCreationStoresNothing) {
    WriteUserSettings("<Any/>");
    const FailingDomMethod failure{DomMethod::AppendChild};
    EXPECT_FALSE(Set(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), "<Any/>");
}

TEST_F(CommonSettingWriteFailureTest, ThreadWithoutComFindsAndStoresNothing) {
    WriteUserValues(R"(Name="old")");
    WriteBaseValues(R"(Name="base")");
    Dll();
    std::jthread{[this] {
        EXPECT_EQ(Setting(L"Name"), Missing);
        ExpectFailure();
    }}.join();
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingWriteFailureTest, CallsAfterExitFindAndStoreNothing) {
    WriteUserValues(R"(Name="old")");
    ExpectOldValue();
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_EQ(Setting(L"Name"), Missing);
    ExpectFailure();
}

TEST_F(CommonSettingWriteFailureTest, NullNameOrValueChangesNothing) {
    WriteUserValues(R"(Name="old")");
    EXPECT_FALSE(Dll().SetCommonSetting(L"Name", nullptr));
    EXPECT_FALSE(Dll().SetCommonSetting(nullptr, L"new"));
    EXPECT_EQ(UserSettings(), FileWith(R"(Name="old")"));
    ExpectOldValue();
}

}  // namespace ZOTDam::Test
