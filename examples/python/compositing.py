"""Layers with alpha: compositing, shadows, soft brushes, scaling, overlays.

compositing.py FOLDER
"""

# %% A cut-out with a shadow over a background
import sys
from pathlib import Path

import numpy as np

import dibkit

folder = Path(sys.argv[1])
canvas = dibkit.lake((320, 240))
flower = dibkit.dahlia((120, 90))
shadow = dibkit.shadow(flower, (0, 0, 0))
dibkit.reduce_alpha(shadow, 120)
dibkit.composite(canvas, shadow, at=(108, 128))
dibkit.composite(canvas, flower, at=(100, 120))

# %% A soft hole, made by a brush that is an array
y, x = np.ogrid[:80, :80]
brush = (x - 40) ** 2 + (y - 40) ** 2 < 35**2
dibkit.soft_erase(canvas, brush, at=(20, 20), size=12)

# %% What an editor shows: a checkerboard, the picture on it, a selection
editor = dibkit.Image.filled(320, 240, (0, 0, 0))
dibkit.checkerboard(editor, "#ffffff", "#c8c8c8")
dibkit.composite(editor, canvas)
dibkit.draw_selection(editor, (100, 120, 220, 210), phase=2)
stroke, at = dibkit.stroke((0, 0, 320, 240), (230, 40), (300, 90), width=8)
colour = dibkit.Image.filled(*stroke.size, (255, 220, 0))
dibkit.mix(editor, colour, at=at, coverage=stroke, coverage_at=at)
editor.save(folder / "compositing.png")
