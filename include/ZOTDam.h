// ZOTDam, the data access module of QUEN Power Management: records, lists, callbacks and exports.
//
// The layout of the types in this header is a fixed binary interface, because C programs and programs built
// with other compilers use the same DLL. The static assertions after each type verify the layout.
//
// README.md defines the terms: function, catalogue, option, scheme, parameters and others.
//
// Rules for every export:
//  - The caller must initialise COM on the calling thread and keep it initialised until ZOTDamExit returns.
//  - Exports must not be called concurrently. OnItem may call exports.
//  - Exports return no error codes. They catch all exceptions of the library, but not an exception that a
//    client's OnItem throws: it reaches the client. Compatibility: C1, C2, C10.
//  - Pointer arguments must not be null, except where an export's comment allows null. Strings are UTF-16.
//  - The library only reads its input arguments. It never changes or frees them.
//  - The client must not change or free the data that OnItem receives. A record is valid only until its
//    OnItem returns.
//  - docs/compatibility.md lists behaviour that looks like an error but is kept because clients depend on it.
//    "Compatibility: C1" refers to its first entry.
#pragma once

#include <guiddef.h>

#include <cstddef>
#include <cstdint>
#include <utility>

struct IXMLDOMNode;

namespace ZOTDam {

// The size of a fixed string field and of a caller's string buffer, in UTF-16 code units, including the
// terminating zero.
inline constexpr std::size_t TextCapacity = 260;

using Text = wchar_t[TextCapacity];

static_assert(sizeof(Text) == 520);

// ---- Lists ----------------------------------------------------------------------------------------------

// The links at the start of every List node. The sentinel consists of these two links only.
struct ListLinks {
    ListLinks* next;
    ListLinks* prev;
};

// The sentinel that all empty lists of a module share, so that an empty list needs no heap allocation. It is
// never modified.
inline ListLinks EmptyListLinks{&EmptyListLinks, &EmptyListLinks};

// A doubly linked list that owns its records. Its layout is the same for all clients.
template <class Record>
class List {
    struct Node {
        ListLinks links;
        Record record;
    };

    template <class Value>
    class BasicIterator {
    public:
        explicit BasicIterator(ListLinks* start) noexcept : links{start} {}
        Value& operator*() const noexcept { return reinterpret_cast<Node*>(links)->record; }
        Value* operator->() const noexcept { return &**this; }
        BasicIterator& operator++() noexcept {
            links = links->next;
            return *this;
        }
        bool operator==(const BasicIterator& other) const noexcept = default;

    private:
        ListLinks* links;
    };

public:
    using iterator = BasicIterator<Record>;
    using const_iterator = BasicIterator<const Record>;

    List() noexcept = default;
    List(const List& other) : List{} {
        for (const Record& record : other)
            push_back(record);
    }
    List(List&& other) noexcept { Swap(other); }
    List& operator=(List other) noexcept {
        Swap(other);
        return *this;
    }
    ~List() { clear(); }

    iterator begin() noexcept { return iterator{head->next}; }
    iterator end() noexcept { return iterator{head}; }
    // A client may empty its own list by setting only the count to 0. Compatibility: C53.
    const_iterator begin() const noexcept { return empty() ? end() : const_iterator{head->next}; }
    const_iterator end() const noexcept { return const_iterator{head}; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(count); }
    bool empty() const noexcept { return count == 0; }

    void push_back(const Record& record) { Append(record); }
    void push_back(Record&& record) { Append(std::move(record)); }

    template <class Predicate>
    void remove_if(Predicate isUnwanted) {
        for (ListLinks* links = head->next; links != head;) {
            Node* const node = reinterpret_cast<Node*>(std::exchange(links, links->next));
            if (isUnwanted(std::as_const(node->record)))
                Remove(node);
        }
    }

    void clear() noexcept {
        if (head == &EmptyListLinks)
            return;
        for (ListLinks* links = head->next; links != head;)
            delete reinterpret_cast<Node*>(std::exchange(links, links->next));
        delete std::exchange(head, &EmptyListLinks);
        count = 0;
    }

private:
    void EnsureSentinel() {
        if (head == &EmptyListLinks) {
            head = new ListLinks;
            *head = {head, head};
        }
    }

    template <class Source>
    void Append(Source&& record) {
        static_assert(offsetof(Node, record) == 16);
        EnsureSentinel();
        Node* const node = new Node{{head, head->prev}, std::forward<Source>(record)};
        head->prev->next = &node->links;
        head->prev = &node->links;
        ++count;
    }

