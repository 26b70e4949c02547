"""Every function with thousands of arguments of the right types and unlikely values: an exception, or a result."""

import re

import numpy as np
import pytest

import dibkit

NUMBERS = [-(2**31), -7, -1, 0, 1, 2, 3, 4, 8, 16, 24, 32, 100, 255, 256, 2**31 - 1]
NEAR = [-9, -1, 0, 1, 2, 5, 9, 40]
FAR = [*NEAR, -(2**31), 2**31 - 1]


class Anything:
    """Values for the types that signatures name."""

    def __init__(self, seed):
        self.rng = np.random.default_rng(seed)

    def one(self, values):
        return values[self.rng.integers(len(values))]

    def side(self):
        return self.one([0, 1, 3, 8, 17])

    def image(self):
        depth = self.one([1, 4, 8, 16, 24, 32, 32, 32, 32, 32])
        image = dibkit.Image(self.one([3, 3, 3, self.side()]), self.one([4, 4, 4, self.side()]), depth)
        if depth >= 8 and image.width and image.height:
            np.asarray(image)[...] = self.rng.integers(0, 4, np.asarray(image).shape) * 85
        return image

    def mask(self):
        height, width = self.one([(4, 3), (4, 3), (self.side(), self.side())])
        return self.rng.integers(0, 2, (height, width)).astype(bool)

    def numbers(self, count):
        values = self.one([[0], [0, 1], NEAR, NEAR, FAR])
        return tuple(int(self.one(values)) for _ in range(count))

    def region(self):
        return dibkit.Region.from_array(self.mask(), (self.one(NEAR), self.one(NEAR)))

    def colour(self):
        return self.one([(0, 0, 0), (255, 255, 255), (85, 170, 255)])

    def value(self, kind):
        optional = re.fullmatch(r"Optional\[(.*)\]", kind)
        if optional:
            return None if self.rng.random() < 0.5 else self.value(optional[1])
        several = re.fullmatch(r"List\[(.*)\]", kind)
        if several:
            return [self.value(several[1]) for _ in range(self.one([0, 1, 3]))]
        return {
            "Image": self.image,
            "int": lambda: int(self.one(NUMBERS)),
            "float": lambda: self.one([-1.0, 0.0, 0.3, 0.5, 1.0, 2.0, 1e9, float("nan"), float("inf")]),
            "bool": lambda: bool(self.one([True, False])),
            "str": lambda: self.one(["top", "left", "contain", "none", "diffusion", "fade", "?"]),
            "Point": lambda: self.numbers(2),
            "Size": lambda: tuple(self.one([0, 1, 3, 30, -1]) for _ in range(2)),
            "Rect": lambda: self.numbers(4),
            "Colour": self.colour,
            "Palette": lambda: [self.colour() for _ in range(self.one([0, 1, 2, 16, 256]))],
            "Mask": self.mask,
            "Coverage": lambda: None if self.rng.random() < 0.5 else self.mask(),
            "Points": lambda: [self.numbers(2) for _ in range(self.one([0, 1, 3, 6]))],
            "dibkit._native.Region": self.region,
            "Region": self.region,
            "Progress": lambda: lambda share: share < 0.5,
            "object": lambda: self.image(),
        }[kind]()


def kinds(function):
    signature = re.match(r"\w+\((.*)\) -> ", function.__doc__)[1]
    return [re.match(r"\w+: ([\w.]+(?:\[[^=]*\])?)", part)[1] for part in re.split(r", (?=\w+: )", signature) if part]


@pytest.mark.parametrize("name", [name for name in dibkit._native.__all__ if callable(getattr(dibkit, name))])
def test_any_arguments_are_harmless(name):
    function = getattr(dibkit, name)
    if isinstance(function, type):
        return
    anything = Anything(7)
    accepted = 0
    for _ in range(150):
        arguments = [anything.value(kind) for kind in kinds(function)]
        try:
            function(*arguments)
            accepted += 1
        except (ValueError, TypeError, MemoryError, dibkit.Cancelled) as error:
            assert "\n" not in str(error), error
    assert accepted > 0
