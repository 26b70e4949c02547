"""Depths, palettes, filters, and what a GIF stores of frames.

palettes.py FOLDER
"""

# %% One picture at several depths
import sys
from pathlib import Path

import numpy as np

import dibkit

folder = Path(sys.argv[1])
picture = dibkit.lake((200, 150))
gray = dibkit.to_grays(picture)
versions = [
    picture,
    *dibkit.convert([picture], depth=4, dither="diffusion", matte=(0, 0, 0)),
    gray,
    dibkit.to_black_and_white(gray, dibkit.find_threshold(gray)),
]
sheet = dibkit.Image(200 * len(versions), 150)
for i, version in enumerate(versions):
    dibkit.copy_pixels(sheet, dibkit.to_32_bits(version), at=(200 * i, 0))
sheet.save(folder / "depths.png")
print([version.depth for version in versions], len(versions[1].palette), "colours")

# %% Filters
noisy = dibkit.to_24_bits(picture)
rng = np.random.default_rng(1)
noisy.numpy()[rng.random((150, 200)) < 0.03] = 255
dibkit.remove_noise(noisy).save(folder / "quiet.png")
dibkit.pixelate(picture, 8).save(folder / "pixels.png")

# %% The part of a frame that changed, as an animation stores it
before, after = dibkit.to_24_bits(picture), dibkit.to_24_bits(picture)
after.rgb[40:60, 50:90] = (255, 80, 0)
piece, mask, at, _ = dibkit.frame_change(before, after)
print(piece, "at", at)
piece.save(folder / "change.png")
