// ZOTDam, the data access module of QUEN Power Management: records, lists, callbacks and exports.
//
// Every byte here is a fixed binary interface: programs built with other compilers, and from C, use the
// same DLL. The assertions beside each group prove the layout in every build.
//
// What holds for every export:
//  - The caller has initialised COM on the calling thread and keeps it so until ZOTDamExit has returned.
//  - Exports are not called concurrently. An OnItem may call exports itself.
//  - No error code is given, and no exception of the library gets out. What a client's own OnItem throws
//    passes through to that client.
//  - Pointers are not null, unless said otherwise. Texts are UTF-16.
//  - What a client passes in is read and never changed or freed; what OnItem receives, the client neither
//    changes nor frees. A record is valid only while its OnItem runs.
#pragma once

#include <guiddef.h>

#include <cstddef>
#include <cstdint>
#include <utility>

struct IXMLDOMNode;

namespace ZOTDam {

// Units of a fixed text field and of a caller's text buffer, the terminating zero included.
inline constexpr std::size_t TextCapacity = 260;

using Text = wchar_t[TextCapacity];

static_assert(sizeof(Text) == 520);

// ---- Lists ----------------------------------------------------------------------------------------------

// What every node of a List begins with; the sentinel is these two links and nothing more.
struct ListLinks {
    ListLinks* next;
    ListLinks* prev;
};

// The sentinel of all empty lists, so that a list without records allocates nothing. Never written.
inline ListLinks EmptyListLinks{&EmptyListLinks, &EmptyListLinks};

// A doubly linked list that owns its records, in the layout that all clients share.
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
    // A list that a client has built may say that it is empty by its count alone.
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

// One option that a function offers on one power source.
struct DisplayItem {
    std::int32_t option = 0;  // the value that the option stands for
    Text label = {};
};

static_assert(sizeof(DisplayItem) == 524 && offsetof(DisplayItem, option) == 0);
static_assert(offsetof(DisplayItem, label) == 4);

// A power-management function in use on this machine.
struct FunctionRecord {
    std::int32_t type = 0;
    std::int32_t flag = 0;
    Text name = {};
    Text group = {};
    List<DisplayItem> acDisplayItems;  // options on mains power
    List<DisplayItem> dcDisplayItems;  // options on battery
};

static_assert(sizeof(FunctionRecord) == 1080 && sizeof(List<DisplayItem>) == 16);
static_assert(offsetof(FunctionRecord, type) == 0 && offsetof(FunctionRecord, flag) == 4);
static_assert(offsetof(FunctionRecord, name) == 8 && offsetof(FunctionRecord, group) == 528);
static_assert(offsetof(FunctionRecord, acDisplayItems) == 1048);
static_assert(offsetof(FunctionRecord, dcDisplayItems) == 1064);

// ---- Functions of the base catalogue --------------------------------------------------------------------

// A pointer that holds one counted reference. Copying and destroying one needs the complete interface type
// (<msxml6.h>, or <msxml2.h> where a toolchain lacks it).
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

struct BaseCommandItem {
    std::int32_t id = 0;
    std::int32_t event = 0;
    std::int32_t state = 0;
    std::int32_t paramIndex1 = 0;
    std::int32_t paramIndex2 = 0;
    std::int32_t flag = 0;
    Text specInfo1 = {};
};

static_assert(sizeof(BaseCommandItem) == 544 && offsetof(BaseCommandItem, id) == 0);
static_assert(offsetof(BaseCommandItem, event) == 4 && offsetof(BaseCommandItem, state) == 8);
static_assert(offsetof(BaseCommandItem, paramIndex1) == 12 && offsetof(BaseCommandItem, paramIndex2) == 16);
static_assert(offsetof(BaseCommandItem, flag) == 20 && offsetof(BaseCommandItem, specInfo1) == 24);

// A check that the client makes to find out whether this machine supports a function.
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

struct CommandFamily {
    List<BaseCommandItem> commandItems;
    List<CheckExistItem> checkExistItems;
};

static_assert(sizeof(CommandFamily) == 32 && offsetof(CommandFamily, commandItems) == 0);
static_assert(offsetof(CommandFamily, checkExistItems) == 16);

// A function that the suite knows, whether or not this machine supports it.
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

// What AddFunctionDefault takes.
struct FunctionBaseHolder {
    void* clientWord = nullptr;  // the client's own; neither read nor written
    List<FunctionBaseRecord> records;
};

static_assert(sizeof(FunctionBaseHolder) == 24 && offsetof(FunctionBaseHolder, records) == 8);

// ---- Parameters of a power scheme -----------------------------------------------------------------------

// What one function is set to in one power scheme: zero-based positions in its lists of display items.
struct ParamValue {
    std::int32_t ACParamIndex = 0;  // on mains power
    std::int32_t DCParamIndex = 0;  // on battery

