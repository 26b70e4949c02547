"""Animations: transitions, ripples, frames of one's own, and GIF files."""

from __future__ import annotations

from collections.abc import Callable, Iterable, Iterator, Sequence
from typing import TYPE_CHECKING, Any, Optional, Union, overload

from . import _files, _native, _pillow
from ._native import Image

if TYPE_CHECKING:
    import PIL.Image

    #: What becomes an image: an `Image`, a Pillow image, or a file.
    Picture = Union[Image, PIL.Image.Image, _files.ReadableFile]
    Progress = Callable[[float], Optional[bool]]
    Colour = Union[tuple[int, int, int], Sequence[int], str]


def as_image(picture: Picture) -> Image:
    """An image of what may be one: an `Image` (itself), a Pillow image, a path, a binary file, or a file's bytes.

    An array is not, since nobody knows the order of its channels: `Image.from_array` takes it.
    """
    if isinstance(picture, Image):
        return picture
    if _pillow.is_pil(picture):
        return Image.from_pil(picture)  # type: ignore[arg-type]
    if hasattr(picture, "__array_interface__"):
        raise TypeError('an array becomes an image by Image.from_array(array, order="rgb"), or order="bgr"')
    return Image.open(picture)  # type: ignore[arg-type]


class Animation:
    """A sequence of frames of one size, each with a time.

    Parameters
    ----------
    frames : iterable of pictures
        What `as_image` takes; all of one size, at least one. Frames become opaque or transparent, as in a GIF: what is
        half transparent becomes a pattern of dots.
    delay : float or sequence of float
        How long frames show, in milliseconds; one number for all, or one for each. A GIF counts in steps of 10 and
        viewers show nothing shorter than 20.
    loop : int or None
        How often the animation repeats; 0 for ever, None to play it once.
    comment : str
        For people; stored in a GIF.

    Raises
    ------
    ValueError
        For no frames, frames of different sizes, or times beyond ten minutes.

    Notes
    -----
    Frames of a transition or a ripple are rendered when they are needed: an animation of a thousand frames takes the
    memory of its pictures. ``len(animation)``, ``animation[i]`` and iteration give frames as images of 32 bits.
    """

    loop: int | None
    comment: str
    warnings: tuple[str, ...]

    def __init__(
        self,
        frames: Iterable[Picture],
        delay: float | Sequence[float] = 100,
        *,
        loop: int | None = 0,
        comment: str = "",
    ) -> None:
        images = [as_image(frame) for frame in frames]
        times = [float(delay)] * len(images) if isinstance(delay, (int, float)) else [float(time) for time in delay]
        self._begin(_native.stored_frames(images, _native.hundredths(times)), loop, comment)

    def _begin(
        self, frames: _native.Frames, loop: int | None, comment: str, warnings: Sequence[str] = ()
    ) -> None:
        self._frames = frames
        self.loop = loop
        self.comment = comment
        self.warnings = tuple(warnings)

    @classmethod
    def _of(cls, frames: _native.Frames, *rest: Any) -> Animation:
        animation = cls.__new__(cls)
        animation._begin(frames, *rest)
        return animation

    @classmethod
    def open(cls, file: _files.ReadableFile, *, strict: bool = False) -> Animation:
        """Read an animation: a GIF, an animated PNG or WebP; a still picture has one frame.

        Parameters
        ----------
        file : path, binary file or bytes
        strict : bool
            Refuse a damaged file, instead of showing what can be decoded; `warnings` tells what is wrong with it.

        Raises
        ------
        OSError
            When the file cannot be read.
        ValueError
            When it holds no picture.
        """
        images, delays, loop, comment, warnings = _native.decode_animation(_files.read(file), strict)
        return cls._of(_native.stored_frames(images, delays), loop, comment, warnings)

    def encode(
        self,
        *,
        optimize: bool = True,
        dither: str = "none",
        palette: str = "shared",
        progress: Progress | None = None,
    ) -> bytes:
        """The bytes of a GIF; the parameters are those of `save`."""
        return self._frames.encode(self.loop, self.comment, dither, optimize, palette, progress)

    def save(
        self,
        file: _files.WritableFile,
        *,
        optimize: bool = True,
        dither: str = "none",
        palette: str = "shared",
        progress: Progress | None = None,
    ) -> None:
        """Write a GIF.

        Parameters
        ----------
        file : path or binary file
            A path gets the whole file, or keeps what it had.
        optimize : bool
            Store of each frame only what changes, and equal frames once; else each of them whole.
        dither : str
            How to show more colours than a palette has; `dithers` lists the ways.
        palette : {"shared", "frame"}
            One palette for all frames: exact if all have 256 colours together, else the best one. Or a palette for each
            frame, which is exact as long as no frame changes more than 256 colours.
        progress : callable, optional
            Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised and nothing is
            written.

        Raises
        ------
        OSError
            When the file cannot be written.
        ValueError
            For other names than these, and for a frame of too many colours with ``palette="frame"``.
        """
        data = self.encode(optimize=optimize, dither=dither, palette=palette, progress=progress)
        _files.write(file, data)

    @property
    def size(self) -> tuple[int, int]:
        """Width and height in pixels."""
        return self._frames.size

    @property
    def delays(self) -> tuple[int, ...]:
        """How long each frame shows, in milliseconds."""
        return tuple(10 * delay for delay in self._frames.delays)

    @property
    def duration(self) -> int:
        """How long it lasts, in milliseconds."""
        return sum(self.delays)

    @property
    def frames(self) -> list[Image]:
        """All frames, rendered."""
        return list(self)

    def __len__(self) -> int:
        return len(self._frames)

    def __iter__(self) -> Iterator[Image]:
        return (self._frames.render(i) for i in range(len(self)))

    @overload
    def __getitem__(self, index: int) -> Image: ...
    @overload
    def __getitem__(self, index: slice) -> list[Image]: ...
    def __getitem__(self, index: int | slice) -> Image | list[Image]:
        if isinstance(index, slice):
            return [self._frames.render(i) for i in range(len(self))[index]]
        return self._frames.render(range(len(self))[index])

    def __reduce__(self) -> tuple[Any, ...]:
        state = (self.frames, list(self._frames.delays), self.loop, self.comment, self.warnings)
        return _restored, state

    def __repr__(self) -> str:
        width, height = self.size
        return f"<dibkit.Animation {width}x{height}, {len(self)} frames, {self.duration} ms>"

    def _repr_mimebundle_(self, include: Any = None, exclude: Any = None) -> dict[str, Any]:
        """For notebooks, which show it as a moving picture."""
        import base64

        return {"image/gif": base64.b64encode(self.encode()).decode()}


