// Tests of AddFunctionDefault with failures of the file or the DOM and with invalid strings. The call does
// not report them to the client.
#include "support/DomDocuments.h"
#include "support/DomMethods.h"
#include "support/FunctionDefaultsTest.h"
#include "support/MarkerCalls.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

// ---- Strings that XML cannot represent ----

struct TextCase {
    std::string name;
    std::wstring text;
};

void PrintTo(const TextCase& textCase, std::ostream* out) {
    *out << textCase.name;
}

class InvalidCharacterTest : public FunctionDefaultsTest, public testing::WithParamInterface<TextCase> {
protected:
    // Passes four records to the export. Expects only two in the file, because the third is invalid.
    void ExpectTwoRecordsBefore(const FunctionBaseRecord& third) {
        Replace({Record(1), Record(2), third, Record(4)});
        EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1) + Written(2))});
    }

    FunctionBaseRecord record = RecordWithDefault(3, 4, 5);
};

INSTANTIATE_TEST_SUITE_P(, InvalidCharacterTest,
                         testing::Values(TextCase{"ControlCharacter", L"a\x1z"}, TextCase{"Escape", L"\x1b"},
                                         TextCase{"HighSurrogateAlone", L"a\xd83dz"},
                                         TextCase{"HighSurrogateAtEnd", L"a\xdbff"},
                                         TextCase{"LowSurrogateAlone", L"\xde00z"},
                                         TextCase{"SurrogatesInWrongOrder", L"\xde00\xd83d"},
                                         TextCase{"Fffe", L"a\xfffe"}, TextCase{"Ffff", L"\xffff"}),
                         CaseName<TextCase>);

TEST_P(InvalidCharacterTest, InvalidNameStopsWriting) {
    Assign(record.name, GetParam().text);
    ExpectTwoRecordsBefore(record);
}

TEST_P(InvalidCharacterTest, InvalidGroupStopsWriting) {
    Assign(record.group, GetParam().text);
    ExpectTwoRecordsBefore(record);
}

TEST_P(InvalidCharacterTest, InvalidCommandStringStopsWriting) {
    record.commandFamilies.push_back(FamilyWith({6}));
    record.commandFamilies.begin()->commandItems.push_back(Command(7, GetParam().text));
    ExpectTwoRecordsBefore(record);
}

TEST_P(InvalidCharacterTest, InvalidFirstRecordLeavesEmptySection) {
    Assign(record.name, GetParam().text);
    Replace({record, Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults("")});
}

TEST_P(InvalidCharacterTest, InvalidRecordWithoutCommandsStopsWriting) {
    Assign(record.name, GetParam().text);
    record.commandFamilies.clear();
    ExpectTwoRecordsBefore(record);
}

TEST_P(InvalidCharacterTest, InvalidCheckStringIsIgnored) {
    record = Record(3);
    CheckExistItem check;
    Assign(check.param4, GetParam().text);
    record.commandFamilies.begin()->checkExistItems.push_back(check);
    Replace({record});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(3))});
}

// ---- A DOM that fails ----

class FailingDomTest : public FunctionDefaultsTest {
protected:
    static FunctionBaseRecord RecordWithNodes(std::int32_t id) {
        FunctionBaseRecord record = RecordWithDefault(id, id, id);
        record.displayNode = record.defaultNode;
        return record;
    }

    static std::string WrittenUpTo(std::int32_t last) {
        std::string functions;
        for (std::int32_t id = 1; id <= last; ++id) {
            std::string node = "<Default ACParamIndex=\"";
            node.append(std::to_string(id))
                .append("\" DCParamIndex=\"")
                .append(std::to_string(id))
                .append("\"/>");
            functions += Written(id, node + node);
        }
        return functions;
    }

    const FunctionBaseHolder three = HolderOf({RecordWithNodes(1), RecordWithNodes(2), RecordWithNodes(3)});
};

struct MethodCase {
    std::string name;
    DomMethod method;
};

void PrintTo(const MethodCase& methodCase, std::ostream* out) {
    *out << methodCase.name;
}

class FailingDomMethodTest : public FailingDomTest, public testing::WithParamInterface<MethodCase> {
protected:
    // Returns the number of functions in the file after the given call of the method has failed, or -1 if
    // the file contains anything else.
    std::int32_t WrittenWhenCallFails(int call) {
        Unload();
        WriteFunctions(Functions({1, 2, 3}));
        {
            const DomMethodFailingOnce failure{GetParam().method, call};
            Replace(three);
            failed = DomMethodFailingOnce::HasFailed();
        }
        for (std::int32_t last = 0; last <= 3; ++last)
            if (SavedXml{OldDefaults(WrittenUpTo(last))} == Defaults())
                return last;
        return -1;
    }

    bool failed = true;
};

INSTANTIATE_TEST_SUITE_P(, FailingDomMethodTest,
                         testing::Values(MethodCase{"AppendChild", DomMethod::AppendChild},
                                         MethodCase{"GetOwnerDocument", DomMethod::GetOwnerDocument},
                                         MethodCase{"PutText", DomMethod::PutText},
                                         MethodCase{"SetAttribute", DomMethod::SetAttribute},
                                         MethodCase{"CreateElement", DomMethod::CreateElement},
                                         MethodCase{"ImportNode", DomMethod::ImportNode}),
                         CaseName<MethodCase>);

