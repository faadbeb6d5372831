// Adopts all functions of the base catalogue, lists them, changes parameters of a scheme, and reads them again. The
// program must run as a 64-bit process. FOLDER must contain the folders "Program Files" and "ProgramData" of an
// installation:
//     quickstart_cs FOLDER
using System;
using System.Collections.Generic;
using System.IO;
using System.Runtime.InteropServices;

// The interface: offsets and sizes as in docs/clients.md.
static class ZOTDam
{
    public const int TextCapacity = 260;

    public const int BaseCommandItemSize = 544;
    public const int CheckExistItemSize = 2084;
    public const int CommandFamilySize = 32;
    public const int FunctionBaseRecordSize = 1088;

    // Offsets in the record of a function of the base catalogue and in a command family.
    public const int DisplayNode = 1056;
    public const int DefaultNode = 1064;
    public const int CommandFamilies = 1072;
    public const int CommandItems = 0;
    public const int CheckExistItems = 16;

    [StructLayout(LayoutKind.Sequential)]
    public struct List
    {
        public IntPtr Head;
        public ulong Count;
    }

    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Unicode)]
    public struct FunctionRecord
    {
        public int Type;
        public int Flag;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = TextCapacity)] public string Name;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = TextCapacity)] public string Group;
        public List AcDisplayItems;
        public List DcDisplayItems;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct FunctionBaseHolder
    {
        public IntPtr ClientWord;
        public List Records;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct ParamValue
    {
        public int AcParamIndex;
        public int DcParamIndex;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct ParamTreeNode
    {
        public IntPtr Left;
        public IntPtr Parent;
        public IntPtr Right;
        public byte Color;
        public byte IsNil;
        public int FunctionId;
        public ParamValue Value;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct ParamMapHolder
    {
        public IntPtr ClientWord;
        public IntPtr Head;
        public ulong Count;
    }

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    public delegate void OnFunctionBase(IntPtr self, IntPtr record);

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    public delegate void OnFunction(IntPtr self, uint id, ref FunctionRecord record);

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    public delegate void OnParameter(IntPtr self, int id, ref ParamValue value);

    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    public static extern uint GetFuncCount();

    // A bool is one byte. Without the attribute, C# would read four bytes.
    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    [return: MarshalAs(UnmanagedType.I1)]
    public static extern bool GetFunctionBase(IntPtr callback);

    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    [return: MarshalAs(UnmanagedType.I1)]
    public static extern bool AddFunctionDefault(ref FunctionBaseHolder holder);

    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    [return: MarshalAs(UnmanagedType.I1)]
    public static extern bool GetFunctionInfo(IntPtr callback);

    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    [return: MarshalAs(UnmanagedType.I1)]
    public static extern bool GetParameter(ref Guid scheme, IntPtr callback);

    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    [return: MarshalAs(UnmanagedType.I1)]
    public static extern bool SetParameter(ref Guid scheme, ref ParamMapHolder holder);

    [DllImport("ZOTDam.dll", CallingConvention = CallingConvention.Cdecl)]
    [return: MarshalAs(UnmanagedType.I1)]
    public static extern bool ZOTDamExit();
}

// An object whose first field points to a function table with one entry, OnItem. The library keeps no pointer to it. The
// field keeps the delegate alive, because the library's pointer does not.
sealed class Callback : IDisposable
{
    readonly Delegate onItem;

    public readonly IntPtr Pointer;

    public Callback(Delegate onItem)
    {
        this.onItem = onItem;
        Pointer = Marshal.AllocHGlobal(2 * IntPtr.Size);
        Marshal.WriteIntPtr(Pointer, Pointer + IntPtr.Size);
        Marshal.WriteIntPtr(Pointer, IntPtr.Size, Marshal.GetFunctionPointerForDelegate(onItem));
    }

    public void Dispose()
    {
        Marshal.FreeHGlobal(Pointer);
        GC.KeepAlive(onItem);
    }
}

// Copies of records of the base catalogue, which live as long as this object. The nodes of the records have a
// reference each.
sealed class Copies : IDisposable
{
    // A node consists of two links, followed by the record.
    const int LinksSize = 16;

    readonly List<IntPtr> memory = new List<IntPtr>();
    readonly List<IntPtr> nodes = new List<IntPtr>();

    IntPtr NewNode(int recordSize)
    {
        memory.Add(Marshal.AllocHGlobal(LinksSize + recordSize));
        return memory[memory.Count - 1];
    }

    static void Link(IntPtr node, IntPtr next)
    {
        Marshal.WriteIntPtr(node, 0, next);
        Marshal.WriteIntPtr(next, 8, node);
    }

    public ZOTDam.List EmptyList()
    {
        var list = new ZOTDam.List { Head = NewNode(0), Count = 0 };
        Link(list.Head, list.Head);
        return list;
    }

    // Appends a copy of the record, and returns the copy.
    IntPtr Append(ref ZOTDam.List list, IntPtr record, int recordSize)
    {
        var bytes = new byte[recordSize];
        Marshal.Copy(record, bytes, 0, recordSize);
        IntPtr node = NewNode(recordSize);
        Marshal.Copy(bytes, 0, node + LinksSize, recordSize);
        Link(Marshal.ReadIntPtr(list.Head, 8), node);
        Link(node, list.Head);
        ++list.Count;
        return node + LinksSize;
    }

    // Replaces the list at an address with a copy, and calls an action for each record of the copy.
    void OwnList(IntPtr address, int recordSize, Action<IntPtr> ownRecord)
    {
        var original = (ZOTDam.List)Marshal.PtrToStructure(address, typeof(ZOTDam.List));
        var copy = EmptyList();
        for (var node = Marshal.ReadIntPtr(original.Head); node != original.Head; node = Marshal.ReadIntPtr(node))
            ownRecord(Append(ref copy, node + LinksSize, recordSize));
        Marshal.StructureToPtr(copy, address, false);
    }

    void OwnFamily(IntPtr family)
    {
        OwnList(family + ZOTDam.CommandItems, ZOTDam.BaseCommandItemSize, record => { });
        OwnList(family + ZOTDam.CheckExistItems, ZOTDam.CheckExistItemSize, record => { });
    }

    public void AppendFunction(ref ZOTDam.List list, IntPtr record)
    {
        IntPtr copy = Append(ref list, record, ZOTDam.FunctionBaseRecordSize);
        OwnList(copy + ZOTDam.CommandFamilies, ZOTDam.CommandFamilySize, OwnFamily);
        foreach (int offset in new[] { ZOTDam.DisplayNode, ZOTDam.DefaultNode })
        {
            IntPtr node = Marshal.ReadIntPtr(copy, offset);
            if (node == IntPtr.Zero)
                continue;
            Marshal.AddRef(node);
            nodes.Add(node);
        }
    }

    public void Dispose()
    {
        nodes.ForEach(node => Marshal.Release(node));
        memory.ForEach(Marshal.FreeHGlobal);
    }
}

static class Program
{
    static Guid balanced = new Guid("381b4222-f694-41f0-9685-ff5bb260df2e");

    static string YesOrNo(bool answer)
    {
        return answer ? "yes" : "no";
    }

    // A real program performs the checks of each record and keeps only the supported functions.
    static void AdoptAll()
    {
        using (var copies = new Copies())
        {
            var holder = new ZOTDam.FunctionBaseHolder { Records = copies.EmptyList() };
            ZOTDam.OnFunctionBase keep = (self, record) => copies.AppendFunction(ref holder.Records, record);
            using (var callback = new Callback(keep))
                ZOTDam.GetFunctionBase(callback.Pointer);
            bool accepted = ZOTDam.AddFunctionDefault(ref holder);
            Console.WriteLine("{0} functions adopted: {1}", holder.Records.Count, YesOrNo(accepted));
        }
    }

    static void PrintFunction(IntPtr self, uint id, ref ZOTDam.FunctionRecord record)
    {
        Console.WriteLine("{0}: {1}, options: {2} and {3}", id, record.Name, record.AcDisplayItems.Count,
                          record.DcDisplayItems.Count);
    }

    static void ListFunctions()
    {
        Console.WriteLine("{0} functions in the catalogue", ZOTDam.GetFuncCount());
        using (var callback = new Callback(new ZOTDam.OnFunction(PrintFunction)))
            ZOTDam.GetFunctionInfo(callback.Pointer);
    }

    static void PrintParameter(IntPtr self, int id, ref ZOTDam.ParamValue value)
    {
        Console.WriteLine("{0}: position {1} plugged in, {2} on battery", id, value.AcParamIndex, value.DcParamIndex);
    }

    static void ListParameters()
    {
        using (var callback = new Callback(new ZOTDam.OnParameter(PrintParameter)))
            ZOTDam.GetParameter(ref balanced, callback.Pointer);
    }

    // Changes functions 1 and 2. The tree consists of the nil node, the root, and its right child.
    static void ChangeParameters()
    {
        int size = Marshal.SizeOf(typeof(ZOTDam.ParamTreeNode));
        IntPtr nil = Marshal.AllocHGlobal(3 * size);
        IntPtr root = nil + size;
        IntPtr right = root + size;
        WriteNode(nil, root, root, right, 1, 0, 0, 0);
        WriteNode(root, nil, nil, right, 0, 1, 0, 2);
        WriteNode(right, nil, root, nil, 0, 2, 5, 5);
        var holder = new ZOTDam.ParamMapHolder { Head = nil, Count = 2 };
        Console.WriteLine("changes accepted: {0}", YesOrNo(ZOTDam.SetParameter(ref balanced, ref holder)));
        Marshal.FreeHGlobal(nil);
    }

    static void WriteNode(IntPtr address, IntPtr left, IntPtr parent, IntPtr right, byte isNil, int id, int ac, int dc)
    {
        var node = new ZOTDam.ParamTreeNode
        {
            Left = left,
            Parent = parent,
            Right = right,
            IsNil = isNil,
            FunctionId = id,
            Value = new ZOTDam.ParamValue { AcParamIndex = ac, DcParamIndex = dc },
        };
        Marshal.StructureToPtr(node, address, false);
    }

    // These two environment variables of the process determine the folders of the library's files. A program that works
    // on the files of the machine does not change them.
    static void WorkOn(string folder)
    {
        Environment.SetEnvironmentVariable("ProgramFiles", Path.Combine(folder, "Program Files"));
        Environment.SetEnvironmentVariable("ProgramData", Path.Combine(folder, "ProgramData"));
    }

    // The attribute initialises COM on this thread.
    [STAThread]
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
            return 2;
        WorkOn(arguments[0]);
        AdoptAll();
        ListFunctions();
        ListParameters();
        ChangeParameters();
        ListParameters();
        ZOTDam.ZOTDamExit();
        return 0;
    }
}
