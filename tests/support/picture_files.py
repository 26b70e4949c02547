"""Files of pictures, byte by byte."""

import struct
import zlib


def little(value, size):
    return value.to_bytes(size, "little", signed=value < 0)


def big(value, size):
    return value.to_bytes(size, "big")


def packed(codes):
    """Pairs of a number and its bits, the lowest bit of each first."""
    text = "".join(f"{code:0{bits}b}" for code, bits in reversed(codes))
    return little(int("0" + text, 2), -(-len(text) // 8))


# PNG


def png_chunk(name, data=b""):
    data = name.encode() + data
    return big(len(data) - 4, 4) + data + big(zlib.crc32(data), 4)


def png_head(width, height, kind=6, interlaced=0):
    return b"\x89PNG\r\n\x1a\n" + png_chunk("IHDR", struct.pack(">2I5B", width, height, 8, kind, 0, 0, interlaced))


def png_of(width, pixels):
    """Of pixels written as rrggbb or rrggbbaa."""
    data = [bytes.fromhex(pixel if len(pixel) == 8 else pixel + "ff") for pixel in pixels]
    lines = b"".join(b"\0" + b"".join(data[at : at + width]) for at in range(0, len(data), width))
    head = png_head(width, len(pixels) // width)
    return head + png_chunk("IDAT", zlib.compress(lines, 1)) + png_chunk("IEND")


# GIF


def gif_table(colours):
    """The flags of a palette, and the palette, which repeats its first colour up to a power of two."""
    if not colours:
        return 0, b""
    bits = max(1, (len(colours) - 1).bit_length())
    return 0x80 | bits - 1, bytes.fromhex("".join(colours) + colours[0] * ((1 << bits) - len(colours)))


def gif_head(width, height, colours=()):
    flags, table = gif_table(colours)
    return b"GIF89a" + struct.pack("<2H3B", width, height, flags, 0, 0) + table


def gif_control(disposal=0, delay=5, transparent=-1):
    return struct.pack("<4BHBB", 0x21, 0xF9, 4, disposal << 2 | (transparent >= 0), delay, max(transparent, 0), 0)


def gif_blocks(data):
    parts = (data[at : at + 255] for at in range(0, len(data), 255))
    return b"".join(bytes([len(part)]) + part for part in parts) + b"\0"


def gif_codes(codes, bits):
    return bytes([bits]) + gif_blocks(packed(codes))


def gif_literals(indices, bits):
    """Each index behind a "clear", which keeps the codes as short as they start and needs no table."""
    codes = [code for index in indices for code in (1 << bits, index)]
    return gif_codes([(code, bits + 1) for code in codes + [(1 << bits) + 1]], bits)


def gif_compressed(indices, bits):
    clear = 1 << bits
    codes, strings, width, current = [(clear, bits + 1)], {}, bits + 1, indices[0]
    for index in indices[1:]:
        string = current << 8 | index
        if string in strings:
            current = strings[string]
            continue
        codes.append((current, width))
        current = index
        new = strings[string] = clear + 2 + len(strings)
        width = max(width, new.bit_length())
        if new == 4095:
            codes.append((clear, width))
            strings, width = {}, bits + 1
    codes.append((current, width))
    return gif_codes(codes + [(clear + 1, min(12, (clear + 2 + len(strings)).bit_length()))], bits)


def gif_lines(height, interlaced):
    """The order of the lines in the file."""
    parts = ((0, 8), (4, 8), (2, 4), (1, 2)) if interlaced else ((0, 1),)
    return [y for first, step in parts for y in range(first, height, step)]


def gif_image(data, left, top, width, height, colours=(), interlaced=False):
    flags, table = gif_table(colours)
    return struct.pack("<B4HB", 0x2C, left, top, width, height, flags | 0x40 * interlaced) + table + data


# JPEG


def jpeg_of(width, height, means=(), frame=0xC0, exif=b""):
    """Flat blocks of 8 x 8, each 8 times its gray; gray where there are none. The frame may be progressive, 0xC2."""

    def segment(marker, data):
        return struct.pack(">BBH", 0xFF, marker, 2 + len(data)) + data

    def scan(first, last, bits):
        bits += "1" * (-len(bits) % 8)
        data = int("0" + bits, 2).to_bytes(len(bits) // 8, "big").replace(b"\xff", b"\xff\0")
        return segment(0xDA, bytes([1, 1, 0, first, last, 0])) + (data if means else bytes(-(-5 * blocks // 8)))

    # Codes of four bits for how many bits a change of the mean has, of one for nothing beside it.
    blocks = -(-width // 8) * -(-height // 8)
    codes, last = [], 0
    for mean in means:
        change, last = 8 * mean - last, 8 * mean
        size = abs(change).bit_length()
        codes.append(f"{size:04b}" + (f"{change if change > 0 else change + (1 << size) - 1:0{size}b}" if size else ""))
    scans = [scan(0, 0, "".join(codes)), scan(1, 63, "0" * blocks)] if frame == 0xC2 else [scan(0, 63, "0".join(codes) + "0")]
    return b"".join([
        b"\xff\xd8",
        segment(0xE1, exif) if exif else b"",
        segment(0xDB, bytes([0] + 64 * [1])),
        segment(frame, struct.pack(">B2H4B", 8, height, width, 1, 1, 0x11, 0)),
        segment(0xC4, bytes([0x00, 0, 0, 0, 12] + 12 * [0] + list(range(12)))),
        segment(0xC4, bytes([0x10, 1] + 15 * [0] + [0])),
        *scans,
        b"\xff\xd9",
    ])
