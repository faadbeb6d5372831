// Adopts all functions of the base catalogue, lists them, changes parameters of a scheme, and reads them again. The
// program loads ZOTDam.dll from its own folder. FOLDER must contain the folders "Program Files" and "ProgramData" of an
// installation:
//
//	quickstart_go FOLDER
package main

import (
	"fmt"
	"os"
	"path/filepath"
	"runtime"
	"syscall"
	"unsafe"
)

// ---- The interface: offsets and sizes as in docs/clients.md ---------------------------------------------

type text [260]uint16

type links struct {
	next, prev *links
}

type list struct {
	head  *links
	count uint64
}

type functionRecord struct {
	kind, flag                     int32
	name, group                    text
	acDisplayItems, dcDisplayItems list
}

type baseCommandItem struct {
	id, event, state, paramIndex1, paramIndex2, flag int32
	specInfo1                                        text
}

type checkExistItem struct {
	checkFlag                      int32
	param1, param2, param3, param4 text
}

type commandFamily struct {
	commandItems, checkExistItems list
}

type functionBaseRecord struct {
	id, kind, flag           int32
	name, group              text
	displayNode, defaultNode *unknown
	commandFamilies          list
}

type functionBaseHolder struct {
	clientWord uintptr
	records    list
}

type paramValue struct {
	acParamIndex, dcParamIndex int32
}

type paramTreeNode struct {
	left, parent, right *paramTreeNode
	color, isNil        byte
	functionID          int32
	value               paramValue
}

type paramMapHolder struct {
	clientWord uintptr
	head       *paramTreeNode
	count      uint64
}

// A type of another size is a compile-time error: the constant would be negative or too large.
const (
	_ = -(unsafe.Sizeof(functionRecord{}) ^ 1080)
	_ = -(unsafe.Sizeof(baseCommandItem{}) ^ 544)
	_ = -(unsafe.Sizeof(checkExistItem{}) ^ 2084)
	_ = -(unsafe.Sizeof(functionBaseRecord{}) ^ 1088)
	_ = -(unsafe.Sizeof(functionBaseHolder{}) ^ 24)
	_ = -(unsafe.Sizeof(paramTreeNode{}) ^ 40)
	_ = -(unsafe.Sizeof(paramMapHolder{}) ^ 24)
)

var balanced = syscall.GUID{Data1: 0x381b4222, Data2: 0xf694, Data3: 0x41f0,
	Data4: [8]byte{0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}}

var (
	zotDam             = syscall.NewLazyDLL("ZOTDam.dll")
	getFuncCount       = zotDam.NewProc("GetFuncCount")
	getFunctionBase    = zotDam.NewProc("GetFunctionBase")
	addFunctionDefault = zotDam.NewProc("AddFunctionDefault")
	getFunctionInfo    = zotDam.NewProc("GetFunctionInfo")
	getParameter       = zotDam.NewProc("GetParameter")
	setParameter       = zotDam.NewProc("SetParameter")
	zotDamExit         = zotDam.NewProc("ZOTDamExit")

	ole32          = syscall.NewLazyDLL("ole32.dll")
	coInitializeEx = ole32.NewProc("CoInitializeEx")
	coUninitialize = ole32.NewProc("CoUninitialize")
)

// A bool is one byte. The other bytes of the register are undefined.
func isTrue(result uintptr, _ uintptr, _ error) bool {
	return byte(result) != 0
}

// unknown is a COM object. Its methods AddRef and Release are the second and third one of its table.
type unknown struct {
	methods *[3]uintptr
}

func (object *unknown) call(method int) {
	if object != nil {
		syscall.SyscallN(object.methods[method], uintptr(unsafe.Pointer(object)))
	}
}

// A callback is an object whose first field points to a function table with one entry, OnItem. The library keeps no
// pointer to it. Go never frees the functions that NewCallback creates, so a program creates each of them only once.
type callback struct {
	table *uintptr
}

func newCallback(onItem interface{}) *callback {
	function := syscall.NewCallback(onItem)
	return &callback{&function}
}

// ---- Lists ----------------------------------------------------------------------------------------------

// A node consists of its links, followed by the record. The garbage collector follows the pointers in these types.
type (
	functionNode struct {
		links
		record functionBaseRecord
	}
	familyNode struct {
		links
		record commandFamily
	}
	commandNode struct {
		links
		record baseCommandItem
	}
	checkNode struct {
		links
		record checkExistItem
	}
)

func emptyList() list {
	head := &links{}
	head.next, head.prev = head, head
	return list{head, 0}
}

func (l *list) add(node *links) {
	node.next, node.prev = l.head, l.head.prev
	node.prev.next, l.head.prev = node, node
	l.count++
}