// A failed call leaves the previous records in the file, and no part of the record that it was for.
TEST_P(FailingDomMethodTest, FailedCallLeavesOnlyCompleteRecords) {
    std::int32_t written = 0;
    for (int call = 1; failed; ++call) {
        SCOPED_TRACE(call);
        const std::int32_t now = WrittenWhenCallFails(call);
        EXPECT_GE(now, written);
        EXPECT_EQ(now == 3, !failed);
        written = now;
    }
    EXPECT_EQ(written, 3);
}

TEST_F(FailingDomTest, FailedRemovalLeavesFileUnchanged) {
    const std::string before = Defaults();
    const FailingDomMethod failure{DomMethod::RemoveChild};
    Replace(three);
    EXPECT_EQ(Defaults(), before);
}

TEST_F(FailingDomTest, FailedNodeCopyStopsWriting) {
    const DomMethodPatch cannotImport{DomMethod::ImportNode, []() -> HRESULT { return E_NOTIMPL; }};
    const DomMethodFailingOnce failure{DomMethod::CloneNode, 4};
    Replace(three);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenUpTo(1))});
}

TEST_F(FailingDomTest, NodesAreImportedWhereDomSupportsImport) {
    using Import = HRESULT WINAPI(IXMLDOMNode*, IXMLDOMNode*, VARIANT_BOOL, IXMLDOMNode**);
    Import* const import = [](IXMLDOMNode*, IXMLDOMNode* node, VARIANT_BOOL deep,
                              IXMLDOMNode** copy) -> HRESULT {
        EXPECT_EQ(deep, VARIANT_TRUE);
        IXMLDOMNode* parent = nullptr;
        node->get_parentNode(&parent);
        return OwnedInterface<IXMLDOMNode> {
            parent
            } -> cloneNode(deep, copy);
    };
    const XmlTree client = XmlTree::OfText(L"<Outer><Inner/></Outer>");
    const DomMethodPatch patch{DomMethod::ImportNode, import};
    FunctionBaseRecord record = Record(1);
    record.defaultNode = client.Find(L"//Inner");
    Replace({record});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1, "<Outer><Inner/></Outer>"))});
}

TEST_F(FailingDomTest, AttributeAsDisplayNodeStopsWriting) {
    const XmlTree client = XmlTree::OfText(L"<C A=\"1\"/>");
    FunctionBaseRecord record = Record(2);
    record.displayNode = client.Find(L"/C/@A");
    ASSERT_NE(record.displayNode.get(), nullptr);
    Replace({Record(1), record, Record(3)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))});
}

TEST_F(FailingDomTest, FailedDocumentCreationLeavesFileUnchanged) {
    const std::string before = Defaults();
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), before);
    documents.StopCounting();
}

// ---- A file that cannot be written ----

class FailedSaveTest : public FunctionDefaultsTest {
protected:
    // Expects that a call changes the defaults in memory but not the file.
    void ExpectChangeInMemoryOnly() {
        const bool existed = HasDefaults();
        const std::string before = Defaults();
        Replace({RecordWithDefault(11, 12, 13)});
        EXPECT_EQ(HasDefaults(), existed);
        EXPECT_EQ(Defaults(), before);
        EXPECT_EQ(GetParameterDefault(Balanced), (Params{{11, {12, 13}}}));
    }

    void ExpectNextSaveWorks(const std::string& kept) {
        Replace({Record(20)});
        EXPECT_EQ(Defaults(), SavedXml{kept});
    }

    inline static const std::string Replaced = OldDefaults(Written(20));
    inline static const std::string Created = NewDefaults(Written(20));
};

TEST_F(FailedSaveTest, MissingFolderKeepsChangeInMemoryOnly) {
    const std::filesystem::path folder = installation.DefaultsFile().parent_path();
    std::filesystem::remove_all(folder);
    ExpectChangeInMemoryOnly();
    EXPECT_FALSE(std::filesystem::exists(folder));
    std::filesystem::create_directories(folder);
    ExpectNextSaveWorks(Created);
}

TEST_F(FailedSaveTest, ReadOnlyFileKeepsChangeInMemoryOnly) {
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectChangeInMemoryOnly();
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    ExpectNextSaveWorks(Replaced);
}

TEST_F(FailedSaveTest, FileInUseKeepsChangeInMemoryOnly) {
    const HANDLE reader = CreateFileW(installation.DefaultsFile().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ExpectChangeInMemoryOnly();
    CloseHandle(reader);
    ExpectNextSaveWorks(Replaced);
}

TEST_F(FailedSaveTest, FailedMoveKeepsChangeInMemoryOnly) {
    {
        SaveCalls calls{Dll().Handle()};
        calls.Fail(Replacements);
        ExpectChangeInMemoryOnly();
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.DefaultsFile())));
    }
    ExpectNextSaveWorks(Replaced);
}

