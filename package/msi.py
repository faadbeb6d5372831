#!/usr/bin/env python3
"""Makes the installer from an installed tree (cmake --install), with wixl and msibuild. scripts/package.sh calls it.

    package/msi.py --tree FOLDER --version 1.0.0 --output FILE.msi

The same tree always produces the same file. SOURCE_DATE_EPOCH is the time of the installer and of its files.
"""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time
import uuid
from xml.etree import ElementTree

import packing

PACKAGE = pathlib.Path(__file__).resolve().parent
SCHEMA = 'http://schemas.microsoft.com/wix/2006/wi'
NAMESPACE = uuid.UUID('6f0c6a55-3c5e-4f0b-9d5b-2a1c7f5f6a0e')  # of all identifiers of the installer

# The beginnings of the paths in the tree, each with the feature and the folder that replaces the beginning in the
# installation. The first match counts.
LAYOUT = (
    ('samples/Program Files/Orlo/QUEN Power Management/', 'samples', ''),
    ('samples/', None, ''),  # the user settings: the library creates them
    ('bin/', 'runtime', ''),
    ('BUILDINFO', 'runtime', 'ZOTDam/BUILDINFO'),
    ('LICENSE', 'runtime', 'ZOTDam/LICENSE'),
    ('THIRD-PARTY-NOTICES.txt', 'runtime', 'ZOTDam/THIRD-PARTY-NOTICES.txt'),
    ('ZOTDam.spdx.json', 'runtime', 'ZOTDam/ZOTDam.spdx.json'),
    ('', 'development', 'ZOTDam/'),
)

# Attributes of components. The data files of the samples belong to the OEM once they are installed: an installation
# never replaces them, and nothing removes them.
PERMANENT, NEVER_OVERWRITE, WIN64 = 0x10, 0x80, 0x100

IS_REPAIR = 'Installed AND NOT (REINSTALL OR REMOVE OR ADDLOCAL OR ADDDEFAULT OR ADDSOURCE OR ADVERTISE OR ' \
            'UPGRADINGPRODUCTCODE)'
OMITS_RUNTIME = 'ADDLOCAL AND ADDLOCAL <> "ALL" AND NOT (ADDLOCAL >< "runtime" OR Installed)'


class File:
    """A file of the tree, its feature, and its path in the installation."""

    def __init__(self, source, feature, target):
        self.source = source
        self.feature = feature
        self.target = pathlib.PurePosixPath(target)
        self.id = identifier('File', self.target)

    def is_program(self):
        return self.target.suffix in ('.dll', '.exe')


def guid(*names):
    return '{' + str(uuid.uuid5(NAMESPACE, '|'.join(names))).upper() + '}'


def identifier(kind, target):
    """Returns an identifier of at most 72 characters for a path in the installation."""
    return f'{kind}_{re.sub("[^A-Za-z0-9]", "_", target.name)[:40]}_{hashlib.sha256(bytes(target)).hexdigest()[:12]}'


def locate(tree, source):
    """Returns the file, or None if it is not installed."""
    path = source.relative_to(tree).as_posix()
    beginning, feature, folder = next(line for line in LAYOUT if path.startswith(line[0]))
    return File(source, feature, folder + path.removeprefix(beginning)) if feature else None


def files_of(tree):
    files = (locate(tree, source) for source in tree.rglob('*') if source.is_file())
    return sorted((file for file in files if file), key=lambda file: (file.feature, file.target))


def checksum(files):
    content = hashlib.sha256()
    for file in files:
        data = file.source.read_bytes()
        content.update(f'{file.feature} {file.target} {len(data)}\n'.encode() + data)
    return content.hexdigest()


def add_component(file, folders):
    """Adds a component with the file, and the folders that it needs."""
    for target in reversed(file.target.parents):
        if target not in folders:
            folders[target] = ElementTree.SubElement(folders[target.parent], 'Directory', Name=target.name,
                                                     Id=identifier('Folder', target))
    component = ElementTree.SubElement(folders[file.target.parent], 'Component', Id=file.id, Win64='yes',
                                       Guid=guid('component', str(file.target)))
    ElementTree.SubElement(component, 'File', Id=file.id, Name=file.target.name, Source=file.id, KeyPath='yes')


