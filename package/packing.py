"""The command line of the programs that make a package from an unpacked zip: msi.py and nupkg.py."""
import argparse
import os
import pathlib
import time


def time_of_build():
    """Returns the time that files of the build have, in seconds."""
    return int(os.environ.get('SOURCE_DATE_EPOCH', time.time()))


def main(description, make):
    """Calls `make` with the tree, the version, the path of the package and the time of its files."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument('--tree', type=pathlib.Path, required=True)
    parser.add_argument('--version', required=True)
    parser.add_argument('--output', type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    make(arguments.tree.resolve(), arguments.version, arguments.output.resolve(), time_of_build())
