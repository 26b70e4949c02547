#!/usr/bin/python3
"""Writes a picture of any size quickly: photograph.py png|jpeg SIZE FILE.

The PNG is red in its left half and blue in the right, the JPEG is gray. Only the sizes are those of a photograph.
"""

import struct
import sys
import zlib


def png(width, height):
    line = b"\0" + b"\xff\0\0" * (width // 2) + b"\0\0\xff" * (width - width // 2)
    packer = zlib.compressobj(1)
    data = b"".join(packer.compress(line) for _ in range(height)) + packer.flush()
    head = struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)
    chunks = (b"IHDR", head), (b"IDAT", data), (b"IEND", b"")
    return b"\x89PNG\r\n\x1a\n" + b"".join(
        struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data)) for name, data in chunks
    )


def jpeg(width, height):
    def segment(marker, data):
        return struct.pack(">BBH", 0xFF, marker, 2 + len(data)) + data

    # Both Huffman tables have one code, of one bit: no change of the mean, and nothing beside it.
    one_code = bytes([1] + 15 * [0] + [0])
    blocks = -(-width // 8) * -(-height // 8)
    return b"".join([
        b"\xff\xd8",
        segment(0xDB, bytes([0] + 64 * [1])),
        segment(0xC0, struct.pack(">B2H4B", 8, height, width, 1, 1, 0x11, 0)),
        segment(0xC4, b"\x00" + one_code),
        segment(0xC4, b"\x10" + one_code),
        segment(0xDA, bytes([1, 1, 0, 0, 63, 0])),
        bytes(-(-2 * blocks // 8)),
        b"\xff\xd9",
    ])


if __name__ == "__main__":
    kind, size, path = sys.argv[1:]
    with open(path, "wb") as file:
        file.write({"png": png, "jpeg": jpeg}[kind](*map(int, size.split("x"))))
