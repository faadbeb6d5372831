#!/usr/bin/env python3
"""Writes client/CharacterWidths.h, the widths of characters on a terminal, from the library utf8proc.

    apt-get install libutf8proc-dev clang-format
    scripts/widths.py

The header is part of the sources, because no package has the library for Windows, and because a commit must produce the
same programs with each release of Debian.
"""
import ctypes
import ctypes.util
import subprocess

HEADER = 'client/CharacterWidths.h'
LIBRARY = ctypes.CDLL(ctypes.util.find_library('utf8proc') or 'libutf8proc.so')
LIBRARY.utf8proc_version.restype = ctypes.c_char_p
LIBRARY.utf8proc_unicode_version.restype = ctypes.c_char_p
SURROGATES = range(0xD800, 0xE000)
# Control characters have no width, but texts that are printed do not contain them.
FIRST = 0xA0


def ranges_with(width):
    """Returns the first and last characters of the ranges of this width."""
    ranges = []
    for character in range(FIRST, 0x110000):
        if character in SURROGATES or LIBRARY.utf8proc_charwidth(character) != width or not is_assigned(character):
            continue
        if ranges and ranges[-1][1] == character - 1:
            ranges[-1][1] = character
        else:
            ranges.append([character, character])
    return ranges


def is_assigned(character):
    unassigned, private_use = 0, 29
    return LIBRARY.utf8proc_category(character) not in (unassigned, private_use)


def table(name, width):
    rows = ''.join(f'{{0x{first:04X}, 0x{last:04X}}},' for first, last in ranges_with(width))
    return f'inline constexpr CharacterRange {name}[] = {{{rows}}};\n'


def main():
    version = LIBRARY.utf8proc_version().decode()
    unicode_version = LIBRARY.utf8proc_unicode_version().decode()
    text = f'''\
// The widths of characters on a terminal, in ascending order. Written by scripts/widths.py from the data of
// utf8proc {version} for Unicode {unicode_version}.
#pragma once

#include "platform/CharacterRange.h"

namespace ZOTDam::Client {{

{table('ZeroWidthCharacters', 0)}
{table('WideCharacters', 2)}
}}  // namespace ZOTDam::Client
'''
    with open(HEADER, 'w', encoding='utf-8') as header:
        header.write(text)
    subprocess.run(['clang-format', '-i', HEADER], check=True)


if __name__ == '__main__':
    main()