    void Remove(Node* node) noexcept {
        node->links.prev->next = node->links.next;
        node->links.next->prev = node->links.prev;
        delete node;
        --count;
    }

    void Swap(List& other) noexcept {
        std::swap(head, other.head);
        std::swap(count, other.count);
    }

    ListLinks* head = &EmptyListLinks;
    std::uint64_t count = 0;
};

static_assert(sizeof(ListLinks) == 16 && offsetof(ListLinks, next) == 0 && offsetof(ListLinks, prev) == 8);

// ---- Functions of the catalogue -------------------------------------------------------------------------

// An option of a function for one power source, AC or DC.
struct DisplayItem {
    std::int32_t option = 0;  // the option's number, for example a brightness in percent
    Text label = {};
};

static_assert(sizeof(DisplayItem) == 524 && offsetof(DisplayItem, option) == 0);
static_assert(offsetof(DisplayItem, label) == 4);

// A function of the catalogue: a power-management feature in use on this machine.
struct FunctionRecord {
    std::int32_t type = 0;
    std::int32_t flag = 0;
    Text name = {};
    Text group = {};
    List<DisplayItem> acDisplayItems;  // options when plugged in (AC)
    List<DisplayItem> dcDisplayItems;  // options on battery (DC)
};

static_assert(sizeof(FunctionRecord) == 1080 && sizeof(List<DisplayItem>) == 16);
static_assert(offsetof(FunctionRecord, type) == 0 && offsetof(FunctionRecord, flag) == 4);
static_assert(offsetof(FunctionRecord, name) == 8 && offsetof(FunctionRecord, group) == 528);
static_assert(offsetof(FunctionRecord, acDisplayItems) == 1048);
static_assert(offsetof(FunctionRecord, dcDisplayItems) == 1064);

// ---- Functions of the base catalogue --------------------------------------------------------------------

// An owning pointer to a reference-counted COM interface. Copying and destroying it requires the complete
// interface type: include <msxml6.h>, or <msxml2.h> if the toolchain has no <msxml6.h>.
template <class Interface>
class CountedPointer {
public:
    CountedPointer() noexcept = default;
    explicit CountedPointer(Interface* counted) noexcept : pointer{counted} { AddReference(); }
    CountedPointer(const CountedPointer& other) noexcept : pointer{other.pointer} { AddReference(); }
    CountedPointer& operator=(CountedPointer other) noexcept {
        std::swap(pointer, other.pointer);
        return *this;
    }
    ~CountedPointer() {
        if (pointer != nullptr)
            pointer->Release();
    }

    Interface* get() const noexcept { return pointer; }

private:
    void AddReference() noexcept {
        if (pointer != nullptr)
            pointer->AddRef();
    }