    bool operator==(const ParamValue&) const noexcept = default;
};

static_assert(sizeof(ParamValue) == 8 && offsetof(ParamValue, ACParamIndex) == 0);
static_assert(offsetof(ParamValue, DCParamIndex) == 4);

// A node of a ParamTree. `color` belongs to the client; the module never reads it.
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

// A client's map from function id to ParamValue: a binary search tree ordered by signed id. `head` is the
// nil node: its left is the smallest node, its parent the root, its right the largest, and every missing
// child is the nil node. The tree need not be balanced.
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
        static bool IsNil(const ParamTreeNode* node) noexcept { return node->isNil != 0; }
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

    // In ascending order of the ids.
    Iterator begin() const noexcept { return Iterator{head->left}; }
    Iterator end() const noexcept { return Iterator{head}; }
    bool empty() const noexcept { return count == 0; }

    ParamTreeNode* head;
    std::uint64_t count;
};

static_assert(sizeof(ParamTree) == 16 && offsetof(ParamTree, head) == 0 && offsetof(ParamTree, count) == 8);

// What SetParameter takes.
struct ParamMapHolder {
    void* clientWord;  // the client's own; neither read nor written
    ParamTree params;
};

static_assert(sizeof(ParamMapHolder) == 24 && offsetof(ParamMapHolder, params) == 8);

// The options that a function has in the scheme that TEVGetParam loaded.
struct FuncCurValue {
    std::uint32_t FunctionId;  // 7 for the functions 7 and 8, which share one refresh rate
    std::uint32_t ACValue;
    std::uint32_t DCValue;
};

static_assert(sizeof(FuncCurValue) == 12 && offsetof(FuncCurValue, FunctionId) == 0);
static_assert(offsetof(FuncCurValue, ACValue) == 4 && offsetof(FuncCurValue, DCValue) == 8);

// A command of a function, with the options that a scheme's parameters select for it.
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

struct SpecPowerSettingRecord {
    std::int32_t acValue = 0;
    std::int32_t dcValue = 0;
    GUID powerSetting = {};
};

static_assert(sizeof(SpecPowerSettingRecord) == 24 && offsetof(SpecPowerSettingRecord, acValue) == 0);
static_assert(offsetof(SpecPowerSettingRecord, dcValue) == 4);
static_assert(offsetof(SpecPowerSettingRecord, powerSetting) == 8);

struct SpecSubGroupRecord {
    GUID subGroup = {};
    List<SpecPowerSettingRecord> powerSettings;
};

static_assert(sizeof(SpecSubGroupRecord) == 32 && offsetof(SpecSubGroupRecord, subGroup) == 0);
static_assert(offsetof(SpecSubGroupRecord, powerSettings) == 16);

// The Windows power settings that the suite prescribes for one power scheme.
struct SpecSchemeRecord {
    GUID scheme = {};
    std::uint8_t reserved[16] = {};  // always zero
    Text unused1 = {};               // the three texts are always empty
    Text unused2 = {};
    Text unused3 = {};
    List<SpecSubGroupRecord> subGroups;
};

static_assert(sizeof(SpecSchemeRecord) == 1608 && offsetof(SpecSchemeRecord, scheme) == 0);
static_assert(offsetof(SpecSchemeRecord, reserved) == 16 && offsetof(SpecSchemeRecord, unused1) == 32);
static_assert(offsetof(SpecSchemeRecord, unused2) == 552 && offsetof(SpecSchemeRecord, unused3) == 1072);
static_assert(offsetof(SpecSchemeRecord, subGroups) == 1592);

// ---- Callbacks ------------------------------------------------------------------------------------------

// An enumerating export calls OnItem once per item, on the caller's thread and before it returns. A client
// in C passes a pointer to a struct whose first member points to a table whose first entry is OnItem.

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

// The number of functions in the catalogue, which the first call that needs it reads from the defaults file;
// CatalogueUnavailable when it cannot be loaded.
std::uint32_t GetFuncCount();

// Enumerates every function of the base catalogue, in the order of the file. False for a null callback, or
// after ZOTDamExit; otherwise true. A function that cannot be read ends the enumeration; those before it are
// given.
bool GetFunctionBase(IGetFunctionBaseCallback* callback);

// Enumerates the functions of the base catalogue that the catalogue lacks; results as GetFunctionBase. None
// is given when the catalogue cannot be loaded or a function cannot be read.
bool GetFunctionBaseUnSupported(IGetFunctionBaseCallback* callback);

// Enumerates the catalogue by ascending id, with names, groups and labels in the user's language; a key for
// which the string table has no text stands for itself. Results as GetFunctionBase.
bool GetFunctionInfo(IGetFunctionInfoCallback* callback);

