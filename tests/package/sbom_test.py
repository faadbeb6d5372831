"""Validates a software bill of materials (SPDX 2.3): its fields, identifiers, licences, relationships and checksums.

    sbom_test.py FILE FOLDER    FOLDER contains the files of the package
"""
import hashlib
import json
import pathlib
import re
import sys

DOCUMENT = {'spdxVersion', 'dataLicense', 'SPDXID', 'name', 'documentNamespace', 'creationInfo'}
PACKAGE = {'SPDXID', 'name', 'versionInfo', 'downloadLocation', 'licenseConcluded', 'licenseDeclared', 'copyrightText'}
FILE = {'SPDXID', 'fileName', 'checksums', 'licenseConcluded', 'copyrightText'}
RELATIONSHIPS = {'DESCRIBES', 'CONTAINS', 'STATIC_LINK', 'GENERATED_FROM', 'BUILD_TOOL_OF'}
LICENCES = {'BSD-3-Clause', 'GPL-3.0-or-later', 'MIT', 'NOASSERTION', 'ZPL-2.1'}
EXCEPTIONS = {'GCC-exception-3.1'}
TERM = re.compile(r'^(\S+)(?: WITH (\S+))?$')


def missing_fields(entry, fields):
    return [f'{entry.get("SPDXID")}: {field} is missing' for field in sorted(fields - entry.keys())]


def licence_problems(entry, extracted):
    for term in entry['licenseConcluded'].split(' AND '):
        licence, exception = TERM.match(term).groups()
        if licence not in LICENCES | extracted or (exception and exception not in EXCEPTIONS):
            yield f'{entry["SPDXID"]}: unknown licence {term}'


def identifier_problems(identifiers):
    yield from (f'{name} is used twice' for name in identifiers if identifiers.count(name) > 1)
    yield from (f'{name} is not an identifier' for name in identifiers
                if not re.match(r'^SPDXRef-[A-Za-z0-9.-]+$', name))


def relationship_problems(document, identifiers):
    for item in document['relationships']:
        for end in item['spdxElementId'], item['relatedSpdxElement']:
            if end not in identifiers:
                yield f'{end} does not exist'
        if item['relationshipType'] not in RELATIONSHIPS:
            yield f'unknown relationship {item["relationshipType"]}'
    related = {end for item in document['relationships'] for end in (item['spdxElementId'], item['relatedSpdxElement'])}
    yield from (f'{name} has no relationship' for name in sorted(set(identifiers) - related))


def checksum_problems(file, folder):
    data = (folder / file['fileName']).read_bytes()
    for checksum in file['checksums']:
        if hashlib.new(checksum['algorithm'], data).hexdigest() != checksum['checksumValue']:
            yield f'{file["fileName"]}: another {checksum["algorithm"]}'


def verification_problems(package, files):
    checksums = sorted(file['checksums'][0]['checksumValue'] for file in files)
    code = package['packageVerificationCode']['packageVerificationCodeValue']
    if hashlib.sha1(''.join(checksums).encode()).hexdigest() != code:
        yield 'another verification code'


def problems(document, folder):
    yield from missing_fields(document, DOCUMENT)
    if not re.match(r'^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$', document['creationInfo']['created']):
        yield 'invalid time of creation'
    packages, files = document['packages'], document['files']
    extracted = {item['licenseId'] for item in document['hasExtractedLicensingInfos'] if item['extractedText'].strip()}
    for entries, fields in (packages, PACKAGE), (files, FILE):
        for entry in entries:
            yield from missing_fields(entry, fields)
            yield from licence_problems(entry, extracted)
    identifiers = [document['SPDXID'], *(entry['SPDXID'] for entry in packages + files)]
    yield from identifier_problems(identifiers)
    yield from relationship_problems(document, identifiers)
    for file in files:
        yield from checksum_problems(file, folder)
    yield from verification_problems(packages[0], files)


def main(path, folder):
    found = list(problems(json.loads(pathlib.Path(path).read_text(encoding='utf-8')), pathlib.Path(folder)))
    print('\n'.join(found))
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))
