"""Images from and to Pillow, which is imported only when it is used."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np

from ._native import Image

if TYPE_CHECKING:
    import PIL.Image


def from_pil(picture: PIL.Image.Image) -> Image:
    if not hasattr(picture, "mode"):
        raise TypeError(f"a Pillow image is needed, not {type(picture).__name__}")
    if picture.mode == "1":
        return Image.from_array(np.asarray(picture, dtype=bool))
    if picture.mode == "L":
        return Image.from_array(np.asarray(picture))
    if picture.mode == "P" and "transparency" not in picture.info and picture.palette.mode == "RGB":
        colours = np.frombuffer(bytes(picture.getpalette("RGB") or []), np.uint8).reshape(-1, 3)
        # Pillow gives no more entries than are used.
        palette = np.zeros((256, 3), np.uint8)
        palette[: len(colours)] = colours
        return Image.from_array(np.asarray(picture), palette=palette)
    mode = "RGB" if picture.mode == "RGB" else "RGBA"
    return Image.from_array(np.asarray(picture.convert(mode)), order="rgb")


def to_pil(image: Image) -> PIL.Image.Image:
    import PIL.Image

    if image.depth <= 8:
        picture = PIL.Image.fromarray(np.ascontiguousarray(image.numpy()), "L")
        picture.putpalette(image.palette.tobytes())
        return picture
    if image.depth == 32:
        return PIL.Image.fromarray(np.dstack((image.rgb, image.alpha)), "RGBA")
    from ._native import to_24_bits

    return PIL.Image.fromarray(np.ascontiguousarray(to_24_bits(image).rgb), "RGB")


def is_pil(picture: Any) -> bool:
    """Whether it is a Pillow image, without importing Pillow."""
    return any(base.__module__ == "PIL.Image" for base in type(picture).__mro__)
