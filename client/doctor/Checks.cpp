#include "doctor/Checks.h"

#include <algorithm>
#include <charconv>
#include <cwchar>
#include <cwctype>

#include "Text.h"
#include "ZOTDam.h"

namespace ZOTDam::Client {

namespace {

constexpr char Ignored[] = "the library ignores it";

bool Contains(Names names, std::wstring_view name) {
    return std::ranges::find(names, name) != names.end();
}

bool DeclaresNamespace(std::wstring_view attribute) {
    return attribute == L"xmlns" || attribute.starts_with(L"xmlns:");
}

std::string NameForSentence(const Element& element) {
    return Quoted(element.name) + (element.hasNamespace ? " with a namespace" : "");
}

void ReportUnknownElement(const Element& child, Findings& findings) {
    findings.Add(child, "unknown-element", "the element " + NameForSentence(child) + " is unknown here",
                 "the library ignores it and its content");
}

bool IsSameInAnyCase(std::wstring_view left, std::wstring_view right) {
    return std::ranges::equal(left, right, {}, std::towlower, std::towlower);
}

std::wstring_view Trimmed(std::wstring_view text) {
    constexpr wchar_t blanks[] = L" \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::wstring_view::npos ? L""
                                            : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

// Returns whether a string consists of one 32-bit number, apart from surrounding white space.
bool IsNumber(std::wstring_view text) {
    std::string digits = ToUtf8(Trimmed(text));
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.erase(0, 1);
    std::int32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc{} && stop == end;
}

// Uses the same function as the library.
std::int32_t ReadNumber(const std::wstring& text) {
    return static_cast<std::int32_t>(std::wcstol(text.c_str(), nullptr, 10));
}

// Returns whether a string has the form that the library accepts: 36 characters without braces.
bool IsGuid(std::wstring_view text) {
    constexpr std::wstring_view pattern = L"xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    return std::ranges::equal(text, pattern, [](wchar_t character, wchar_t form) {
        constexpr std::wstring_view hexDigits = L"0123456789abcdefABCDEF";
        return form == L'-' ? character == L'-' : hexDigits.find(character) != std::wstring_view::npos;
    });
}

}  // namespace

std::string Quoted(std::wstring_view text) {
    constexpr std::size_t maxLength = 60;
    std::wstring shown{text.substr(0, maxLength)};
    std::ranges::replace_if(
        shown, [](wchar_t character) { return character < L' '; }, L' ');
    return "\"" + ToUtf8(shown) + (text.size() > maxLength ? "..." : "") + "\"";
}

void CheckContent(const Element& element, Names attributes, Names singleChildren, Names children,
                  Findings& findings) {
    for (const auto& [name, value] : element.attributes)
        if (!Contains(attributes, name) && !DeclaresNamespace(name))
            findings.Add(element, "unknown-attribute", "the attribute " + Quoted(name) + " is unknown here",
                         Ignored);
    std::set<std::wstring_view> seen;
    for (const Element& child : element.children) {
        const bool isSingle = !child.hasNamespace && Contains(singleChildren, child.name);
        if (!isSingle && (child.hasNamespace || !Contains(children, child.name)))
            ReportUnknownElement(child, findings);
        else if (isSingle && !seen.insert(child.name).second)
            findings.Add(child, "duplicate-element", Quoted(child.name) + " occurs more than once",
                         "the library reads only the first one");
    }
}

void CheckSpelling(const Element& parent, std::wstring_view name, Findings& findings) {
    for (const Element& child : parent.children) {
        const std::size_t prefix = child.name.rfind(L':') + 1;
        const std::wstring_view local = std::wstring_view{child.name}.substr(prefix);
        if (IsSameInAnyCase(local, name) && !child.IsNamed(name))
            ReportUnknownElement(child, findings);
    }
}

std::int32_t NumberFrom(const Element& element, std::wstring_view attribute, const std::wstring& text,
                        Findings& findings) {
    const std::int32_t number = ReadNumber(text);
    if (!IsNumber(text))
        findings.Add(element, "invalid-number",
                     Quoted(attribute) + " is " + Quoted(text) + ", which is not a 32-bit number",
                     "the library reads it as " + std::to_string(number));
    return number;
}

void CheckLength(const Element& element, std::wstring_view name, std::wstring_view text, const char* kind,
                 const std::string& consequence, Findings& findings) {
    if (text.size() >= TextCapacity)
        findings.Add(element, kind,
                     Quoted(name) + " has " + std::to_string(text.size()) + " characters; the maximum is " +
                         std::to_string(TextCapacity - 1),
                     consequence);
}

bool CheckGuid(const Element& element, std::wstring_view attribute, const std::wstring& text,
               Findings& findings) {
    if (IsGuid(text))
        return true;
    const bool braced = text.starts_with(L'{') && text.ends_with(L'}');
    findings.Add(element, "malformed-guid",
                 Quoted(attribute) + " is " + Quoted(text) +
                     (braced ? ", but the GUID must not have braces" : ", which is not a GUID"),
                 Ignored);
    return false;
}

void UniqueGuids::Check(const Element& element, std::wstring text, Findings& findings) {
    std::ranges::transform(text, text.begin(), std::towlower);
    const auto [entry, isNew] = paths.emplace(text, element.path);
    if (!isNew)
        findings.Add(element, "duplicate-guid", "it has the same GUID as " + entry->second,
                     "the library reads only the first one");
}

bool UniqueIds::Check(const Element& element, std::int32_t id, const std::string& consequence,
                      Findings& findings) {
    const auto [entry, isNew] = paths.emplace(id, element.path);
    if (!isNew)
        findings.Add(element, "duplicate-id",
                     "it has the same id " + std::to_string(id) + " as " + entry->second, consequence);
    return isNew;
}

void WorkingRecord::Text(const Element& element, const wchar_t* attribute, const char* kind,
                         const std::string& consequence, Findings& findings) {
    const std::wstring* const text = element.FindAttribute(attribute);
    if (text == nullptr) {
        ReportMissing(element, attribute, "an empty string", findings);
        return;
    }
    fields[attribute] = {*text, element.path};
    CheckLength(element, attribute, *text, kind, consequence, findings);
}

std::int32_t WorkingRecord::Number(const Element& element, const wchar_t* attribute, Findings& findings) {
    if (const std::wstring* const text = element.FindAttribute(attribute)) {
        fields[attribute] = {*text, element.path};
        return NumberFrom(element, attribute, *text, findings);
    }
    ReportMissing(element, attribute, "0", findings);
    const auto field = fields.find(attribute);
    return field != fields.end() ? ReadNumber(field->second.text) : 0;
}

void WorkingRecord::ReportMissing(const Element& element, const wchar_t* attribute,
                                  const std::string& initial, Findings& findings) const {
    const std::string problem = Quoted(attribute) + " is missing";
    const auto field = fields.find(attribute);
    if (field == fields.end())
        findings.Add(element, "missing-attribute", problem, "the library uses " + initial);
    else
        findings.Add(element, "inherited-attribute", problem,
                     "it inherits " + Quoted(field->second.text) + " from " + field->second.path);
}

}  // namespace ZOTDam::Client
