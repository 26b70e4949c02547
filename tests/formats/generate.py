#!/usr/bin/env python3
"""generate.py TARGET FILE...: writes cases of files and what they show as the C++ that formats_test.cpp includes.

Each line of cases/FORMAT.txt is "name: file => frames ! fault @ times". The file is an expression of the functions below, or
of those of picture_files.py that begin with the format's name, without it. A frame is written in letters: R, G, B, W, K, '.'
for transparent, digits for grays of 40 times as much, '/' between the lines, '*' for any pixel; one in brackets is an
expression. The fault is the warning, the strict reader's refusal, and everyone's where there are no frames. The times are
hundredths of a second, then how often the animation repeats. "name = expression" defines a word for the lines below. A mark in
front of a line tells that the file is read at each of its lengths too, and each pixel is then
    +  right, or transparent or as in the frame before
    ~  right up to one of them, of more bytes more
What is indented belongs to the line above.
"""

import functools
import pathlib
import re
import struct
import sys
import zlib

sys.dont_write_bytecode = True
sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import picture_files
from picture_files import big, gif_compressed, gif_literals, little, packed

COLOURS = {".": "00000000", "R": "ff0000ff", "G": "00ff00ff", "B": "0000ffff", "W": "ffffffff", "K": "000000ff"}
hex = bytes.fromhex


def flip(data, at):
    """With the bits of one byte changed."""
    at %= len(data)
    return data[:at] + bytes([data[at] ^ 0xFF]) + data[at + 1 :]


def exif_of(orientation, order="little"):
    """Nothing but the orientation: an entry of 16 bits, and no further directory."""
    fields = (42, 2), (8, 4), (1, 2), (0x0112, 2), (3, 2), (1, 4), (orientation, 2), (0, 2), (0, 4)
    return (b"II" if order == "little" else b"MM") + b"".join(value.to_bytes(size, order) for value, size in fields)


# BMP


def bmp_of(pixels=b"", width=2, height=2, bits=24, compression=0, header=40, masks=(), palette=()):
    """With a header of 40 bytes, the start of one, or a longer one whose further fields are masks and 0."""
    side = 2 if header == 12 else 4
    fields = (header, 4), (width, side), (height, side), (1, 2), (bits, 2), (compression, 4), (0, 12), (len(palette), 4), (0, 4)
    head = b"".join(little(value, size) for value, size in fields)[: min(header, 40)]
    head = (head + b"".join(little(mask, 4) for mask in masks)).ljust(header, b"\0")
    head += b"".join(hex(COLOURS[one])[2::-1] + bytes(header != 12) for one in palette)
    return b"BM" + bytes(8) + little(14 + len(head), 4) + head + pixels


bmp_runs = functools.partial(bmp_of, width=3, bits=8, compression=1, palette="RGBW")

# GIF

FOUR = ["ff0000", "00ff00", "0000ff", "ffffff"]
gif_top = functools.partial(picture_files.gif_head, colours=FOUR)


def gif_sized(data, width=2, height=2, left=0, top=0):
    return picture_files.gif_image(data, left, top, width, height)


def gif_data(bits, *codes):
    return picture_files.gif_codes([(code, bits + 1) for code in codes], bits)


def gif_picture(letters, left=0, top=0, encode=gif_literals):
    lines = letters.split("/")
    indices = ["RGBW".index(letter) for line in lines for letter in line]
    return gif_sized(encode(indices, 2), len(lines[0]), len(lines), left, top)


