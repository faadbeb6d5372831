// Adopts all functions of the base catalogue, lists them, changes parameters of a scheme, and reads them again. The
// program runs in Node.js for 64-bit Windows with the package koffi, and loads ZOTDam.dll from its own folder. FOLDER must
// contain the folders "Program Files" and "ProgramData" of an installation:
//     node quickstart.js FOLDER
'use strict';

const koffi = require('koffi');
const path = require('path');

// ---- The interface: offsets and sizes as in docs/clients.md ---------------------------------------------

// Addresses are numbers, which are exact up to 2^53.
const Address = 'uint64_t';

const LINKS_SIZE = 16;
const BASE_COMMAND_ITEM_SIZE = 544;
const CHECK_EXIST_ITEM_SIZE = 2084;
const COMMAND_FAMILY_SIZE = 32;
const FUNCTION_BASE_RECORD_SIZE = 1088;

// Offsets in the record of a function of the base catalogue and in a command family.
const DISPLAY_NODE = 1056;
const DEFAULT_NODE = 1064;
const COMMAND_FAMILIES = 1072;
const COMMAND_ITEMS = 0;
const CHECK_EXIST_ITEMS = 16;

const Text = koffi.array('char16_t', 260, 'String');
const Links = koffi.struct({ next: Address, prev: Address });
const List = koffi.struct({ head: Address, count: 'uint64_t' });
const FunctionRecord = koffi.struct({
    type: 'int32_t', flag: 'int32_t', name: Text, group: Text, acDisplayItems: List, dcDisplayItems: List
});
const FunctionBaseHolder = koffi.struct('FunctionBaseHolder', { clientWord: Address, records: List });
const ParamValue = koffi.struct({ acParamIndex: 'int32_t', dcParamIndex: 'int32_t' });
const ParamTreeNode = koffi.struct({
    left: Address, parent: Address, right: Address, color: 'uint8_t', isNil: 'uint8_t', functionId: 'int32_t',
    value: ParamValue
});
const ParamMapHolder = koffi.struct('ParamMapHolder', { clientWord: Address, head: Address, count: 'uint64_t' });

const OnFunctionBase = koffi.proto('void OnFunctionBase(uint64_t self, uint64_t record)');
const OnFunction = koffi.proto('void OnFunction(uint64_t self, uint32_t id, uint64_t record)');
const OnParameter = koffi.proto('void OnParameter(uint64_t self, int32_t id, uint64_t value)');

const library = koffi.load(path.join(__dirname, 'ZOTDam.dll'));
const GetFuncCount = library.func('uint32_t GetFuncCount()');
const GetFunctionBase = library.func('bool GetFunctionBase(void* callback)');
const AddFunctionDefault = library.func('bool AddFunctionDefault(FunctionBaseHolder* holder)');
const GetFunctionInfo = library.func('bool GetFunctionInfo(void* callback)');
const GetParameter = library.func('bool GetParameter(const uint8_t* scheme, void* callback)');
const SetParameter = library.func('bool SetParameter(const uint8_t* scheme, ParamMapHolder* holder)');
const ZOTDamExit = library.func('bool ZOTDamExit()');

const ole32 = koffi.load('ole32.dll');
const CoInitializeEx = ole32.func('int32_t CoInitializeEx(void* reserved, uint32_t model)');
const CoUninitialize = ole32.func('void CoUninitialize()');

// koffi reads and writes memory through pointer objects.
function pointerTo(address) {
    const bytes = Buffer.alloc(8);
    bytes.writeBigUInt64LE(BigInt(address));
    return koffi.decode(bytes, 'void*');
}

function read(address, type) {
    return koffi.decode(pointerTo(address), type);
}

function write(address, type, value) {
    koffi.encode(pointerTo(address), type, value);
}

// AddRef and Release, the second and the third method of each COM object.
const CountMethod = koffi.proto('uint32_t CountMethod(uint64_t object)');
const ADD_REF = 1;
const RELEASE = 2;

function callMethod(object, index) {
    const methods = read(object, Address);
    koffi.call(read(methods + 8 * index, koffi.pointer(CountMethod)), CountMethod, object);
}

// The scheme 381b4222-f694-41f0-9685-ff5bb260df2e. The first three fields of a GUID are little-endian.
const BALANCED = Buffer.from('22421b3894f6f0419685ff5bb260df2e', 'hex');

// ---- Callbacks ------------------------------------------------------------------------------------------

// Calls an export with an object whose first field points to a function table with one entry, OnItem. The library keeps
// no pointer to it.
function enumerate(prototype, onItem, callExport) {
    const registered = koffi.register(onItem, koffi.pointer(prototype));
    const object = koffi.alloc(Address, 2);
    koffi.encode(object, 0, Address, koffi.address(object) + 8n);
    koffi.encode(object, 8, Address, koffi.address(registered));
    callExport(object);
    koffi.free(object);
    koffi.unregister(registered);
}

// ---- Lists ----------------------------------------------------------------------------------------------

// Copies of records of the base catalogue. The nodes of the records have a reference each.
class Copies {
    #memory = [];
    #nodes = [];

