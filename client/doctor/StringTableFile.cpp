#include "doctor/Files.h"
#include "platform/AsciiCase.h"
#include "Text.h"
#include "xml/DataFileElements.h"
#include "ZOTDam.h"

namespace ZOTDam::Client {

namespace {

class Entries {
public:
    explicit Entries(Findings& fileFindings) : findings{fileFindings} {}

    void Check(const Element& entry) {
        CheckSpelling(entry, Elements::TextValue, findings);
        const std::wstring* const name = entry.FindAttribute(Attributes::TextKey);
        if (name == nullptr) {
            findings.Add(entry, "missing-name", "\"name\" is missing", "the library does not find the text");
            return;
        }
        const auto [first, isNew] = paths.emplace(ToLowerAscii(*name), entry.path);
        if (isNew)
            keys.insert(first->first);
        else
            findings.Add(entry, "duplicate-key",
                         "it has the same key " + Quoted(*name) + " as " + first->second,
                         "the library finds only the first one");
        CheckText(entry);
    }

    TextKeys Keys() && { return std::move(keys); }

private:
    void CheckText(const Element& entry) {
        const auto values = entry.ChildrenNamed(Elements::TextValue);
        if (values.empty()) {
            findings.Add(entry, "missing-text", "\"value\" is missing",
                         "the library has no text for the key, even if a later entry has one");
            return;
        }
        CheckLength(*values.front(), Elements::TextValue, values.front()->text, "truncated-text",
                    "the library truncates it", findings);
        for (std::size_t i = 1; i < values.size(); ++i)
            findings.Add(*values[i], "duplicate-element", "\"value\" occurs more than once",
                         "the library reads only the first one");
    }

    Findings& findings;
    std::map<std::wstring, std::string> paths;
    TextKeys keys;
};

class Translations {
public:
    Translations(const std::vector<NamedKeys>& stringTables, When whenUsed, Findings& fileFindings)
        : tables{stringTables}, when{std::move(whenUsed)}, findings{fileFindings} {}

    // Reports each key only at its first occurrence. A key that is too long has its own finding.
    void Check(const Element& element, const wchar_t* attribute, const char* consequence) {
        const std::wstring* const key = element.FindAttribute(attribute);
        if (key == nullptr || key->empty() || key->size() >= TextCapacity)
            return;
        const std::wstring lowerCase = ToLowerAscii(*key);
        const std::string files = FilesWithout(lowerCase);
        if (!files.empty() && reported.insert(lowerCase).second)
            findings.Add(element, "missing-translation",
                         Quoted(attribute) + " is " + Quoted(*key) + ", which is missing from " + files,
                         when + consequence);
    }

private:
    std::string FilesWithout(const std::wstring& key) const {
        std::string files;
        for (const NamedKeys& table : tables)
            if (!table.keys.contains(key))
                files += (files.empty() ? "" : ", ") + table.file;
        return files;
    }

    const std::vector<NamedKeys>& tables;
    When when;
    Findings& findings;
    TextKeys reported;
};

}  // namespace

TextKeys CheckStringTable(const Element& root, Findings& findings) {
    CheckSpelling(root, Elements::TextEntry, findings);
    Entries entries{findings};
    for (const Element* const entry : root.ChildrenNamed(Elements::TextEntry))
        entries.Check(*entry);
    return std::move(entries).Keys();
}

void CheckTranslations(const Element& root, const std::vector<NamedKeys>& tables, const When& when,
                       Findings& findings) {
    const Element* const functions = root.ChildNamed(Elements::Functions);
    if (functions == nullptr)
        return;
    Translations translations{tables, when, findings};
    for (const Element* const function : functions->ChildrenNamed(Elements::Function)) {
        for (const wchar_t* const attribute : {Attributes::Name, Attributes::Group})
            translations.Check(*function, attribute, "the user sees the key");
        const Element* const display = function->ChildNamed(Elements::Display);
        for (const wchar_t* const source : {Elements::AC, Elements::DC})
            if (const Element* const list = display != nullptr ? display->ChildNamed(source) : nullptr)
                for (const Element* const item : list->ChildrenNamed(Elements::DisplayItem))
                    translations.Check(*item, Attributes::Label,
                                       "the user sees the key, or an empty text in a list of differences");
    }
}

}  // namespace ZOTDam::Client
