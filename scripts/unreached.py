#!/usr/bin/env python3
"""Lists the lines that no test reaches, each with its reason from a file. Fails if a reason is missing.

The file of reasons identifies a line by its text, so that the reason remains valid if the line moves:

    src/folder/File.cpp: the text of the line
        The reason.
"""
import json
import pathlib
import sys


def read_reasons(path):
    reasons = {}
    line = None
    for text in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        if not text.strip() or text.startswith("#"):
            continue
        if text[0] != " ":
            line = tuple(text.split(": ", 1))
            reasons[line] = ""
        else:
            reasons[line] = f"{reasons[line]} {text.strip()}".strip()
    return reasons


def unreached_lines(report):
    for file in json.loads(pathlib.Path(report).read_text(encoding="utf-8"))["files"]:
        source = pathlib.Path(file["file"]).read_text(encoding="utf-8").splitlines()
        for line in file["lines"]:
            if line["count"] == 0 and not line["gcovr/noncode"]:
                yield file["file"], line["line_number"], source[line["line_number"] - 1].strip()


def main(report, reasons_path):
    reasons = read_reasons(reasons_path)
    missing = 0
    for file, number, text in unreached_lines(report):
        reason = reasons.get((file, text))
        missing += reason is None
        print(f"{file}:{number}: {text}\n    {reason or 'No reason is given.'}")
    return 1 if missing else 0


sys.exit(main(*sys.argv[1:]))
