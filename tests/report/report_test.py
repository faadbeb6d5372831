#!/usr/bin/env python3
"""Compares the cells of a report with the output of "zotdamctl params --json" for the same schemes.

    report_test.py PAGE FOLDER SCHEME...: FOLDER contains SCHEME.json and SCHEME-default.json
"""
import html.parser
import json
import sys


class Page(html.parser.HTMLParser):
    """Collects the cells of the table of schemes: for each function, the index and whether it is marked."""

    def __init__(self):
        super().__init__()
        self.schemes = []
        self.rows = {}
        self.current = None

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if 'data-scheme' in attributes:
            self.schemes.append(attributes['data-scheme'])
        elif 'data-id' in attributes:
            self.current = self.rows.setdefault(int(attributes['data-id']), [])
        elif tag == 'td' and 'data-index' in attributes:
            self.current.append((int(attributes['data-index']), attributes.get('class') == 'changed'))
        elif tag == 'td' and self.current is not None:
            self.current.append(None)
        elif tag == 'tr':
            self.current = None


def read(folder, name):
    with open(f'{folder}/{name}.json', encoding='utf-8') as file:
        document = json.load(file)
    index = {source: f'{source}Index' if f'{source}Index' in document['parameters'][0] else source
             for source in ('ac', 'dc')}
    return document['scheme'], {parameter['id']: (parameter[index['ac']], parameter[index['dc']])
                                for parameter in document['parameters']}


def main():
    page_file, folder, *names = sys.argv[1:]
    page = Page()
    with open(page_file, encoding='utf-8') as file:
        page.feed(file.read())
    cells = marked = 0
    for position, name in enumerate(names):
        scheme, values = read(folder, name)
        _, defaults = read(folder, f'{name}-default')
        assert page.schemes[position] == scheme, (page.schemes, scheme)
        for function, row in page.rows.items():
            expected = [None, None]
            if function in values:
                expected = [(value, value != default) for value, default in zip(values[function], defaults[function])]
            found = row[2 * position:2 * position + 2]
            assert found == expected, (name, function, found, expected)
            cells += 2
            marked += sum(cell is not None and cell[1] for cell in found)
    assert cells == 6 * len(page.rows) >= 6 * 16 and marked > 0, (cells, marked)


if __name__ == '__main__':
    main()