    // A node consists of its links, followed by the record.
    #newNode(recordSize) {
        const memory = koffi.alloc('uint8_t', LINKS_SIZE + recordSize);
        this.#memory.push(memory);
        return Number(koffi.address(memory));
    }

    emptyList() {
        const head = this.#newNode(0);
        write(head, Links, { next: head, prev: head });
        return { head, count: 0 };
    }

    // Appends a copy of the record, and returns the copy.
    #append(list, record, recordSize) {
        const node = this.#newNode(recordSize);
        const last = read(list.head, Links).prev;
        const bytes = koffi.array('uint8_t', recordSize, 'Typed');
        write(node, Links, { next: list.head, prev: last });
        write(node + LINKS_SIZE, bytes, read(record, bytes));
        write(last, Address, node);
        write(list.head + 8, Address, node);
        ++list.count;
        return node + LINKS_SIZE;
    }

    // Replaces the list at an address with a copy, and calls a function for each record of the copy.
    #ownList(address, recordSize, ownRecord) {
        const { head } = read(address, List);
        const copy = this.emptyList();
        for (let node = read(head, Links).next; node !== head; node = read(node, Links).next)
            ownRecord(this.#append(copy, node + LINKS_SIZE, recordSize));
        write(address, List, copy);
    }

    appendFunction(list, record) {
        const copy = this.#append(list, record, FUNCTION_BASE_RECORD_SIZE);
        this.#ownList(copy + COMMAND_FAMILIES, COMMAND_FAMILY_SIZE, (family) => {
            this.#ownList(family + COMMAND_ITEMS, BASE_COMMAND_ITEM_SIZE, () => {});
            this.#ownList(family + CHECK_EXIST_ITEMS, CHECK_EXIST_ITEM_SIZE, () => {});
        });
        for (const offset of [DISPLAY_NODE, DEFAULT_NODE]) {
            const node = read(copy + offset, Address);
            if (node !== 0) {
                callMethod(node, ADD_REF);
                this.#nodes.push(node);
            }
        }
    }

    free() {
        this.#nodes.forEach((node) => callMethod(node, RELEASE));
        this.#memory.forEach((memory) => koffi.free(memory));
    }
}

// ---- The program ----------------------------------------------------------------------------------------

function yesOrNo(answer) {
    return answer ? 'yes' : 'no';
}

// A real program performs the checks of each record and keeps only the supported functions.
function adoptAll() {
    const copies = new Copies();
    const records = copies.emptyList();
    enumerate(OnFunctionBase, (self, record) => copies.appendFunction(records, record), GetFunctionBase);
    const accepted = AddFunctionDefault({ clientWord: 0, records });
    console.log(`${records.count} functions adopted: ${yesOrNo(accepted)}`);
    copies.free();
}

function listFunctions() {
    console.log(`${GetFuncCount()} functions in the catalogue`);
    enumerate(OnFunction, (self, id, address) => {
        const record = read(address, FunctionRecord);
        console.log(`${id}: ${record.name}, options: ${record.acDisplayItems.count} and ` +
            `${record.dcDisplayItems.count}`);
    }, GetFunctionInfo);
}

function listParameters() {
    enumerate(OnParameter, (self, id, address) => {
        const value = read(address, ParamValue);
        console.log(`${id}: position ${value.acParamIndex} plugged in, ${value.dcParamIndex} on battery`);
    }, (callback) => GetParameter(BALANCED, callback));
}

// Changes functions 1 and 2. The tree consists of the nil node, the root, and its right child.
function changeParameters() {
    const memory = koffi.alloc(ParamTreeNode, 3);
    const nil = Number(koffi.address(memory));
    const root = nil + koffi.sizeof(ParamTreeNode);
    const right = root + koffi.sizeof(ParamTreeNode);
    const writeNode = (node, left, parent, child, isNil, functionId, acParamIndex, dcParamIndex) =>
        write(node, ParamTreeNode, {
            left, parent, right: child, color: 0, isNil, functionId, value: { acParamIndex, dcParamIndex }
        });
    writeNode(nil, root, root, right, 1, 0, 0, 0);
    writeNode(root, nil, nil, right, 0, 1, 0, 2);
    writeNode(right, nil, root, nil, 0, 2, 5, 5);
    const accepted = SetParameter(BALANCED, { clientWord: 0, head: nil, count: 2 });
    console.log(`changes accepted: ${yesOrNo(accepted)}`);
    koffi.free(memory);
}

// These two environment variables of the process determine the folders of the library's files. A program that works on
// the files of the machine does not change them.
function workOn(folder) {
    process.env.ProgramFiles = path.join(folder, 'Program Files');
    process.env.ProgramData = path.join(folder, 'ProgramData');
}

function main(folder) {
    const APARTMENT_THREADED = 2;
    if (folder === undefined || CoInitializeEx(null, APARTMENT_THREADED) < 0)
        return 2;
    workOn(folder);
    adoptAll();
    listFunctions();
    listParameters();
    changeParameters();
    listParameters();
    ZOTDamExit();
    CoUninitialize();
    return 0;
}

process.exitCode = main(process.argv[2]);
