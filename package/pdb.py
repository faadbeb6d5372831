#!/usr/bin/env python3
"""Makes a PDB file that mingw's linker wrote independent of the folder and time of the build.

    package/pdb.py FILE --map FOLDER=NAME

Replaces the folder in the names of the modules, and the time of the link by zero. Removes the symbols of the modules:
objects of g++ contain none, and those of the linker's own module are its command line and its folder. The public names,
the sections and the modules with their addresses remain.
"""
import argparse
import pathlib
import struct
import sys

MAGIC = b'Microsoft C/C++ MSF 7.00\r\n\x1aDS\0\0\0'
BLOCK = 4096
INFORMATION, DEBUG = 1, 3  # the numbers of streams
HEADER, MODULE = 64, 64  # the sizes of the header of the debug stream, and of a module without its names
NO_STREAM = 0xffff
# A string table without strings, which readers expect in the debug stream and the linker leaves out.
EMPTY_STRINGS = struct.pack('<7I', 0xeffeeffe, 1, 4, 0, 1, 0, 0)


def blocks_for(size, block=BLOCK):
    return -(-size // block)


def read_streams(data):
    """Returns the contents of the streams."""
    if not data.startswith(MAGIC):
        raise ValueError('not a PDB file')
    block, _, _, directory_size, _, address = struct.unpack_from('<6I', data, len(MAGIC))

    def read(numbers, size):
        return b''.join(data[number * block:(number + 1) * block] for number in numbers)[:size]

    numbers = struct.unpack_from(f'<{blocks_for(directory_size, block)}I', data, address * block)
    directory = read(numbers, directory_size)
    count, = struct.unpack_from('<I', directory)
    sizes = [0 if size == 0xffffffff else size for size in struct.unpack_from(f'<{count}I', directory, 4)]
    streams, offset = [], 4 + 4 * count
    for size in sizes:
        numbers = struct.unpack_from(f'<{blocks_for(size, block)}I', directory, offset)
        offset += 4 * len(numbers)
        streams.append(read(numbers, size))
    return streams


def write_streams(streams):
    """Returns a PDB file with the streams in consecutive blocks, after the header and the two maps of free blocks."""
    body, directory_blocks = b'', []

    def add(content):
        nonlocal body
        first = 3 + len(body) // BLOCK
        count = blocks_for(len(content))
        body += content.ljust(count * BLOCK, b'\0')
        return range(first, first + count)

    numbers = [number for stream in streams for number in add(stream)]
    directory = struct.pack(f'<I{len(streams)}I{len(numbers)}I', len(streams), *map(len, streams), *numbers)
    directory_blocks = add(directory)
    address, = add(struct.pack(f'<{len(directory_blocks)}I', *directory_blocks))
    count = 3 + len(body) // BLOCK
    if count > BLOCK:
        raise ValueError('too large for one map of free blocks')
    free = (((1 << BLOCK * 8) - 1) >> count << count).to_bytes(BLOCK, 'little')
    header = MAGIC + struct.pack('<6I', BLOCK, 1, count, len(directory), 0, address)
    return header.ljust(BLOCK, b'\0') + free + free + body


def without_time(stream):
    return stream[:4] + bytes(4) + stream[8:]


def normalised_modules(modules, folder, name):
    """Returns the list of modules with other names and without streams, and the numbers of these streams."""
    result, numbers, offset = b'', [], 0
    while offset < len(modules):
        entry = bytearray(modules[offset:offset + MODULE])
        names_end = modules.index(b'\0', modules.index(b'\0', offset + MODULE) + 1) + 1
        numbers += struct.unpack_from('<H', entry, 34)
        struct.pack_into('<H3I', entry, 34, NO_STREAM, 0, 0, 0)
        names = modules[offset + MODULE:names_end].replace(folder, name)
        result += bytes(entry) + names + bytes(-len(names) % 4)
        offset = names_end + -names_end % 4
    return result, [number for number in numbers if number != NO_STREAM]


def normalise(streams, folder, name):
    debug = streams[DEBUG]
    modules_size, *_, indices_size, strings_size = struct.unpack_from('<8I', debug, 24)
    modules, removed = normalised_modules(debug[HEADER:HEADER + modules_size], folder, name)
    tables = debug[HEADER + modules_size:]
    if strings_size == 0:
        position = len(tables) - indices_size
        tables = tables[:position] + EMPTY_STRINGS + tables[position:]
    header = bytearray(debug[:HEADER])
    struct.pack_into('<I', header, 24, len(modules))
    struct.pack_into('<I', header, 52, strings_size or len(EMPTY_STRINGS))
    streams[DEBUG] = bytes(header) + modules + tables
    streams[INFORMATION] = without_time(streams[INFORMATION])
    for number in removed:
        streams[number] = b''


def main():
    parser = argparse.ArgumentParser(description='Makes a PDB file reproducible.')
    parser.add_argument('file', type=pathlib.Path)
    parser.add_argument('--map', required=True)
    arguments = parser.parse_args()
    folder, _, name = arguments.map.rpartition('=')
    streams = read_streams(arguments.file.read_bytes())
    normalise(streams, folder.encode(), name.encode())
    arguments.file.write_bytes(write_streams(streams))
    return 0


if __name__ == '__main__':
    sys.exit(main())
