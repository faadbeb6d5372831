// Objects for the test of the pretty printers. The debugger reads them from the program file, without running
// it. Therefore they are initialised statically, through members that have the same layout.
#include "ZOTDam.h"

using ZOTDam::CountedPointer;
using ZOTDam::DisplayItem;
using ZOTDam::List;
using ZOTDam::ListLinks;
using ZOTDam::ParamTree;
using ZOTDam::ParamTreeNode;

// An object whose type has no static initialisation.
template <class Object, class Members>
union Static {
    Members members;
    Object object;
    ~Static() {}
};

// ---- Lists ----------------------------------------------------------------------------------------------

struct ListMembers {
    ListLinks* head;
    std::uint64_t count;
};

struct Node {
    ListLinks links;
    DisplayItem item;
};

using StaticList = Static<List<DisplayItem>, ListMembers>;

extern ListLinks sentinel;
constinit Node nodes[3] = {
    {{&nodes[1].links, &sentinel}, {100, L"Hell \x263C"}},
    {{&nodes[2].links, &nodes[0].links}, {60, L"Mittel"}},
    {{&sentinel, &nodes[1].links}, {20, L""}},
};
constinit ListLinks sentinel = {&nodes[0].links, &nodes[2].links};

constinit StaticList three = {{&sentinel, 3}};
constinit StaticList none = {{&ZOTDam::EmptyListLinks, 0}};
constinit StaticList noneByCount = {{&sentinel, 0}};

// ---- Parameters -----------------------------------------------------------------------------------------

extern ParamTreeNode nil, two, seven, nine;
constinit ParamTreeNode nil = {&two, &seven, &nine, 0, 1, 0, {}};
constinit ParamTreeNode two = {&nil, &seven, &nil, 0, 0, 2, {0, 1}};
constinit ParamTreeNode seven = {&two, &nil, &nine, 0, 0, 7, {2, 3}};
constinit ParamTreeNode nine = {&nil, &seven, &nil, 0, 0, 9, {4, 5}};

constinit ParamTree parameters = {&nil, 3};
constinit ParamTree noParameters = {&nil, 0};

// ---- Pointers -------------------------------------------------------------------------------------------

struct Interface {
    void AddRef() {}
    void Release() {}
};

using StaticPointer = Static<CountedPointer<Interface>, const void*>;

constinit StaticPointer pointer = {&nil};
constinit StaticPointer nullPointer = {nullptr};

int main() {}