// Makes the holder's records the functions of the defaults file, in place of all that it had, and saves it. A
// record without command items is left out; one that cannot be written ends the writing. A catalogue that is
// loaded already stays as it is until the library is loaded anew. False for a null holder or an empty list,
// or after ZOTDamExit; otherwise true, whatever became of the writing.
bool AddFunctionDefault(const FunctionBaseHolder* holder);

// Enumerates what the functions are set to in a power scheme, by ascending id: the user's values, completed
// from the defaults. A scheme or function that the user settings file lacks is added to it, but no function
// to a scheme of which none can be read. Functions 7 and 8 are left out when the primary display lacks one of
// their two refresh rates. The all-zero scheme has no items. False for a null callback, or after ZOTDamExit;
// otherwise true, even when nothing could be read.
bool GetParameter(const GUID* scheme, IGetParameterCallback* callback);

// Enumerates the defaults of a power scheme, by ascending id; results as GetParameter.
bool GetParameterDefault(const GUID* scheme, IGetParameterDefaultCallback* callback);

// Stores the holder's values for a power scheme in the user settings file; functions that the holder leaves
// out keep theirs. False for a null holder or an empty map, or after ZOTDamExit; otherwise true, whatever
// became of the writing. The all-zero scheme is never written.
bool SetParameter(const GUID* scheme, const ParamMapHolder* holder);

// Removes all schemes and common settings from the user settings as this process last read them, and saves
// the file. False when there was no scheme to remove (then nothing is saved), or after ZOTDamExit.
bool ResetDefault();

// Loads a power scheme's parameters for GetFuncCurValue, in place of those loaded before. False when neither
// the user settings nor all of the defaults could be read (those that could be are loaded all the same), or
// after ZOTDamExit.
bool TEVGetParam(const GUID* scheme);

// Gives the options of the function at a zero-based position of the catalogue, in the scheme that TEVGetParam
// loaded. `value` is not null; a field whose parameter selects no display item is left as it is. A function
// that the scheme lacks gives its first options. False, and `value` untouched, when no parameters are loaded,
// the catalogue has no such position, or after ZOTDamExit. A position of 2^31 or more means the first
// function, if there are several.
bool GetFuncCurValue(std::uint32_t position, FuncCurValue* value);

// Enumerates the commands of every function that the scheme sets, by ascending function id and then in the
// order of the file, each with the options that the scheme's parameters select (0 where they select none);
// results as GetParameter.
bool GetCommandInfo(const GUID* scheme, IGetCommandInfoCallback* callback);

// Lists the functions that two schemes set differently, for one power source (mode 1: mains, 2: battery).
// `names` and `values` are buffers of TextCapacity units. `names` gets a line "- name" for each function,
// those of the group "Group1Name" first, and `values` in the same order the text of what scheme B sets it to,
// which may be empty; each line ends in a line feed and a carriage return, in this order. What does not fit
// is cut off. True when there was a difference and both texts were written. A null buffer is left out, and
// gives false after all else has been done.
bool GetDiffFuncList(const GUID* schemeA, const GUID* schemeB, std::uint32_t mode, wchar_t* names,
                     wchar_t* values);

// Enumerates the Windows power settings that the base catalogue prescribes, scheme by scheme in file order;
// results as GetFunctionBase. A scheme in which an attribute is missing is left out, and so is a scheme, a
// subgroup or a setting whose GUID is malformed.
bool GetSpecScheme(IGetSpecSchemeCallback* callback);

// Copies the named common setting of the user, else of the defaults, else of the base catalogue into `value`,
// a buffer of TextCapacity units. The case of the name counts. An empty value is one; one that does not fit
// the buffer is none. False, and the buffer untouched, for a null name, when none has it, or after
// ZOTDamExit.
bool GetCommonSetting(const wchar_t* name, wchar_t* value);

// Stores a common setting in the user settings file. The name is an XML name without a colon and not "xmlns",
// the value has only characters that XML 1.0 can hold. False for null or other arguments, when the file
// cannot be written, or after ZOTDamExit. While another process uses the file, the setting stays in memory,
// which counts as success.
bool SetCommonSetting(const wchar_t* name, const wchar_t* value);

// Replaces the common settings of the defaults file with those of the base catalogue, and saves it. False
// when the base catalogue has none, when the file cannot be written, or after ZOTDamExit; true, with the
// change in memory only, while another process uses the file.
bool InitCommonSetting();

// Releases everything that the library holds, all COM objects included. The last call before unloading the
// library and before the thread's CoUninitialize; calling it again does nothing. Always true.
bool ZOTDamExit();
}

}  // namespace ZOTDam
