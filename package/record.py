#!/usr/bin/env python3
"""Records a build in two files of the build folder, which become part of the packages: BUILDINFO, the commit and the
versions of the tools and libraries, and ZOTDam.spdx.json, a software bill of materials (SPDX 2.3) with the third-party
code in the programs and its licences. scripts/package.sh calls it after the build.

    package/record.py --build FOLDER --version 1.0.0 --commit HASH [--programs FOLDER] [--output FOLDER]

--programs is the folder of the programs if they were signed after the build.

The packages come from the headers that the compiler read and the archives that the linker read. A package without a
known licence ends the program with an error. SOURCE_DATE_EPOCH is the time of the document.
"""
import argparse
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

# The programs, each with the folders of its objects in the build folder.
PROGRAMS = {'ZOTDam.dll': ('src/',), 'zotdamctl.exe': ('client/', 'src/CMakeFiles/zotdam_shared.dir/')}
TOOLS = ('binutils-mingw-w64-x86-64', 'cmake', 'g++-mingw-w64-x86-64-posix', 'g++-mingw-w64-x86-64-win32', 'llvm',
         'msitools', 'ninja-build', 'wixl')

# The licences of the source packages. The notices contain the texts of those that SPDX does not list.
LICENCES = {
    'cli11': 'BSD-3-Clause',
    'nlohmann-json3': 'MIT',
    'mingw-w64': 'ZPL-2.1 AND MIT AND BSD-3-Clause AND LicenseRef-mingw-w64',
    'gcc-mingw-w64': 'GPL-3.0-or-later WITH GCC-exception-3.1 AND LicenseRef-libstdcxx',
}
EXTRACTED = {'LicenseRef-mingw-w64': 'mingw-w64 runtime', 'LicenseRef-libstdcxx': 'GCC runtime'}


def quote(text):
    return urllib.parse.quote(text, safe='')


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def headers_of(build, folders):
    """Returns the headers that the objects in these folders include."""
    files = set()
    for block in run('ninja', '-C', build, '-t', 'deps').split('\n\n'):
        name, *headers = block.splitlines() or ['']
        if name.startswith(folders) and name.endswith('(VALID)'):
            files.update(header.strip() for header in headers)
    return files


def archives_of(build, program):
    """Returns the archives and objects that the linker read, from its map."""
    text = (build / 'bin' / f'{program}.map').read_text(encoding='utf-8', errors='replace')
    return set(re.findall(r'^(/\S+)\(\S+\)$', text, re.M)) | set(re.findall(r'^LOAD (/\S+\.o)$', text, re.M))


def packages_of(build, program):
    """Returns the names of the packages whose code is in the program."""
    paths = {os.path.realpath(os.path.join(build, path))
             for path in headers_of(build, PROGRAMS[program]) | archives_of(build, program)}
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
        'licenseConcluded': 'MIT', 'copyrightText': 'Copyright (c) 2026 The ZOTDam authors',
    }


def package_entry(name, version, source, licence):
    return {
        'SPDXID': spdx_id(name), 'name': name, 'versionInfo': version, 'filesAnalyzed': False,
        'supplier': 'Organization: Debian', 'downloadLocation': 'NOASSERTION', 'sourceInfo': f'built from {source}',
        'licenseConcluded': licence, 'licenseDeclared': licence, 'copyrightText': 'NOASSERTION',
        'externalRefs': [{'referenceCategory': 'PACKAGE-MANAGER', 'referenceType': 'purl',
                          'referenceLocator': f'pkg:deb/debian/{quote(name)}@{quote(version)}'}],
    }


def product_entry(version, files):
    checksums = sorted(file['checksums'][0]['checksumValue'] for file in files)
    return {
        'SPDXID': 'SPDXRef-ZOTDam', 'name': 'ZOTDam', 'versionInfo': version, 'filesAnalyzed': True,
        'supplier': 'Organization: Orlo Corporation', 'downloadLocation': 'NOASSERTION',
        'packageVerificationCode': {
            'packageVerificationCodeValue': hashlib.sha1(''.join(checksums).encode()).hexdigest()},
        'licenseConcluded': 'MIT', 'licenseDeclared': 'MIT', 'licenseInfoFromFiles': ['MIT'],
        'copyrightText': 'Copyright (c) 2026 The ZOTDam authors', 'primaryPackagePurpose': 'LIBRARY',
    }


def section_of_notices(title):
    notices = (ROOT / 'THIRD-PARTY-NOTICES.txt').read_text(encoding='utf-8')
    return re.search(rf'^{title}\b.*\n=+\n\n(.*?)(?=^===|\Z)', notices, re.M | re.S).group(1)


def relationship(element, kind, related):
    return {'spdxElementId': element, 'relationshipType': kind, 'relatedSpdxElement': related}


def bill_of_materials(arguments, contents, versions, seconds):
    """Returns the document. `contents` are the packages in each program."""
    files = [file_entry(arguments.programs or arguments.build / 'bin', program) for program in PROGRAMS]
    components = sorted(set().union(*contents.values()))
    tools = sorted(set(versions) - set(components))
    packages = [package_entry(name, versions[name][0], ' '.join(versions[name][1:]), LICENCES[versions[name][1]])
                for name in components]
    packages += [package_entry(name, versions[name][0], ' '.join(versions[name][1:]), 'NOASSERTION') for name in tools]
    content = f'{arguments.version} {arguments.commit} {files} {packages}'
    return {
        'spdxVersion': 'SPDX-2.3', 'dataLicense': 'CC0-1.0', 'SPDXID': 'SPDXRef-DOCUMENT',
        'name': f'ZOTDam-{arguments.version}', 'documentNamespace': f'urn:uuid:{uuid.uuid5(NAMESPACE, content)}',
        'creationInfo': {'created': time.strftime('%Y-%m-%dT%H:%M:%SZ', time.gmtime(seconds)),
                         'creators': ['Organization: Orlo Corporation', 'Tool: record.py']},
        'packages': [product_entry(arguments.version, files), *packages], 'files': files,
        'hasExtractedLicensingInfos': [
            {'licenseId': name, 'name': title, 'extractedText': section_of_notices(title)}
            for name, title in EXTRACTED.items()],
        'relationships': [
            relationship('SPDXRef-DOCUMENT', 'DESCRIBES', 'SPDXRef-ZOTDam'),
            *(relationship('SPDXRef-ZOTDam', 'CONTAINS', spdx_id(program)) for program in PROGRAMS),
            *(relationship(spdx_id(program), 'STATIC_LINK', spdx_id(name))
              for program in PROGRAMS for name in sorted(contents[program])),
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
