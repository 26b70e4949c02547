# Written by python/stubs from the module; do not edit.
from collections.abc import Callable, Sequence
from typing import Any, Optional, Union

import numpy as np
import numpy.typing as npt
import PIL.Image

from ._files import ReadableFile, WritableFile

Point = Union[tuple[int, int], Sequence[int]]
Size = Point
Rect = Union[tuple[int, int, int, int], Sequence[int]]
Colour = Union[tuple[int, int, int], Sequence[int], str]
ByteArray = npt.NDArray[np.uint8]
BoolArray = npt.NDArray[np.bool_]
Palette = Union[Sequence[Colour], ByteArray]
Mask = BoolArray
Coverage = Union[ByteArray, BoolArray, Image, None]
Points = Union[Sequence[Point], npt.NDArray[np.int_]]
Progress = Callable[[float], Optional[bool]]

__all__ = ['version', 'Cancelled', 'Effect', 'dithers', 'easings', 'fits', 'Image', 'Region', 'composite', 'composite_fast', 'mix_fast', 'copy_opaque', 'copy_reduced', 'copy_pixels', 'copy_alpha', 'mix', 'erase', 'composite_alpha', 'union_alpha', 'over_channel', 'to_24_bits', 'to_16_bits', 'to_32_bits', 'to_reversed_32_bits', 'to_grays', 'to_black_and_white', 'to_indexes', 'change_index_depth', 'reduce_to_palette', 'to_nearest_colours', 'draw_line', 'draw_polyline', 'draw_shape', 'draw_polygon', 'effects', 'find_effect', 'effect_piece', 'diamond_frame', 'push_frame', 'fill_connected', 'replace_colour', 'fill_transparent_connected', 'fill_transparent', 'fill', 'set_colour', 'set_alpha', 'reduce_alpha', 'median', 'sharpen', 'remove_noise', 'pixelate', 'soft_erase', 'soft_fill', 'margins', 'trim', 'transparent_mask', 'shadow', 'luminance_difference', 'field_of_bits', 'same_frame', 'fade_to_colour', 'fade_to_frame', 'merge_frames', 'blend_frames', 'fill_frame', 'fill_frame_connected', 'fill_frame_background', 'split_alpha', 'pad', 'flatten', 'mark_region', 'mark_rectangle', 'copy_mask', 'spread_corner', 'show_mask', 'combine', 'merge_colours', 'merge', 'merge_hole', 'merge_background', 'checkerboard', 'hatch', 'draw_dashes', 'draw_selection', 'stroke', 'count_colours', 'colours', 'used_indexes', 'join_palettes', 'change_palette', 'has_palette', 'is_gray', 'gray_palette', 'gray_ramp', 'nearest_index', 'farthest_index', 'find_threshold', 'resample', 'fit', 'convert', 'lake', 'dahlia', 'Ripple', 'ripple_picture', 'stretch', 'stretch_mixed', 'zoom_in', 'zoom_in_mixed', 'zoom_out', 'zoom_out_mixed', 'draw_indexed', 'zoom_in_indexed', 'zoom_out_indexed', 'magic_wand', 'magic_wand_frame', 'opaque_region', 'mask_margins', 'join_rectangle', 'crop', 'crop_frame', 'is_opaque', 'is_translucent', 'is_visible_at', 'frame_change', 'can_split']

class Cancelled(Exception):
    """Work was cancelled: its progress function returned False."""

class Effect:
    """A transition of the catalogue."""

    def __reduce__(self) -> tuple[Any, ...]:
        ...

    def __repr__(self) -> str:
        ...

    @property
    def default_style(self) -> Optional[str]:
        """None for an effect without styles."""

    @property
    def draws_random_numbers(self) -> bool:
        """Frames of such effects are made one at a time."""

    @property
    def family(self) -> str:
        """Heading for a group of similar effects."""

    def frame(self, first: Image, second: Image, progress: float, style: Optional[str] = None) -> Image:
        """The frame between two pictures of 32 bits and one size, at a progress of 0.0 (`first`) to 1.0 (`second`)."""

    @property
    def name(self) -> str:
        """For `transition`: lower case, words joined by hyphens."""

    @property
    def number(self) -> Optional[int]:
        """For `effect_piece`; None for a transition of whole frames."""

    @property
    def overshoots(self) -> bool:
        """Whether `frame` takes progress beyond the ends, from -1 to 2."""

    def parameters(self, progress: float, size: Size, style: Optional[str] = None) -> tuple[int, int]:
        """The numbers a and b of `effect_piece` at a progress, for a picture of the size (width, height)."""

    @property
    def styles(self) -> list[str]:
        """Names of the ways in which it may run."""

    @property
    def title(self) -> str:
        """For people."""

    @property
    def unit(self) -> str:
        """What its amounts count: "percent", "degrees" or "pixels"."""

class Frames:
    """The frames of an animation, rendered when they are needed."""

    def __len__(self) -> int:
        ...

    @property
    def delays(self) -> list[int]:
        """In hundredths of a second."""

    def encode(self, loop: Optional[int], comment: str, dither: str, optimize: bool, palette: str, progress: Optional[Progress]) -> bytes:
        ...

    def render(self, frame: int) -> Image:
        ...

    @property
    def size(self) -> tuple[int, int]:
        """"""

class Image:
    """A picture in memory.
    
    Parameters
    ----------
    width, height : int
        Sides in pixels, 0 or more.
    depth : int
        Bits of a pixel: 1, 4 or 8 (indexes into a palette), 16 (5 bits for each channel), 24, or 32 with alpha.
    colours : int
        Entries of the palette; 0 for as many as the depth can index.
    
    Raises
    ------
    ValueError
        For another depth, a side below 0, or more than 2^31 - 1 bytes.
    MemoryError
        When memory runs out.
    
    Notes
    -----
    All pixels are 0: index 0, black, or transparent. Lines count from the top. Colour is straight, not
    premultiplied; alpha 255 is opaque. In memory the channels are blue, green, red, alpha."""

    def __array__(self, dtype: Any = None) -> Any:
        ...

    @property
    def __array_interface__(self) -> dict[str, Any]:
        """"""

    def __copy__(self) -> Image:
        ...

    def __deepcopy__(self, memo: Any) -> Image:
        ...

    def __eq__(self, other: object) -> bool:
        ...

    def __init__(self, width: int, height: int, depth: int = 32, colours: int = 0) -> None:
        ...

    def __repr__(self) -> str:
        ...

    def _repr_png_(self) -> bytes:
        ...

    @property
    def alpha(self) -> ByteArray:
        """The alpha of 32 bits: height x width, uint8, a view."""

    def colour_at(self, point: Point) -> tuple[int, int, int]:
        """Red, green and blue of the pixel at (x, y). Those of 16 bits have their low three bits 0."""

    def copy(self) -> Image:
        """A new image with the same pixels and palette."""

    @property
    def depth(self) -> int:
        """Bits of a pixel."""

    def encode(self, format: str = 'png') -> bytes:
        """The bytes of a PNG or BMP file ("png", "bmp") at the image's own depth; 32 bits keep their alpha."""

    @staticmethod
    def filled(width: int, height: int, colour: Colour, alpha: int = 255) -> Image:
        """A new image of 32 bits in one colour."""

    @staticmethod
    def from_array(array: npt.NDArray[Any], order: Optional[str] = None, depth: Optional[int] = None, palette: Optional[Palette] = None, fields: Optional[tuple[int, int, int]] = None) -> Image:
        """A new image with the pixels of an array, which may have any strides.

                Parameters
                ----------
                array : ndarray
                    Height x width of bool (1 bit), uint8 (8 bits) or uint16 (16 bits); height x width x 3 or 4 of uint8 (24 or
                    32 bits).
                order : {"rgb", "bgr"}
                    Of the channels; alpha is the last in both. Needed for an array with channels: `Image.numpy` gives "bgr",
                    most others give "rgb".
                depth : int, optional
                    1 or 4 for an array of uint8 that holds smaller indexes.
                palette : list of colours or ndarray, optional
                    N x 3; else an even ramp of grays.
                fields : (int, int, int), optional
                    The bits of red, green and blue in 16-bit pixels; else 0x7C00, 0x3E0, 0x1F.

                Raises
                ------
                TypeError
                    For an array of another type.
                ValueError
                    For another shape, or an index that the depth does not have."""

    @staticmethod
    def from_pil(picture: PIL.Image.Image) -> Image:
        """A new image of a Pillow one: 1 bit of mode 1, 8 bits of L and P, 24 bits of RGB, else 32 bits."""

    @property
    def height(self) -> int:
        """Lines."""

    def numpy(self) -> npt.NDArray[Any]:
        """The pixels as an array, in the order of memory.

                Returns
                -------
                ndarray
                    For 8 bits, indexes: height x width, uint8. For 16 bits: height x width, uint16, 5 bits for each of red,
                    green and blue, red the highest. For 24 and 32 bits: height x width x 3 or 4, uint8, **blue, green,
                    red(, alpha)**; `rgb` and `alpha` show the same bytes in the other order. All of these are views: they
                    share the image's memory, and keep it alive. For 1 and 4 bits, a read-only copy of the indexes: height x
                    width, uint8."""

    @staticmethod
    def open(file: ReadableFile, strict: bool = False) -> Image:
        """A picture from a PNG, JPEG, GIF, BMP or WebP, as an image of 32 bits.

                Parameters
                ----------
                file : path, binary file or bytes
                    Of an animation the first frame is read.
                strict : bool
                    Refuse a damaged file, instead of showing what can be decoded.

                Raises
                ------
                OSError
                    When the file cannot be read.
                ValueError
                    When it holds no picture."""

    @property
    def palette(self) -> ByteArray:
        """The palette of 1, 4 or 8 bits: N x 3, uint8, red, green, blue; a view."""

    @palette.setter
    def palette(self, value: Palette) -> None: ...

    @property
    def rgb(self) -> ByteArray:
        """Red, green and blue of 24 or 32 bits: height x width x 3, uint8, a view."""

    def save(self, file: WritableFile, format: Optional[str] = None) -> None:
        """Write a PNG or BMP to a path, whose ending decides, or to a binary file. Raises OSError."""

    @property
    def size(self) -> tuple[int, int]:
        """Width and height in pixels."""

    def to_pil(self) -> PIL.Image.Image:
        """A new Pillow image: mode P for an image with a palette, RGBA for 32 bits, else RGB."""

    @property
    def width(self) -> int:
        """Pixels in a line."""

