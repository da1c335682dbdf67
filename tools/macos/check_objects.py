#!/usr/bin/env python3
"""Looks into the objects that tools/check-macos has compiled: they must really be for macOS, and
what they use of our own code must be defined in one of them. The latter finds a function that a
header of the seam promises and no source for macOS provides, as linking would.

Formats: <mach-o/loader.h> and <mach-o/nlist.h>, little endian, 64 bits.
"""

import pathlib
import re
import struct
import subprocess
import sys

MAGIC_64 = 0xFEEDFACF
ARM64 = 0x0100000C
OBJECT = 1
HEADER = struct.Struct("<8I")

LOAD_COMMAND = struct.Struct("<2I")
SYMBOL_TABLE = 0x2
BUILD_VERSION = 0x32
MACOS = 1
MACOS_13 = 13 << 16

SYMBOL = struct.Struct("<IBBHQ")
DEBUGGING = 0xE0
TYPE = 0x0E
UNDEFINED = 0

# A mangled name in our namespace, with the kinds of names that the ABI makes up before it.
OURS = re.compile(r"__Z(?:T[A-Z]|G[A-Z])*N[KVrRO]*10tidewright")


class NotForMacOS(Exception):
    pass


def load_commands(data):
    magic, cpu, _, kind, count, *_ = HEADER.unpack_from(data)
    if (magic, cpu, kind) != (MAGIC_64, ARM64, OBJECT):
        raise NotForMacOS("is no Mach-O object for arm64")
    offset = HEADER.size
    for _ in range(count):
        command, size = LOAD_COMMAND.unpack_from(data, offset)
        yield command, data[offset + LOAD_COMMAND.size : offset + size]
        offset += size


def symbols(data, table):
    """The names that an object defines and those that it needs."""
    defined, needed = set(), set()
    offset, count, names, _ = struct.unpack_from("<4I", table)
    for name, kind, *_ in SYMBOL.iter_unpack(data[offset : offset + count * SYMBOL.size]):
        if kind & DEBUGGING:
            continue
        start = names + name
        text = data[start : data.index(b"\0", start)].decode()
        (needed if kind & TYPE == UNDEFINED else defined).add(text)
    return defined, needed


def examine(path):
    data = path.read_bytes()
    if len(data) < HEADER.size:
        raise NotForMacOS("is empty")
    commands = dict(load_commands(data))
    platform, oldest = struct.unpack_from("<2I", commands.get(BUILD_VERSION, bytes(8)))
    if (platform, oldest) != (MACOS, MACOS_13):
        raise NotForMacOS("is not built for macOS 13")
    return symbols(data, commands[SYMBOL_TABLE])


def readable(name):
    filtered = subprocess.run(["c++filt", "-_", name], check=True, capture_output=True, text=True)
    return filtered.stdout.strip()


def check(objects):
    """A sentence for each finding."""
    if not objects:
        return ["Nothing was compiled for macOS."]
    foreign, defined, needed_by = [], set(), {}
    for path in objects:
        try:
            there, needed = examine(path)
        except NotForMacOS as reason:
            foreign.append(f"{path} {reason}.")
            continue
        defined |= there
        for name in filter(OURS.match, needed):
            needed_by.setdefault(name, path)
    if foreign:
        return foreign
    return [
        f"{needed_by[name]} uses {readable(name)}, which no source for macOS defines."
        for name in sorted(needed_by.keys() - defined)
    ]


def main(list_of_objects):
    lines = pathlib.Path(list_of_objects).read_text().splitlines()
    objects = [pathlib.Path(line) for line in lines if line]
    if findings := check(objects):
        sys.exit("\n".join(findings))
    print(f"core compiles for aarch64-macos.13.0: {len(objects)} files")


if __name__ == "__main__":
    main(*sys.argv[1:])