def full_table():
    """100 x 60 pixels, of which literals alone fill the table: the n-th code adds string 4 + n, and from the 4,092nd on it is
    full. The last code is the first string, the pixels 1 and 2."""
    indices = [n * n // 7 % 4 for n in range(1, 5999)]
    codes = [(4, 3)] + [(index, min(12, max(3, (4 + n).bit_length()))) for n, index in enumerate(indices, 1)]
    shown = "".join("RGBW"[index] for index in indices + indices[:2])
    return picture_files.gif_codes(codes + [(6, 12), (5, 12)], 2), "/".join(shown[at : at + 100] for at in range(0, 6000, 100))


full_data, full_picture = full_table()
noise = "/".join("".join("RGBW"[(x * x * 7 + y * y * 3 + x * y) // 5 % 4] for x in range(60)) for y in range(40))

# JPEG


def jpeg_blocks(blocks, exif=b"", frame=0xC0):
    means = [40 * int(gray) - 128 for gray in blocks.replace("/", "")]
    return picture_files.jpeg_of(8 * blocks.index("/"), 8 * (blocks.count("/") + 1), means, frame, exif)


def enlarged(blocks):
    return "/".join("".join(8 * gray for gray in line) for line in blocks.split("/") for _ in range(8))


# PNG


def png_top(width, height, interlaced=0):
    """Pixels are places in the palette."""
    palette, alpha = b"".join(hex(colour[:6]) for colour in COLOURS.values()), b"\0"
    head = picture_files.png_head(width, height, 3, interlaced)
    return head + picture_files.png_chunk("PLTE", palette) + picture_files.png_chunk("tRNS", alpha)


def png_lines(letters):
    """Uncompressed, so that a cut is in a known line."""
    data = b"".join(b"\0" + bytes(".RGBWK".index(letter) for letter in line) for line in letters.split("/"))
    return zlib.compress(data, 0)


def png_pixels(letters):
    return picture_files.png_chunk("IDAT", png_lines(letters))


def png_animated(frames, plays=0):
    return picture_files.png_chunk("acTL", big(frames, 4) + big(plays, 4))


def png_place(width=2, height=2, left=0, top=0, disposal=0, over=0, time=5, parts=100):
    return picture_files.png_chunk("fcTL", struct.pack(">5I2H2B", 0, width, height, left, top, time, parts, disposal, over))


def png_further(letters):
    return picture_files.png_chunk("fdAT", bytes(4) + png_lines(letters))


# WebP


def webp_chunk(name, data):
    return name.encode() + little(len(data), 4) + data + bytes(len(data) % 2)


def webp_riff(chunks):
    return webp_chunk("RIFF", b"WEBP" + chunks)


def webp_pixels(letters):
    """Without loss: each channel has a code of one bit for 0 and 255, and there are no distances."""
    lines = letters.split("/")
    channel = [(1, 1), (1, 1), (1, 1), (0, 8), (255, 8)]
    bits = [(0x2F, 8), (len(lines[0]) - 1, 14), (len(lines) - 1, 14), (1, 1), (0, 3), (0, 3)]
    bits += 4 * channel + [(1, 1), (0, 1), (0, 1), (0, 1)]
    for letter in "".join(lines):
        red, green, blue, alpha = hex(COLOURS[letter])
        bits += [(value & 1, 1) for value in (green, red, blue, alpha)]
    return webp_chunk("VP8L", packed(bits))


def webp_extended(flags, width, height):
    return webp_chunk("VP8X", little(flags, 4) + little(width - 1, 3) + little(height - 1, 3))


def webp_frame(letters, left=0, clear=0, replace=1):
    lines = letters.split("/")
    place = little(left // 2, 3) + bytes(3) + little(len(lines[0]) - 1, 3) + little(len(lines) - 1, 3)
    return webp_chunk("ANMF", place + little(125, 3) + bytes([replace << 1 | clear]) + webp_pixels(letters))


def webp_start(plays):
    return webp_extended(0x12, 4, 1) + webp_chunk("ANIM", bytes(4) + little(plays, 2))


def quoted(data):
    data = data.encode() if isinstance(data, str) else data
    return 'std::string("' + "".join(f"\\{byte:03o}" for byte in data) + f'", {len(data)})'


def sample(form, words, line):
    mark, line = (line[0], line[2:]) if line[0] in "+~" else (" ", line)
    match = re.fullmatch(r"([^:]+): (.*) =>((?: [^!@]+?)?)(?: ! (.*?))?(?: @ (.*))?", line)
    if not match:
        sys.exit(f"not understood: {line}")
    name, file, frames, fault, times = match.groups()
    frames = [eval(frame[1:-1], words) if frame[0] == "(" else frame for frame in re.findall(r"\(.*\)|\S+", frames)]
    shown = ", ".join(map(quoted, frames))
    file = quoted(eval(file, words))
    return f"{{\"{form}\", \"{name}\", {file}, {{{shown}}}, \"{fault or ''}\", \"{times or ''}\", '{mark}'}},\n"


def main(target, *paths):
    with open(target, "w", encoding="utf-8") as out:
        for path in map(pathlib.Path, paths):
            form, words = path.stem, dict(globals())
            for name, value in [*vars(picture_files).items(), *globals().items()]:
                if name.startswith(form + "_"):
                    words[name[len(form) + 1 :]] = value
            text = re.sub(r"\n +", " ", path.read_text())
            for line in text.splitlines():
                definition = re.fullmatch(r"(\w+) = (.*)", line)
                if definition:
                    words[definition[1]] = eval(definition[2], words)
                elif line and line[0] != "#":
                    out.write(sample(form, words, line))


if __name__ == "__main__":
    main(*sys.argv[1:])
