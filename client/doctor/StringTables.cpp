#include "doctor/StringTables.h"

#include <algorithm>
#include <system_error>

#include "DataFiles.h"
#include "doctor/XmlFile.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

// A name that only systems without a lookup of language copies find.
constexpr wchar_t MuiName[] = L"StringTable.xml.mui";

// Returns the language copies, also those that Windows does not find.
std::vector<std::filesystem::path> FindCopies() {
    std::vector<std::filesystem::path> copies;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator{NeutralStringTable().parent_path(), error})
        for (const wchar_t* const name : {StringTableLocation.fileName, MuiName})
            if (exists(entry.path() / name, error))
                copies.push_back(entry.path() / name);
    std::ranges::sort(copies);
    return copies;
}

// Examines tables one after the other.
class Examination {
public:
    void Examine(const std::filesystem::path& table, const char* ifUnusable) {
        const FileToExamine file = {StringTableLocation.folderCapacity, {ifUnusable, ifUnusable, ifUnusable}};
        Findings& findings = AddFindings(table);
        if (const auto root = ReadXmlFile(file, findings))
            tables.keys.push_back({NameOf(table), CheckStringTable(*root, findings)});
    }

    void ExamineCopy(const std::filesystem::path& copy) {
        Examine(copy, "users of this language see keys instead of texts");
        if (copy.filename() == MuiName)
            tables.findings.back().AddToFile("misnamed-copy", "the name of the file ends with \".mui\"",
                                             "Windows does not find it; it must be named StringTable.xml");
    }

    void ReportMissingCopy(const std::filesystem::path& copy) {
        AddFindings(copy).AddToFile("missing-file", "the file does not exist",
                                    "the library uses the neutral string table");
    }

    StringTables Result() && { return std::move(tables); }

private:
    Findings& AddFindings(const std::filesystem::path& table) {
        return tables.findings.emplace_back("string table", table);
    }

    static std::string NameOf(const std::filesystem::path& table) {
        return Utf8(table.lexically_relative(NeutralStringTable().parent_path()));
    }

    StringTables tables;
};

}  // namespace

StringTables ExamineStringTables(const std::optional<std::string>& language) {
    Examination examination;
    const std::filesystem::path copy = language ? StringTableFor(*language) : std::filesystem::path{};
    if (language && exists(copy)) {
        examination.ExamineCopy(copy);
        return std::move(examination).Result();
    }
    examination.Examine(NeutralStringTable(), "the user sees keys instead of texts");
    if (language)
        examination.ReportMissingCopy(copy);
    else
        for (const std::filesystem::path& found : FindCopies())
            examination.ExamineCopy(found);
    return std::move(examination).Result();
}

}  // namespace ZOTDam::Client