    Interface* pointer = nullptr;
};

// A command of a function of the base catalogue.
struct BaseCommandItem {
    std::int32_t id = 0;
    std::int32_t event = 0;
    std::int32_t state = 0;
    std::int32_t paramIndex1 = 0;  // the power source of option 1: 0 for AC, any other number for DC
    std::int32_t paramIndex2 = 0;  // the same for option 2
    std::int32_t flag = 0;
    Text specInfo1 = {};
};

static_assert(sizeof(BaseCommandItem) == 544 && offsetof(BaseCommandItem, id) == 0);
static_assert(offsetof(BaseCommandItem, event) == 4 && offsetof(BaseCommandItem, state) == 8);
static_assert(offsetof(BaseCommandItem, paramIndex1) == 12 && offsetof(BaseCommandItem, paramIndex2) == 16);
static_assert(offsetof(BaseCommandItem, flag) == 20 && offsetof(BaseCommandItem, specInfo1) == 24);

// A check that the client runs to determine whether this machine supports a function.
struct CheckExistItem {
    std::int32_t checkFlag = 0;
    Text param1 = {};
    Text param2 = {};
    Text param3 = {};
    Text param4 = {};
};

static_assert(sizeof(CheckExistItem) == 2084 && offsetof(CheckExistItem, checkFlag) == 0);
static_assert(offsetof(CheckExistItem, param1) == 4 && offsetof(CheckExistItem, param2) == 524);
static_assert(offsetof(CheckExistItem, param3) == 1044 && offsetof(CheckExistItem, param4) == 1564);

// A group of commands of a function, with the checks of the group.
struct CommandFamily {
    List<BaseCommandItem> commandItems;
    List<CheckExistItem> checkExistItems;
};

static_assert(sizeof(CommandFamily) == 32 && offsetof(CommandFamily, commandItems) == 0);
static_assert(offsetof(CommandFamily, checkExistItems) == 16);

// A function of the base catalogue.
struct FunctionBaseRecord {
    std::int32_t id = 0;
    std::int32_t type = 0;
    std::int32_t flag = 0;
    Text name = {};
    Text group = {};
    CountedPointer<IXMLDOMNode> displayNode;  // the "Display" element, or null
    CountedPointer<IXMLDOMNode> defaultNode;  // the "Default" element, or null
    List<CommandFamily> commandFamilies;
};

static_assert(sizeof(FunctionBaseRecord) == 1088 && sizeof(CountedPointer<IXMLDOMNode>) == 8);
static_assert(offsetof(FunctionBaseRecord, id) == 0 && offsetof(FunctionBaseRecord, type) == 4);
static_assert(offsetof(FunctionBaseRecord, flag) == 8 && offsetof(FunctionBaseRecord, name) == 12);
static_assert(offsetof(FunctionBaseRecord, group) == 532 &&
              offsetof(FunctionBaseRecord, displayNode) == 1056);
static_assert(offsetof(FunctionBaseRecord, defaultNode) == 1064);
static_assert(offsetof(FunctionBaseRecord, commandFamilies) == 1072);

// The argument of AddFunctionDefault.
struct FunctionBaseHolder {
    void* clientWord = nullptr;  // reserved for the client; the library never accesses it
    List<FunctionBaseRecord> records;
};

static_assert(sizeof(FunctionBaseHolder) == 24 && offsetof(FunctionBaseHolder, records) == 8);

// ---- Parameters of a power scheme -----------------------------------------------------------------------

// The parameters of a function in a scheme. They are zero-based positions: ACParamIndex in the function's
// acDisplayItems, DCParamIndex in its dcDisplayItems.
struct ParamValue {
    std::int32_t ACParamIndex = 0;  // when plugged in
    std::int32_t DCParamIndex = 0;  // on battery

    bool operator==(const ParamValue&) const noexcept = default;
};

static_assert(sizeof(ParamValue) == 8 && offsetof(ParamValue, ACParamIndex) == 0);
static_assert(offsetof(ParamValue, DCParamIndex) == 4);

// A node of a ParamTree. `color` belongs to the client; the library never reads it.
struct ParamTreeNode {
    ParamTreeNode* left;
    ParamTreeNode* parent;
    ParamTreeNode* right;
    char color;
    char isNil;  // 1 for the tree's nil node, 0 for all others
    std::int32_t functionId;
    ParamValue value;
};

static_assert(sizeof(ParamTreeNode) == 40 && offsetof(ParamTreeNode, left) == 0);
static_assert(offsetof(ParamTreeNode, parent) == 8 && offsetof(ParamTreeNode, right) == 16);
static_assert(offsetof(ParamTreeNode, color) == 24 && offsetof(ParamTreeNode, isNil) == 25);
static_assert(offsetof(ParamTreeNode, functionId) == 28 && offsetof(ParamTreeNode, value) == 32);

// A client's map from function id to ParamValue: a binary search tree ordered by signed id, which need not be
// balanced. `head` points to the nil node. In the nil node, `left` points to the smallest node, `parent` to
// the root and `right` to the largest node. In the other nodes, the link to a missing child points to the nil
// node.
struct ParamTree {
    class Iterator {
    public:
        explicit Iterator(const ParamTreeNode* start) noexcept : node{start} {}
        const ParamTreeNode& operator*() const noexcept { return *node; }
        Iterator& operator++() noexcept {
            node = IsNil(node->right) ? FirstAncestorToTheRight(node) : Leftmost(node->right);
            return *this;
        }
        bool operator==(const Iterator& other) const noexcept = default;

    private:
        static bool IsNil(const ParamTreeNode* link) noexcept { return link->isNil != 0; }
        static const ParamTreeNode* Leftmost(const ParamTreeNode* subtree) noexcept {
            while (!IsNil(subtree->left))
                subtree = subtree->left;
            return subtree;
        }
        static const ParamTreeNode* FirstAncestorToTheRight(const ParamTreeNode* descendant) noexcept {
            const ParamTreeNode* ancestor = descendant->parent;
            while (!IsNil(ancestor) && descendant == ancestor->right)
                descendant = std::exchange(ancestor, ancestor->parent);
            return ancestor;
        }

