"""Checks the pages of the documentation. tests/docs/docs.sh calls it."""
import pathlib
import re
import sys

CODE = ('src', 'include', 'client')
REFERENCE = re.compile(r'\bCompatibility: (C\d+(?:, C\d+)*)')
EXPORTS = '// ---- Exports'  # the part of include/ZOTDam.h that refers to entries for callers
PAGE = 'docs/compatibility.md'
GUIDE = 'docs/clients.md'
HEADERS = ('include/ZOTDamTypes.h', 'include/ZOTDam.h')
RECORD_TABLE = re.compile(r'^\| `(\w+)`, (\d+) bytes \| Offset \|[^\n]*\n(.*?)(?=^$)', re.M | re.S)
ENTRY = re.compile(r'^### C(\d+): (.+?)\n(.*?)(?=^##|\Z)', re.M | re.S)
CODE_BLOCK = re.compile(r'^```.*?^```$', re.M | re.S)
LINK = re.compile(r'\]\(([^()\s]+)\)')
SUITE = re.compile(r'(?<![/\w])(?!GoogleTest)[A-Z]\w*Test\b(?!\.(?:cpp|h)\b)')

passed = 0
failed = 0


def check(title, problems):
    """Counts a check. It fails if there are problems, which are printed."""
    global passed, failed
    if problems:
        failed += 1
        print(f'FAILED: {title}')
        for problem in problems:
            print(f'    {problem}')
    else:
        passed += 1


def read(path):
    return pathlib.Path(path).read_text(encoding='utf-8')


def files_in(folders, endings):
    return sorted(path for folder in folders for path in pathlib.Path(folder).rglob('*') if path.suffix in endings)


def numbers_in(text):
    return {int(number) for numbers in REFERENCE.findall(text) for number in re.findall(r'\d+', numbers)}


def check_compatibility():
    entries = [(int(number), text) for number, _, text in ENTRY.findall(read(PAGE))]
    numbers = [number for number, _ in entries]
    code = {path: read(path) for path in files_in(CODE, {'.h', '.cpp'})}
    implemented = set().union(*(numbers_in(text.split(EXPORTS)[0]) for text in code.values()))
    check(f'{PAGE} has entries', [] if numbers else ['none'])
    check(f'{PAGE} has each number once, in ascending order',
          [f'C{later} after C{earlier}' for earlier, later in zip(numbers, numbers[1:]) if later <= earlier])
    check(f'the code refers to entries of {PAGE} only',
          [f'{path}: C{number}' for path, text in code.items() for number in numbers_in(text) if number not in numbers])
    check(f'the code refers to each entry of {PAGE}', [f'C{number}' for number in numbers if number not in implemented])
    check(f'{PAGE} refers to its own entries only',
          [f'C{number}' for number in sorted({int(n) for n in re.findall(r'\bC(\d+)\b', read(PAGE))} - set(numbers))])
    for number, text in entries:
        reason = re.search(r'^- Reason: ', text, re.M)
        tests = re.search(r'^- Tests?: (.*)', text, re.M | re.S)
        paths = re.findall(r'`([^`]+)`', tests.group(1)) if tests else []
        problems = [f'{path} does not exist' for path in paths if not pathlib.Path(path).is_file()]
        if not reason or not paths:
            problems.append('the reason or the test is missing')
        check(f'C{number} has a reason and a test', problems)


def check_header():
    exports = re.findall(r'^bool (\w+)\(([^)]*)\)([^;]*);', read('include/ZOTDam.h'), re.M)
    check('the exports that call OnItem are declared with ZOTDAM_MAY_THROW',
          [name for name, parameters, rest in exports if 'Callback' in parameters and 'ZOTDAM_MAY_THROW' not in rest])


def fields_in_docs():
    """Returns the size of each record in the tables of the guide, and the offset of each of its fields."""
    sizes = {}
    offsets = {}
    for record, size, rows in RECORD_TABLE.findall(read(GUIDE)):
        sizes[record] = int(size)
        for names, numbers in re.findall(r'^\| (`.*?`) \| ([\d, ]+) \|', rows, re.M):
            fields = re.findall(r'`(\w+)`', names)
            for field, offset in zip(fields, numbers.split(', '), strict=True):
                offsets[record, field] = int(offset)
    return sizes, offsets


def declared_fields(headers):
    """Returns the fields of all records, as pairs of record and field."""
    for body, record in re.findall(r'^typedef struct \w+ \{(.*?)^\} (\w+);', headers, re.M | re.S):
        plain = re.sub(r'^#ifdef.*?^#endif$', '', body, flags=re.M | re.S)
        for field in re.findall(r'^    [^/\n]*?(\w+)(?:\[\w+\])?(?: ZOTDAM_ZEROED)?;', plain, re.M):
            yield record, field


def check_layouts():
    """Compares the tables of the guide with the assertions in the headers, which the compilers verify."""
    headers = ''.join(read(path) for path in HEADERS)
    sizes = {record: int(size) for record, size in re.findall(r'^ZOTDAM_SIZE\((\w+), (\d+)\)', headers, re.M)}
    offsets = {(record, field): int(offset) for record, field, offset
               in re.findall(r'^ZOTDAM_OFFSET\((\w+), (\w+), (\d+)\)', headers, re.M)}
    documented_sizes, documented_offsets = fields_in_docs()
    check(f'the headers verify the offset of each field of {len(sizes)} records',
          [f'{record}.{field}' for record, field in declared_fields(headers) if (record, field) not in offsets])
    check(f'{GUIDE} has the size of each record', sorted(sizes.items() ^ documented_sizes.items()))
    check(f'{GUIDE} has the offset of each field', sorted(offsets.items() ^ documented_offsets.items()))


def anchors(path):
    """Returns the fragments of the headings of a page, as GitHub makes them."""
    headings = re.findall(r'^#+ +(.+?) *$', CODE_BLOCK.sub('', read(path)), re.M)
    return {re.sub(r'[^\w\- ]', '', heading.lower()).replace(' ', '-') for heading in headings}


def link_problem(page, link):
    name, _, fragment = link.partition('#')
    target = page.parent / name if name else page
    if not target.exists():
        return f'{link}: no such file'
    if fragment and fragment not in anchors(target):
        return f'{link}: no such heading'
    return None


def check_page(page):
    text = CODE_BLOCK.sub('', read(page))
    links = [link for link in LINK.findall(text) if not re.match(r'[a-z]+:', link)]
    check(f'the links of {page} lead to files and headings',
          [problem for problem in (link_problem(page, link) for link in links) if problem])


def check_suites(pages):
    paths = files_in(['tests'], {'.cpp'})
    suites = {suite for path in paths for suite in re.findall(r'^TEST(?:_F|_P)?\((\w+),', read(path), re.M)}
    known = suites | {path.stem for path in paths}
    for page in pages:
        names = sorted(set(SUITE.findall(read(page))))
        check(f'the tests that {page} names exist', [name for name in names if name not in known])


def main():
    pages = sorted(path for path in pathlib.Path().rglob('*.md') if path.parts[0] != 'build')
    check_compatibility()
    check_header()
    check_layouts()
    for page in pages:
        check_page(page)
    check_suites(pages)
    print(f'{passed} passed, {failed} failed')
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
