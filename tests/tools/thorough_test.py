#!/usr/bin/python3
"""What takes more pictures than a text can show: thorough_test.py PROGRAM TEST..., each a class below."""

import collections
import os
import random
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../support"))
import shown
from picture_files import gif_compressed, gif_control, gif_head, gif_image, gif_lines, png_of


class Journey(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="dibkit-thorough-")
        self.addCleanup(self.folder.cleanup)
        os.chdir(self.folder.name)

    def run_program(self, *arguments):
        result = subprocess.run([PROGRAM, "-q", *arguments, "-f"], capture_output=True, text=True)
        self.assertEqual((result.returncode, result.stderr), (0, ""), arguments)


def write(path, data):
    with open(path, "wb") as file:
        file.write(data)


def write_png(path, width, pixels):
    write(path, png_of(width, ["00ff0000" if one == "." else one for one in pixels]))


def distinct(frames):
    return [frame for i, frame in enumerate(frames) if i == 0 or frame != frames[i - 1]]


def colour_number(i):
    """A multiple of an odd number: no two of the 2^24 are the same."""
    return f"{(i + 1) * 0x35C9A7 & 0xFFFFFF:06x}"


def gray_number(i):
    return f"{i % 256 * 0x010101:06x}"


class ExactColours(Journey):
    """At the numbers of colours where a depth is just full, has one entry left, or has no more room."""

    def each(self, seeds, colour=colour_number, width=23):
        """Yields that number and pictures with exactly so many colours in disorder, without and with a transparent pixel."""
        for count in (1, 2, 3, 15, 16, 17, 255, 256, 257):
            for hole in (False, True):
                pictures = []
                for seed in range(seeds):
                    pixels = [colour(i % count) for i in range(551 + (not hole))]
                    random.Random(seed).shuffle(pixels)
                    pictures.append((width, pixels + ["."] * hole))
                    write_png("ab"[seed] + ".png", *pictures[seed])
                yield count, hole, pictures

    def test_conversions(self):
        for options, room, colour in (
            ([], None, colour_number),
            ([], None, gray_number),
            (["--bits", "1"], 2, colour_number),
            (["--bits", "4"], 16, colour_number),
            (["--bits", "8"], 256, colour_number),
            (["--bits", "8"], 256, gray_number),
            (["--bits", "24"], 1 << 24, colour_number),
            (["--shared-palette"], 256, colour_number),
            (["--shared-palette", "--bits", "4"], 16, colour_number),
            (["--palette", "a.png"], 256, colour_number),
            (["--gray", "--bits", "1"], 2, gray_number),
            (["--gray", "--bits", "4"], 16, gray_number),
            (["--gray"], 256, gray_number),
        ):
            for count, hole, pictures in self.each(2, colour):
                # Only what keeps the pixels as they are has room for transparency; else it becomes white.
                wanted = [(w, pixels if room is None else [p.replace(".", "ffffff") for p in pixels]) for w, pixels in pictures]
                used, case = len(set(wanted[0][1])), (options, count, hole)
                if "a.png" in options and (hole or used > room):
                    continue  # that palette is refused
                form = "bmp" if hole == (count % 2) else "png"
                self.run_program("convert", "a.png", "b.png", "-o", "out", "--format", form, *options)
                for name, expected in zip(("out/a.", "out/b."), wanted):
                    read = shown.read_bmp if form == "bmp" else shown.read_png
                    result, bits, *kind = read(shown.read_file(name + form))
                    if room is None or used <= room:
                        self.assertEqual(result, expected, case)
                    else:
                        self.assertLessEqual(len(set(result[1])), room, case)
                    if not options and not hole:
                        depth = 24 if used > 256 else 1 if used <= 2 else 4 if used <= 16 else 8
                        self.assertEqual((bits, kind), (depth, []) if form == "bmp" else (min(depth, 8), [2 if used > 256 else 3]), case)

    def test_transitions(self):
        for count, hole, pictures in self.each(2):
            for dither in "none", "ordered":
                self.run_program("transition", "a.png", "b.png", "-o", "out.gif", "--frames", "1", "--dither", dither)
                frames = shown.play("out.gif").frames
                self.assertTrue(count + hole > 256 or frames == distinct(pictures), (dither, count, hole))
        # Water leaves the outermost lines as they are, and two lines have no others.
        for count, hole, pictures in self.each(1, width=276):
            self.run_program("ripple", "a.png", "-o", "out.gif", "--frames", "1")
            self.assertTrue(count + hole > 256 or shown.play("out.gif").frames == pictures, (count, hole))

    def test_optimized(self):
        for count, hole, pictures in self.each(2):
            for own in (False, True):
                palettes = [[colour_number(i + 256 * own * frame) for i in range(count)] + ["000000"] * hole for frame in (0, 1)]
                if count + hole > 256:
                    continue
                parts = []
                for (_, pixels), palette in zip(pictures, palettes):
                    indices = [count if one == "." else [colour_number(i) for i in range(count)].index(one) for one in pixels]
                    parts.append(Part(0, 0, 23, 24, indices, palette, count if hole else -1, own))
                write_gif("in.gif", 23, 24, palettes[0], parts)
                self.run_program("optimize", "in.gif", "-o", "out.gif")
                self.assertEqual(shown.play("out.gif").frames, distinct(shown.play("in.gif").frames), (count, hole, own))