        const ParamTreeNode* node;
    };

    // Iterates in ascending order of the ids.
    Iterator begin() const noexcept { return Iterator{head->left}; }
    Iterator end() const noexcept { return Iterator{head}; }
    bool empty() const noexcept { return count == 0; }

    ParamTreeNode* head;
    std::uint64_t count;
};

static_assert(sizeof(ParamTree) == 16 && offsetof(ParamTree, head) == 0 && offsetof(ParamTree, count) == 8);

// The argument of SetParameter.
struct ParamMapHolder {
    void* clientWord;  // reserved for the client; the library never accesses it
    ParamTree params;
};

static_assert(sizeof(ParamMapHolder) == 24 && offsetof(ParamMapHolder, params) == 8);

// The selected options of a function in the scheme that TEVGetParam loaded.
struct FuncCurValue {
    std::uint32_t FunctionId;  // functions 7 and 8, the refresh rates, are both reported as 7
    std::uint32_t ACValue;     // an option, not a position
    std::uint32_t DCValue;
};

static_assert(sizeof(FuncCurValue) == 12 && offsetof(FuncCurValue, FunctionId) == 0);
static_assert(offsetof(FuncCurValue, ACValue) == 4 && offsetof(FuncCurValue, DCValue) == 8);

// A command of a function, with the options that the parameters of a scheme select.
struct CommandInfoRecord {
    std::int32_t id = 0;
    std::int32_t event = 0;
    std::int32_t state = 0;
    std::int32_t option1 = 0;
    std::int32_t option2 = 0;
    std::int32_t flag = 0;
    Text specInfo1 = {};
};

static_assert(sizeof(CommandInfoRecord) == 544 && offsetof(CommandInfoRecord, id) == 0);
static_assert(offsetof(CommandInfoRecord, event) == 4 && offsetof(CommandInfoRecord, state) == 8);
static_assert(offsetof(CommandInfoRecord, option1) == 12 && offsetof(CommandInfoRecord, option2) == 16);
static_assert(offsetof(CommandInfoRecord, flag) == 20 && offsetof(CommandInfoRecord, specInfo1) == 24);

// ---- Spec schemes ---------------------------------------------------------------------------------------

// The values that a spec scheme prescribes for one Windows power setting.
struct SpecPowerSettingRecord {
    std::int32_t acValue = 0;
    std::int32_t dcValue = 0;
    GUID powerSetting = {};
};

static_assert(sizeof(SpecPowerSettingRecord) == 24 && offsetof(SpecPowerSettingRecord, acValue) == 0);
static_assert(offsetof(SpecPowerSettingRecord, dcValue) == 4);
static_assert(offsetof(SpecPowerSettingRecord, powerSetting) == 8);

// The settings in one subgroup of the Windows power settings.
struct SpecSubGroupRecord {
    GUID subGroup = {};
    List<SpecPowerSettingRecord> powerSettings;
};

static_assert(sizeof(SpecSubGroupRecord) == 32 && offsetof(SpecSubGroupRecord, subGroup) == 0);
static_assert(offsetof(SpecSubGroupRecord, powerSettings) == 16);

// The Windows power settings that the suite prescribes for one power scheme. Compatibility: C50.
struct SpecSchemeRecord {
    GUID scheme = {};
    std::uint8_t reserved[16] = {};  // always zero
    Text unused1 = {};               // the three strings are always empty
    Text unused2 = {};
    Text unused3 = {};
    List<SpecSubGroupRecord> subGroups;
};

static_assert(sizeof(SpecSchemeRecord) == 1608 && offsetof(SpecSchemeRecord, scheme) == 0);
static_assert(offsetof(SpecSchemeRecord, reserved) == 16 && offsetof(SpecSchemeRecord, unused1) == 32);
static_assert(offsetof(SpecSchemeRecord, unused2) == 552 && offsetof(SpecSchemeRecord, unused3) == 1072);
static_assert(offsetof(SpecSchemeRecord, subGroups) == 1592);

// ---- Callbacks ------------------------------------------------------------------------------------------

// An export that enumerates items calls OnItem once for each item, on the caller's thread, before the export
// returns. A C client passes a pointer to a struct. The struct's first member points to a table of function
// pointers, and the first entry of the table is OnItem.
//
// OnItem may throw an exception to end the enumeration. The exception reaches the client after the library
// has freed the items, if the same compiler built both: mingw-w64 (g++ or clang) or MSVC. Otherwise, OnItem
// must not throw, because the items would not be freed or the process would end. A C client must not leave
// OnItem with longjmp. With the option /EHsc, MSVC assumes that extern "C" functions do not throw, so the
// exports that call OnItem are declared with noexcept(false). Compatibility: C10.

struct IGetFunctionBaseCallback {
    virtual void OnItem(const FunctionBaseRecord* record) = 0;

protected:
    ~IGetFunctionBaseCallback() = default;
};

struct IGetFunctionInfoCallback {
    virtual void OnItem(std::uint32_t functionId, const FunctionRecord* record) = 0;

protected:
    ~IGetFunctionInfoCallback() = default;
};

struct IGetParameterCallback {
    virtual void OnItem(std::int32_t functionId, const ParamValue* value) = 0;

protected:
    ~IGetParameterCallback() = default;
};

using IGetParameterDefaultCallback = IGetParameterCallback;

struct IGetCommandInfoCallback {
    virtual void OnItem(const CommandInfoRecord* record) = 0;

protected:
    ~IGetCommandInfoCallback() = default;
};

struct IGetSpecSchemeCallback {
    virtual void OnItem(const SpecSchemeRecord* record) = 0;

protected:
    ~IGetSpecSchemeCallback() = default;
};

// ---- Exports --------------------------------------------------------------------------------------------

inline constexpr std::uint32_t CatalogueUnavailable = 0xFFFFFFFF;

extern "C" {

// Returns the number of functions in the catalogue. Returns CatalogueUnavailable when the catalogue cannot be
// loaded, or after ZOTDamExit. The first call of any export that needs the catalogue loads it from the
// defaults file. Compatibility: C21, C26.
std::uint32_t GetFuncCount();

// Enumerates the functions of the base catalogue in file order. If a function cannot be read, enumerates only
// the functions before it. Returns false for a null callback or after ZOTDamExit, otherwise true.
// Compatibility: C20, C22.
bool GetFunctionBase(IGetFunctionBaseCallback* callback) noexcept(false);

// Enumerates the functions of the base catalogue that are missing from the catalogue. Enumerates nothing when
// the catalogue cannot be loaded or when a function of the base catalogue cannot be read. The return value is
// the same as for GetFunctionBase. Compatibility: C22.
bool GetFunctionBaseUnSupported(IGetFunctionBaseCallback* callback) noexcept(false);

// Enumerates the functions of the catalogue by ascending id. Their names, groups and labels are texts of the
// string table in the user's language, or the key if the string table has no text for it. The return value is
// the same as for GetFunctionBase. Compatibility: C27, C46.
bool GetFunctionInfo(IGetFunctionInfoCallback* callback) noexcept(false);

// Replaces all functions in the defaults file with the holder's records and saves the file. Skips a record
// without command items. If a record cannot be written, saves only the records before it. If the catalogue is
// already loaded and not empty, it does not change until the library is reloaded. Returns false for a null
// holder, for an empty list, or after ZOTDamExit. Otherwise returns true, even when writing failed.
// Compatibility: C24, C25, C26.
bool AddFunctionDefault(const FunctionBaseHolder* holder);

// Enumerates the parameters of a scheme by ascending function id. Reads them from the user settings file. If
// the scheme or a function of the catalogue is missing there, adds it with its default parameters to the
// file. A scheme that contains no readable function is not completed, so nothing is enumerated for it.
// Function 7 or 8 is left out unless the primary display supports both refresh rates of this function.
// Enumerates nothing for the all-zero GUID. Returns false for a null callback or after ZOTDamExit. Otherwise
// returns true, even when nothing could be read. Compatibility: C5, C30, C31, C36.
bool GetParameter(const GUID* scheme, IGetParameterCallback* callback) noexcept(false);

// Enumerates the default parameters of a scheme by ascending function id. Enumerates nothing for the all-zero
// GUID. The return value is the same as for GetParameter. Compatibility: C5, C34.
bool GetParameterDefault(const GUID* scheme, IGetParameterDefaultCallback* callback) noexcept(false);

// Stores the holder's parameters for a scheme in the user settings file. The parameters of other functions do
// not change. Does nothing for the all-zero GUID. Returns false for a null holder, for an empty map, or after
// ZOTDamExit. Otherwise returns true, even when writing failed. Compatibility: C5, C35.
bool SetParameter(const GUID* scheme, const ParamMapHolder* holder);

// Removes all schemes and common settings from the user settings and saves the file. Does not read the file
// again: it changes and saves the content that this process read last. Returns false and saves nothing when
// this content has no schemes, or after ZOTDamExit. Compatibility: C12, C13.
bool ResetDefault();

// Loads the parameters of a scheme for GetFuncCurValue. Replaces the parameters that the previous call
// loaded. If the scheme cannot be loaded completely, adds its missing default parameters. Returns false when
// these cannot be read completely either, or after ZOTDamExit. The parameters that could be read are loaded
// even then. Compatibility: C36.
bool TEVGetParam(const GUID* scheme);

// Retrieves the selected options of one function in the scheme that TEVGetParam loaded. `position` is the
// zero-based position of the function in the catalogue, by ascending id. A position of 2^31 or more means the
// first function if the catalogue has more than one. A field of `value` is left unchanged when the parameter
// is not a position in the list of options. For a function that is missing from the scheme, retrieves the
// first options of its lists. Returns false and leaves `value` unchanged when no parameters are loaded, when
// the catalogue has no such position, or after ZOTDamExit. Compatibility: C39, C40, C41, C42.
bool GetFuncCurValue(std::uint32_t position, FuncCurValue* value);

// Enumerates the commands of every function that has parameters in the scheme, by ascending function id and
// then in file order. The options of a command are those that the parameters select, or 0 for a parameter
// that selects no option. Enumerates nothing for the all-zero GUID. The return value is the same as for
// GetParameter. Compatibility: C5, C43, C44.
bool GetCommandInfo(const GUID* scheme, IGetCommandInfoCallback* callback) noexcept(false);

// Lists the functions whose parameters differ between two schemes, for one power source (mode 1: AC, mode 2:
// DC). `names` and `values` are buffers of TextCapacity UTF-16 code units. `names` receives a line "- name"
// for each function. Functions of the group "Group1Name" come first. `values` receives one line for each
// function in the same order: the label of the option that scheme B selects, which may be empty. Each line
// ends with a line feed followed by a carriage return. A string that does not fit is truncated. Returns true
// when there is a difference and both buffers were written. With a null buffer, the export loads the schemes
// and writes the other buffer as usual, but returns false. Compatibility: C6, C45, C46, C47, C48.
bool GetDiffFuncList(const GUID* schemeA, const GUID* schemeB, std::uint32_t mode, wchar_t* names,
                     wchar_t* values);

// Enumerates the spec schemes of the base catalogue in file order. Skips a spec scheme if it, one of its
// subgroups or one of its settings is missing an attribute. Skips each spec scheme, subgroup or setting that
// has a malformed GUID. The return value is the same as for GetFunctionBase. Compatibility: C49.
bool GetSpecScheme(IGetSpecSchemeCallback* callback) noexcept(false);

// Copies the named common setting into `value`, a buffer of TextCapacity UTF-16 code units. Searches the user
// settings first, then the defaults, then the base catalogue. The name is case-sensitive. An empty value is
// valid. A value that does not fit into the buffer counts as missing. Returns false and leaves the buffer
// unchanged for a null name, when none of the three files has the setting, or after ZOTDamExit.
// Compatibility: C51.
bool GetCommonSetting(const wchar_t* name, wchar_t* value);

// Stores a common setting in the user settings file. The name must be an XML name without a colon, as the
// fourth edition of XML 1.0 defines it, and must not be "xmlns". The value must contain only characters that
// XML 1.0 allows. Returns false for null or invalid arguments, when the file cannot be written, or after
// ZOTDamExit. If another process holds the busy marker of the file, or if the file could not be read, the
// setting stays in memory only and the export returns true. Compatibility: C3, C51.
bool SetCommonSetting(const wchar_t* name, const wchar_t* value);

// Replaces the common settings of the defaults file with those of the base catalogue and saves the file.
// Returns false when the base catalogue has no common settings, when the file cannot be written, or after
// ZOTDamExit. If another process holds the busy marker of the file, or if the file could not be read, the
// change stays in memory only and the export returns true. Compatibility: C3, C52.
bool InitCommonSetting();

// Releases the documents and tables of the library, including all COM objects. The client must call it before
// FreeLibrary and CoUninitialize. After it, all other exports return their failure values. Further calls of
// ZOTDamExit have no effect. Always returns true. Compatibility: C7, C8.
bool ZOTDamExit();
}

}  // namespace ZOTDam