TEST_F(FailedSaveTest, ExclusivelyOpenFileKeepsChangeInMemoryOnly) {
    const std::string before = Defaults();
    const HANDLE lock = CreateFileW(installation.DefaultsFile().c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    Replace({RecordWithDefault(11, 12, 13)});
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{11, {12, 13}}}));
    CloseHandle(lock);
    EXPECT_EQ(Defaults(), before);
}

TEST_F(FailedSaveTest, MissingFileIsCreatedOnceMarkerIsReleased) {
    RemoveDefaults();
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        ExpectChangeInMemoryOnly();
    }
    ExpectNextSaveWorks(Created);
}

// ---- A busy file ----

TEST_F(FailedSaveTest, BusyFileKeepsChangeInMemoryOnly) {
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        ExpectChangeInMemoryOnly();
    }
    ExpectNextSaveWorks(Replaced);
}

TEST_F(FailedSaveTest, FileBusyAtLoadIsNotSavedLater) {
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        ExpectChangeInMemoryOnly();
    }
    ExpectChangeInMemoryOnly();
}

class BusyDefaultsTest : public FunctionDefaultsTest {};

TEST_F(BusyDefaultsTest, MarkerIsCheckedBeforeLoadAndBeforeSave) {
    MarkerCalls calls{Dll().Handle()};
    Replace({Record(1)});
    EXPECT_EQ(calls.opened, (Names{DefaultsMarker, DefaultsMarker}));
    EXPECT_EQ(calls.created, (Names{DefaultsMarker, DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyDefaultsTest, MarkerOfLoadedFileIsCheckedOnce) {
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    MarkerCalls calls{Dll().Handle()};
    Replace({Record(1)});
    EXPECT_EQ(calls.opened, (Names{DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyDefaultsTest, EmptyListChecksNoMarker) {
    MarkerCalls calls{Dll().Handle()};
    const FunctionBaseHolder empty;
    EXPECT_FALSE(Dll().AddFunctionDefault(&empty));
    EXPECT_EQ(calls.opened, Names{});
}

TEST_F(BusyDefaultsTest, BusyUserSettingsDoNotPreventSave) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))});
}

TEST_F(BusyDefaultsTest, FileBusyAtLoadIsNotReplaced) {
    const std::string before = Defaults();
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), before);
}

TEST_F(BusyDefaultsTest, FileBusyAtLoadIsCreatedAfterDeletion) {
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    Replace({Record(1)});
    std::filesystem::remove(installation.DefaultsFile());
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{NewDefaults(Written(1))});
}

TEST_F(BusyDefaultsTest, FileIsSavedWhileMarkerExists) {
    EXPECT_EQ(Dll().GetFuncCount(), 10u);
    const std::string before = Defaults();
    MarkerCalls calls{Dll().Handle()};
    calls.onCreate = [&] {
        EXPECT_EQ(Defaults(), before);
        return std::nullopt;
    };
    calls.beforeClose = [&] { EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))}); };
    Replace({Record(1)});
    EXPECT_EQ(calls.created, (Names{DefaultsMarker}));
}

TEST_F(BusyDefaultsTest, UnsavedFunctionsAreSavedWithCommonSettings) {
    WriteBase("<B><CommonSettings A=\"a\"/></B>");
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        RemoveDefaults();
        Replace({Record(1)});
    }
    EXPECT_TRUE(Dll().InitCommonSetting());
    EXPECT_NE(Defaults().find("<Functions>" + Written(1) + "</Functions>"), std::string::npos);
    EXPECT_NE(Defaults().find("A=\"a\""), std::string::npos);
}

// ---- A file that cannot be read ----

class MalformedDefaultsTest : public FunctionDefaultsTest {
protected:
    MalformedDefaultsTest() { WriteDefaults("<ZOTDefault><Functions>"); }
};

TEST_F(MalformedDefaultsTest, MalformedFileIsReplacedAndCopied) {
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{NewDefaults(Written(1))});
    EXPECT_EQ(Content(KeptDefaults()), "<ZOTDefault><Functions>");
}

TEST_F(MalformedDefaultsTest, LaterSavesKeepCopyOfMalformedFile) {
    Replace({Record(1)});
    Replace({Record(2)});
    Unload();
    Replace({Record(3)});
    EXPECT_EQ(Content(KeptDefaults()), "<ZOTDefault><Functions>");
}

TEST_F(MalformedDefaultsTest, FailedCopyPreventsReplacementOfMalformedFile) {
    const ImportPatch patch{Dll().Handle(), "CopyFileW",
                            [](const wchar_t*, const wchar_t*, BOOL) -> BOOL { return FALSE; }};
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), "<ZOTDefault><Functions>");
}

TEST_F(MalformedDefaultsTest, MalformedFileIsReplacedEvenWithoutRecords) {
    Replace({RecordWith(1, {})});
    EXPECT_EQ(Defaults(), SavedXml{NewDefaults("")});
    EXPECT_EQ(Content(KeptDefaults()), "<ZOTDefault><Functions>");
}

}  // namespace ZOTDam::Test
