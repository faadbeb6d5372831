// What is checked alike in several files.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "doctor/Finding.h"

namespace ZOTDam::Client {

using Names = std::initializer_list<std::wstring_view>;

// A text of a file for a sentence: in quotes, on one line.
std::string Quoted(std::wstring_view text);

// Reports what an element has beside the attributes and children that the library reads of it, and all but
// the first of those children of which it reads one.
void CheckContent(const Element& element, Names attributes, Names singleChildren, Names children,
                  Findings& findings);

// Reports children that differ from a name only in case or by a namespace.
void CheckSpelling(const Element& parent, std::wstring_view name, Findings& findings);

// What the library reads a text as; what differs from what is written is reported.
std::int32_t NumberFrom(const Element& element, std::wstring_view attribute, const std::wstring& text,
                        Findings& findings);

// Reports a text that does not fit a field of the library. The name is that of the attribute or child which
// has the text.
void CheckLength(const Element& element, std::wstring_view name, std::wstring_view text, const char* kind,
                 const std::string& consequence, Findings& findings);

// Whether the library takes a text for a GUID; another one is reported.
bool CheckGuid(const Element& element, std::wstring_view attribute, const std::wstring& text,
               Findings& findings);

// The GUIDs of elements, of which the first one with a GUID is found; others are reported.
class GuidsInUse {
public:
    void Check(const Element& element, std::wstring text, Findings& findings);

private:
    std::map<std::wstring, std::string> paths;
};

// The ids of functions, of which the first one with an id counts.
class IdsInUse {
public:
    // Whether the id is new; another one is reported.
    bool Check(const Element& element, std::int32_t id, const std::string& consequence, Findings& findings);

private:
    std::map<std::int32_t, std::string> paths;
};

// The library reads the elements of a list into one record: what an element lacks, it has of the one before.
class WorkingRecord {
public:
    // Reads an attribute, reports it as carried over or missing where the element lacks it, and otherwise,
    // with a kind and a consequence, where it is too long.
    void Text(const Element& element, const wchar_t* attribute, const char* kind,
              const std::string& consequence, Findings& findings);

    // The same for a number; gives what the record then holds.
    std::int32_t Number(const Element& element, const wchar_t* attribute, Findings& findings);

private:
    struct Field {
        std::wstring text;
        std::string path;
    };

    void ReportMissing(const Element& element, const wchar_t* attribute, const std::string& initial,
                       Findings& findings) const;

    std::map<std::wstring, Field> fields;
};

}  // namespace ZOTDam::Client
