#!/usr/bin/python3
"""Makes a GIF like the recording of a screen: screencast.py FRAMES WIDTHxHEIGHT OUT.gif. The first frame is a window full
of text, each other one only the rectangle in which a character was typed or a box opened."""

import os
import random
import sys

sys.dont_write_bytecode = True
sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../support"))
from picture_files import gif_control, gif_head, gif_image, gif_compressed

PAPER, INK, TITLE, BAR = range(4)
PALETTE = ["fafafa", "1e1e1e", "3c5aa0", "dcdce1"] + [f"{20 * i:02x}{10 * i:02x}{255 - 20 * i:02x}" for i in range(12)]


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
        return gif_control(delay=delay) + gif_image(gif_compressed(pixels, 4), left, top, right - left, bottom - top)


def main(frames, size, path):
    width, height = map(int, size.split("x"))
    screen = Screen(width, height)
    margin = width // 6
    screen.box(0, 0, width, height // 20, TITLE)
    screen.box(0, height // 20, margin, height, BAR)
    for line in range(height // 40):
        screen.text(margin, height // 10 + 16 * line, width // 3)
    with open(path, "wb") as file:
        file.write(gif_head(width, height, PALETTE))
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
