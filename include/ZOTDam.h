// ZOTDam, the data access module of QUEN Power Management: records, lists, callbacks and exports, for C (C11
// or later) and C++ (C++14 or later).
//
// The layout of the types in this header is a fixed binary interface, because programs in other languages and
// programs built with other compilers use the same DLL. The assertions after each type verify the layout.
// docs/clients.md lists all offsets for other languages.
//
// README.md defines the terms: function, catalogue, option, scheme, parameters and others.
//
// Names: in C++, all types and exports belong to the namespace ZOTDam. In C, they have the same names without
// the namespace. ZOTDamTypes.h declares the parts that differ: in C++, a list is a List<Record>, which owns
// its records. In C, it is a ZOTDamList, and the client manages the memory of its own lists.
//
// Rules for every export:
//  - The caller must initialise COM on the calling thread and keep it initialised until ZOTDamExit returns.
//    Without COM, an export reads and writes no data files, and a document that it used stays empty.
//  - Exports must not be called concurrently, by any threads of the process. OnItem may call exports.
//  - Exports return no error codes. They catch all exceptions of the library, but not an exception that a
//    client's OnItem throws: it reaches the client. Compatibility: C1, C2, C10.
//  - Pointer arguments must not be null, except where an export's comment allows null. A GUID, a holder or a
//    string must be valid until the export returns. The library keeps no pointer to an argument.
//  - Strings are UTF-16 and end with a zero. A buffer for a result has space for ZOTDAM_TEXT_CAPACITY code
//    units (520 bytes).
//  - The library only reads its input arguments. It never changes or frees them.
//  - The library owns the data that OnItem receives. The client must not change or free it. A record, its
//    strings and its lists are valid only until its OnItem returns. A client that keeps a record copies it.
//  - A result of the type bool is one byte, 0 or 1.
//  - docs/compatibility.md lists behaviour that looks like an error but is kept because clients depend on it.
//    "Compatibility: C1" refers to its first entry.
#pragma once

#include "ZOTDamTypes.h"

struct IXMLDOMNode;

// The following declarations are also those for C.
// NOLINTBEGIN(modernize-redundant-void-arg, modernize-use-using)

