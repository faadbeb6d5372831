"""Checks that a PDB file belongs to a program, and that it has the names of the program's exports at their addresses.

    symbols_test.py PROGRAM PDB_FILE
"""
import pathlib
import re
import subprocess
import sys
import uuid


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def debug_directory(program):
    """Returns the identifier and the name of the PDB file that the program names."""
    text = run('llvm-readobj', '--coff-debug-directory', program)
    identifier = re.search(r'PDBGUID: (.*)', text).group(1)
    # LLVM 14 prints the bytes in parentheses, and LLVM 19 the identifier in braces.
    is_bytes = identifier.startswith('(')
    identifier = uuid.UUID(bytes_le=bytes.fromhex(identifier[1:-1])) if is_bytes else uuid.UUID(identifier)
    return identifier, re.search(r'PDBFileName: (.*)', text).group(1)


def identifier_of(pdb):
    return uuid.UUID(re.search(r'GUID: (\{.*\})', run('llvm-pdbutil', 'dump', '--summary', pdb)).group(1))


def exports_of(program):
    text = run('llvm-readobj', '--coff-exports', program)
    return {name: int(address, 16) for name, address in re.findall(r'Name: (\w+)\n *RVA: (0x[0-9A-F]+)', text)}


def section_addresses(program):
    return [int(address, 16) for address in
            re.findall(r'VirtualAddress: (0x[0-9A-F]+)', run('llvm-readobj', '--sections', program))]


def public_addresses(program, pdb):
    sections = section_addresses(program)
    text = run('llvm-pdbutil', 'dump', '--publics', pdb)
    found = re.findall(r'S_PUB32 .*`(.*)`\n.*addr = (\d+):(\d+)', text)
    return {name: sections[int(number) - 1] + int(offset) for name, number, offset in found}


def problems(program, pdb):
    identifier, name = debug_directory(program)
    if identifier != identifier_of(pdb):
        yield f'the program names the identifier {identifier}, and the PDB file has {identifier_of(pdb)}'
    if name != pathlib.Path(pdb).name:
        yield f'the program names the file {name}'
    addresses = public_addresses(program, pdb)
    for export, address in exports_of(program).items():
        if addresses.get(export) != address:
            yield f'{export} is at {address:#x}, and in the PDB file at {addresses.get(export)}'


def main(program, pdb):
    found = list(problems(program, pdb))
    print('\n'.join(found))
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))
