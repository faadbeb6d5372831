//! Adopts all functions of the base catalogue, lists them, changes parameters of a scheme, and reads them again. The
//! program links the import library of ZOTDam.dll. FOLDER must contain the folders "Program Files" and "ProgramData" of
//! an installation:
//!     quickstart_rs FOLDER

use std::ffi::c_void;
use std::mem::{size_of, size_of_val};
use std::path::Path;
use std::process::ExitCode;
use std::ptr::{addr_of, addr_of_mut, null_mut};

// ---- The interface: offsets and sizes as in docs/clients.md ---------------------------------------------

type Text = [u16; 260];

#[repr(C)]
#[derive(Clone, Copy)]
struct Links {
    next: *mut Links,
    prev: *mut Links,
}

#[repr(C)]
#[derive(Clone, Copy)]
struct List {
    head: *mut Links,
    count: u64,
}

#[repr(C)]
struct FunctionRecord {
    kind: i32,
    flag: i32,
    name: Text,
    group: Text,
    ac_display_items: List,
    dc_display_items: List,
}

#[repr(C)]
struct CommandFamily {
    command_items: List,
    check_exist_items: List,
}

const BASE_COMMAND_ITEM_SIZE: usize = 544;
const CHECK_EXIST_ITEM_SIZE: usize = 2084;

#[repr(C)]
struct FunctionBaseRecord {
    id: i32,
    kind: i32,
    flag: i32,
    name: Text,
    group: Text,
    display_node: *mut Unknown,
    default_node: *mut Unknown,
    command_families: List,
}

#[repr(C)]
struct FunctionBaseHolder {
    client_word: usize,
    records: List,
}

#[repr(C)]
struct ParamValue {
    ac_param_index: i32,
    dc_param_index: i32,
}

#[repr(C)]
struct ParamTreeNode {
    left: *const ParamTreeNode,
    parent: *const ParamTreeNode,
    right: *const ParamTreeNode,
    color: u8,
    is_nil: u8,
    function_id: i32,
    value: ParamValue,
}

#[repr(C)]
struct ParamMapHolder {
    client_word: usize,
    head: *const ParamTreeNode,
    count: u64,
}

const _: () = assert!(size_of::<FunctionRecord>() == 1080);
const _: () = assert!(size_of::<CommandFamily>() == 32);
const _: () = assert!(size_of::<FunctionBaseRecord>() == 1088);
const _: () = assert!(size_of::<FunctionBaseHolder>() == 24);
const _: () = assert!(size_of::<ParamTreeNode>() == 40);
const _: () = assert!(size_of::<ParamMapHolder>() == 24);

#[repr(C)]
struct Guid(u32, u16, u16, [u8; 8]);

const BALANCED: Guid =
    Guid(0x381b4222, 0xf694, 0x41f0, [0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e]);

#[link(name = "ZOTDam")]
extern "C" {
    fn GetFuncCount() -> u32;
    fn GetFunctionBase(callback: *mut c_void) -> bool;
    fn AddFunctionDefault(holder: *const FunctionBaseHolder) -> bool;
    fn GetFunctionInfo(callback: *mut c_void) -> bool;
    fn GetParameter(scheme: *const Guid, callback: *mut c_void) -> bool;
    fn SetParameter(scheme: *const Guid, holder: *const ParamMapHolder) -> bool;
    fn ZOTDamExit() -> bool;
}

#[link(name = "ole32")]
extern "system" {
    fn CoInitializeEx(reserved: *const c_void, model: u32) -> i32;
    fn CoUninitialize();
}

/// The methods that all COM objects have.
#[repr(C)]
struct Unknown {
    methods: *const UnknownMethods,
}

#[repr(C)]
struct UnknownMethods {
    query_interface: usize,
    add_ref: extern "system" fn(*mut Unknown) -> u32,
    release: extern "system" fn(*mut Unknown) -> u32,
}

// ---- Callbacks ------------------------------------------------------------------------------------------

