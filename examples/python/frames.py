"""Frames of an animation, with masks: shapes, strokes, merging, fading, what a GIF stores.

frames.py FOLDER
"""

# %% Shapes and strokes are small images with a place
import sys
from pathlib import Path

import numpy as np

import dibkit

folder = Path(sys.argv[1])
canvas = (160, 120)
disc, disc_at = dibkit.draw_shape((30, 20, 120, 100), width=5, filled=True)
background = disc.numpy() == 2  # index 2 is beside the shape
wave = [(10 + 2 * i, 60 + int(35 * np.sin(i / 6))) for i in range(70)]
stroke, stroke_at = dibkit.draw_polyline((0, 0, *canvas), wave, 4)
stroke.palette = [(20, 60, 160), (255, 255, 255)]

# %% Merge them: a mask is True where nothing shows
merged, holes, at = dibkit.merge_frames(
    stroke, disc, mask_a=stroke.numpy() == 1, mask_b=background, at_a=stroke_at, at_b=disc_at
)
print(merged, "at", at, "with", holes.sum(), "transparent pixels")

# %% Fill the background of the whole canvas, by a seed in its corner
filled, mask, at = dibkit.fill_frame_background(merged, (0, 0), (250, 230, 160), canvas, mask=holes, at=at)
filled.save(folder / "shapes.png")

# %% Fade it to a colour, as an animation
frames = []
for opacity in range(255, -1, -15):
    faded, _ = dibkit.fade_to_colour(filled, (0, 0, 40), opacity)
    frames.append(faded)
dibkit.Animation(frames, delay=50).save(folder / "faded.gif")

# %% What a GIF stores of a picture with alpha
flat, transparent = dibkit.split_alpha(dibkit.dahlia((120, 90)), background=(255, 255, 255))
print(flat, transparent.sum() if transparent is not None else 0, "transparent pixels")
