#!/usr/bin/env python3
"""Records a build in two files of the build folder, which become part of the packages: BUILDINFO, the commit and the
versions of the tools and libraries, and ZOTDam.spdx.json, a software bill of materials (SPDX 2.3) with the libraries
and the data in the programs and their licences. scripts/package.sh calls it after the build.

    package/record.py --build FOLDER --version 1.0.0 --commit HASH [--programs FOLDER] [--output FOLDER]

--programs is the folder of the programs if they were signed after the build.

The packages come from the headers that the compiler read and the archives that the linker read. A package without a
known licence ends the program with an error. SOURCE_DATE_EPOCH is the time of the document.
"""
import argparse
import functools
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import time
import urllib.parse
import uuid

import packing

ROOT = pathlib.Path(__file__).resolve().parent.parent
NAMESPACE = uuid.UUID('c0f4bb1c-6d0a-4d0e-8d7b-0f3d9a4f5b11')
COMPILER = 'x86_64-w64-mingw32-g++-posix'
LINKER = 'x86_64-w64-mingw32-ld'

# The programs, each with the folder of its own objects in the build folder.
PROGRAMS = {'ZOTDam.dll': 'src/CMakeFiles/ZOTDam.dir/', 'zotdamctl.exe': 'client/CMakeFiles/zotdamctl.dir/'}
# The header with data of utf8proc, which has them from the data files of Unicode.
DATA_HEADER = 'client/CharacterWidths.h'
TOOLS = ('binutils-mingw-w64-x86-64', 'cmake', 'g++-mingw-w64-x86-64-posix', 'g++-mingw-w64-x86-64-win32', 'llvm',
         'msitools', 'ninja-build', 'wixl')

# The licences of the source packages. The notices contain the texts of those that SPDX does not list.
LICENCES = {
    'cli11': 'BSD-3-Clause',
    'nlohmann-json3': 'MIT',
    'mingw-w64': 'ZPL-2.1 AND MIT AND BSD-3-Clause AND LicenseRef-mingw-w64',
    'gcc-mingw-w64': 'GPL-3.0-or-later WITH GCC-exception-3.1 AND LicenseRef-libstdcxx',
}
EXTRACTED = {'LicenseRef-mingw-w64': 'mingw-w64 runtime', 'LicenseRef-libstdcxx': 'GCC runtime',
             'LicenseRef-Unicode': 'Unicode data files'}
COPYRIGHT = 'Copyright (c) 2026 The ZOTDam authors'
SUPPLIER = 'Organization: Orlo Corporation'


def quote(text):
    return urllib.parse.quote(text, safe='')


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


@functools.cache
def linker_map(build, program):
    return (build / 'bin' / f'{program}.map').read_text(encoding='utf-8', errors='replace')


def libraries_of(build, program):
    """Returns the names of the project's own static libraries that the linker read."""
    return sorted(set(re.findall(r'^src/lib(zotdam_\w+)\.a\(', linker_map(build, program), re.M)))


@functools.cache
def dependencies(build):
    return run('ninja', '-C', build, '-t', 'deps')


@functools.cache
def headers_of(build, program):
    """Returns the headers that the objects of the program and of its libraries include."""
    folders = (PROGRAMS[program], *(f'src/CMakeFiles/{name}.dir/' for name in libraries_of(build, program)))
    files = set()
    for block in dependencies(build).split('\n\n'):
        name, *headers = block.splitlines() or ['']
        if name.startswith(folders) and name.endswith('(VALID)'):
            files.update(header.strip() for header in headers)
    return files


def archives_of(build, program):
    """Returns the archives and objects that the linker read, from its map."""
    text = linker_map(build, program)
    return set(re.findall(r'^(/\S+)\(\S+\)$', text, re.M)) | set(re.findall(r'^LOAD (/\S+\.o)$', text, re.M))


def packages_of(build, program):
    """Returns the names of the packages whose code is in the program."""
    paths = {os.path.realpath(os.path.join(build, path))
             for path in headers_of(build, program) | archives_of(build, program)}
    system = sorted(path for path in paths if path.startswith('/usr/'))
    return {name.partition(':')[0] for name in re.findall(r'^([^: ]+(?::\w+)?): ', run('dpkg', '-S', *system), re.M)}