/// An object whose first field points to a function table with one entry, OnItem. The library keeps no pointer to
/// it. OnItem must not panic, because a panic must not cross the library.
#[repr(C)]
struct Callback<F> {
    table: *const *const c_void,
    on_item: F,
}

fn enumerate<F>(function: *const c_void, on_item: F, export: impl FnOnce(*mut c_void) -> bool) -> bool {
    let mut callback = Callback { table: &function, on_item };
    export(addr_of_mut!(callback).cast())
}

fn get_function_base<F: FnMut(&FunctionBaseRecord)>(on_item: F) -> bool {
    extern "C" fn call<F: FnMut(&FunctionBaseRecord)>(this: &mut Callback<F>, record: &FunctionBaseRecord) {
        (this.on_item)(record);
    }
    enumerate(call::<F> as *const c_void, on_item, |callback| unsafe { GetFunctionBase(callback) })
}

fn get_function_info<F: FnMut(u32, &FunctionRecord)>(on_item: F) -> bool {
    extern "C" fn call<F: FnMut(u32, &FunctionRecord)>(this: &mut Callback<F>, id: u32, record: &FunctionRecord) {
        (this.on_item)(id, record);
    }
    enumerate(call::<F> as *const c_void, on_item, |callback| unsafe { GetFunctionInfo(callback) })
}

fn get_parameter<F: FnMut(i32, &ParamValue)>(scheme: &Guid, on_item: F) -> bool {
    extern "C" fn call<F: FnMut(i32, &ParamValue)>(this: &mut Callback<F>, id: i32, value: &ParamValue) {
        (this.on_item)(id, value);
    }
    enumerate(call::<F> as *const c_void, on_item, |callback| unsafe { GetParameter(scheme, callback) })
}

// ---- Lists ----------------------------------------------------------------------------------------------

/// Copies of records, which live as long as this object. The nodes of the records have a reference each.
#[derive(Default)]
struct Copies {
    memory: Vec<Box<[u64]>>,
    nodes: Vec<*mut Unknown>,
}

impl Copies {
    /// A node consists of its links, followed by the record.
    fn new_node(&mut self, record_size: usize) -> *mut Links {
        let size = size_of::<Links>() + record_size;
        self.memory.push(vec![0; (size + 7) / 8].into_boxed_slice());
        self.memory.last_mut().unwrap().as_mut_ptr().cast()
    }

    fn empty_list(&mut self) -> List {
        let head = self.new_node(0);
        unsafe { *head = Links { next: head, prev: head } };
        List { head, count: 0 }
    }

    /// Appends a copy of the record, and returns the copy.
    unsafe fn append(&mut self, list: &mut List, record: *const u8, record_size: usize) -> *mut u8 {
        let node = self.new_node(record_size);
        *node = Links { next: list.head, prev: (*list.head).prev };
        (*(*node).prev).next = node;
        (*list.head).prev = node;
        list.count += 1;
        let copy = node.add(1).cast::<u8>();
        record.copy_to_nonoverlapping(copy, record_size);
        copy
    }

    /// Replaces a list with a copy, and calls a function for each record of the copy.
    unsafe fn own_list(&mut self, list: &mut List, record_size: usize, own_record: unsafe fn(&mut Self, *mut u8)) {
        let mut copy = self.empty_list();
        let mut links = (*list.head).next;
        while links != list.head {
            let record = self.append(&mut copy, links.add(1).cast(), record_size);
            own_record(self, record);
            links = (*links).next;
        }
        *list = copy;
    }

    unsafe fn own_family(&mut self, family: *mut u8) {
        let family = &mut *family.cast::<CommandFamily>();
        self.own_list(&mut family.command_items, BASE_COMMAND_ITEM_SIZE, |_, _| ());
        self.own_list(&mut family.check_exist_items, CHECK_EXIST_ITEM_SIZE, |_, _| ());
    }

