"""Validates a NuGet package: its manifest, its list of content types, and the files that its MSBuild files name.

    nupkg_test.py FILE VERSION
"""
import pathlib
import re
import sys
import zipfile
from xml.etree import ElementTree

NUSPEC = '{http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd}'
TYPES = '{http://schemas.openxmlformats.org/package/2006/content-types}'
RELATIONSHIPS = '{http://schemas.openxmlformats.org/package/2006/relationships}'
MSBUILD = '{http://schemas.microsoft.com/developer/msbuild/2003}'
MANIFEST = 'http://schemas.microsoft.com/packaging/2010/07/manifest'
REQUIRED = ('id', 'version', 'authors', 'description')
ELEMENTS = {'Project', 'PropertyGroup', 'ItemGroup', 'ItemDefinitionGroup', 'ClCompile', 'Link', 'Natvis', 'Target',
            'Copy', 'Error', 'AdditionalIncludeDirectories', 'AdditionalDependencies', 'ZOTDamLink', 'ZOTDamCopy'}
PATH = re.compile(r'\$\(MSBuildThisFileDirectory\)([^;"]+)')


def manifest_problems(root, version, names):
    metadata = root.find(f'{NUSPEC}metadata')
    values = {child.tag.removeprefix(NUSPEC): child.text for child in metadata}
    yield from (f'the manifest has no {name}' for name in REQUIRED if not values.get(name))
    if (values.get('id'), values.get('version')) != ('ZOTDam', version):
        yield f'the manifest names {values.get("id")} {values.get("version")}'
    if values.get('readme') not in names:
        yield 'the manifest names a missing readme'


def type_problems(root, names):
    extensions = {item.get('Extension') for item in root.iter(f'{TYPES}Default')}
    parts = {item.get('PartName') for item in root.iter(f'{TYPES}Override')}
    for name in sorted(names - {'[Content_Types].xml'}):
        has_type = pathlib.PurePosixPath(name).suffix[1:] in extensions or f'/{name}' in parts
        if not has_type and name != '_rels/.rels':
            yield f'{name} has no content type'


def relationship_problems(root, names):
    targets = [item.get('Target') for item in root.iter(f'{RELATIONSHIPS}Relationship') if item.get('Type') == MANIFEST]
    if [target.removeprefix('/') in names for target in targets] != [True]:
        yield 'the package does not name its manifest'


def project_problems(path, root, names):
    yield from (f'{path}: unknown element {item.tag}' for item in root.iter()
                if item.tag.removeprefix(MSBUILD) not in ELEMENTS)
    text = [value for item in root.iter() for value in (item.text, *item.attrib.values()) if value]
    folder = pathlib.PurePosixPath(path).parent
    for named in (match for value in text for match in PATH.findall(value)):
        target = str(folder / named.replace('\\', '/'))
        if target not in names and not any(name.startswith(f'{target}/') for name in names):
            yield f'{path} names {named}, which does not exist'


def problems(package, version):
    names = {name for name in package.namelist() if not name.endswith('/')}

    def parse(path):
        return ElementTree.fromstring(package.read(path))

    yield from manifest_problems(parse('ZOTDam.nuspec'), version, names)
    yield from type_problems(parse('[Content_Types].xml'), names)
    yield from relationship_problems(parse('_rels/.rels'), names)
    for path in 'build/native/ZOTDam.props', 'build/native/ZOTDam.targets':
        yield from project_problems(path, parse(path), names)


def main(path, version):
    with zipfile.ZipFile(path) as package:
        found = list(problems(package, version))
    print('\n'.join(found))
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))
