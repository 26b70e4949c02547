"""Transitions, ripples and GIF files.

transitions.py FOLDER
"""

# %% Two pictures, and the first animation
import sys
from pathlib import Path

import dibkit

folder = Path(sys.argv[1])
a, b = dibkit.lake((240, 160)), dibkit.dahlia((240, 160))
animation = dibkit.transition(a, b, "spread", style="circle", frames=30, easing="ease-out", back=True)
animation.save(folder / "spread.gif")
print(animation)

# %% All effects at half time, side by side
effects = dibkit.effects()
columns = 6
thumb = (120, 80)
small_a, small_b = dibkit.resample(a, thumb), dibkit.resample(b, thumb)
sheet = dibkit.Image.filled(columns * 124 + 4, -(-len(effects) // columns) * 84 + 4, (32, 32, 32))
for i, effect in enumerate(effects):
    frame = effect.frame(small_a, small_b, 0.5)
    dibkit.composite(sheet, frame, at=(4 + i % columns * 124, 4 + i // columns * 84))
sheet.save(folder / "effects.png")

# %% Water, and what is in a file
dibkit.ripple(a, frames=20, drops=5, seed=3).save(folder / "ripple.gif")
print(dibkit.info(folder / "ripple.gif"))

# %% Frames of one's own: a moon that rises
frames = []
for i in range(24):
    night = dibkit.Image.filled(120, 120, (10, 12, 40))
    moon = dibkit.Region.ellipse((40, 110 - 5 * i, 80, 150 - 5 * i))
    night.rgb[moon.to_array(night.size)] = (250, 240, 200)
    frames.append(night)
dibkit.Animation(frames, delay=60, comment="A moon rises").save(folder / "moon.gif")
