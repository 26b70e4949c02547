"""Selections: wands, regions as sets, fills, crops.

selections.py FOLDER
"""

# %% The sky by the magic wand, and its complement by set operators
import sys
from pathlib import Path

import dibkit

folder = Path(sys.argv[1])
picture = dibkit.lake((320, 240))
everything = dibkit.Region.rectangle((0, 0, *picture.size))
sky = dibkit.magic_wand(picture, (160, 10), tolerance=40)
land = everything - sky
print(sky, land, (160, 10) in sky)

# %% Arrays and regions are each other's masks
grey = dibkit.to_32_bits(dibkit.to_grays(picture))
picture.rgb[land.to_array(picture.size)] = grey.rgb[land.to_array(picture.size)]
picture.save(folder / "gray_land.png")

# %% Fill and replace colours
poster = dibkit.dahlia((320, 240))
dibkit.fill_transparent(poster, "#203050")
bounds = dibkit.fill_connected(poster, (160, 120), (255, 200, 0), tolerance=60)
print("filled", bounds)
poster.save(folder / "filled.png")

# %% Cut a shape out, and lay it on a colour
star = dibkit.Region.polygon([(160, 10), (220, 220), (60, 90), (260, 90), (100, 220)])
cut = dibkit.crop(poster, star)
sheet = dibkit.Image.filled(*cut.size, (30, 30, 60))
dibkit.composite(sheet, cut)
sheet.save(folder / "star.png")