Part = collections.namedtuple(
    "Part", "left top width height indices palette transparent own disposal delay interlaced", defaults=[None, -1, False, 0, 5, False]
)


def write_gif(path, width, height, palette, parts):
    data = gif_head(width, height, palette)
    for part in parts:
        lines = gif_lines(part.height, part.interlaced)
        indices = [index for y in lines for index in part.indices[y * part.width : (y + 1) * part.width]]
        data += gif_control(part.disposal, part.delay, part.transparent) + gif_image(
            gif_compressed(indices, 8), *part[:4], part.palette if part.own else (), part.interlaced)
    write(path, data + b";")


def timeline(animation):
    """Frames that show the same for a known time are one."""
    times = []
    for frame, time in zip(animation.frames, animation.times):
        if times and times[-1][0] == frame and times[-1][1] >= 2 and time >= 2:
            time += times.pop()[1]
        times.append((frame, time))
    return times


def random_animation(dice):
    """Of any kind, with few or many colours in all."""
    colours = [f"{dice.randrange(1 << 24):06x}" for _ in range(dice.choice((1, 2, 3, 16, 17, 64, 255, 256, 257, 257, 300, 600)))]

    def palette():
        start = dice.randrange(600)
        return [colours[(start + i) % len(colours)] for i in range(dice.choice((2, 4, 8, 16, 32, 64, 128, 256, 256, 256)))]

    width, height, screen, parts = dice.randint(1, 40), dice.randint(1, 40), palette(), []
    for _ in range(dice.randint(1, 6)):
        own = dice.random() < 1 / 3
        table = palette() if own else screen
        left, top = (dice.choice((0, 0, 0, dice.randrange(side + 2))) for side in (width, height))
        columns, lines = (dice.choice((side, dice.randint(1, side + 3))) for side in (width, height))
        size, entries, usual = columns * lines, range(len(table)), dice.randrange(len(table))
        kind = dice.randrange(3)
        indices = [i % len(table) for i in range(size)] if kind == 0 else dice.choices(entries, k=size)
        if kind == 0:
            dice.shuffle(indices)
        if kind == 2:
            indices = [index if dice.random() < 1 / 3 else usual for index in indices]
        parts.append(Part(left, top, columns, lines, indices, table, dice.choice((-1, dice.choice(entries))), own,
                          dice.randrange(4), dice.choice((0, 1, 2, 7)), dice.random() < 1 / 4))
    return width, height, screen, parts


class Optimize(Journey):
    GRAYS = ["000000", "ffffff", "636363", "010203"]

    def optimized(self, *animation):
        """Nothing that shows changes."""
        write_gif("in.gif", *animation)
        self.run_program("optimize", "in.gif", "-o", "out.gif")
        before, after = shown.play("in.gif"), shown.play("out.gif")
        self.assertEqual(timeline(after), timeline(before))
        self.assertEqual(after.loops, before.loops)
        self.assertLessEqual(os.path.getsize("out.gif"), os.path.getsize("in.gif"))
        return after

    def test_random_animations(self):
        for seed in range(300):
            with self.subTest(seed):
                self.optimized(*random_animation(random.Random(seed)))

    def test_stores_only_the_changed_rectangle(self):
        parts = [Part(0, 0, 40, 30, [2] * 290 + [2] * i + [1] + [2] * (909 - i)) for i in range(5)]
        self.assertEqual(self.optimized(40, 30, self.GRAYS, parts).stored, [1200, 2, 2, 2, 2])

    def test_takes_away_more_than_it_draws(self):
        # Noise that cannot be packed. One pixel changes, then the opposite corner becomes transparent: the frame before has to
        # cover all of it, and is still stored for its one pixel only.
        noise = random.Random(8).choices(range(3), k=4096)
        self.optimized(64, 64, self.GRAYS, [Part(0, 0, 64, 64, noise, transparent=3)])
        once = os.path.getsize("out.gif")
        changed = [(noise[0] + 1) % 3] + noise[1:]
        parts = [Part(0, 0, 64, 64, noise, transparent=3)]
        parts += [Part(0, 0, 64, 64, pixels, transparent=3, disposal=2) for pixels in (changed, changed[:-1] + [3])]
        self.assertEqual(self.optimized(64, 64, self.GRAYS, parts).frames[2][1][-1], ".")
        self.assertLess(2 * os.path.getsize("out.gif"), 5 * once)

    def test_has_palettes_of_the_frames_above_256_colours(self):
        # 200 colours over the whole canvas, 200 others over a part of it, which repeats with one change.
        tables = [[f"{c:02x}{i * 90:02x}{255 - c:02x}" for c in range(256)] for i in (0, 1)]
        whole, part = [p % 200 for p in range(400)], [p % 200 for p in range(200)]
        parts = [Part(0, 0, 20, 20, whole, tables[0], own=True), Part(0, 0, 20, 10, part, tables[1], own=True)]
        parts.append(parts[1]._replace(indices=part[:5] + [250] + part[6:]))
        self.assertEqual(self.optimized(20, 20, self.GRAYS, parts).stored[-1], 1)