def write_groups(files, path):
    """Writes a component for each file, and the group of the components of each feature."""
    wix = ElementTree.Element('Wix', xmlns=SCHEMA)
    fragment = ElementTree.SubElement(wix, 'Fragment')
    root = ElementTree.SubElement(fragment, 'DirectoryRef', Id='InstallationFolder')
    folders = {pathlib.PurePosixPath('.'): root}
    for file in files:
        add_component(file, folders)
    for feature in sorted({file.feature for file in files}):
        group = ElementTree.SubElement(fragment, 'ComponentGroup', Id=feature)
        for file in files:
            if file.feature == feature:
                ElementTree.SubElement(group, 'ComponentRef', Id=file.id)
    ElementTree.ElementTree(wix).write(path, encoding='utf-8', xml_declaration=True)


def copy_sources(files, folder, seconds):
    """Copies the files, because the cabinet contains their times."""
    for file in files:
        copy = folder / file.id
        shutil.copyfile(file.source, copy)
        os.utime(copy, (seconds, seconds))


def statements(files, version, upgrade_code):
    """Returns the statements that complete the database."""
    text = (PACKAGE / 'ZOTDam.sql').read_text(encoding='utf-8')
    text = text.format(version=version, upgrade_code=upgrade_code)
    lines = ' '.join(line.strip() for line in text.splitlines() if not line.startswith('--'))
    yield from (statement.strip() for statement in lines.split(';\x20') if statement.strip())
    for file in files:
        if file.feature == 'samples':
            attributes = PERMANENT | NEVER_OVERWRITE | WIN64
            yield f"UPDATE `Component` SET `Attributes` = {attributes} WHERE `Component` = '{file.id}'"
        if file.is_program():
            # Without a version, Windows would keep each older program that has one.
            yield f"UPDATE `File` SET `Version` = '{version}.0', `Language` = '1033' WHERE `File` = '{file.id}'"
            yield f"DELETE FROM `MsiFileHash` WHERE `File_` = '{file.id}'"


def write_summary(database, package_code, seconds, path):
    """Writes the summary information with the given identifier and time, as a table that msibuild imports."""
    summary = subprocess.run(['msiinfo', 'export', database, '_SummaryInformation'], check=True, capture_output=True,
                             text=True).stdout
    moment = time.strftime('%Y/%m/%d %H:%M:%S', time.gmtime(seconds))
    for number, value in (9, package_code), (12, moment), (13, moment), (18, 'msitools'):
        summary = re.sub(rf'^{number}\t.*?(\r?)$', rf'{number}\t{value}\1', summary, flags=re.M)
    path.write_text(summary, encoding='utf-8', newline='')


def make_msi(tree, version, output, seconds):
    files = files_of(tree)
    content = checksum(files)
    upgrade_code = guid('upgrade')
    variables = {'Version': version, 'UpgradeCode': upgrade_code, 'ProductCode': guid('product', version, content),
                 'SettingsFolderGuid': guid('component', 'SettingsFolder'), 'IsRepair': IS_REPAIR,
                 'OmitsRuntime': OMITS_RUNTIME}
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        copy_sources(files, folder, seconds)
        write_groups(files, folder / 'files.wxs')
        database = folder / 'output.msi'
        definitions = [argument for item in variables.items() for argument in ('-D', '='.join(item))]
        subprocess.run(['wixl', '--arch', 'x64', *definitions, '-o', database, PACKAGE / 'ZOTDam.wxs', 'files.wxs'],
                       check=True, cwd=folder)
        write_summary(database, guid('package', version, content), seconds, folder / 'summary.idt')
        subprocess.run(['msibuild', database, '-q', *statements(files, version, upgrade_code),
                        '-i', folder / 'summary.idt'], check=True)
        shutil.move(database, output)


if __name__ == '__main__':
    packing.main('Makes the installer.', make_msi)
