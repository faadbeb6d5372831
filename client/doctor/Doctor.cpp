#include "doctor/Doctor.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "doctor/Files.h"
#include "doctor/Installation.h"
#include "doctor/StringTables.h"
#include "doctor/XmlFile.h"
#include "Msxml.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

constexpr char NoBase[] =
    "the library has no base functions and no spec schemes, and cannot initialise the common settings";
constexpr char NoTexts[] = "the user sees keys instead of texts";

constexpr FileToExamine BaseFile = {BaseCatalogueLocation.folderCapacity, {NoBase, NoBase, NoBase}};
constexpr FileToExamine DefaultsFile = {DefaultsLocation.folderCapacity,
                                        {CatalogueNotLoaded, CatalogueNotLoaded, CatalogueNotLoaded}};
constexpr FileToExamine UserSettingsFile = {
    UserSettingsLocation.folderCapacity,
    {nullptr, "the library uses the defaults and stores nothing",
     "the library uses the defaults; it copies the file before it first replaces it"}};
constexpr FileToExamine StringTableFile = {StringTableLocation.folderCapacity, {NoTexts, NoTexts, NoTexts}};

// ---- The installation ----

Findings FindingsFor(const DataFile& file) {
    return {file.title, PathOf(file)};
}

void Append(Diagnosis& diagnosis, Diagnosis more) {
    std::ranges::move(more, std::back_inserter(diagnosis));
}

Findings ExamineBase(const std::vector<NamedKeys>& stringTables) {
    Findings base = FindingsFor(BaseCatalogue);
    if (const auto root = ReadXmlFile(BaseFile, base)) {
        CheckBase(*root, base);
        CheckTranslations(*root, stringTables, IfAdopted, base);
    }
    return base;
}

// The defaults and the user settings, which refer to them.
Diagnosis ExamineWritableFiles(const std::vector<NamedKeys>& stringTables) {
    Findings defaults = FindingsFor(Defaults);
    Findings userSettings = FindingsFor(UserSettings);
    std::optional<CatalogueOptions> catalogue;
    CheckBusyMarker(Defaults, defaults);
    if (const auto root = ReadXmlFile(DefaultsFile, defaults)) {
        catalogue = CheckDefaults(*root, defaults);
        if (catalogue)
            CheckTranslations(*root, stringTables, {}, defaults);
    }
    CheckBusyMarker(UserSettings, userSettings);
    CheckStorage(userSettings);
    if (const auto root = ReadXmlFile(UserSettingsFile, userSettings))
        CheckUserSettings(*root, catalogue ? &*catalogue : nullptr, userSettings);
    return {defaults, userSettings};
}

Diagnosis ExamineDataFiles(const std::optional<std::string>& language) {
    const StringTables stringTables = ExamineStringTables(language);
    Diagnosis diagnosis = {ExamineBase(stringTables.keys)};
    Append(diagnosis, ExamineWritableFiles(stringTables.keys));
    Append(diagnosis, stringTables.findings);
    return diagnosis;
}

// ---- One file ----

struct FileKind {
    const char* title;
    const wchar_t* fileName;
    const wchar_t* rootName;
    FileToExamine file;
    void (*check)(const Element& root, Findings& findings);
};

constexpr std::array FileKinds = {
    FileKind{"base catalogue", BaseCatalogueLocation.fileName, L"ZOTBase", BaseFile, CheckBase},
    FileKind{"defaults file", DefaultsLocation.fileName, L"ZOTDefault", DefaultsFile,
             [](const Element& root, Findings& findings) { CheckDefaults(root, findings); }},
    FileKind{"user settings file", UserSettingsLocation.fileName, L"OrloPowerCfg", UserSettingsFile,
             [](const Element& root, Findings& findings) { CheckUserSettings(root, nullptr, findings); }},
    FileKind{"string table", StringTableLocation.fileName, L"StringTable", StringTableFile,
             [](const Element& root, Findings& findings) { CheckStringTable(root, findings); }},
};

// Returns null if no kind has this name.
const FileKind* FindKind(const wchar_t* FileKind::*name, const std::wstring& text) {
    for (const FileKind& kind : FileKinds)
        if (CompareStringOrdinal(kind.*name, -1, text.c_str(), -1, TRUE) == CSTR_EQUAL)
            return &kind;
    return nullptr;
}

std::wstring NameWithoutMui(const std::filesystem::path& file) {
    return (file.extension() == L".mui" ? file.stem() : file.filename()).native();
}

// The file need not be where the library reads it, so its folder may have any length, and it must exist.
FileToExamine AnywhereAs(const FileKind* kind) {
    static constexpr char unknown[] = "the file cannot be examined";
    constexpr auto anyLength = static_cast<std::size_t>(-1);
    const LoadFailure failure = kind != nullptr ? kind->file.failure : LoadFailure{unknown, unknown, unknown};
    return {
        anyLength,
        {failure.missing != nullptr ? failure.missing : unknown, failure.unreadable, failure.notWellFormed}};
}

// ---- Findings ----

std::string PlaceOf(const Finding& finding) {
    if (!finding.element.empty())
        return " (" + finding.element + ")";
    return finding.position.line != 0 ? " (line " + std::to_string(finding.position.line) + ")" : "";
}

}  // namespace

Diagnosis ExamineInstallation(const std::optional<std::string>& language) {
    const ComScope com;
    Diagnosis diagnosis = {ExamineLibrary()};
    if (FindMsxmlProblem().empty())
        Append(diagnosis, ExamineDataFiles(language));
    for (const DataFile& file : {Defaults, UserSettings})
        Append(diagnosis, FindLeftOverFiles(file));
    return diagnosis;
}

Diagnosis ExamineFile(const std::filesystem::path& file) {
    const ComScope com;
    const FileKind* kind = FindKind(&FileKind::fileName, NameWithoutMui(file));
    Findings findings{kind != nullptr ? kind->title : "file", file};
    if (const auto root = ReadXmlFile(AnywhereAs(kind), findings)) {
        if (kind == nullptr)
            kind = FindKind(&FileKind::rootName, root->name);
        if (kind != nullptr)
            kind->check(*root, findings);
        else
            findings.AddObstacle("unknown-file",
                                 "neither its name nor its root element is that of a data file",
                                 "the library does not read it");
    }
    return {findings};
}

std::optional<CatalogueProblem> FindCatalogueProblem(const std::filesystem::path& file) {
    const ComScope com;
    Findings findings{Defaults.title, file};
    if (const auto root = ReadXmlFile(DefaultsFile, findings))
        CheckDefaults(*root, findings);
    for (const Finding& finding : findings.InOrder())
        if (finding.consequence == CatalogueNotLoaded)
            return CatalogueProblem{finding.kind, finding.problem + PlaceOf(finding)};
    return {};
}

}  // namespace ZOTDam::Client
