"""What pictures and animations show, read without any code of the program's or of other libraries for them.

shown.py show FILE      a line for each frame: runs of a number and a colour, '/' between lines, "x3" behind one that is there
                        three times. Colours are r g b y w k, '.' for transparent, or their numbers in brackets.
shown.py times FILE     hundredths of a second for each frame, pixels stored for it, and how often it repeats
shown.py changes FILE   a line for each frame: how many pixels change from what to what
"""

import collections
import io
import itertools
import os
import signal
import struct
import sys
import zlib

sys.dont_write_bytecode = True
sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../support"))
from picture_files import gif_lines

# Pixels are rrggbb, rrggbbaa or '.'; pictures are (width, pixels).
Shown = collections.namedtuple("Shown", "frames times stored loops")
LETTERS = {"ff0000": "r", "00ff00": "g", "0000ff": "b", "ffff00": "y", "ffffff": "w", "000000": "k", ".": "."}
UNSPECIFIED, KEEP, BACKGROUND, PREVIOUS = range(4)


def unpacked(data, bits):
    """Undoes the compression of a GIF. The table has whole strings."""
    clear = 1 << bits
    result, held, count, width, table, last = bytearray(), 0, 0, bits + 1, [], b""
    for byte in data:
        held |= byte << count
        count += 8
        while count >= width:
            code = held & (1 << width) - 1
            held >>= width
            count -= width
            if code == clear + 1:
                return result
            if code == clear:
                table, width, last = [bytes([i]) for i in range(clear)] + [b"", b""], bits + 1, b""
                continue
            if last and len(table) < 4096:
                table.append(last + (table[code] if code < len(table) else last)[:1])
                width = min(12, len(table).bit_length())
            last = table[code]
            result += last
    raise ValueError("the codes have no end")


def play_gif(data):
    file = io.BytesIO(data[6:])

    def numbers(pattern):
        return struct.unpack("<" + pattern, file.read(struct.calcsize("<" + pattern)))

    def palette(flags):
        return [file.read(3).hex() for _ in range(2 << (flags & 7))] if flags & 0x80 else []

    def blocks():
        return b"".join(iter(lambda: file.read(*numbers("B")), b""))

    width, height, flags, *_ = numbers("2H3B")
    canvas, screen, shown, control = ["."] * (width * height), palette(flags), Shown([], [], [], []), (0, 0, 0)
    while (kind := file.read(1)) != b";":
        if kind == b"!":
            label, body = file.read(1), blocks()
            if label == b"\xf9":
                control = struct.unpack("<BHB", body)
            if body.startswith(b"NETSCAPE2.0\1"):
                shown.loops.append(int.from_bytes(body[12:14], "little"))
            continue
        if kind != b",":
            raise ValueError(f"an unknown block {kind}")
        left, top, columns, lines, flags = numbers("4HB")
        colours = palette(flags) or screen
        (bits,) = numbers("B")
        indices, before, at = unpacked(blocks(), bits), canvas[:], 0
        places = [(top + y) * width + left for y in gif_lines(lines, flags & 0x40)]
        inside = max(0, min(columns, width - left))
        for place in places:
            line = indices[at : at + columns]
            at += columns
            if len(line) < columns:
                raise ValueError("too few pixels")
            if place - left < len(canvas):
                for x, index in enumerate(line[:inside]):
                    if not (control[0] & 1 and index == control[2]):
                        canvas[place + x] = colours[index]
        shown.frames.append((width, canvas[:]))
        shown.times.append(control[1])
        shown.stored.append(columns * lines)
        disposal = control[0] >> 2 & 7
        for place in places if disposal == BACKGROUND else ():
            if place - left < len(canvas):
                canvas[place : place + inside] = ["."] * inside
        if disposal == PREVIOUS:
            canvas = before
        control = (0, 0, 0)
    return shown


def pixel(colour, alpha):
    return "." if alpha == 0 else colour if alpha == 255 else f"{colour}{alpha:02x}"


