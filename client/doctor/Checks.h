// Checks that apply to several files.
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

// Returns a string of a file for use in a sentence: in quotes, on one line, shortened if it is long.
std::string Quoted(std::wstring_view text);

// Reports attributes and children that the library does not read. Also reports repeated children if the
// library reads only the first one.
void CheckContent(const Element& element, Names attributes, Names singleChildren, Names children,
                  Findings& findings);

// Reports children whose name differs from the given name only in case or by a namespace.
void CheckSpelling(const Element& parent, std::wstring_view name, Findings& findings);

// Returns the number that the library reads from a string. Reports strings that are not a 32-bit number.
std::int32_t NumberFrom(const Element& element, std::wstring_view attribute, const std::wstring& text,
                        Findings& findings);

// Reports a string that does not fit a field of the library. `name` is the attribute or child that contains
// it.
void CheckLength(const Element& element, std::wstring_view name, std::wstring_view text, const char* kind,
                 const std::string& consequence, Findings& findings);

// Returns whether the library accepts a string as a GUID. Reports other strings.
bool CheckGuid(const Element& element, std::wstring_view attribute, const std::wstring& text,
               Findings& findings);

// Tracks the GUIDs of elements. The library reads only the first element with a GUID; later ones are
// reported.
class UniqueGuids {
public:
    void Check(const Element& element, std::wstring text, Findings& findings);

private:
    std::map<std::wstring, std::string> paths;
};

// Tracks the ids of functions. Only the first function with an id counts.
class UniqueIds {
public:
    // Returns whether the id is new. Reports a duplicate.
    bool Check(const Element& element, std::int32_t id, const std::string& consequence, Findings& findings);

private:
    std::map<std::int32_t, std::string> paths;
};

// The record into which the library reads all elements of a list. A missing attribute therefore inherits the
// previous element's value.
class WorkingRecord {
public:
    // Reads an attribute. Reports a missing attribute as inherited or missing, and a value that is too long
    // with the given kind and consequence.
    void Text(const Element& element, const wchar_t* attribute, const char* kind,
              const std::string& consequence, Findings& findings);

    // The same for a number. Returns the number that the record then holds.
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
