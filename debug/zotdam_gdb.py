"""Pretty printers of gdb for the types in ZOTDam.h: lists, maps of parameters, pointers to COM objects, strings.

Load them with `source debug/zotdam_gdb.py`. They read memory only and call no functions, so they also work with dumps
and with programs that do not run.
"""
import gdb
import gdb.printing

MAXIMUM = 100000  # nodes; damaged links may form a cycle


def text(value):
    """Returns a fixed-size UTF-16 string up to its terminating zero, in quotation marks."""
    units = b''
    for index in range(value.type.strip_typedefs().range()[1] + 1):
        unit = int(value[index])
        if unit == 0:
            break
        units += unit.to_bytes(2, 'little')
    return f'"{units.decode("utf-16-le", "replace")}"'


def is_text(member_type):
    member_type = member_type.strip_typedefs()
    return member_type.code == gdb.TYPE_CODE_ARRAY and member_type.target().name == 'wchar_t'


class ListPrinter:
    """A List<Record>: a sentinel and nodes, each with two links and the record."""

    def __init__(self, value):
        self.head = value['head']
        self.count = int(value['count'])
        self.record = value.type.strip_typedefs().template_argument(0)

    def to_string(self):
        return f'list of {self.count} {self.record}'

    def children(self):
        # A client may mark a list as empty by the count alone.
        links = self.head['next'] if self.count else self.head
        index = 0
        while links != self.head and index < MAXIMUM:
            yield f'[{index}]', (links + 1).cast(self.record.pointer()).dereference()
            links = links['next']
            index += 1

    def display_hint(self):
        return 'array'


class ParamTreePrinter:
    """A ParamTree: a binary search tree from function ids to parameters, whose head is the nil node."""

    def __init__(self, value):
        self.head = value['head']
        self.count = int(value['count'])

    def to_string(self):
        return f'parameters of {self.count} functions'

    def nodes(self):
        """Yields the nodes in ascending order of the ids."""
        waiting = []
        node = self.head['parent']
        for _ in range(2 * MAXIMUM):
            if not int(node['isNil']):
                waiting.append(node)
                node = node['left']
            elif waiting:
                node = waiting.pop()
                yield node
                node = node['right']
            else:
                return

    def children(self):
        if self.count:
            for node in self.nodes():
                yield 'id', node['functionId']
                yield 'parameters', node['value']

    def display_hint(self):
        return 'map'


class CountedPointerPrinter:
    """A CountedPointer: the address of a COM object, or null."""

    def __init__(self, value):
        self.pointer = value['pointer']

    def to_string(self):
        target = self.pointer.type.target()
        return f'{target} at {int(self.pointer):#x}' if int(self.pointer) else f'no {target}'


class RecordPrinter:
    """A record with fixed-size strings, which are printed up to their terminating zero."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return None

    def children(self):
        for field in self.value.type.strip_typedefs().fields():
            member = self.value[field]
            yield field.name, text(member) if is_text(field.type) else member


def make_printer():
    printer = gdb.printing.RegexpCollectionPrettyPrinter('ZOTDam')
    printer.add_printer('List', r'^ZOTDam::List<.*>$', ListPrinter)
    printer.add_printer('ParamTree', r'^ZOTDam::ParamTree$', ParamTreePrinter)
    printer.add_printer('CountedPointer', r'^ZOTDam::CountedPointer<.*>$', CountedPointerPrinter)
    printer.add_printer('Record', r'^ZOTDam::\w*(Item|Record)$', RecordPrinter)
    return printer


gdb.printing.register_pretty_printer(gdb.current_objfile(), make_printer(), replace=True)