def indices_of(line, width, bits):
    return [line[x * bits // 8] >> 8 - bits - x * bits % 8 & (1 << bits) - 1 for x in range(width)]


def read_bmp(data):
    """A picture and its bits for each pixel."""
    start, head, width, height, bits = (int.from_bytes(data[at : at + 4], "little") for at in (10, 14, 18, 22, 28))
    bits &= 0xFFFF  # the compression follows
    palette = [data[at : at + 3][::-1].hex() for at in range(14 + head, start, 4)]
    stride, step, pixels = -(-width * bits // 32) * 4, bits // 8, []
    for at in range(start + (height - 1) * stride, start - 1, -stride):
        line = data[at : at + stride]
        if bits <= 8:
            pixels += [palette[index] for index in indices_of(line, width, bits)]
        else:
            parts = (line[x : x + step] for x in range(0, width * step, step))
            pixels += [pixel(part[2::-1].hex(), part[3] if bits == 32 else 255) for part in parts]
    return (width, pixels), bits


def read_png(data):
    """A picture, its bits for each channel and its kind."""
    chunks, at = collections.defaultdict(bytes), 8
    while at < len(data):
        size = int.from_bytes(data[at : at + 4], "big")
        chunks[data[at + 4 : at + 8]] += data[at + 8 : at + 8 + size]
        at += 12 + size
    width, height, bits, kind = struct.unpack(">2I2B", chunks[b"IHDR"][:10])
    channels = {2: 3, 3: 1, 6: 4}[kind]
    stride, back = -(-width * bits * channels // 8), max(1, bits * channels // 8)
    lines, above = io.BytesIO(zlib.decompress(chunks[b"IDAT"])), bytes(stride)
    palette = [chunks[b"PLTE"][i : i + 3].hex() for i in range(0, len(chunks[b"PLTE"]), 3)]
    alphas = chunks[b"tRNS"].ljust(256, b"\xff")
    pixels = []
    for _ in range(height):
        rule, line = lines.read(1)[0], bytearray(lines.read(stride))
        for i in range(stride if rule else 0):
            a, b, c = line[i - back] if i >= back else 0, above[i], above[i - back] if i >= back else 0
            nearest = min((a, b, c), key=lambda one: abs(a + b - c - one))
            line[i] = line[i] + (0, a, b, (a + b) // 2, nearest)[rule] & 255
        above = line
        if kind == 3:
            pixels += [pixel(palette[index], alphas[index]) for index in indices_of(line, width, bits)]
        else:
            parts = (line[x : x + channels] for x in range(0, stride, channels))
            pixels += [pixel(part[:3].hex(), part[3] if kind == 6 else 255) for part in parts]
    return (width, pixels), bits, kind


def read_file(path):
    with open(path, "rb") as file:
        return file.read()


def play(path):
    data = read_file(path)
    return play_gif(data) if data.startswith(b"GIF") else Shown([read_png(data)[0]], [0], [], [])


def letter(colour):
    return LETTERS.get(colour, f"({colour})")


def runs(values, text):
    return [text(len(list(group)), value) for value, group in itertools.groupby(values)]


def text_of(picture):
    width, pixels = picture
    lines = (map(letter, pixels[at : at + width]) for at in range(0, len(pixels), width))
    lines = ["".join(runs(line, lambda count, one: one if count == 1 else f"{count}{one}")) for line in lines]
    return "/".join(runs(lines, lambda count, line: line if count == 1 else f"{line} x{count}"))


def main(what, path):
    shown = play(path)
    if what == "show":
        print(*map(text_of, shown.frames), sep="\n")
    if what == "times":
        print(*shown.times, "|", *shown.stored, "|", *shown.loops or ["once"])
    for (_, before), (_, after) in itertools.pairwise([(0, ["."] * 10**7), *shown.frames]) if what == "changes" else ():
        changes = collections.Counter(letter(a) + letter(b) for a, b in zip(before, after) if a != b)
        print(*(f"{count} {change}" for change, count in sorted(changes.items())), sep=", ")


if __name__ == "__main__":
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)  # its reader may want the first lines only
    main(*sys.argv[1:])