// copyList returns a list with a copy of each node.
func copyList(original list, copyNode func(node *links) *links) list {
	result := emptyList()
	for node := original.head.next; node != original.head; node = node.next {
		result.add(copyNode(node))
	}
	return result
}

func copyCommand(node *links) *links {
	result := *(*commandNode)(unsafe.Pointer(node))
	return &result.links
}

func copyCheck(node *links) *links {
	result := *(*checkNode)(unsafe.Pointer(node))
	return &result.links
}

func copyFamily(node *links) *links {
	family := (*familyNode)(unsafe.Pointer(node)).record
	return &(&familyNode{record: commandFamily{
		copyList(family.commandItems, copyCommand), copyList(family.checkExistItems, copyCheck)}}).links
}

// ---- Adopting functions ---------------------------------------------------------------------------------

// The functions that the program keeps.
var kept functionBaseHolder

// A real program performs the checks of the record and keeps only the supported functions.
var keepFunction = newCallback(func(_ *callback, record *functionBaseRecord) uintptr {
	node := &functionNode{record: *record}
	node.record.commandFamilies = copyList(record.commandFamilies, copyFamily)
	node.record.displayNode.call(1)
	node.record.defaultNode.call(1)
	kept.records.add(&node.links)
	return 0
})

func adoptAll() {
	kept.records = emptyList()
	getFunctionBase.Call(uintptr(unsafe.Pointer(keepFunction)))
	accepted := isTrue(addFunctionDefault.Call(uintptr(unsafe.Pointer(&kept))))
	fmt.Printf("%d functions adopted: %s\n", kept.records.count, yesOrNo(accepted))
	for node := kept.records.head.next; node != kept.records.head; node = node.next {
		function := (*functionNode)(unsafe.Pointer(node)).record
		function.displayNode.call(2)
		function.defaultNode.call(2)
	}
	kept.records = list{}
}

// ---- Listing functions ----------------------------------------------------------------------------------

var printFunction = newCallback(func(_ *callback, id uint32, record *functionRecord) uintptr {
	fmt.Printf("%d: %s, options: %d and %d\n", id, syscall.UTF16ToString(record.name[:]),
		record.acDisplayItems.count, record.dcDisplayItems.count)
	return 0
})

func listFunctions() {
	count, _, _ := getFuncCount.Call()
	fmt.Printf("%d functions in the catalogue\n", uint32(count))
	getFunctionInfo.Call(uintptr(unsafe.Pointer(printFunction)))
}

// ---- Parameters -----------------------------------------------------------------------------------------

var printParameter = newCallback(func(_ *callback, id int32, value *paramValue) uintptr {
	fmt.Printf("%d: position %d plugged in, %d on battery\n", id, value.acParamIndex, value.dcParamIndex)
	return 0
})

func listParameters() {
	getParameter.Call(uintptr(unsafe.Pointer(&balanced)), uintptr(unsafe.Pointer(printParameter)))
}

// changeParameters changes functions 1 and 2. The tree consists of the root, its right child, and the nil node.
func changeParameters() {
	nilNode, root, right := &paramTreeNode{isNil: 1}, &paramTreeNode{functionID: 1}, &paramTreeNode{functionID: 2}
	root.value = paramValue{0, 2}
	right.value = paramValue{5, 5}
	nilNode.left, nilNode.parent, nilNode.right = root, root, right
	root.left, root.parent, root.right = nilNode, nilNode, right
	right.left, right.parent, right.right = nilNode, root, nilNode
	holder := &paramMapHolder{head: nilNode, count: 2}
	accepted := isTrue(setParameter.Call(uintptr(unsafe.Pointer(&balanced)), uintptr(unsafe.Pointer(holder))))
	fmt.Printf("changes accepted: %s\n", yesOrNo(accepted))
}

// ---- The program ----------------------------------------------------------------------------------------

func yesOrNo(answer bool) string {
	if answer {
		return "yes"
	}
	return "no"
}

// workOn sets the two environment variables of the process that determine the folders of the library's files. A
// program that works on the files of the machine does not change them.
func workOn(folder string) {
	os.Setenv("ProgramFiles", filepath.Join(folder, "Program Files"))
	os.Setenv("ProgramData", filepath.Join(folder, "ProgramData"))
}

func main() {
	const apartmentThreaded = 2
	// COM is initialised for a thread. A goroutine may otherwise move to another thread.
	runtime.LockOSThread()
	if len(os.Args) != 2 {
		os.Exit(2)
	}
	if result, _, _ := coInitializeEx.Call(0, apartmentThreaded); int32(result) < 0 {
		os.Exit(2)
	}
	workOn(os.Args[1])
	adoptAll()
	listFunctions()
	listParameters()
	changeParameters()
	listParameters()
	zotDamExit.Call()
	coUninitialize.Call()
}
