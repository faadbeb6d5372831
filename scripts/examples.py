#!/usr/bin/env python3
"""Keeps the examples in docs/clients.md the same as the code in examples/, from which they are taken.

    scripts/examples.py --check     fails when they differ
    scripts/examples.py --update    copies the code to the document

The document names a region of a file in a comment, and the fenced block after it contains the region's lines:

    <!-- examples/cpp/Settings.cpp: GetSpecScheme -->

In the file, the region is between the lines with "[begin GetSpecScheme]" and "[end GetSpecScheme]".
"""
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENT = ROOT / "docs/clients.md"
REGION = re.compile(r"^[^\n]*\[begin (\w+)\][^\n]*\n(.*?)^[^\n]*\[end \1\]", re.DOTALL | re.MULTILINE)
QUOTE = re.compile(r"^(<!-- (examples/\S+): (\w+) -->\n)```(\w+)\n.*?^```$", re.DOTALL | re.MULTILINE)
MENTION = re.compile(r"^<!-- examples/", re.MULTILINE)


def read_regions():
    regions = {}
    for path in sorted(ROOT.glob("examples/*/*.*")):
        for name, text in REGION.findall(path.read_text(encoding="utf-8")):
            regions[path.relative_to(ROOT).as_posix(), name] = textwrap.dedent(text).strip("\n")
    return regions


def splice(document, regions):
    """Returns the document with the current regions, and the errors of its quotes."""
    quoted = set()
    errors = []

    def quote(match):
        marker, path, name, language = match.groups()
        if (path, name) not in regions:
            errors.append(f"{path} has no region {name}")
            return match.group()
        quoted.add((path, name))
        return f"{marker}```{language}\n{regions[path, name]}\n```"

    spliced = QUOTE.sub(quote, document)
    if len(MENTION.findall(document)) != len(QUOTE.findall(document)):
        errors.append("a region is named without a fenced block behind it")
    errors.extend(f"{path}: {name} is quoted nowhere" for path, name in sorted(regions.keys() - quoted))
    return spliced, errors


def main(mode):
    document = DOCUMENT.read_text(encoding="utf-8")
    spliced, errors = splice(document, read_regions())
    if mode == "--update":
        DOCUMENT.write_text(spliced, encoding="utf-8")
    elif spliced != document:
        errors.append("the examples have changed: scripts/examples.py --update takes them over")
    for error in errors:
        print(f"docs/clients.md: {error}")
    return 1 if errors else 0


if sys.argv[1:] not in (["--check"], ["--update"]):
    sys.exit(__doc__)
sys.exit(main(sys.argv[1]))