def _restored(frames: list[Image], delays: list[int], *rest: Any) -> Animation:
    return Animation._of(_native.stored_frames(frames, delays), *rest)


def transition(
    first: Picture,
    second: Picture,
    effect: str = "fade",
    *,
    more: Sequence[Picture] = (),
    style: str | None = None,
    frames: int = 20,
    delay: float = 50,
    hold: float = 800,
    easing: str | Callable[[float], float] = "linear",
    reverse: bool = False,
    back: bool = False,
    size: tuple[int, int] | None = None,
    fit: str = "contain",
    background: Colour = (0, 0, 0),
    matte: Colour | None = None,
    loop: int | None = 0,
    comment: str = "",
) -> Animation:
    """The transition from a picture to the next.

    Parameters
    ----------
    first, second : pictures
        What `as_image` takes.
    more : sequence of pictures
        Those to go on to.
    effect, style : str
        By name, or by number; `effects` lists them. None is the effect's default style.
    frames : int
        Steps from one picture to the next, 1 to 1000.
    delay, hold : float
        How long a step and a picture show, in milliseconds.
    easing : str or callable
        How it moves: a name that `easings` lists, "cubic-bezier(x1, y1, x2, y2)", or a function of the elapsed share of
        the time, 0 to 1, that gives the progress.
    reverse : bool
        Play the effect backwards: the old picture leaves as a new one would come.
    back : bool
        Return to the first picture in the end, so that the animation repeats without a jump.
    size : (int, int), optional
        Width and height in pixels; else those of the first picture.
    fit : str
        How pictures of another shape fill it; `fits` lists the ways.
    background, matte : colour
        Beside a picture that does not fill the size, and behind transparent pixels; without a matte they stay so.
    loop, comment
        As for `Animation`.

    Returns
    -------
    Animation
        Saved, it has the same bytes as the one that ``dibkit transition`` makes.

    Raises
    ------
    OSError, ValueError
        For a picture that cannot be read, and for a name that does not exist; the message tells the nearest one.
    """
    images = [as_image(picture) for picture in (first, second, *more)]
    made = _native.transition_frames(
        images, effect, style or "", frames, delay, hold, easing, reverse, back, size, fit, background, matte
    )
    return Animation._of(made, loop, comment)


def ripple(
    picture: Picture,
    *,
    frames: int = 40,
    delay: float = 60,
    drops: int = 8,
    seed: int = 1,
    size: tuple[int, int] | None = None,
    loop: int | None = 0,
    comment: str | None = None,
) -> Animation:
    """Drops that fall on a picture as if it were water.

    Parameters
    ----------
    picture : picture
        What `as_image` takes.
    frames : int
        Stages of the water, 1 to 1000.
    delay : float
        Of each, in milliseconds.
    drops : int
        How many fall, at random places; 0 for a grid of them, 100 pixels apart.
    seed : int
        Chooses the places.
    size, loop
        As for `transition`.
    comment : str, optional
        None for one that tells drops and seed, as ``dibkit ripple`` stores it.
    """
    if comment is None:
        comment = f"dibkit ripple --drops {drops} --seed {seed}" if drops > 0 else ""
    return Animation._of(_native.ripple_frames(as_image(picture), frames, delay, drops, seed, size), loop, comment)


def optimize(
    file: _files.ReadableFile, *, strip: bool = False, strict: bool = False, progress: Progress | None = None
) -> bytes:
    """A GIF as a smaller one that shows the same, pixel for pixel and in time.

    Parameters
    ----------
    file : path, binary file or bytes
    strip : bool
        Leave out comments and what applications keep in it.
    strict, progress
        As for `Animation.open` and `Animation.save`.

    Returns
    -------
    bytes
        The file itself if it cannot be made smaller.
    """
    data, _ = _native.optimize_bytes(_files.read(file), strict, strip, progress)
    return data


def info(file: _files.ReadableFile, *, strict: bool = False) -> dict[str, Any]:
    """What is in a picture or an animation, as viewers show it.

    Returns
    -------
    dict
        format, bits, size, palette_entries, colours, transparency ("none", "transparent" or "translucent"), frames,
        shortest_delay, longest_delay and duration in milliseconds, loop, warnings. Any number of frames will do: one is
        held at a time.
    """
    return _native.summary_of(_files.read(file), strict)