class Region:
    """A set of pixels, of any shape, in 32-bit coordinates. It never changes.
    
    `Region()` is empty. The operators are those of sets: ``a | b``, ``a & b``, ``a - b``, ``a ^ b``, ``(x, y) in a``,
    ``a == b``; an empty region is false."""

    def __and__(self, other: Region) -> Region:
        ...

    def __bool__(self) -> bool:
        ...

    def __contains__(self, point: Point) -> bool:
        ...

    def __eq__(self, other: object) -> bool:
        ...

    def __init__(self) -> None:
        ...

    def __or__(self, other: Region) -> Region:
        ...

    def __repr__(self) -> str:
        ...

    def __sub__(self, other: Region) -> Region:
        ...

    def __xor__(self, other: Region) -> Region:
        ...

    @property
    def area(self) -> int:
        """How many pixels it has."""

    @property
    def box(self) -> tuple[int, int, int, int]:
        """The smallest rectangle that holds it; all 0 if it is empty."""

    @staticmethod
    def ellipse(rect: Rect) -> Region:
        """The ellipse in a rectangle."""

    @staticmethod
    def from_array(array: Mask, origin: Point = (0, 0)) -> Region:
        """The pixels that are True in a height x width array of bool, whose first one is at `origin`."""

    @staticmethod
    def from_spans(spans: Sequence[tuple[int, int, int]]) -> Region:
        """The pixels of spans (y, left, right), right exclusive, in any order."""

    @staticmethod
    def polygon(points: Points) -> Region:
        """A closed polygon, by the even-odd rule."""

    @staticmethod
    def rectangle(rect: Rect) -> Region:
        """The pixels of a rectangle (left, top, right, bottom), right and bottom exclusive."""

    def rectangles(self) -> list[tuple[int, int, int, int]]:
        """Its rectangles, by lines from the top and in each from the left."""

    def spans(self) -> list[tuple[int, int, int]]:
        """Its spans (y, left, right), by lines from the top and in each from the left."""

    def to_array(self, size: Size, origin: Point = (0, 0)) -> npt.NDArray[Any]:
        """Which pixels of the rectangle at `origin` with the size (width, height) are in the region: height x width of bool."""

    def translate(self, by: Point) -> Region:
        """The region moved by (x, y)."""

class Ripple:
    """Water over a picture: drops raise it, and it moves on as a damped wave.
    
    Parameters
    ----------
    picture : Image of 32 bits
        Seen through the water; has drops every 100 pixels at the start (`flatten` makes the water level)."""

    def __init__(self, picture: Image) -> None:
        ...

    def drop(self, at: Point, radius: int = 20, height: int = 50, page: int = 0) -> None:
        """Add a disc to a page of the height field; a negative coordinate is chosen at random."""

    def flatten(self) -> None:
        """Make the water level."""

    def next(self) -> Image:
        """Move on by four wave steps, and render."""

    def render(self) -> Image:
        """The picture through the first page of the water: a new image of 32 bits."""

    def step(self, page: int, density: int = 5, rounder: bool = False) -> None:
        """One wave step, which writes a page; the wave loses its height divided by 2 to the power of `density`. `rounder` takes 5 x 5 cells instead of 3 x 3."""

def blend_frames(a: Image, b: Image, opacity: int, canvas: Size, colour: Colour = (0, 0, 0), mask_a: Optional[Mask] = None, mask_b: Optional[Mask] = None, at_a: Point = (0, 0), at_b: Point = (0, 0)) -> tuple[Image, Optional[BoolArray], tuple[int, int]]:
    """Merge frame `a` over frame `b` and blend `a` with its backdrop, `b` or a colour: (a x opacity + backdrop x (256 - opacity)) / 256 in each channel. The result is cut to the canvas.

    Parameters
    ----------
    a : Image
        The first one.
    b : Image
        The second one.
    opacity : int from 0 to 256
        Weight; 255 is full.
    canvas : (int, int)
        (width, height) of the animation's canvas.
    colour : (int, int, int) or "#rrggbb"
        The colour.
    mask_a : ndarray (height x width, bool), optional
        True where frame `a` is transparent; None for an opaque frame.
    mask_b : ndarray (height x width, bool), optional
        True where frame `b` is transparent; None for an opaque frame.
    at_a : (int, int)
        (x, y) of frame `a` on the canvas.
    at_b : (int, int)
        (x, y) of frame `b` on the canvas.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None, (int, int)
        A new image, with a palette if it has at most 256 colours, its mask or None, and the (x, y) of its top-left pixel on the canvas.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: AlphaBlendByFrame2."""

def can_split(a: Image, b: Image, at_a: Point = (0, 0), at_b: Point = (0, 0)) -> bool:
    """Tell whether two frames end at the same corner of the canvas and have one width or one height.

    Parameters
    ----------
    a : Image
        The first one.
    b : Image
        The second one.
    at_a : (int, int)
        (x, y) of frame `a` on the canvas.
    at_b : (int, int)
        (x, y) of frame `b` on the canvas.

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CSpiltEmbededDIB::IsCanSpilt."""

def change_index_depth(image: Image, depth: int, palette: Optional[Palette] = None, progress: Optional[Progress] = None) -> Image:
    """Convert an image with a palette to another depth with a palette. With `palette`, the result has that one, and a colour that it lacks becomes index 0; without, the colours stay.

    Parameters
    ----------
    image : Image
        The image.
    depth : int
        Bits of a pixel.
    palette : list of colours, or ndarray (N x 3, uint8), optional
        The colours, red first.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of `depth` bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The palette has to fit into the depth.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::Convert1BitsDibTo4BitsDib, Convert1BitsDibTo8BitsDib, Convert4BitsDibTo8BitsDib, Convert8BitsDibTo4BitsDib, Convert8BitsDibTo1BitsDib, Convert4BitsDibTo1BitsDib."""

def change_palette(image: Image, palette: Palette) -> Image:
    """Show a picture with another palette, at the same depth. A colour that it lacks becomes index 0.

    Parameters
    ----------
    image : Image
        The image.
    palette : list of colours, or ndarray (N x 3, uint8)
        The colours, red first.

    Returns
    -------
    Image
        A new image.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The palette has no more colours than the depth can index.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::ChangeDibBitsPalette."""

def checkerboard(image: Image, first: Colour = (255, 255, 255), second: Colour = (204, 204, 204), x: int = 0, y: int = 0) -> None:
    """Draw squares of 8 x 8 pixels in two colours, in place; alpha is unchanged. `at` is the place of the image in the pattern, 0 or more.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    first : (int, int, int) or "#rrggbb"
    second : (int, int, int) or "#rrggbb"
    x : int from 0
    y : int from 0

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Init32DIBBackground."""

