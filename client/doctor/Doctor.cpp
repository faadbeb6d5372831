#include "doctor/Doctor.h"

#include <optional>
#include <system_error>

#include "doctor/Files.h"
#include "doctor/XmlFile.h"
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

void CheckStorage(Findings& findings) {
    std::error_code error;
    if (!is_directory(findings.Path().parent_path(), error))
        findings.AddToFile("missing-folder", "its folder does not exist",
                           "the library does not create it and stores nothing");
    const DWORD attributes = GetFileAttributesW(findings.Path().c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        findings.AddToFile("read-only-file", "the file is read-only", "the library stores nothing");
}

Findings FindingsFor(const DataFile& file) {
    return {file.title, PathOf(file)};
}

}  // namespace

Diagnosis ExamineDataFiles(const std::filesystem::path& stringTable) {
    const ComScope com;
    Findings base = FindingsFor(BaseCatalogue);
    Findings defaults = FindingsFor(Defaults);
    Findings userSettings = FindingsFor(UserSettings);
    Findings texts{"string table", stringTable};
    if (const auto root = ReadXmlFile(BaseFile, base))
        CheckBase(*root, base);
    const std::optional<Element> defaultsRoot = ReadXmlFile(DefaultsFile, defaults);
    std::optional<CatalogueOptions> catalogue;
    if (defaultsRoot)
        catalogue = CheckDefaults(*defaultsRoot, defaults);
    CheckStorage(userSettings);
    if (const auto root = ReadXmlFile(UserSettingsFile, userSettings))
        CheckUserSettings(*root, catalogue ? &*catalogue : nullptr, userSettings);
    if (const auto root = ReadXmlFile(StringTableFile, texts)) {
        const TextKeys keys = CheckStringTable(*root, texts);
        if (catalogue)
            CheckTranslations(*defaultsRoot, keys, Utf8(stringTable.filename()), defaults);
    }
    return {base, defaults, userSettings, texts};
}

std::string FindCatalogueProblem(const std::filesystem::path& file) {
    const ComScope com;
    Findings findings{Defaults.title, file};
    if (const auto root = ReadXmlFile(DefaultsFile, findings))
        CheckDefaults(*root, findings);
    for (const Finding& finding : findings.InOrder())
        if (finding.consequence == CatalogueNotLoaded)
            return finding.problem + (finding.element.empty() ? "" : " (" + finding.element + ")");
    return {};
}

}  // namespace ZOTDam::Client