def versions_of(names):
    """Returns the version, the source package and its version for each package."""
    lines = run('dpkg-query', '-W', '-f', '${Package}\t${Version}\t${source:Package}\t${source:Version}\n', *names)
    return {name: values for name, *values in (line.split('\t') for line in lines.splitlines())}


def buildinfo(arguments, versions):
    lines = [f'Name: ZOTDam\nVersion: {arguments.version}\nCommit: {arguments.commit}']
    lines += [f'{title}: {run(tool, "--version").splitlines()[0]}'
              for title, tool in (('Compiler', COMPILER), ('Linker', LINKER))]
    lines += ['Packages:'] + [f' {name} {versions[name][0]}' for name in sorted(versions)]
    return '\n'.join(lines) + '\n'


def spdx_id(name):
    return 'SPDXRef-' + re.sub('[^A-Za-z0-9.-]', '-', name)


def file_entry(folder, program):
    data = (folder / program).read_bytes()
    return {
        'SPDXID': spdx_id(program), 'fileName': f'./bin/{program}', 'fileTypes': ['BINARY'],
        'checksums': [{'algorithm': name, 'checksumValue': hashlib.new(name, data).hexdigest()}
                      for name in ('SHA1', 'SHA256')],
        'licenseConcluded': 'MIT', 'copyrightText': COPYRIGHT,
    }


def entry(name, version, licence, source, text, **fields):
    """Returns the entry of a package with the given copyright."""
    return {
        'SPDXID': spdx_id(name), 'name': name, 'versionInfo': version, 'filesAnalyzed': False,
        'downloadLocation': 'NOASSERTION', 'sourceInfo': source, 'licenseConcluded': licence,
        'licenseDeclared': licence, 'copyrightText': text, **fields,
    }


def package_entry(name, version, source, licence):
    reference = {'referenceCategory': 'PACKAGE-MANAGER', 'referenceType': 'purl',
                 'referenceLocator': f'pkg:deb/debian/{quote(name)}@{quote(version)}'}
    return entry(name, version, licence, f'built from {source}', 'NOASSERTION', supplier='Organization: Debian',
                 externalRefs=[reference])


def library_entry(name, version):
    return entry(name, version, 'MIT', 'a static library of files in src/', COPYRIGHT, supplier=SUPPLIER)


def data_entries():
    """Returns the entries of the data in the sources, with the versions that the header names."""
    header = (ROOT / DATA_HEADER).read_text(encoding='utf-8')
    version, unicode_version = re.search(r'utf8proc ([\d.]+) for Unicode ([\d.]+)\.', header).groups()
    data = ('utf8proc', version, 'MIT'), ('Unicode data files', unicode_version, 'LicenseRef-Unicode')
    return [entry(*fields, f'data in {DATA_HEADER}', copyright_in_notices(fields[0])) for fields in data]


def product_entry(version, files):
    checksums = sorted(file['checksums'][0]['checksumValue'] for file in files)
    return {
        'SPDXID': 'SPDXRef-ZOTDam', 'name': 'ZOTDam', 'versionInfo': version, 'filesAnalyzed': True,
        'supplier': SUPPLIER, 'downloadLocation': 'NOASSERTION',
        'packageVerificationCode': {
            'packageVerificationCodeValue': hashlib.sha1(''.join(checksums).encode()).hexdigest()},
        'licenseConcluded': 'MIT', 'licenseDeclared': 'MIT', 'licenseInfoFromFiles': ['MIT'],
        'copyrightText': COPYRIGHT, 'primaryPackagePurpose': 'LIBRARY',
    }


def section_of_notices(title):
    notices = (ROOT / 'THIRD-PARTY-NOTICES.txt').read_text(encoding='utf-8')
    return re.search(rf'^{title}\b[^\n]*\n=+\n\n(.*?)(?=^===|\Z)', notices, re.M | re.S).group(1)