def colours(image: Image) -> ByteArray:
    """List the colours of an image of 24 or 32 bits in order of first appearance. Alpha does not count.

    Parameters
    ----------
    image : Image
        The image.

    Returns
    -------
    list of colours, or ndarray (N x 3, uint8)


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The image may have at most 256 colours.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GetColorsNumFromTrueDib."""

def combine(bottom: Image, top: Image, bottom_at: Point = (0, 0), top_at: Point = (0, 0), bottom_reduction: int = 0, top_reduction: int = 0) -> tuple[Image, tuple[int, int]]:
    """Composite `top` over `bottom` into a new image, after the subtraction of a reduction from the alpha of each.

    Parameters
    ----------
    bottom : Image of 32 bits
    top : Image of 32 bits
    bottom_at : (int, int)
    top_at : (int, int)
    bottom_reduction : int from 0 to 255
    top_reduction : int from 0 to 255

    Returns
    -------
    tuple of Image, (int, int)
        A new image of 32 bits that holds both, and the (x, y) of its top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CombineDIBs."""

def composite(destination: Image, source: Image, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Composite a source over a destination, exactly: straight alpha "over". Where both are transparent, the result is transparent black.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CombineBlock."""

def composite_alpha(destination: Image, source: Image, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Composite alpha alone, onto the last byte of the destination's pixels, which have 8 to 32 bits.

    Parameters
    ----------
    destination : Image
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::BitBltDIBAlphaChannelPlain."""

def composite_fast(destination: Image, source: Image, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Composite a source over a destination in steps of 1/256.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::BitBlt32DIBPlain."""

def convert(images: Sequence[Image], depth: Optional[int] = None, gray: bool = False, threshold: Optional[int] = None, palette: Optional[Palette] = None, shared: bool = False, dither: str = 'none', matte: Optional[Colour] = None) -> list[Image]:
    """Change depth or palette of images as `dibkit convert` does: exactly where the colours allow it, else onto the best palette. `gray` makes grays; `threshold` makes black and white, by the best gray for -1; `shared` gives all images one palette; `dither` is for colours that the palette lacks. `matte` is behind transparent pixels, which only 32 bits can keep.

    Parameters
    ----------
    images : list of Image
    depth : int, optional
        Bits of a pixel.
    gray : bool
    threshold : int from -1 to 256, optional
        From 0 to 256.
    palette : list of colours, or ndarray (N x 3, uint8), optional
        The colours, red first.
    shared : bool
    dither : str
    matte : (int, int, int) or "#rrggbb", optional

    Returns
    -------
    list of Image
        New images. Without `depth`, of the smallest one that keeps all colours.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Some options exclude each other.
    MemoryError
        When memory runs out."""

def copy_alpha(destination: Image, source: Image, at: Point = (0, 0), destination_at: Point = (0, 0)) -> None:
    """Copy alpha alone.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::TransformAlphaChannelBlock."""

def copy_mask(mask: Mask, second: Mask) -> BoolArray:
    """Copy a second mask over a mask, from the top-left corner of both.

    Parameters
    ----------
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.
    second : ndarray (height x width, bool)

    Returns
    -------
    ndarray (height x width, bool) or None
        A new mask.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::MarkedMaskDIB."""

def copy_opaque(destination: Image, source: Image, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Copy the pixels of a source that are opaque after the reduction. Translucent ones change the source, not the destination: its channels move towards the destination's.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::BitBlt32DIB."""

def copy_pixels(destination: Image, source: Image, at: Point = (0, 0), destination_at: Point = (0, 0)) -> None:
    """Copy whole pixels.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::TransformBlock."""

def copy_reduced(destination: Image, source: Image, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Copy colours, and alpha less the reduction.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CopyBlock."""

def count_colours(image: Image) -> int:
    """Count the distinct colours of a 24-bit image.

    Parameters
    ----------
    image : Image of 24 bits
        The image.

    Returns
    -------
    int
        257 for more than 256.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GetColorsNumFrom24BitsDib."""

def crop(image: Image, region: Region) -> Image:
    """Crop an image to the bounding box of a region. Pixels outside the region get alpha 0.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    region : Region
        The pixels.

    Returns
    -------
    Image
        A new image of 32 bits, 0 x 0 for an empty region.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: Crop32BitsDIB."""

def crop_frame(image: Image, region: Region, mask: Optional[Mask] = None) -> tuple[Image, Optional[BoolArray]]:
    """Crop a frame of any depth to the bounding box of a region, palette unchanged. Pixels outside the region are transparent in the mask.

    Parameters
    ----------
    image : Image
        The image.
    region : Region
        The pixels.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image of the same depth, and its mask, None if no pixel is transparent.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CropFrame."""

def dahlia(size: Size = (320, 240)) -> Image:
    """Draw a sample picture: a dahlia, with transparent corners.

    Parameters
    ----------
    size : (int, int)

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out."""

def decode_animation(data: Any, strict: bool) -> tuple[list[Image], list[int], Optional[int], str, list[str]]:
    ...

def diamond_frame(incoming: Image, outgoing: Optional[Image] = None, colour: Optional[Colour] = None, percent: int = 50) -> Image:
    """Make a frame of a transition through diamond bands, from an outgoing picture or from a colour.

    Parameters
    ----------
    incoming : Image of 32 bits
    outgoing : Image of 32 bits, optional
    colour : (int, int, int) or "#rrggbb", optional
        The colour.
    percent : int
        Strength, 0 to 100.

    Returns
    -------
    Image
        A new opaque image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Give either `outgoing`, of the incoming one's size, or `colour`.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: DiamondEffectDIB."""

def dithers() -> list[str]:
    """The names of the ways to show colours that a palette lacks."""

def draw_dashes(image: Image, side: str, begin: int, last: int, fixed: int, first: Colour = (0, 0, 0), second: Colour = (255, 255, 255), phase: int = 0, at: Point = (0, 0)) -> int:
    """Draw one side of a dashed outline, in place: three pixels of `second`, three of `first` and so on; alpha is unchanged. `side` is "top", "right", "bottom" or "left", `begin` and `last` are its ends, inclusive, and `fixed` is its row or column. Sides are drawn in that order, each with the phase that the one before gave.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    side : str
    begin : int
    last : int
    fixed : int
    first : (int, int, int) or "#rrggbb"
    second : (int, int, int) or "#rrggbb"
    phase : int
        0 to 5, where the dashes begin.
    at : (int, int)
        (x, y) of the source's top-left pixel.

    Returns
    -------
    int
        The phase for the next side.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::DrawTopHatchedLine, DrawRightHatchedLine, DrawBottomHatchedLine, DrawLeftHatchedLine."""

def draw_indexed(destination: Image, source: Image, at: Point = (0, 0), mask: Optional[Mask] = None, destination_at: Point = (0, 0)) -> None:
    """Draw the colours of an 8-bit picture where its mask is False; the destination's alpha is unchanged.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 8 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::BitBlt8BitsDIB."""

def draw_line(rect: Rect, start: Point, end: Point, width: int = 1, rounded: bool = True, picture: Optional[Image] = None) -> Image:
    """Draw a thick line with bits 1 into a 1-bit picture of a box: a new one, or one that is given.

    Parameters
    ----------
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    start : (int, int)
        (x, y) of one end.
    end : (int, int)
        (x, y) of the other end.
    width : int from 0 to 32767
        In pixels.
    rounded : bool
        Round ends, else square ones.
    picture : Image of 1 bits, optional

    Returns
    -------
    Image
        A new image of 1 bit and of the box's size.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The box may not be empty, and a picture has its size.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: PaintLineOnPic."""

def draw_polygon(points: Points, width: int = 1, filled: bool = True) -> Optional[tuple[Image, tuple[int, int]]]:
    """Draw a closed polygon in the same way, filled by the even-odd rule.

    Parameters
    ----------
    points : list of (int, int), or ndarray (N x 2)
        Vertices (x, y).
    width : int from 0 to 32767
        In pixels.
    filled : bool

    Returns
    -------
    tuple of Image, (int, int), optional
        A new image and the (x, y) of its top-left pixel; None if nothing is drawn or memory runs out.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: PaintPolygonOnPic."""

def draw_polyline(bounds: Rect, points: Points, width: int = 1, rounded: bool = True) -> Optional[tuple[Image, tuple[int, int]]]:
    """Draw a polyline with bits 0 on 1, so that as a mask the stroke is opaque, with 10 pixels around it.

    Parameters
    ----------
    bounds : (int, int, int, int)
        (left, top, right, bottom) that the result is cut to.
    points : list of (int, int), or ndarray (N x 2)
        Vertices (x, y).
    width : int from 0 to 32767
        In pixels.
    rounded : bool
        Round ends, else square ones.

    Returns
    -------
    tuple of Image, (int, int), optional
        A new image and the (x, y) of its top-left pixel; None if nothing is drawn or memory runs out.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: PaintLineOnPic2."""

def draw_selection(image: Image, rect: Rect, phase: int = 0, at: Point = (0, 0)) -> None:
    """Outline a rectangle with black and white dashes, in place (marching ants, with phases 0 to 5 one after the other). `at` is the place of the image in the space of the rectangle.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    phase : int
        0 to 5, where the dashes begin.
    at : (int, int)
        (x, y) of the source's top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::DrawSelectedFlag."""

def draw_shape(rect: Rect, width: int = 1, ellipse: bool = True, filled: bool = True, corner: Point = (0, 0)) -> Optional[tuple[Image, tuple[int, int]]]:
    """Draw an ellipse or a rounded rectangle on 4 bits: index 0 is the outline, 1 the interior, 2 the background. `corner` is the size of the ellipse that rounds the corners.

    Parameters
    ----------
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    width : int from 0 to 32767
        In pixels.
    ellipse : bool
    filled : bool
    corner : (int, int)

    Returns
    -------
    tuple of Image, (int, int), optional
        A new image and the (x, y) of its top-left pixel; None if nothing is drawn or memory runs out.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: PaintShapeOnPic."""

def easings() -> list[str]:
    """The names of the curves that a transition can follow."""

def effect_piece(effect: int, image: Image, a: int, b: int) -> Optional[tuple[Image, tuple[int, int, int, int]]]:
    """Make the piece of a numbered effect at a stage: the part of the incoming picture that shows, to be drawn over the outgoing one. `a` and `b` are style and amount, as `Effect.parameters` gives them.

    Parameters
    ----------
    effect : int
    image : Image of 32 bits
        The image.
    a : int
        The first one.
    b : int
        The second one.

    Returns
    -------
    tuple of Image, (int, int, int, int), optional
        The piece, 32 bits, and its rectangle in the frame; None where nothing shows.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: GeneralEffectFrame."""

def effects() -> list[Effect]:
    """All transitions, grouped by family."""

def erase(destination: Image, source: Image, at: Point = (0, 0), strength: int = 255, coverage: Coverage = None, coverage_at: Point = (0, 0), destination_at: Point = (0, 0)) -> None:
    """Erase: subtract the scaled alpha of the source from the destination's. Colours are unchanged.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    strength : int from 0 to 255
        Scales the source's alpha by strength / 255; 0 does nothing.
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    coverage_at : (int, int)
        (x, y) of the coverage's top-left pixel.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Erase32BitsBlock."""

def fade_to_colour(image: Image, colour: Colour, opacity: int, mask: Optional[Mask] = None) -> tuple[Image, Optional[BoolArray]]:
    """Fade a frame to a colour: (frame x opacity + colour x (255 - opacity)) / 255 in each channel.

    Parameters
    ----------
    image : Image
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.
    opacity : int from 0 to 255
        Weight; 255 is full.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image, with a palette if it has at most 256 colours, and its mask or None.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: AlphaBlendByColor."""

def fade_to_frame(a: Image, b: Image, opacity: int, colour: Colour = (0, 0, 0), mask_a: Optional[Mask] = None, mask_b: Optional[Mask] = None, at_a: Point = (0, 0), at_b: Point = (0, 0)) -> tuple[Image, Optional[BoolArray]]:
    """Fade frame `a` to frame `b`, and to a colour where that does not show. `opacity` is the weight of `a`.

    Parameters
    ----------
    a : Image
        The first one.
    b : Image
        The second one.
    opacity : int from 0 to 255
        Weight; 255 is full.
    colour : (int, int, int) or "#rrggbb"
        The colour.
    mask_a : ndarray (height x width, bool), optional
        True where frame `a` is transparent; None for an opaque frame.
    mask_b : ndarray (height x width, bool), optional
        True where frame `b` is transparent; None for an opaque frame.
    at_a : (int, int)
        (x, y) of frame `a` on the canvas.
    at_b : (int, int)
        (x, y) of frame `b` on the canvas.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image of the size of `a`, and its mask or None.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: AlphaBlendByFrame."""

def farthest_index(palette: Palette, colour: Colour) -> int:
    """Find the colour farthest from a given one by the same measure, the lowest index of equals.

    Parameters
    ----------
    palette : list of colours, or ndarray (N x 3, uint8)
        The colours, red first.
    colour : (int, int, int) or "#rrggbb"
        The colour.

    Returns
    -------
    int


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GetMaxDifferenceColor."""

def field_of_bits(bits: int) -> tuple[int, int]:
    """Find the lowest run of set bits in a mask of a colour.

    Parameters
    ----------
    bits : int from 0

    Returns
    -------
    tuple of int, int
        How many clear bits are below the run, and how many bits it has.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CalcuMaskShift."""

def fill(image: Image, colour: Colour) -> None:
    """Set every pixel to a colour, opaque, in place.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Fill32DIBBackground."""

def fill_connected(image: Image, seed: Point, fill: Colour = (0, 0, 0), tolerance: int = 0, opacity: int = 255, target: Optional[Colour] = None, target_alpha: int = 255, erase: bool = False, coverage: Coverage = None, coverage_at: Point = (0, 0)) -> Optional[tuple[int, int, int, int]]:
    """Flood fill, in place: composite a colour over the area of similar pixels that is connected with the seed from left, right, above and below. `target` and `target_alpha` are what is similar; None for the pixel at the seed. `erase` makes the pixels transparent instead.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    seed : (int, int)
        (x, y) where it starts.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    tolerance : int
        Largest difference of a channel, 0 to 255.
    opacity : int from 0 to 255
        Weight; 255 is full.
    target : (int, int, int) or "#rrggbb", optional
        The colour to be replaced.
    target_alpha : int from 0 to 255
    erase : bool
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    coverage_at : (int, int)
        (x, y) of the coverage's top-left pixel.

    Returns
    -------
    (int, int, int, int), optional
        The rectangle that was filled; None with coverage.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The seed has to be inside the image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ExtFillConnectedPixels, ExtFillConnectedPixels_Mask."""

def fill_frame(image: Image, target: Colour, fill: Colour, percent: int = 100, tolerance: int = 0, mask: Optional[Mask] = None) -> tuple[Image, Optional[BoolArray]]:
    """Fill every opaque pixel of a frame that is near a target colour, connected or not.

    Parameters
    ----------
    image : Image
        The image.
    target : (int, int, int) or "#rrggbb"
        The colour to be replaced.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    percent : int from 0 to 100
        Strength, 0 to 100.
    tolerance : int
        Largest difference of a channel, 0 to 255.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image, with a palette if it has at most 256 colours, and its mask or None.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: ExtFillFrame."""

def fill_frame_background(image: Image, seed: Point, fill: Colour, canvas: Size, percent: int = 100, mask: Optional[Mask] = None, at: Point = (0, 0)) -> tuple[Image, Optional[BoolArray], tuple[int, int]]:
    """Flood fill of the background: extend a frame to its canvas, make the transparent area around a seed opaque, in the fill colour mixed with white (`percent` is the share of the fill colour), and trim what is still transparent at the edges.

    Parameters
    ----------
    image : Image
        The image.
    seed : (int, int)
        (x, y) where it starts.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    canvas : (int, int)
        (width, height) of the animation's canvas.
    percent : int from 0 to 100
        Strength, 0 to 100.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    at : (int, int)
        (x, y) of the source's top-left pixel.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None, (int, int)
        A new image, with a palette if it has at most 256 colours, its mask or None, and the (x, y) of its top-left pixel on the canvas.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The seed has to be inside the canvas.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: ExtFillBkgnd."""

def fill_frame_connected(image: Image, seed: Point, fill: Colour, target: Optional[Colour] = None, percent: int = 100, tolerance: int = 0, mask: Optional[Mask] = None) -> tuple[Image, Optional[BoolArray]]:
    """Flood fill of a frame: fill the connected opaque pixels near a target colour around a seed. `target` None is the colour at the seed.

    Parameters
    ----------
    image : Image
        The image.
    seed : (int, int)
        (x, y) where it starts.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    target : (int, int, int) or "#rrggbb", optional
        The colour to be replaced.
    percent : int from 0 to 100
        Strength, 0 to 100.
    tolerance : int
        Largest difference of a channel, 0 to 255.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image, with a palette if it has at most 256 colours, and its mask or None.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The seed has to be inside the frame.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: ExtFillAdjacentArea."""

def fill_transparent(image: Image, fill: Colour, alpha: int = 255, coverage: Coverage = None, coverage_at: Point = (0, 0)) -> None:
    """Replace all transparent pixels, in place.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    alpha : int from 0 to 255
        Alpha; 255 is opaque.
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    coverage_at : (int, int)
        (x, y) of the coverage's top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ExtFillTransBlock, ExtFillTransBlock_Mask."""

def fill_transparent_connected(image: Image, seed: Point, fill: Colour, alpha: int = 255, coverage: Coverage = None, coverage_at: Point = (0, 0)) -> None:
    """Replace the transparent pixels that are connected with the seed, in place.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    seed : (int, int)
        (x, y) where it starts.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    alpha : int from 0 to 255
        Alpha; 255 is opaque.
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    coverage_at : (int, int)
        (x, y) of the coverage's top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The seed has to be inside the image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ExtFillConnectedTransPixels, ExtFillConnectedTransPixels_Mask."""

def find_effect(name: str) -> Effect:
    """The transition of that name. Raises ValueError."""

def find_threshold(image: Image) -> int:
    """Find the gray that parts dark from light best, by Otsu's method on a smoothed histogram of the indexes.

    Parameters
    ----------
    image : Image of 8 bits
        The image.

    Returns
    -------
    int
        0 to 254; 1 for an image without pixels.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GetThreshValueForm8BitsGrayDib."""

def fit(image: Image, size: Size, fit: str = 'contain', background: Colour = (0, 0, 0)) -> Image:
    """Fit an image into a frame: "contain" shows all of it, "cover" fills the frame, "stretch" changes its shape.

    Parameters
    ----------
    image : Image
        The image.
    size : (int, int)
    fit : str
    background : (int, int, int) or "#rrggbb"

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both sides are above 0.
    MemoryError
        When memory runs out."""

def fits() -> list[str]:
    """The names of the ways to fit a picture into a frame."""

def flatten(image: Image, colour: Colour, mask: Optional[Mask] = None, margins: Rect = (0, 0, 0, 0)) -> Image:
    """Flatten a frame: its transparent pixels, and the margins around it, get a colour. A palette without the colour gets one more entry; if it is full, the depth grows.

    Parameters
    ----------
    image : Image
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    margins : (int, int, int, int)
        (left, top, right, bottom) in pixels; negative ones cut.

    Returns
    -------
    Image
        A new image.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::OutputDIBStream, InflateDib."""

def frame_change(a: Image, b: Image, same_transparent: bool = False, indexed: bool = False, mask_a: Optional[Mask] = None, mask_b: Optional[Mask] = None, at_a: Point = (0, 0), at_b: Point = (0, 0)) -> Optional[tuple[Image, Optional[BoolArray], tuple[int, int], bool]]:
    """Find the rectangle in which frame `b` differs from frame `a`, and cut it out. `same_transparent` makes the pixels in it that are the same transparent. `indexed` takes 8-bit frames, and the piece keeps palette and indexes.

    Parameters
    ----------
    a : Image
        The first one.
    b : Image
        The second one.
    same_transparent : bool
    indexed : bool
    mask_a : ndarray (height x width, bool), optional
        True where frame `a` is transparent; None for an opaque frame.
    mask_b : ndarray (height x width, bool), optional
        True where frame `b` is transparent; None for an opaque frame.
    at_a : (int, int)
        (x, y) of frame `a` on the canvas.
    at_b : (int, int)
        (x, y) of frame `b` on the canvas.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None, (int, int), bool, optional
        The piece, its mask or None, its (x, y) on the canvas, and whether a pixel of it is the same; None if nothing changed.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. No pixel may turn from opaque to transparent.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CSpiltEmbededDIB::Reset, IsEqual, SplitOpacity, SplitTransparency, CropEmbededDIB, CSpiltEmbededDIBEx::CropEmbededDIB."""

def gray_palette(palette: Palette) -> ByteArray:
    """Turn colours into grays: 0.3 red + 0.59 green + 0.11 blue, truncated.

    Parameters
    ----------
    palette : list of colours, or ndarray (N x 3, uint8)
        The colours, red first.

    Returns
    -------
    list of colours, or ndarray (N x 3, uint8)


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GrayPalette."""

def gray_ramp(count: int = 256) -> ByteArray:
    """Make an even ramp from black to white.

    Parameters
    ----------
    count : int from 2 to 256

    Returns
    -------
    list of colours, or ndarray (N x 3, uint8)


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::MakeGrayPalette."""

def has_palette(image: Image, palette: Palette) -> bool:
    """Tell whether the palette of an image is a given one. Loosely: an entry that the given one lacks counts as the one before it, and colours that only the given one has do not count, except against a palette of one colour.

    Parameters
    ----------
    image : Image
        The image.
    palette : list of colours, or ndarray (N x 3, uint8)
        The colours, red first.

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::IsPaletteEqual."""

def hatch(image: Image, colour: Colour, at: Point = (0, 0)) -> None:
    """Draw both diagonals, every 8 pixels, in place; alpha is unchanged. `at` is the place of the image in the pattern.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.
    at : (int, int)
        (x, y) of the source's top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Init32DIBWithHatedLines."""

def hundredths(milliseconds: Sequence[float]) -> list[int]:
    """Milliseconds as hundredths of a second, no less than two; what rounding takes from one the next gets."""

def is_gray(image: Image) -> bool:
    """Tell whether entry i of the palette is gray i for every i.

    Parameters
    ----------
    image : Image
        The image.

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::IsGrayScaleImage."""

def is_opaque(image: Image) -> bool:
    """Tell whether every pixel is opaque.

    Parameters
    ----------
    image : Image of 32 bits
        The image.

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::IsFullOpacity32BitsImage."""

def is_translucent(image: Image) -> bool:
    """Tell whether some pixel has an alpha from 1 to 254.

    Parameters
    ----------
    image : Image of 32 bits
        The image.

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::IsTranslucence32BitsImage."""

def is_visible_at(image: Image, point: Point) -> bool:
    """Tell whether a point is inside an image and its pixel is not transparent.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    point : (int, int)

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::IsIn32BitsDIB."""

def join_palettes(palettes: Sequence[Palette]) -> ByteArray:
    """Join palettes into one that has each colour once, in order of first appearance.

    Parameters
    ----------
    palettes : list of list of colours, or ndarray (N x 3, uint8)

    Returns
    -------
    list of colours, or ndarray (N x 3, uint8)


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. They may have at most 256 colours together.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::SumDibImagePalEntries."""

def join_rectangle(rectangles: Sequence[Rect], rect: Rect) -> list[tuple[int, int, int, int]]:
    """Add a rectangle to a list of disjoint ones. If it shares a whole edge with one of them the two become one, and so on.

    Parameters
    ----------
    rectangles : list of (int, int, int, int)
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.

    Returns
    -------
    list of (int, int, int, int)
        The new list.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::AddRect."""

def lake(size: Size = (320, 240)) -> Image:
    """Draw a sample picture: a mountain lake at dusk.

    Parameters
    ----------
    size : (int, int)

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out."""

def luminance_difference(a: Colour, b: Colour) -> int:
    """Compute the luminance of colour `a` less that of colour `b`; luminance is (117 blue + 601 green + 306 red) / 1024, truncated.

    Parameters
    ----------
    a : (int, int, int) or "#rrggbb"
        The first one.
    b : (int, int, int) or "#rrggbb"
        The second one.

    Returns
    -------
    int
        -255 to 255.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CompareColors."""

def magic_wand(image: Image, seed: Point, tolerance: int = 0, connected: bool = True) -> Region:
    """Select the pixels similar to a seed: each channel differs by at most `tolerance`, and both are opaque (alpha 128 and above) or both transparent. `connected` selects only those connected with the seed from left, right, above and below. A seed outside the image moves to the nearest edge.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    seed : (int, int)
        (x, y) where it starts.
    tolerance : int from 0 to 255
        Largest difference of a channel, 0 to 255.
    connected : bool

    Returns
    -------
    Region
        The region.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::MagicWandRegion, MagicWandRegion2."""

def magic_wand_frame(image: Image, seed: Point, tolerance: int = 0, mask: Optional[Mask] = None, at: Point = (0, 0), canvas: Optional[Size] = None) -> Region:
    """Select on an animation's canvas the connected area around a seed whose pixels are transparent as the seed is, or opaque as the seed is and within a tolerance of its colour. Canvas beside the frame is transparent. Without `canvas`, it ends where the frame does.

    Parameters
    ----------
    image : Image
        The image.
    seed : (int, int)
        (x, y) where it starts.
    tolerance : int from -1 to 255
        Largest difference of a channel, 0 to 255.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    canvas : (int, int), optional
        (width, height) of the animation's canvas.

    Returns
    -------
    Region
        The region, in canvas coordinates.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The seed has to be inside the canvas.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: MagicWandRegion."""

def margins(image: Image) -> tuple[int, int, int, int]:
    """Measure the transparent margins of an image.

    Parameters
    ----------
    image : Image of 32 bits
        The image.

    Returns
    -------
    (int, int, int, int)
        Left, top, right, bottom, in pixels; (0, height, 0, 0) for an image without a visible pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CheckBlankBorder."""

def mark_rectangle(mask: Mask, rect: Rect, value: bool = True, outside: bool = False) -> BoolArray:
    """Set the pixels of a mask inside a rectangle to `value`; with `outside`, those outside of it to True.

    Parameters
    ----------
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    value : bool
    outside : bool

    Returns
    -------
    ndarray (height x width, bool) or None
        A new mask.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::FillMaskDIBBits, ExclusiveWhiteFill2BitsDib."""

def mark_region(mask: Mask, region: Region) -> BoolArray:
    """Mark the pixels of a region as transparent.

    Parameters
    ----------
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.
    region : Region
        The pixels.

    Returns
    -------
    ndarray (height x width, bool) or None
        A new mask.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::FillMask."""

def mask_margins(mask: Mask) -> tuple[int, int, int, int]:
    """Measure the transparent margins of a mask: rows and columns at its edges that are all True.

    Parameters
    ----------
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    (int, int, int, int)
        Left, top, right, bottom, in pixels. For a mask that is all True, its width and height.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CaclOpaqueBoundary."""

def median(image: Image, size: int = 3) -> None:
    """Median filter, in place: each pixel becomes the median of its size x size neighbourhood by luminance.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    size : int from 1

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::MedianFilter32BitsImage."""

def merge(bottom: Image, top: Image, bottom_at: Point = (0, 0), top_at: Point = (0, 0)) -> tuple[Image, tuple[int, int]]:
    """Merge two images without blending: the pixels of `top` that are not transparent, elsewhere those of `bottom`.

    Parameters
    ----------
    bottom : Image of 32 bits
    top : Image of 32 bits
    bottom_at : (int, int)
    top_at : (int, int)

    Returns
    -------
    tuple of Image, (int, int)
        A new image of 32 bits that holds both, and the (x, y) of its top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Merge32BitsDIB."""

def merge_background(image: Image, colour: Colour, rect: Rect, at: Point = (0, 0)) -> tuple[Image, tuple[int, int]]:
    """Put an image on a background: the opaque colour as far as `rect` reaches. Transparent pixels of the image replace it.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    at : (int, int)
        (x, y) of the source's top-left pixel.

    Returns
    -------
    tuple of Image, (int, int)
        A new image of 32 bits that holds both, and the (x, y) of its top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Merge32BitsDIB."""

def merge_colours(first: Image, second: Image, first_at: Point = (0, 0), second_at: Point = (0, 0)) -> tuple[Image, tuple[int, int]]:
    """Merge the colours of two images: of `second` where it is visible, of `first` where only that is. Every alpha is 0, and byte 12 of a row with a visible pixel is 255.

    Parameters
    ----------
    first : Image of 32 bits
    second : Image of 32 bits
    first_at : (int, int)
    second_at : (int, int)

    Returns
    -------
    tuple of Image, (int, int)
        A new image of 32 bits that holds both, and the (x, y) of its top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Merge32DIBs."""

def merge_frames(a: Image, b: Image, mask_a: Optional[Mask] = None, mask_b: Optional[Mask] = None, at_a: Point = (0, 0), at_b: Point = (0, 0)) -> tuple[Image, Optional[BoolArray], tuple[int, int]]:
    """Merge frame `a` over frame `b`, without blending, into an image that holds both.

    Parameters
    ----------
    a : Image
        The first one.
    b : Image
        The second one.
    mask_a : ndarray (height x width, bool), optional
        True where frame `a` is transparent; None for an opaque frame.
    mask_b : ndarray (height x width, bool), optional
        True where frame `b` is transparent; None for an opaque frame.
    at_a : (int, int)
        (x, y) of frame `a` on the canvas.
    at_b : (int, int)
        (x, y) of frame `b` on the canvas.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None, (int, int)
        A new image, with a palette if it has at most 256 colours, its mask or None, and the (x, y) of its top-left pixel on the canvas.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: MergeFrames."""

def merge_hole(image: Image, rect: Rect, at: Point = (0, 0)) -> tuple[Image, tuple[int, int]]:
    """Cut a hole into an image: transparent black inside `rect`.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    rect : (int, int, int, int)
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    at : (int, int)
        (x, y) of the source's top-left pixel.

    Returns
    -------
    tuple of Image, (int, int)
        A new image of 32 bits that holds both, and the (x, y) of its top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both have to fit into one image.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Merge32BitsDIB."""

def mix(destination: Image, source: Image, at: Point = (0, 0), transparency: int = 0, coverage: Coverage = None, coverage_at: Point = (0, 0), destination_at: Point = (0, 0)) -> None:
    """Mix all four bytes with the source's alpha as weight, in steps of 1/32768. Coverage scales the alpha by value / 255.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    transparency : int from 0 to 255
        Scales the source's alpha by (255 - transparency) / 255; 0 is full strength.
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    coverage_at : (int, int)
        (x, y) of the coverage's top-left pixel.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Mix32BitsDIBMMX, Mix32BitsDIBMMX_Mask."""

def mix_fast(destination: Image, source: Image, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Mix all four bytes with the source's alpha as weight, in steps of 1/256; the alpha byte that is mixed in is the source's own.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::BitBlt32DIBMMX."""

def nearest_index(palette: Palette, colour: Colour) -> int:
    """Find the colour nearest to a given one: the least sum of squared differences, the highest index of equals.

    Parameters
    ----------
    palette : list of colours, or ndarray (N x 3, uint8)
        The colours, red first.
    colour : (int, int, int) or "#rrggbb"
        The colour.

    Returns
    -------
    int


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GetNearestPaletteIndex."""

def opaque_region(mask: Mask) -> Region:
    """Give the opaque pixels of a mask, which are False, as a region.

    Parameters
    ----------
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    Region
        The region.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CalcOpacityAreaRgn."""

def optimize_bytes(data: Any, strict: bool, strip: bool, progress: Optional[Progress]) -> tuple[bytes, list[str]]:
    ...

def over_channel(lower_alpha: int, upper_alpha: int, lower: int, upper: int, alpha: int) -> int:
    """Compute one channel of a layer over another, with straight alpha; `alpha` is the result's, from `union_alpha`.

    Parameters
    ----------
    lower_alpha : int from 0 to 255
    upper_alpha : int from 0 to 255
    lower : int from 0 to 255
    upper : int from 0 to 255
    alpha : int from 0 to 255
        Alpha; 255 is opaque.

    Returns
    -------
    int
        0 to 255.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CalcuRGBValue."""

def pad(image: Image, margins: Rect, mask: Optional[Mask] = None) -> tuple[Image, BoolArray]:
    """Pad a frame of any depth with transparent margins. Pixels in the margins and transparent ones become 0.

    Parameters
    ----------
    image : Image
        The image.
    margins : (int, int, int, int)
        (left, top, right, bottom) in pixels; negative ones cut.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image of the same depth and palette, and its mask.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::ExpandDIB."""

def pixelate(image: Image, block: int) -> Image:
    """Show in every block of pixels the average colour of the block and of the column and row that follow it.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    block : int from 1

    Returns
    -------
    Image
        A new opaque image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The image needs a pixel.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: Mosaic32BitsDIB."""

def push_frame(incoming: Image, outgoing: Image, direction: int, percent: int) -> Image:
    """Make a frame of a transition in which the incoming picture pushes the outgoing one out. `direction` is where it comes from: 0 left, 1 top left, 2 top, 3 top right, 4 right, ... 7 bottom left.

    Parameters
    ----------
    incoming : Image of 32 bits
    outgoing : Image of 32 bits
    direction : int from 0 to 7
    percent : int
        Strength, 0 to 100.

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: GenerateRunPushEffect."""

def reduce_alpha(image: Image, reduction: int) -> None:
    """Scale the alpha of every pixel by (255 - reduction) / 255, truncated, in place.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Reduce32BitsDIBOpacity."""

def reduce_to_palette(image: Image, palette: Palette) -> Image:
    """Reduce a 24-bit image to a palette, at the smallest depth that holds it. A pixel whose colour the palette lacks becomes index 0: no nearest colour is searched.

    Parameters
    ----------
    image : Image of 24 bits
        The image.
    palette : list of colours, or ndarray (N x 3, uint8)
        The colours, red first.

    Returns
    -------
    Image
        A new image of 1, 4 or 8 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: Convert24BitsDIBToLowerBitsDIB."""

def remove_noise(image: Image, mask: Optional[Mask] = None, progress: Optional[Progress] = None) -> Image:
    """Remove stray pixels by a median filter of 3 x 3: every channel becomes the median of its neighbourhood. Transparent pixels neither change nor count.

    Parameters
    ----------
    image : Image of 24 bits
        The image.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of 24 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: RemoveNoiseDIB."""

def replace_colour(image: Image, target: Colour, fill: Colour, tolerance: int = 0, opacity: int = 255, target_alpha: int = 255, coverage: Coverage = None, coverage_at: Point = (0, 0)) -> None:
    """Composite a colour over all pixels that are similar to a target, connected or not, in place.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    target : (int, int, int) or "#rrggbb"
        The colour to be replaced.
    fill : (int, int, int) or "#rrggbb"
        The colour to fill with.
    tolerance : int
        Largest difference of a channel, 0 to 255.
    opacity : int from 0 to 255
        Weight; 255 is full.
    target_alpha : int from 0 to 255
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    coverage_at : (int, int)
        (x, y) of the coverage's top-left pixel.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ExtFill32BitsDIB, ExtFill32BitsDIB_Mask."""

def resample(image: Image, size: Size) -> Image:
    """Scale an image: every new pixel is the mean of the area under it, or between four pixels where it grows. Transparent pixels have no influence.

    Parameters
    ----------
    image : Image
        The image.
    size : (int, int)

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Both sides are above 0.
    MemoryError
        When memory runs out."""

def ripple_frames(image: Image, frames: int, delay: float, drops: int, seed: int, size: Optional[Size]) -> Frames:
    ...

def ripple_picture(image: Image, rounds: int = 10) -> Image:
    """Show a picture under a small drop at its centre and drops every 100 pixels, after `rounds` of four wave steps.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    rounds : int from 0

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: GenerateRippleEffect, CRippleEffect::GenerateRippleEffect."""

def same_frame(a: Image, b: Image, mask_a: Optional[Mask] = None, mask_b: Optional[Mask] = None) -> bool:
    """Tell whether two frames show the same: one size, the same transparent pixels, and the same colours elsewhere. Depths may differ.

    Parameters
    ----------
    a : Image
        The first one.
    b : Image
        The second one.
    mask_a : ndarray (height x width, bool), optional
        True where frame `a` is transparent; None for an opaque frame.
    mask_b : ndarray (height x width, bool), optional
        True where frame `b` is transparent; None for an opaque frame.

    Returns
    -------
    bool


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CompareFrame."""

def set_alpha(image: Image, alpha: int, rect: Optional[Rect] = None, region: Optional[Region] = None) -> None:
    """Set the alpha of every pixel of a rectangle or of a region, in place; colours are unchanged. Without both, of the image.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    alpha : int from 0 to 255
        Alpha; 255 is opaque.
    rect : (int, int, int, int), optional
        (left, top, right, bottom) in pixels, right and bottom exclusive.
    region : Region, optional
        The pixels.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::MakeAllPixelsSameOpacity, Fill32DIBOpacityArea."""

def set_colour(image: Image, colour: Colour) -> None:
    """Set the colour of every pixel, in place; alpha is unchanged.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Make32BitsSimpleColorDIB."""

def shadow(image: Image, colour: Colour = (0, 0, 0)) -> Image:
    """Make the silhouette of an image: one colour with the image's alpha.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    colour : (int, int, int) or "#rrggbb"
        The colour.

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CreateParaShadowDIB."""

def sharpen(image: Image, k: int = 1) -> None:
    """Sharpen the colours, in place, by a 3 x 3 kernel with -1 around a centre of k + 8, divided by k. 1 sharpens most; below 1 there is no division, which finds edges.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    k : int

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Sharpen32BitsImage."""

def show_mask(image: Image, mask: Mask) -> Image:
    """Make a picture of a mask in two colours: that of the image's top-left pixel where the mask is True, and its complement, or the palette's colour that differs most, where it is False.

    Parameters
    ----------
    image : Image
        The image.
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    Image
        A new image.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::MarkHighBitsDIB, MarkLowBitsDIB."""

def soft_erase(destination: Image, coverage: Coverage, at: Point = (0, 0), amount: int = 255, size: int = 1, clip: Optional[Region] = None) -> None:
    """Erase with a soft brush, in place: subtract amount x c / n^2 from the alpha under the brush, where c counts the brush's pixels in the box of n x n around it. `coverage` is the brush, `size` the width of its feathered edge.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    amount : int from 0 to 255
    size : int from 1
    clip : Region, optional
        Pixels outside of it are unchanged; None for no limit.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::SmoothBlock."""

def soft_fill(destination: Image, coverage: Coverage, at: Point = (0, 0), amount: int = 0, size: int = 1, clip: Optional[Region] = None, reference: Optional[Image] = None) -> None:
    """Add alpha with a soft brush, in place, as `soft_erase` subtracts it; `amount` 0 is the strongest. With `reference`, only where its pixel at the same place is not transparent.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    coverage : ndarray (height x width, uint8 or bool), or Image of 8 bits
        Only pixels under a value that is not 0 are processed; None for all.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    amount : int from 0 to 255
    size : int from 1
    clip : Region, optional
        Pixels outside of it are unchanged; None for no limit.
    reference : Image of 32 bits, optional

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The reference is as wide as the destination.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::SmoothFillBlock."""

def split_alpha(image: Image, background: Colour = (255, 255, 255), transparent: Colour = (255, 255, 255)) -> tuple[Image, Optional[BoolArray]]:
    """Split an image with alpha into what a GIF stores: pixels of alpha 0 get the colour `transparent`, all others are blended with `background`.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    background : (int, int, int) or "#rrggbb"
    transparent : (int, int, int) or "#rrggbb"

    Returns
    -------
    tuple of Image, ndarray (height x width, bool) or None
        A new image of 24 bits, and its mask, None if no pixel is transparent.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::Spilt32BitsDIBForGIF."""

def spread_corner(image: Image, mask: Mask) -> Image:
    """Give every pixel that a mask reaches the value of the top-left one. Only the size of the mask counts.

    Parameters
    ----------
    image : Image
        The image.
    mask : ndarray (height x width, bool)
        True where the image is transparent; None for an opaque image.

    Returns
    -------
    Image
        A new image.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CMaskedBitmapTransform::MarkedBmpDIB."""

def stored_frames(images: Sequence[Image], delays: Sequence[int]) -> Frames:
    ...

def stretch(destination: Image, source: Image, scale: float, at: Point = (0, 0), reduction: int = 0) -> None:
    """Draw a source at `scale` times its size, by the nearest pixel, as `copy_opaque` draws; `at` is scaled too.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    scale : float
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Stretch32DIB."""

def stretch_mixed(destination: Image, source: Image, scale: float, at: Point = (0, 0), reduction: int = 0) -> None:
    """Draw a source at `scale` times its size, by the nearest pixel, as `mix` draws; `at` is scaled too.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    scale : float
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Stretch32DIBMMX."""

def stroke(bounds: Rect, start: Point, end: Point, width: int = 1, margin: int = 2, rounded: bool = True, clip: Optional[Region] = None) -> Optional[tuple[Image, tuple[int, int]]]:
    """Draw the stroke of a line tool as coverage, 0 or 255. `margin` is how many pixels surround it, at least 2.

    Parameters
    ----------
    bounds : (int, int, int, int)
        (left, top, right, bottom) that the result is cut to.
    start : (int, int)
        (x, y) of one end.
    end : (int, int)
        (x, y) of the other end.
    width : int from 0 to 32767
        In pixels.
    margin : int from 0 to 32767
    rounded : bool
        Round ends, else square ones.
    clip : Region, optional
        Pixels outside of it are unchanged; None for no limit.

    Returns
    -------
    tuple of Image, (int, int), optional
        An image of 8 bits and the (x, y) of its top-left pixel from the corner of `bounds`; None if nothing of the stroke's box is inside.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::GenerateLine."""

def summary_of(data: Any, strict: bool) -> dict[str, Any]:
    ...

def to_16_bits(image: Image, progress: Optional[Progress] = None) -> Image:
    """Convert an image of any depth to 16 bits, 5 for each channel: the low three bits are dropped.

    Parameters
    ----------
    image : Image
        The image.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of 16 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::ConvertDIBTo16Bits, Convert1BitsTo16Bits, Convert4BitsTo16Bits, Convert8BitsTo16Bits, Convert24BitsTo16Bits, Convert32BitsTo16Bits."""

def to_24_bits(image: Image, progress: Optional[Progress] = None) -> Image:
    """Convert an image of any depth to 24 bits. Alpha is dropped; 16-bit pixels are read as 5-5-5.

    Parameters
    ----------
    image : Image
        The image.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of 24 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::ConvertDIBTo24Bits, Convert1BitsTo24Bits, Convert4BitsTo24Bits, Convert8BitsTo24Bits, Convert16BitsTo24Bits, Convert32BitsTo24Bits."""

def to_32_bits(image: Image, mask: Optional[Mask] = None, alpha: int = 255, masked_alpha: int = 0) -> Image:
    """Make an image of 32 bits, with alpha, of one of any depth. The fourth byte of a 32-bit source is ignored.

    Parameters
    ----------
    image : Image
        The image.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    alpha : int from 0 to 255
        Alpha; 255 is opaque.
    masked_alpha : int from 0 to 255

    Returns
    -------
    Image
        A new image of 32 bits. One with fields of bits gets alpha 255, and 0 where the mask is True.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ConvertTo32BitsDIB, ConvertBitField16BitsDIBTo32BitsDIB."""

def to_black_and_white(image: Image, threshold: int, progress: Optional[Progress] = None) -> Image:
    """Convert 8 bits to black (index 0) and white (1): white where the index is at least `threshold`.

    Parameters
    ----------
    image : Image of 8 bits
        The image.
    threshold : int
        From 0 to 256.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of 1 bit.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::Convert8BitsGrayDibTo1BitsDib."""

def to_grays(image: Image, progress: Optional[Progress] = None) -> Image:
    """Convert an image of any depth to 8 bits of gray: 0.299 red + 0.587 green + 0.114 blue, truncated.

    Parameters
    ----------
    image : Image
        The image.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of 8 bits, with an even ramp as palette.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::ConvertDIBTo256Grays, Convert24BitsDIBTo256GraysDIB."""

def to_indexes(image: Image, depth: Optional[int] = None, progress: Optional[Progress] = None) -> Image:
    """Convert a 24-bit picture of few colours exactly. The palette has its colours in order of first appearance.

    Parameters
    ----------
    image : Image of 24 bits
        The image.
    depth : int, optional
        Bits of a pixel.
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of `depth` bits, or of the smallest depth that holds the colours.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. The picture may have at most 255 colours, and no more than the depth can index.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::ConvertTrueDibToLowBitsDib, ConvertTrueDibTo1BitsDib, ConvertTrueDibTo4BitsDib, ConvertTrueDibTo8BitsDib."""

def to_nearest_colours(image: Image, depth: int, palette: Optional[Palette] = None) -> Image:
    """Convert an image of any depth to another one. To 1, 4 or 8 bits, each pixel becomes the nearest colour of the palette.

    Parameters
    ----------
    image : Image
        The image.
    depth : int
        Bits of a pixel.
    palette : list of colours, or ndarray (N x 3, uint8), optional
        The colours, red first.

    Returns
    -------
    Image
        A new image of `depth` bits, with that palette.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: ConvertDIBFormat."""

def to_reversed_32_bits(image: Image, flip: bool = False, progress: Optional[Progress] = None) -> Image:
    """Convert 24 bits to 32 with the bytes of a pixel in reverse: 0, red, green, blue. `flip` turns the picture upside down.

    Parameters
    ----------
    image : Image of 24 bits
        The image.
    flip : bool
    progress : callable, optional
        Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised.

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CBitmapConverter::Convert24BitsTo32Bits."""

def transition_frames(images: Sequence[Image], effect: str, style: str, frames: int, delay: float, hold: float, easing: Union[str, Callable[[float], float]], reverse: bool, back: bool, size: Optional[Size], fit: str, background: Colour, matte: Optional[Colour]) -> Frames:
    ...

def transparent_mask(image: Image) -> BoolArray:
    """Tell which pixels are transparent.

    Parameters
    ----------
    image : Image of 32 bits
        The image.

    Returns
    -------
    ndarray (height x width, bool) or None
        True where alpha is 0.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CreateIconMaskFromAlphaChannel."""

def trim(image: Image, margins: Rect) -> Image:
    """Cut margins off.

    Parameters
    ----------
    image : Image of 32 bits
        The image.
    margins : (int, int, int, int)
        (left, top, right, bottom) in pixels; negative ones cut.

    Returns
    -------
    Image
        A new image of 32 bits.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these. Margins are 0 or more and do not overlap.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::Trim32BitsDIB."""

def union_alpha(a: int, b: int) -> int:
    """Compute the alpha of one layer over another.

    Parameters
    ----------
    a : int from 0 to 255
        The first one.
    b : int from 0 to 255
        The second one.

    Returns
    -------
    int
        0 to 255.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::CalcuOpacity."""

def used_indexes(image: Image) -> list[int]:
    """List the palette indexes that an image uses, in order of first appearance.

    Parameters
    ----------
    image : Image
        The image.

    Returns
    -------
    list of int


    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CPaletteFuns::GetColorsNumFromPaletteDib."""

def version() -> str:
    """The version of the library."""

def zoom_in(destination: Image, source: Image, factor: int, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Draw each pixel of a source as a square of factor x factor, as `copy_opaque` draws.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    factor : int from 1
        How many times as large, or as small.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ZoomIn32DIB."""

def zoom_in_indexed(destination: Image, source: Image, factor: int, at: Point = (0, 0), mask: Optional[Mask] = None, destination_at: Point = (0, 0)) -> None:
    """Draw as `draw_indexed`, placed as by `zoom_in`.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 8 bits
        What is drawn; unchanged.
    factor : int from 1
        How many times as large, or as small.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ZoomIn8BitsDIB."""

def zoom_in_mixed(destination: Image, source: Image, factor: int, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Draw each pixel of a source as a square of factor x factor, as `mix` draws.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    factor : int from 1
        How many times as large, or as small.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ZoomIn32DIBMMX."""

def zoom_out(destination: Image, source: Image, factor: int, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Draw one of factor x factor pixels of a source, the top-left one, as `copy_opaque` draws.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    factor : int from 1
        How many times as large, or as small.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ZoomOut32DIB."""

def zoom_out_indexed(destination: Image, source: Image, factor: int, at: Point = (0, 0), mask: Optional[Mask] = None, destination_at: Point = (0, 0)) -> None:
    """Draw as `draw_indexed`, placed as by `zoom_out_mixed`.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 8 bits
        What is drawn; unchanged.
    factor : int from 1
        How many times as large, or as small.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    mask : ndarray (height x width, bool), optional
        True where the image is transparent; None for an opaque image.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ZoomOut8BitsDIB."""

def zoom_out_mixed(destination: Image, source: Image, factor: int, at: Point = (0, 0), reduction: int = 0, destination_at: Point = (0, 0)) -> None:
    """Draw one of factor x factor pixels of a source, the top-left one, as `mix` draws.

    Parameters
    ----------
    destination : Image of 32 bits
        Is drawn on, in place.
    source : Image of 32 bits
        What is drawn; unchanged.
    factor : int from 1
        How many times as large, or as small.
    at : (int, int)
        (x, y) of the source's top-left pixel.
    reduction : int from 0 to 255
        Is subtracted from every alpha of the source; 0 is full strength.
    destination_at : (int, int)
        (x, y) of the destination's top-left pixel, in the same space.

    Raises
    ------
    TypeError, ValueError
        For an argument of another type or value than these.
    MemoryError
        When memory runs out.

    Notes
    -----
    In C++: CDIB32::ZoomOut32DIBMMX."""
