#!/usr/bin/env python3
"""Makes the NuGet package for C++ projects from an unpacked package. scripts/package.sh calls it.

    package/nupkg.py --tree FOLDER --version 1.0.0 --output FILE.nupkg

The same tree always produces the same file. SOURCE_DATE_EPOCH is the time of its entries.
"""
import hashlib
import pathlib
import time
import zipfile

import packing

NUGET = pathlib.Path(__file__).resolve().parent / 'nuget'

# The files of the tree, each with its path in the package.
FILES = {
    'include/ZOTDam.h': 'build/native/include/ZOTDam.h',
    'include/ZOTDamTypes.h': 'build/native/include/ZOTDamTypes.h',
    'include/ZOTDamClient.h': 'build/native/include/ZOTDamClient.h',
    'lib/ZOTDam.lib': 'build/native/lib/x64/ZOTDam.lib',
    'bin/ZOTDam.dll': 'build/native/bin/x64/ZOTDam.dll',
    'debug/ZOTDam.natvis': 'build/native/ZOTDam.natvis',
    'README.md': 'README.md',
    'LICENSE': 'LICENSE',
    'THIRD-PARTY-NOTICES.txt': 'THIRD-PARTY-NOTICES.txt',
    'BUILDINFO': 'BUILDINFO',
    'ZOTDam.spdx.json': 'ZOTDam.spdx.json',
}
RELATIONSHIPS = '''<?xml version="1.0" encoding="utf-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
  <Relationship Type="http://schemas.microsoft.com/packaging/2010/07/manifest" Target="/ZOTDam.nuspec" Id="R{id}"/>
</Relationships>
'''


def content_types(paths):
    """Returns the list of content types, which the format requires for every file."""
    extensions = sorted({pathlib.PurePosixPath(path).suffix[1:] for path in paths} - {'', 'rels'})
    without_extension = sorted(path for path in paths if not pathlib.PurePosixPath(path).suffix)
    lines = ['<?xml version="1.0" encoding="utf-8"?>',
             '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">',
             '  <Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>']
    lines += [f'  <Default Extension="{name}" ContentType="application/octet"/>' for name in extensions]
    lines += [f'  <Override PartName="/{path}" ContentType="application/octet"/>' for path in without_extension]
    return '\n'.join([*lines, '</Types>', ''])


def contents(tree, version):
    """Returns the path and the bytes of each file of the package."""
    files = {target: (tree / source).read_bytes() for source, target in FILES.items()}
    for name in 'ZOTDam.props', 'ZOTDam.targets':
        files[f'build/native/{name}'] = (NUGET / name).read_bytes()
    files['ZOTDam.nuspec'] = (NUGET / 'ZOTDam.nuspec').read_text(encoding='utf-8').format(version=version).encode()
    identifier = hashlib.sha256(version.encode()).hexdigest()[:16].upper()
    return {'[Content_Types].xml': content_types(files).encode(),
            '_rels/.rels': RELATIONSHIPS.format(id=identifier).encode(), **dict(sorted(files.items()))}


def make_nupkg(tree, version, output, seconds):
    with zipfile.ZipFile(output, 'w', zipfile.ZIP_DEFLATED) as package:
        for path, data in contents(tree, version).items():
            entry = zipfile.ZipInfo(path, time.gmtime(seconds)[:6])
            entry.compress_type = zipfile.ZIP_DEFLATED
            package.writestr(entry, data)


if __name__ == '__main__':
    packing.main('Makes the NuGet package.', make_nupkg)