#ifdef __cplusplus
namespace ZOTDam {
extern "C" {
#endif

// ---- Functions of the catalogue -------------------------------------------------------------------------

// An option of a function for one power source, AC or DC.
typedef struct DisplayItem {
    int32_t option ZOTDAM_ZEROED;  // the option's number, for example a brightness in percent
    wchar_t label[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
} DisplayItem;

ZOTDAM_SIZE(DisplayItem, 524);
ZOTDAM_OFFSET(DisplayItem, option, 0);
ZOTDAM_OFFSET(DisplayItem, label, 4);

// A function of the catalogue: a power-management feature in use on this machine.
typedef struct FunctionRecord {
    int32_t type ZOTDAM_ZEROED;
    int32_t flag ZOTDAM_ZEROED;
    wchar_t name[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    wchar_t group[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    ZOTDAM_LIST(DisplayItem) acDisplayItems;  // options when plugged in (AC)
    ZOTDAM_LIST(DisplayItem) dcDisplayItems;  // options on battery (DC)
} FunctionRecord;

ZOTDAM_SIZE(FunctionRecord, 1080);
ZOTDAM_OFFSET(FunctionRecord, type, 0);
ZOTDAM_OFFSET(FunctionRecord, flag, 4);
ZOTDAM_OFFSET(FunctionRecord, name, 8);
ZOTDAM_OFFSET(FunctionRecord, group, 528);
ZOTDAM_OFFSET(FunctionRecord, acDisplayItems, 1048);
ZOTDAM_OFFSET(FunctionRecord, dcDisplayItems, 1064);

// ---- Functions of the base catalogue --------------------------------------------------------------------

// A command of a function of the base catalogue.
typedef struct BaseCommandItem {
    int32_t id ZOTDAM_ZEROED;
    int32_t event ZOTDAM_ZEROED;
    int32_t state ZOTDAM_ZEROED;
    int32_t paramIndex1 ZOTDAM_ZEROED;  // the power source of option 1: 0 for AC, any other number for DC
    int32_t paramIndex2 ZOTDAM_ZEROED;  // the same for option 2
    int32_t flag ZOTDAM_ZEROED;
    wchar_t specInfo1[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
} BaseCommandItem;

ZOTDAM_SIZE(BaseCommandItem, 544);
ZOTDAM_OFFSET(BaseCommandItem, id, 0);
ZOTDAM_OFFSET(BaseCommandItem, event, 4);
ZOTDAM_OFFSET(BaseCommandItem, state, 8);
ZOTDAM_OFFSET(BaseCommandItem, paramIndex1, 12);
ZOTDAM_OFFSET(BaseCommandItem, paramIndex2, 16);
ZOTDAM_OFFSET(BaseCommandItem, flag, 20);
ZOTDAM_OFFSET(BaseCommandItem, specInfo1, 24);

// A check that the client runs to determine whether this machine supports a function.
typedef struct CheckExistItem {
    int32_t checkFlag ZOTDAM_ZEROED;
    wchar_t param1[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    wchar_t param2[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    wchar_t param3[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    wchar_t param4[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
} CheckExistItem;

ZOTDAM_SIZE(CheckExistItem, 2084);
ZOTDAM_OFFSET(CheckExistItem, checkFlag, 0);
ZOTDAM_OFFSET(CheckExistItem, param1, 4);
ZOTDAM_OFFSET(CheckExistItem, param2, 524);
ZOTDAM_OFFSET(CheckExistItem, param3, 1044);
ZOTDAM_OFFSET(CheckExistItem, param4, 1564);

// A group of commands of a function, with the checks of the group.
typedef struct CommandFamily {
    ZOTDAM_LIST(BaseCommandItem) commandItems;
    ZOTDAM_LIST(CheckExistItem) checkExistItems;
} CommandFamily;

ZOTDAM_SIZE(CommandFamily, 32);
ZOTDAM_OFFSET(CommandFamily, commandItems, 0);
ZOTDAM_OFFSET(CommandFamily, checkExistItems, 16);

// A function of the base catalogue. Each of its two nodes has one counted reference. A client that copies the
// record in C adds a reference to each node that is not null, and releases it later.
typedef struct FunctionBaseRecord {
    int32_t id ZOTDAM_ZEROED;
    int32_t type ZOTDAM_ZEROED;
    int32_t flag ZOTDAM_ZEROED;
    wchar_t name[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    wchar_t group[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    ZOTDAM_COUNTED(IXMLDOMNode) displayNode;  // the "Display" element, or null
    ZOTDAM_COUNTED(IXMLDOMNode) defaultNode;  // the "Default" element, or null
    ZOTDAM_LIST(CommandFamily) commandFamilies;
} FunctionBaseRecord;

ZOTDAM_SIZE(FunctionBaseRecord, 1088);
ZOTDAM_OFFSET(FunctionBaseRecord, id, 0);
ZOTDAM_OFFSET(FunctionBaseRecord, type, 4);
ZOTDAM_OFFSET(FunctionBaseRecord, flag, 8);
ZOTDAM_OFFSET(FunctionBaseRecord, name, 12);
ZOTDAM_OFFSET(FunctionBaseRecord, group, 532);
ZOTDAM_OFFSET(FunctionBaseRecord, displayNode, 1056);
ZOTDAM_OFFSET(FunctionBaseRecord, defaultNode, 1064);
ZOTDAM_OFFSET(FunctionBaseRecord, commandFamilies, 1072);

// The argument of AddFunctionDefault.
typedef struct FunctionBaseHolder {
    void* clientWord ZOTDAM_ZEROED;  // reserved for the client; the library never accesses it
    ZOTDAM_LIST(FunctionBaseRecord) records;
} FunctionBaseHolder;

ZOTDAM_SIZE(FunctionBaseHolder, 24);
ZOTDAM_OFFSET(FunctionBaseHolder, clientWord, 0);
ZOTDAM_OFFSET(FunctionBaseHolder, records, 8);

// ---- Parameters of a power scheme -----------------------------------------------------------------------

// The parameters of a function in a scheme. They are zero-based positions: ACParamIndex in the function's
// acDisplayItems, DCParamIndex in its dcDisplayItems.
typedef struct ParamValue {
    int32_t ACParamIndex ZOTDAM_ZEROED;  // when plugged in
    int32_t DCParamIndex ZOTDAM_ZEROED;  // on battery

#ifdef __cplusplus
    bool operator==(const ParamValue& other) const noexcept {
        return ACParamIndex == other.ACParamIndex && DCParamIndex == other.DCParamIndex;
    }
    bool operator!=(const ParamValue& other) const noexcept {
        return !(*this == other);
    }
#endif
} ParamValue;

ZOTDAM_SIZE(ParamValue, 8);
ZOTDAM_OFFSET(ParamValue, ACParamIndex, 0);
ZOTDAM_OFFSET(ParamValue, DCParamIndex, 4);

// A node of a ParamTree. `color` belongs to the client; the library never reads it.
typedef struct ParamTreeNode {
    struct ParamTreeNode* left;
    struct ParamTreeNode* parent;
    struct ParamTreeNode* right;
    char color;
    char isNil;  // 1 for the tree's nil node, 0 for all others
    int32_t functionId;
    ParamValue value;
} ParamTreeNode;

ZOTDAM_SIZE(ParamTreeNode, 40);
ZOTDAM_OFFSET(ParamTreeNode, left, 0);
ZOTDAM_OFFSET(ParamTreeNode, parent, 8);
ZOTDAM_OFFSET(ParamTreeNode, right, 16);
ZOTDAM_OFFSET(ParamTreeNode, color, 24);
ZOTDAM_OFFSET(ParamTreeNode, isNil, 25);
ZOTDAM_OFFSET(ParamTreeNode, functionId, 28);
ZOTDAM_OFFSET(ParamTreeNode, value, 32);

// A client's map from function id to ParamValue: a binary search tree ordered by signed id, which need not be
// balanced. `head` points to the nil node. In the nil node, `left` points to the smallest node, `parent` to
// the root and `right` to the largest node. In the other nodes, the link to a missing child points to the nil
// node, and so does the parent link of the root. In the nil node of an empty tree, all three links point to
// the nil node.
typedef struct ParamTree {
    ParamTreeNode* head;
    uint64_t count;

#ifdef __cplusplus
    using Iterator = TreeIterator<ParamTreeNode>;

    // Iterates in ascending order of the ids.
    Iterator begin() const noexcept {
        return Iterator{head->left};
    }
    Iterator end() const noexcept {
        return Iterator{head};
    }
    bool empty() const noexcept {
        return count == 0;
    }
#endif
} ParamTree;

ZOTDAM_SIZE(ParamTree, 16);
ZOTDAM_OFFSET(ParamTree, head, 0);
ZOTDAM_OFFSET(ParamTree, count, 8);

// The argument of SetParameter.
typedef struct ParamMapHolder {
    void* clientWord;  // reserved for the client; the library never accesses it
    ParamTree params;
} ParamMapHolder;

ZOTDAM_SIZE(ParamMapHolder, 24);
ZOTDAM_OFFSET(ParamMapHolder, clientWord, 0);
ZOTDAM_OFFSET(ParamMapHolder, params, 8);

// The selected options of a function in the scheme that TEVGetParam loaded.
typedef struct FuncCurValue {
    uint32_t FunctionId;  // functions 7 and 8, the refresh rates, are both reported as 7
    uint32_t ACValue;     // an option, not a position
    uint32_t DCValue;
} FuncCurValue;

ZOTDAM_SIZE(FuncCurValue, 12);
ZOTDAM_OFFSET(FuncCurValue, FunctionId, 0);
ZOTDAM_OFFSET(FuncCurValue, ACValue, 4);
ZOTDAM_OFFSET(FuncCurValue, DCValue, 8);

// A command of a function, with the options that the parameters of a scheme select.
typedef struct CommandInfoRecord {
    int32_t id ZOTDAM_ZEROED;
    int32_t event ZOTDAM_ZEROED;
    int32_t state ZOTDAM_ZEROED;
    int32_t option1 ZOTDAM_ZEROED;
    int32_t option2 ZOTDAM_ZEROED;
    int32_t flag ZOTDAM_ZEROED;
    wchar_t specInfo1[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
} CommandInfoRecord;

ZOTDAM_SIZE(CommandInfoRecord, 544);
ZOTDAM_OFFSET(CommandInfoRecord, id, 0);
ZOTDAM_OFFSET(CommandInfoRecord, event, 4);
ZOTDAM_OFFSET(CommandInfoRecord, state, 8);
ZOTDAM_OFFSET(CommandInfoRecord, option1, 12);
ZOTDAM_OFFSET(CommandInfoRecord, option2, 16);
ZOTDAM_OFFSET(CommandInfoRecord, flag, 20);
ZOTDAM_OFFSET(CommandInfoRecord, specInfo1, 24);

// ---- Spec schemes ---------------------------------------------------------------------------------------

// The values that a spec scheme prescribes for one Windows power setting.
typedef struct SpecPowerSettingRecord {
    int32_t acValue ZOTDAM_ZEROED;
    int32_t dcValue ZOTDAM_ZEROED;
    GUID powerSetting ZOTDAM_ZEROED;
} SpecPowerSettingRecord;

ZOTDAM_SIZE(SpecPowerSettingRecord, 24);
ZOTDAM_OFFSET(SpecPowerSettingRecord, acValue, 0);
ZOTDAM_OFFSET(SpecPowerSettingRecord, dcValue, 4);
ZOTDAM_OFFSET(SpecPowerSettingRecord, powerSetting, 8);

// The settings in one subgroup of the Windows power settings.
typedef struct SpecSubGroupRecord {
    GUID subGroup ZOTDAM_ZEROED;
    ZOTDAM_LIST(SpecPowerSettingRecord) powerSettings;
} SpecSubGroupRecord;

ZOTDAM_SIZE(SpecSubGroupRecord, 32);
ZOTDAM_OFFSET(SpecSubGroupRecord, subGroup, 0);
ZOTDAM_OFFSET(SpecSubGroupRecord, powerSettings, 16);

// The Windows power settings that the suite prescribes for one power scheme. Compatibility: C50.
typedef struct SpecSchemeRecord {
    GUID scheme ZOTDAM_ZEROED;
    uint8_t reserved[16] ZOTDAM_ZEROED;                   // always zero
    wchar_t unused1[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;  // the three strings are always empty
    wchar_t unused2[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    wchar_t unused3[ZOTDAM_TEXT_CAPACITY] ZOTDAM_ZEROED;
    ZOTDAM_LIST(SpecSubGroupRecord) subGroups;
} SpecSchemeRecord;

ZOTDAM_SIZE(SpecSchemeRecord, 1608);
ZOTDAM_OFFSET(SpecSchemeRecord, scheme, 0);
ZOTDAM_OFFSET(SpecSchemeRecord, reserved, 16);
ZOTDAM_OFFSET(SpecSchemeRecord, unused1, 32);
ZOTDAM_OFFSET(SpecSchemeRecord, unused2, 552);
ZOTDAM_OFFSET(SpecSchemeRecord, unused3, 1072);
ZOTDAM_OFFSET(SpecSchemeRecord, subGroups, 1592);

// ---- Callbacks ------------------------------------------------------------------------------------------

// An export that enumerates items calls OnItem once for each item, on the caller's thread, before the export
// returns. A callback is an object whose first 8 bytes point to a table of function pointers, and the first
// entry of the table is OnItem. In C++, the callback is an object of a class that is derived from the
// interface. In C, it is a struct that begins with the interface, whose member `table` points to the function
// table, for example to an IGetParameterCallbackTable. The client owns both, and they must be valid until the
// export returns. OnItem receives the callback, the id of the function where there is one, and the record.
//
// OnItem may throw an exception to end the enumeration. The exception reaches the client after the library
// has freed the items, if the same compiler built both: mingw-w64 (g++ or clang) or MSVC. Otherwise, OnItem
// must not throw, because the items would not be freed or the process would end. A C client must not leave
// OnItem with longjmp. With the option /EHsc, MSVC assumes that extern "C" functions do not throw, so the
// exports that call OnItem are declared with ZOTDAM_MAY_THROW. Compatibility: C10.

ZOTDAM_CALLBACK(IGetFunctionBaseCallback, const FunctionBaseRecord* record);
ZOTDAM_CALLBACK(IGetFunctionInfoCallback, uint32_t functionId, const FunctionRecord* record);
ZOTDAM_CALLBACK(IGetParameterCallback, int32_t functionId, const ParamValue* value);
ZOTDAM_CALLBACK(IGetCommandInfoCallback, const CommandInfoRecord* record);
ZOTDAM_CALLBACK(IGetSpecSchemeCallback, const SpecSchemeRecord* record);

typedef IGetParameterCallback IGetParameterDefaultCallback;

// ---- Exports --------------------------------------------------------------------------------------------

// The result of GetFuncCount if there is no catalogue.
#define ZOTDAM_CATALOGUE_UNAVAILABLE 0xFFFFFFFFu

#ifdef __cplusplus
constexpr uint32_t CatalogueUnavailable = ZOTDAM_CATALOGUE_UNAVAILABLE;
#endif

// Returns the number of functions in the catalogue. Returns ZOTDAM_CATALOGUE_UNAVAILABLE when the catalogue
// cannot be loaded, or after ZOTDamExit. The first call of any export that needs the catalogue loads it from
// the defaults file. Compatibility: C21, C26.
uint32_t GetFuncCount(void);

// Enumerates the functions of the base catalogue in file order. If a function cannot be read, enumerates only
// the functions before it. Compatibility: C20, C22.
//  - callback: receives each function. Null is allowed.
// Returns false for a null callback or after ZOTDamExit, otherwise true.
bool GetFunctionBase(IGetFunctionBaseCallback* callback) ZOTDAM_MAY_THROW;

// Enumerates the functions of the base catalogue that are missing from the catalogue, in file order.
// Enumerates nothing when the catalogue cannot be loaded or when a function of the base catalogue cannot be
// read. Compatibility: C22.
//  - callback: receives each function. Null is allowed.
// Returns false for a null callback or after ZOTDamExit, otherwise true.
bool GetFunctionBaseUnSupported(IGetFunctionBaseCallback* callback) ZOTDAM_MAY_THROW;

// Enumerates the functions of the catalogue by ascending id. Their names, groups and labels are texts of the
// string table in the user's language, or the key if the string table has no text for it.
// Compatibility: C27, C46.
//  - callback: receives the id and the record of each function. Null is allowed.
// Returns false for a null callback or after ZOTDamExit, otherwise true.
bool GetFunctionInfo(IGetFunctionInfoCallback* callback) ZOTDAM_MAY_THROW;

// Replaces all functions in the defaults file with the holder's records and saves the file. Skips a record
// without command items. If a record cannot be written, saves only the records before it. If the catalogue is
// already loaded and not empty, it does not change until the library is reloaded. Compatibility: C24, C25,
// C26.
//  - holder: the records, with all of their lists and nodes. The client frees them after the call. Null is
//    allowed.
// Returns false for a null holder, for an empty list, or after ZOTDamExit. Otherwise returns true, even when
// writing failed.
bool AddFunctionDefault(const FunctionBaseHolder* holder);

// Enumerates the parameters of a scheme by ascending function id. Reads them from the user settings file. If
// the scheme or a function of the catalogue is missing there, adds it with its default parameters to the
// file. A scheme that contains no readable function is not completed, so nothing is enumerated for it.
// Function 7 or 8 is left out if the primary display does not support one of the first two rates in its list
// of AC options.
// Compatibility: C5, C30, C31, C36.
//  - scheme: the GUID of the scheme. For the all-zero GUID, the export enumerates nothing.
//  - callback: receives the id and the parameters of each function. Null is allowed.
// Returns false for a null callback or after ZOTDamExit. Otherwise returns true, even when nothing could be
// read.
bool GetParameter(const GUID* scheme, IGetParameterCallback* callback) ZOTDAM_MAY_THROW;

// Enumerates the default parameters of a scheme by ascending function id. Compatibility: C5, C34.
//  - scheme: the GUID of the scheme. For the all-zero GUID, the export enumerates nothing.
//  - callback: receives the id and the parameters of each function. Null is allowed.
// Returns false for a null callback or after ZOTDamExit. Otherwise returns true, even when nothing could be
// read.
bool GetParameterDefault(const GUID* scheme, IGetParameterDefaultCallback* callback) ZOTDAM_MAY_THROW;

// Stores the holder's parameters for a scheme in the user settings file. The parameters of other functions do
// not change. Does not check whether a position selects an option. Compatibility: C5, C35.
//  - scheme: the GUID of the scheme. For the all-zero GUID, the export does nothing.
//  - holder: the map. The client frees its nodes after the call. Null is allowed.
// Returns false for a null holder, for an empty map, or after ZOTDamExit. Otherwise returns true, even when
// writing failed.
bool SetParameter(const GUID* scheme, const ParamMapHolder* holder);

// Removes all schemes and common settings from the user settings and saves the file. Does not read the file
// again: it changes and saves the content that this process read last. Compatibility: C12, C13.
// Returns false and saves nothing when this content has no schemes, or after ZOTDamExit. Otherwise returns
// true, even when writing failed.
bool ResetDefault(void);

// Loads the parameters of a scheme for GetFuncCurValue. Replaces the parameters that the previous call
// loaded. If the scheme cannot be loaded completely, adds its missing default parameters. The parameters that
// could be read are loaded even if the export returns false. Compatibility: C36.
//  - scheme: the GUID of the scheme, which may be all zeros.
// Returns false when the default parameters cannot be read completely either, or after ZOTDamExit.
bool TEVGetParam(const GUID* scheme);

// Retrieves the selected options of one function in the scheme that TEVGetParam loaded. For a function that
// is missing from the scheme, retrieves the first options of its lists. Compatibility: C39, C40, C41, C42.
//  - position: the zero-based position of the function in the catalogue, by ascending id. If the catalogue
//    has more than one function, a position of 2^31 or more means the first one.
//  - value: receives the options, 12 bytes. A field is left unchanged when the parameter is not a position in
//    the list of options.
// Returns false and leaves `value` unchanged when no parameters are loaded, when the catalogue has no such
// position, or after ZOTDamExit.
bool GetFuncCurValue(uint32_t position, FuncCurValue* value);

// Enumerates the commands of every function that has parameters in the scheme, by ascending function id and
// then in file order. The options of a command are those that the parameters select, or 0 for a parameter
// that selects no option. Loads the scheme as GetParameter does. Compatibility: C5, C43, C44.
//  - scheme: the GUID of the scheme. For the all-zero GUID, the export enumerates nothing.
//  - callback: receives each command. Null is allowed.
// Returns false for a null callback or after ZOTDamExit. Otherwise returns true, even when nothing could be
// read.
bool GetCommandInfo(const GUID* scheme, IGetCommandInfoCallback* callback) ZOTDAM_MAY_THROW;

// Lists the functions whose parameters differ between two schemes, for one power source. Functions of the
// group "Group1Name" come first. Loads both schemes as GetParameter does. Compatibility: C6, C45, C46, C47,
// C48.
//  - schemeA, schemeB: the GUIDs of the schemes, which may be all zeros.
//  - mode: 1 for AC, 2 for DC.
//  - names: a buffer, which receives a line "- name" for each function. Null is allowed.
//  - values: a buffer, which receives one line for each function in the same order: the label of the option
//    that scheme B selects, which may be empty. Null is allowed.
// Each line ends with a line feed followed by a carriage return. A string that does not fit is truncated.
// With a null buffer, the export loads the schemes and writes the other buffer as usual, but returns false.
// Returns true when there is a difference and both buffers were written. Returns false after ZOTDamExit.
bool GetDiffFuncList(const GUID* schemeA, const GUID* schemeB, uint32_t mode, wchar_t* names,
                     wchar_t* values);

// Enumerates the spec schemes of the base catalogue in file order. Skips a spec scheme if it, one of its
// subgroups or one of its settings is missing an attribute. Skips each spec scheme, subgroup or setting that
// has a malformed GUID. Compatibility: C49.
//  - callback: receives each spec scheme. Null is allowed.
// Returns false for a null callback or after ZOTDamExit, otherwise true.
bool GetSpecScheme(IGetSpecSchemeCallback* callback) ZOTDAM_MAY_THROW;

// Retrieves a common setting. Searches the user settings first, then the defaults, then the base catalogue.
// Compatibility: C51.
//  - name: the name of the setting, which is case-sensitive. Null is allowed.
//  - value: a buffer, which receives the value. An empty value is valid. A value that does not fit counts as
//    missing.
// Returns false and leaves the buffer unchanged for a null name, when none of the three files has the
// setting, or after ZOTDamExit.
bool GetCommonSetting(const wchar_t* name, wchar_t* value);

// Stores a common setting in the user settings file. Compatibility: C3, C51.
//  - name: an XML name without a colon, as the fourth edition of XML 1.0 defines it, and not "xmlns". Null is
//    allowed.
//  - value: a string of any length that contains only characters that XML 1.0 allows. Null is allowed.
// Returns false for null or invalid arguments, when the file cannot be written, or after ZOTDamExit. If
// another process holds the busy marker of the file, or if the file could not be read, the setting stays in
// memory only and the export returns true.
bool SetCommonSetting(const wchar_t* name, const wchar_t* value);

// Replaces the common settings of the defaults file with those of the base catalogue and saves the file.
// Compatibility: C3, C52.
// Returns false when the base catalogue has no common settings, when the file cannot be written, or after
// ZOTDamExit. If another process holds the busy marker of the file, or if the file could not be read, the
// change stays in memory only and the export returns true.
bool InitCommonSetting(void);

// Releases the documents and tables of the library, including all COM objects. The client must call it before
// FreeLibrary and CoUninitialize. After it, all other exports return their failure values. Further calls of
// ZOTDamExit have no effect. Records and nodes that the client has copied stay valid. Compatibility: C7, C8.
// Always returns true.
bool ZOTDamExit(void);

#ifdef __cplusplus
}
}  // namespace ZOTDam
#endif

// NOLINTEND(modernize-redundant-void-arg, modernize-use-using)