class Looks(Journey):
    def test_ordered_dither_mixes_two_colours_evenly_by_their_distances(self):
        # Black and white are 585225 = 9 * 255^2 apart in weighted squares, so noise costs
        # c = 1/2 * 585225 / (585225 + 9 * 8^2) * 9 * 128^2 / (585225 + 9 * 128^2) = 0.10053.
        # A gray at u of the way from the nearer one has (u - c/2) / (1 - c) of the other, in 4096ths:
        # 10: u = 10/255, less than c/2; 32: 0.08363; 64: 0.22315; 100: 0.38010; 128: 0.49782 of black.
        write_png("palette.png", 2, ["000000", "ffffff"])
        for level, expected in ((0, 0), (10, 0), (32, 343), (64, 914), (100, 1557), (128, 2057)):
            write_png("in.png", 64, [gray_number(level)] * 4096)
            self.run_program("convert", "in.png", "--palette", "palette.png", "--dither", "ordered", "-o", "out.png")
            pixels = shown.play("out.png").frames[0][1]
            self.assertEqual(pixels.count("ffffff"), expected)
            for corner in (64 * y + x for y in range(0, 64, 8) for x in range(0, 64, 8)):
                block = [one for y in range(8) for one in pixels[corner + 64 * y :][:8]]
                self.assertAlmostEqual(block.count("ffffff"), expected / 64, delta=5)

    def test_dithers_leave_what_stays_and_colours_of_the_palette(self):
        # Red fills so much that it is sure of its place in the palette; the right half of the rest changes.
        def frame(right):
            return ["." if x == 0 else "ff0000" if y < 30 else f"{right if x >= 30 else 0:02x}{x * 4:02x}{y * 4:02x}"
                    for y in range(60) for x in range(60)]

        write_png("a.png", 60, frame(40))
        write_png("b.png", 60, frame(90))
        for dither in "none", "ordered", "diffusion":
            self.run_program("transition", "a.png", "b.png", "-o", "out.gif", "--frames", "1", "--dither", dither)
            (_, first), (_, second) = shown.play("out.gif").frames
            for one, colour in (first, 40), (second, 90):
                same = [wanted in (".", "ff0000") and got != wanted for wanted, got in zip(frame(colour), one)]
                self.assertFalse(any(same), dither)
            changed = [i for i in range(3600) if first[i] != second[i]]
            self.assertTrue(all(i >= 1800 and i % 60 >= 30 for i in changed), dither)
            self.assertGreater(len(changed), 800)

    def test_far_colours_do_not_share_an_entry(self):
        write_png("in.png", 40, [f"{x * 6:02x}{y * 6:02x}00" for y in range(40) for x in range(40)])
        self.run_program("convert", "in.png", "--bits", "4", "-o", "out.png")
        pixels = shown.play("out.png").frames[0][1]
        self.assertEqual(len({pixels[0], pixels[39], pixels[-40], pixels[-1]}), 4)
        self.assertTrue(12 <= len(set(pixels)) <= 16)

    def test_ripples_move_what_is_transparent(self):
        # The colour of what is transparent, green here, would show if the water moved it without its opacity.
        disc = ["ff0000" if (x - 30) ** 2 + (y - 30) ** 2 < 400 else "." for y in range(60) for x in range(60)]
        write_png("disc.png", 60, disc)
        self.run_program("ripple", "disc.png", "-o", "out.gif", "--frames", "12")
        frames = [pixels for _, pixels in shown.play("out.gif").frames]
        self.assertGreater(len(frames), 6)
        self.assertGreater(sum((one == ".") != (start == ".") for pixels in frames for one, start in zip(pixels, frames[0])), 50)
        # Light makes red lighter, equally in green and blue.
        self.assertTrue(all(one[2:4] == one[4:6] for pixels in frames for one in pixels))

    def test_many_colours_are_near_and_the_same_each_time(self):
        files = []
        for path, blue in ("a.png", 40), ("b.png", 220):
            wanted = [f"{x * 255 // 64:02x}{y * 255 // 48:02x}{blue:02x}" for y in range(48) for x in range(64)]
            write_png(path, 64, wanted)
        for _ in range(2):
            self.run_program("transition", "a.png", "b.png", "-o", "out.gif", "--effect", "fade", "--frames", "6")
            files.append(shown.read_file("out.gif"))
        self.assertEqual(files[0], files[1])
        frames = shown.play("out.gif").frames
        self.assertEqual(len(frames), 7)
        far = max(abs(a - b) for pair in zip(frames[-1][1], wanted) for a, b in zip(*map(bytes.fromhex, pair)))
        self.assertLessEqual(far, 48)


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv[1])
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
