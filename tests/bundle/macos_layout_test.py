#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""macos_layout_test.py BUNDLE VERSION

Reads the files of a macOS bundle, except for the binary, as the system and the host do, and compares
their whole contents with what is expected.
"""
import plistlib
import struct
import sys
import unittest
from pathlib import Path

BUNDLE = Path(sys.argv[1])
VERSION = sys.argv[2]


def numbers(form, data, offset):
    return struct.unpack_from(">" + form, data, offset)


def only_resource(data):
    """The type, the id and the bytes of the one resource in a classic resource file."""
    data_at, map_at, data_length, map_length = numbers("4I", data, 0)
    assert map_at == data_at + data_length and len(data) == map_at + map_length
    assert data[map_at:map_at + 16] == data[:16]
    assert not any(data[16:data_at]) and not any(data[map_at + 16:map_at + 24])
    types_at, names_at = numbers("2H", data, map_at + 24)
    assert names_at == map_length
    more_types, kind, more, refs_at = numbers("H4s2H", data, map_at + types_at)
    assert more_types == 0 and more == 0
    number, *reference = numbers("HhII", data, map_at + types_at + refs_at)
    assert reference == [-1, 0, 0]  # no name, no attributes, first in the data
    (size,) = numbers("I", data, data_at)
    assert size + 4 == data_length
    return kind, number, data[data_at + 4:data_at + 4 + size]


def properties(data):
    """Key and bytes of each property of a list, in order."""
    version, count = numbers("2I", data, 0)
    assert version == 0
    found, at = [], 8
    for _ in range(count):
        vendor, key, number, length = numbers("4s4s2I", data, at)
        assert vendor == b"8BIM" and number == 0
        found.append((key, data[at + 16:at + 16 + length]))
        end = at + 16 + (length + 3) // 4 * 4
        assert not any(data[at + 16 + length:end])
        at = end
    assert at == len(data)
    return found


class MacLayout(unittest.TestCase):
    def test_files(self):
        files = {str(f.relative_to(BUNDLE)) for f in BUNDLE.rglob("*") if f.is_file()}
        files.discard("Contents/MacOS/Orbel")
        self.assertEqual(files, {"Contents/Info.plist", "Contents/PkgInfo",
                                 "Contents/Resources/Orbel.rsrc"})
        self.assertEqual((BUNDLE / "Contents/PkgInfo").read_bytes(), b"eFKTFXTC")

    def test_information(self):
        self.assertEqual(plistlib.loads((BUNDLE / "Contents/Info.plist").read_bytes()), {
            "CFBundleDevelopmentRegion": "en",
            "CFBundleExecutable": "Orbel",
            "CFBundleIdentifier": "com.tarnwick.orbel",
            "CFBundleInfoDictionaryVersion": "6.0",
            "CFBundleName": "Orbel",
            "CFBundlePackageType": "eFKT",
            "CFBundleShortVersionString": VERSION,
            "CFBundleSignature": "FXTC",
            "CFBundleVersion": VERSION,
            "LSMinimumSystemVersion": "11.0",
        })

    def test_descriptor(self):
        resources = (BUNDLE / "Contents/Resources/Orbel.rsrc").read_bytes()
        kind, number, data = only_resource(resources)
        self.assertEqual((kind, number), (b"PiPL", 16000))
        self.assertEqual(properties(data), [
            (b"kind", b"eFKT"),
            (b"name", b"\x05Orbel"),
            (b"catg", b"\x08TARNWICK"),
            (b"mi64", b"\x0eEntryPointFunc"),
            (b"ma64", b"\x0eEntryPointFunc"),
            (b"ePVR", struct.pack(">2H", 2, 0)),
            (b"eSVR", struct.pack(">2H", 13, 28)),
            (b"eVER", struct.pack(">I", 0xA0001)),
            (b"eINF", b"\0\0"),
            (b"eGLO", struct.pack(">I", 0x6000001)),
            (b"eGL2", struct.pack(">I", 0x8001480)),
            (b"eMNA", b"\x0eTARNWICK Orbel"),
            (b"aeFL", b"\0\0\0\0"),
        ])


unittest.main(argv=sys.argv[:1])