def copyright_in_notices(title):
    """Returns the lines from the first line that begins with "Copyright" to the end of its paragraph."""
    return re.search(r'^Copyright.*?(?=\n\n)', section_of_notices(title), re.M | re.S).group(0)


def relationship(element, kind, related):
    return {'spdxElementId': element, 'relationshipType': kind, 'relatedSpdxElement': related}


def own_relationships(build, program):
    """Returns the relationships of a program with the project's own libraries and with data in the sources."""
    libraries = libraries_of(build, program)
    contains_data = any(path.endswith(DATA_HEADER) for path in headers_of(build, program))
    return [*(relationship(spdx_id(program), 'STATIC_LINK', spdx_id(name)) for name in libraries),
            *([relationship(spdx_id(program), 'CONTAINS', spdx_id('utf8proc'))] if contains_data else [])]


def bill_of_materials(arguments, contents, versions, seconds):
    """Returns the document. `contents` are the packages in each program."""
    files = [file_entry(arguments.programs or arguments.build / 'bin', program) for program in PROGRAMS]
    components = sorted(set().union(*contents.values()))
    tools = sorted(set(versions) - set(components))
    packages = [package_entry(name, versions[name][0], ' '.join(versions[name][1:]), LICENCES[versions[name][1]])
                for name in components]
    packages += [package_entry(name, versions[name][0], ' '.join(versions[name][1:]), 'NOASSERTION') for name in tools]
    libraries = sorted(set().union(*(libraries_of(arguments.build, program) for program in PROGRAMS)))
    packages += [*(library_entry(name, arguments.version) for name in libraries), *data_entries()]
    content = f'{arguments.version} {arguments.commit} {files} {packages}'
    return {
        'spdxVersion': 'SPDX-2.3', 'dataLicense': 'CC0-1.0', 'SPDXID': 'SPDXRef-DOCUMENT',
        'name': f'ZOTDam-{arguments.version}', 'documentNamespace': f'urn:uuid:{uuid.uuid5(NAMESPACE, content)}',
        'creationInfo': {'created': time.strftime('%Y-%m-%dT%H:%M:%SZ', time.gmtime(seconds)),
                         'creators': [SUPPLIER, 'Tool: record.py']},
        'packages': [product_entry(arguments.version, files), *packages], 'files': files,
        'hasExtractedLicensingInfos': [
            {'licenseId': name, 'name': title, 'extractedText': section_of_notices(title)}
            for name, title in EXTRACTED.items()],
        'relationships': [
            relationship('SPDXRef-DOCUMENT', 'DESCRIBES', 'SPDXRef-ZOTDam'),
            *(relationship('SPDXRef-ZOTDam', 'CONTAINS', spdx_id(program)) for program in PROGRAMS),
            *(relationship(spdx_id(program), 'STATIC_LINK', spdx_id(name))
              for program in PROGRAMS for name in sorted(contents[program])),
            *(item for program in PROGRAMS for item in own_relationships(arguments.build, program)),
            relationship(spdx_id('utf8proc'), 'GENERATED_FROM', spdx_id('Unicode data files')),
            *(relationship(spdx_id(name), 'BUILD_TOOL_OF', 'SPDXRef-ZOTDam') for name in tools)],
    }


def main():
    parser = argparse.ArgumentParser(description='Records a build.')
    parser.add_argument('--build', type=pathlib.Path, required=True)
    parser.add_argument('--version', required=True)
    parser.add_argument('--commit', required=True)
    parser.add_argument('--programs', type=pathlib.Path)
    parser.add_argument('--output', type=pathlib.Path)
    arguments = parser.parse_args()
    contents = {program: packages_of(arguments.build, program) for program in PROGRAMS}
    versions = versions_of(set(TOOLS).union(*contents.values()))
    document = bill_of_materials(arguments, contents, versions, packing.time_of_build())
    output = arguments.output or arguments.build
    (output / 'BUILDINFO').write_text(buildinfo(arguments, versions), encoding='utf-8')
    (output / 'ZOTDam.spdx.json').write_text(json.dumps(document, indent=2) + '\n', encoding='utf-8')
    return 0


if __name__ == '__main__':
    sys.exit(main())
