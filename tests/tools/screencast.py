#!/usr/bin/python3
"""Makes a GIF like the recording of a screen: screencast.py FRAMES WIDTHxHEIGHT OUT.gif. The first frame is a window full
of text, each other one only the rectangle in which a character was typed or a box opened."""

import random
import struct
import sys

COLOUR_BITS = 4
PAPER, INK, TITLE, BAR = range(4)
PALETTE = [(250, 250, 250), (30, 30, 30), (60, 90, 160), (220, 220, 225)] + [(20 * i, 10 * i, 255 - 20 * i) for i in range(12)]


def compressed(indices):
    """The pixels as GIF has them: LZW codes in blocks of up to 255 bytes."""
    clear = 1 << COLOUR_BITS
    codes, strings, width, current = [], {}, COLOUR_BITS + 1, indices[0]
    codes.append((clear, width))
    for index in indices[1:]:
        string = current << COLOUR_BITS | index
        if string in strings:
            current = strings[string]
            continue
        codes.append((current, width))
        current = index
        new = strings[string] = clear + 2 + len(strings)
        if new >> width:
            width += 1
        if new == 4095:
            codes.append((clear, width))
            strings, width = {}, COLOUR_BITS + 1
    codes.append((current, width))
    codes.append((clear + 1, width + (clear + 2 + len(strings) >> width)))
    bits = position = 0
    packed = bytearray()
    for code, width in codes:
        bits |= code << position
        position += width
        while position >= 8:
            packed.append(bits & 255)
            bits >>= 8
            position -= 8
    packed.append(bits)
    blocks = (packed[i : i + 255] for i in range(0, len(packed), 255))
    return bytes([COLOUR_BITS]) + b"".join(bytes([len(block)]) + block for block in blocks) + b"\0"


class Screen:
    def __init__(self, width, height):
        self.width, self.height = width, height
        self.lines = [bytearray(width) for _ in range(height)]
        self.random = random.Random(3)

    def box(self, left, top, width, height, colour):
        right = min(left + width, self.width)
        for line in self.lines[top : top + height]:
            line[left:right] = bytes([colour]) * (right - left)
        return left, top, right, min(top + height, self.height)

    def text(self, left, top, width):
        for line in self.lines[top : top + 9]:
            line[left : left + width] = bytes(self.random.choices((PAPER, INK), (2, 1), k=width))
        return left, top, left + width, top + 9

    def image(self, rectangle, delay):
        left, top, right, bottom = rectangle
        pixels = b"".join(line[left:right] for line in self.lines[top:bottom])
        control = struct.pack("<4BHBB", 0x21, 0xF9, 4, 0, delay, 0, 0)
        return control + struct.pack("<B4HB", 0x2C, left, top, right - left, bottom - top, 0) + compressed(pixels)


def main(frames, size, path):
    width, height = map(int, size.split("x"))
    screen = Screen(width, height)
    margin = width // 6
    screen.box(0, 0, width, height // 20, TITLE)
    screen.box(0, height // 20, margin, height, BAR)
    for line in range(height // 40):
        screen.text(margin, height // 10 + 16 * line, width // 3)
    with open(path, "wb") as file:
        file.write(b"GIF89a" + struct.pack("<2H3B", width, height, 0xF0 | COLOUR_BITS - 1, 0, 0))
        file.write(b"".join(map(bytes, PALETTE)))
        file.write(screen.image((0, 0, width, height), 10))
        x, y = margin, height // 2
        for frame in range(1, int(frames)):
            if frame % 5:
                changed = screen.text(x, y, 8)
                x += 9
                if x > width - 9:
                    x, y = margin, y + 16 if y < height - 32 else height // 2
            else:
                changed = screen.box(screen.random.randrange(margin, width), screen.random.randrange(height // 2), 150, 90,
                                     screen.random.randrange(16))
            file.write(screen.image(changed, 4 + frame % 3))
        file.write(b"\x3b")


if __name__ == "__main__":
    main(*sys.argv[1:])
