"""dibkit: image transformations for animated images.

The first animation::

    import dibkit

    a, b = dibkit.lake((320, 240)), dibkit.dahlia((320, 240))
    dibkit.transition(a, b, "spread", style="circle", easing="ease-out").save("ab.gif")

`Image` is a picture, `Region` a set of pixels, `Animation` a sequence of frames. Functions that say "in place" change
their first argument; all others make something new. Points are (x, y) from the top-left pixel, rectangles (left, top,
right, bottom) with right and bottom exclusive, colours (red, green, blue) or "#rrggbb". A mask is a height x width array
of bool, True where a pixel is transparent.

Wrong values raise ValueError, wrong types TypeError, a lack of memory MemoryError, files that cannot be read or written
OSError. Functions keep no state and release the interpreter's lock while they work on pixels, so threads run side by
side, as long as none changes an image that another one uses.
"""

from . import _native
from ._native import *
from .animation import Animation as Animation
from .animation import as_image as as_image
from .animation import info as info
from .animation import optimize as optimize
from .animation import ripple as ripple
from .animation import transition as transition

__version__ = _native.version()
