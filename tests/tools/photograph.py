#!/usr/bin/python3
"""Writes a picture of any size quickly: photograph.py png|jpeg SIZE FILE.

The PNG is red in its left half and blue in the right, the JPEG is gray. Only the sizes are those of a photograph.
"""

import os
import sys
import zlib

sys.dont_write_bytecode = True
sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../support"))
from picture_files import jpeg_of, png_chunk, png_head


def png_halves(width, height):
    line = b"\0" + b"\xff\0\0" * (width // 2) + b"\0\0\xff" * (width - width // 2)
    packer = zlib.compressobj(1)
    data = b"".join(packer.compress(line) for _ in range(height)) + packer.flush()
    return png_head(width, height, 2) + png_chunk("IDAT", data) + png_chunk("IEND")


if __name__ == "__main__":
    kind, size, path = sys.argv[1:]
    with open(path, "wb") as file:
        file.write({"png": png_halves, "jpeg": jpeg_of}[kind](*map(int, size.split("x"))))