    unsafe fn append_function(&mut self, list: &mut List, record: &FunctionBaseRecord) {
        let copy = self.append(list, addr_of!(*record).cast(), size_of_val(record));
        let copy = &mut *copy.cast::<FunctionBaseRecord>();
        self.own_list(&mut copy.command_families, size_of::<CommandFamily>(), Self::own_family);
        for node in [copy.display_node, copy.default_node] {
            if !node.is_null() {
                ((*(*node).methods).add_ref)(node);
                self.nodes.push(node);
            }
        }
    }
}

impl Drop for Copies {
    fn drop(&mut self) {
        for &node in &self.nodes {
            unsafe { ((*(*node).methods).release)(node) };
        }
    }
}

// ---- The program ----------------------------------------------------------------------------------------

fn yes_or_no(answer: bool) -> &'static str {
    if answer { "yes" } else { "no" }
}

fn to_string(text: &Text) -> String {
    let end = text.iter().position(|&unit| unit == 0).unwrap_or(text.len());
    String::from_utf16_lossy(&text[..end])
}

/// A real program performs the checks of each record and keeps only the supported functions.
fn adopt_all() {
    let mut copies = Copies::default();
    let mut holder = FunctionBaseHolder { client_word: 0, records: copies.empty_list() };
    get_function_base(|record| unsafe { copies.append_function(&mut holder.records, record) });
    let accepted = unsafe { AddFunctionDefault(&holder) };
    println!("{} functions adopted: {}", holder.records.count, yes_or_no(accepted));
}

fn list_functions() {
    println!("{} functions in the catalogue", unsafe { GetFuncCount() });
    get_function_info(|id, record| {
        let (ac, dc) = (record.ac_display_items.count, record.dc_display_items.count);
        println!("{}: {}, options: {} and {}", id, to_string(&record.name), ac, dc);
    });
}

fn list_parameters() {
    get_parameter(&BALANCED, |id, value| {
        println!("{}: position {} plugged in, {} on battery", id, value.ac_param_index, value.dc_param_index);
    });
}

/// Changes functions 1 and 2. The tree consists of the nil node, the root, and its right child.
fn change_parameters() {
    let node = |is_nil, function_id, ac_param_index, dc_param_index| ParamTreeNode {
        left: null_mut(),
        parent: null_mut(),
        right: null_mut(),
        color: 0,
        is_nil,
        function_id,
        value: ParamValue { ac_param_index, dc_param_index },
    };
    let mut nodes = [node(1, 0, 0, 0), node(0, 1, 0, 2), node(0, 2, 5, 5)];
    let first = nodes.as_mut_ptr();
    let at = |index| unsafe { first.add(index) };
    let (nil, root, right) = (at(0), at(1), at(2));
    let link = |node: *mut ParamTreeNode, left, parent, right| unsafe {
        (*node).left = left;
        (*node).parent = parent;
        (*node).right = right;
    };
    link(nil, root, root, right);
    link(root, nil, nil, right);
    link(right, nil, root, nil);
    let holder = ParamMapHolder { client_word: 0, head: nil, count: 2 };
    println!("changes accepted: {}", yes_or_no(unsafe { SetParameter(&BALANCED, &holder) }));
}

/// These two environment variables of the process determine the folders of the library's files. A program that works
/// on the files of the machine does not change them.
fn work_on(folder: &Path) {
    std::env::set_var("ProgramFiles", folder.join("Program Files"));
    std::env::set_var("ProgramData", folder.join("ProgramData"));
}

fn main() -> ExitCode {
    const APARTMENT_THREADED: u32 = 2;
    let folder = std::env::args_os().nth(1);
    if folder.is_none() || unsafe { CoInitializeEx(null_mut(), APARTMENT_THREADED) } < 0 {
        return ExitCode::from(2);
    }
    work_on(Path::new(&folder.unwrap()));
    adopt_all();
    list_functions();
    list_parameters();
    change_parameters();
    list_parameters();
    unsafe {
        ZOTDamExit();
        CoUninitialize();
    }
    ExitCode::SUCCESS
}
