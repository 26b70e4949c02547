"""Regions against sets of pixels."""

import pickle

import numpy as np
from hypothesis import given
from hypothesis import strategies as some
from hypothesis.extra import numpy as arrays

import dibkit

masks = arrays.arrays(np.bool_, (6, 7))
places = some.tuples(some.integers(-3, 3), some.integers(-3, 3))


def pixels(mask, at):
    return {(int(x) + at[0], int(y) + at[1]) for y, x in np.argwhere(mask)}


@given(masks, places, masks, places)
def test_operators_are_those_of_sets(mask_a, at_a, mask_b, at_b):
    a, b = dibkit.Region.from_array(mask_a, at_a), dibkit.Region.from_array(mask_b, at_b)
    in_a, in_b = pixels(mask_a, at_a), pixels(mask_b, at_b)
    for region, expected in ((a | b, in_a | in_b), (a & b, in_a & in_b), (a - b, in_a - in_b), (a ^ b, in_a ^ in_b)):
        assert {(x, y) for y, left, right in region.spans() for x in range(left, right)} == expected
        assert region.area == len(expected) and bool(region) == bool(expected)
        assert pixels(region.to_array((20, 20), (-8, -8)), (-8, -8)) == expected
        assert all(((x, y) in region) == ((x, y) in expected) for x in range(-3, 10) for y in range(-3, 9))
        for same in (dibkit.Region.from_spans(region.spans()), pickle.loads(pickle.dumps(region))):
            assert same == region and hash(same) == hash(region)


def test_boxes_moves_and_shapes():
    region = dibkit.Region.rectangle((1, 2, 4, 6)) | dibkit.Region.rectangle((9, 9, 10, 10))
    assert region.box == (1, 2, 10, 10) and region.area == 13
    assert region.translate((-1, 5)).rectangles() == [(0, 7, 3, 11), (8, 14, 9, 15)]
    assert not dibkit.Region() and dibkit.Region().box == (0, 0, 0, 0)
    assert dibkit.Region.polygon([(0, 0), (4, 0), (4, 4), (0, 4)]).area == 16
    assert (2, 0) in dibkit.Region.ellipse((0, 0, 5, 5)) and (0, 0) not in dibkit.Region.ellipse((0, 0, 5, 5))
