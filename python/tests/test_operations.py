"""Each family of operations once, against values derived by hand."""

import math

import numpy as np
import pytest
from conftest import rgba, shown

import dibkit

RED, GREEN, BLUE = (255, 0, 0), (0, 255, 0), (0, 0, 255)


def true_colour(*rows):
    return dibkit.Image.from_array(np.array(rows, np.uint8), order="rgb")


def test_conversions():
    image = true_colour([(255, 128, 7), (10, 20, 30)])
    # Five bits of each: 31, 16, 0 and 1, 2, 3.
    assert dibkit.to_16_bits(image).numpy().tolist() == [[31 << 10 | 16 << 5 | 0, 1 << 10 | 2 << 5 | 3]]
    # 0.299 * 10 + 0.587 * 20 + 0.114 * 30 = 18.15
    assert dibkit.to_grays(image).numpy()[0, 1] == 18
    assert dibkit.to_black_and_white(dibkit.to_grays(image), 19).numpy().tolist() == [[1, 0]]
    mask = np.array([[True, False]])
    assert shown(dibkit.to_32_bits(image, mask, alpha=200)) == [[[255, 128, 7, 0], [10, 20, 30, 200]]]
    assert dibkit.to_reversed_32_bits(image).numpy()[0, 0].tolist() == [0, 255, 128, 7]


def test_reductions():
    image = true_colour([RED, BLUE, RED])
    few = dibkit.to_indexes(image)
    assert few.depth == 1 and few.numpy().tolist() == [[0, 1, 0]] and few.palette.tolist() == [[*RED], [*BLUE]]
    assert dibkit.to_indexes(image, 8).depth == 8
    # Blue is not in the palette, and becomes index 0; the nearest colour is the dark blue.
    assert dibkit.reduce_to_palette(image, [GREEN, RED]).numpy().tolist() == [[1, 0, 1]]
    assert dibkit.to_nearest_colours(image, 4, [(0, 0, 200), (200, 0, 0), GREEN]).numpy().tolist() == [[1, 0, 1]]
    deep = dibkit.change_index_depth(few, 8, [BLUE, RED])
    assert deep.depth == 8 and deep.numpy().tolist() == [[1, 0, 1]]
    with pytest.raises(ValueError, match="too many"):
        dibkit.to_indexes(true_colour([RED, GREEN, BLUE]), 1)


def test_palettes():
    image = true_colour([RED, BLUE, RED])
    assert dibkit.count_colours(image) == 2
    assert dibkit.colours(image).tolist() == [[*RED], [*BLUE]]
    assert dibkit.used_indexes(dibkit.Image.from_array(np.array([[7, 3, 7]], np.uint8))) == [7, 3]
    assert dibkit.join_palettes([[RED, BLUE], np.array([BLUE, GREEN])]).tolist() == [[*RED], [*BLUE], [*GREEN]]
    few = dibkit.to_indexes(image)
    assert dibkit.change_palette(few, [BLUE, RED]).numpy().tolist() == [[1, 0, 1]]
    assert dibkit.has_palette(few, [RED, BLUE]) and not dibkit.has_palette(few, [GREEN])
    # 0.3 * 100 = 30, 0.59 * 100 = 59, 0.11 * 100 = 11
    assert dibkit.gray_palette([(100, 0, 0), (0, 100, 0), (0, 0, 100)])[:, 0].tolist() == [30, 59, 11]
    assert dibkit.gray_ramp(2).tolist() == [[0, 0, 0], [255, 255, 255]]
    assert dibkit.is_gray(dibkit.to_grays(image)) and not dibkit.is_gray(few)
    assert dibkit.nearest_index([RED, BLUE, BLUE], (0, 0, 9)) == 2
    assert dibkit.farthest_index([RED, BLUE, BLUE], RED) == 1
    halves = np.repeat(np.array([[10, 200]], np.uint8), 50, axis=0)
    assert 10 < dibkit.find_threshold(dibkit.Image.from_array(halves)) <= 200


def test_compositing():
    below = rgba([(0, 0, 0, 255)])
    above = rgba([(200, 100, 50, 128)])
    dibkit.composite(below, above)
    # 200 * 128 / 255 = 100, 50, 25
    assert shown(below) == [[[100, 50, 25, 255]]]
    assert dibkit.union_alpha(128, 128) == 255 - 127 * 127 // 255
    wide = rgba([(1, 1, 1, 255)] * 3)
    dibkit.copy_pixels(wide, above, at=(2, 0))
    dibkit.copy_pixels(wide, above, at=(-1, 0))
    assert wide.alpha.tolist() == [[255, 255, 128]]
    dibkit.erase(wide, rgba([(0, 0, 0, 255)] * 3), strength=55, coverage=np.array([[True, False, True]]))
    assert wide.alpha.tolist() == [[200, 255, 73]]
    dibkit.mix(below, rgba([(9, 8, 7, 255)]))
    assert shown(below) == [[[9, 8, 7, 255]]]


def test_merging():
    image, at = dibkit.combine(rgba([(*RED, 255)]), rgba([(*BLUE, 255)]), top_at=(-1, 0))
    assert at == (-1, 0) and shown(image) == [[[*BLUE, 255], [*RED, 255]]]
    image, at = dibkit.merge_hole(rgba([(*RED, 255), (*RED, 255)]), (1, 0, 3, 1))
    assert image.size == (3, 1) and image.alpha.tolist() == [[255, 0, 0]]
    image, at = dibkit.merge_background(rgba([(*RED, 255)]), GREEN, (0, 0, 2, 1))
    assert shown(image) == [[[*RED, 255], [*GREEN, 255]]]
    with pytest.raises(ValueError, match="larger than an image"):
        dibkit.merge(image, image, top_at=(2**31 - 1, 2**31 - 1))


def test_fills_and_wands():
    image = rgba([(*RED, 255), (*RED, 255), (*BLUE, 255), (*RED, 255)])
    assert dibkit.magic_wand(image, (0, 0)).spans() == [(0, 0, 2)]
    assert dibkit.magic_wand(image, (0, 0), connected=False).spans() == [(0, 0, 2), (0, 3, 4)]
    assert dibkit.fill_connected(image, (1, 0), GREEN) == (0, 0, 2, 1)
    dibkit.replace_colour(image, RED, (0, 0, 0))
    assert image.rgb[0].tolist() == [[*GREEN], [*GREEN], [*BLUE], [0, 0, 0]]
    dibkit.set_alpha(image, 0, region=dibkit.Region.rectangle((2, 0, 9, 9)))
    assert image.alpha.tolist() == [[255, 255, 0, 0]]
    dibkit.fill_transparent_connected(image, (3, 0), RED, alpha=9)
    assert shown(image)[0][2:] == [[*RED, 9], [*RED, 9]]
    dibkit.fill_connected(image, (0, 0), erase=True)
    assert image.alpha.tolist() == [[0, 0, 9, 9]]


def test_scaling_and_filters():
    small = rgba([(*RED, 255), (*BLUE, 255)])
    large = dibkit.Image(4, 2)
    dibkit.zoom_in(large, small, 2)
    assert large.rgb[1].tolist() == [[*RED], [*RED], [*BLUE], [*BLUE]]
    again = dibkit.Image(2, 1)
    dibkit.zoom_out(again, large, 2)
    assert again == small
    stretched = dibkit.Image(4, 2)
    dibkit.stretch_mixed(stretched, small, 2)
    assert (stretched.rgb == 254 * large.rgb.astype(int) // 254).all() or stretched == large
    speck = dibkit.Image.filled(3, 3, (0, 0, 0))
    speck.rgb[1, 1] = 255
    dibkit.median(speck)
    assert speck.rgb.max() == 0
    assert dibkit.pixelate(rgba([(40, 40, 40, 3)] * 2), 2).numpy()[0, 1].tolist() == [40, 40, 40, 255]
    dibkit.soft_erase(speck, np.ones((1, 1), bool), at=(2, 2), amount=100)
    assert speck.alpha.tolist() == [[255] * 3, [255] * 3, [255, 255, 155]]
    bordered = dibkit.Image(5, 4)
    bordered.alpha[1, 2] = 255
    assert dibkit.margins(bordered) == (2, 1, 2, 2)
    assert dibkit.trim(bordered, dibkit.margins(bordered)).size == (1, 1)
    assert dibkit.transparent_mask(bordered).sum() == 19
    assert dibkit.field_of_bits(0x7E0) == (5, 6)


def test_overlays():
    image = dibkit.Image.filled(16, 16, (7, 7, 7), alpha=0)
    dibkit.checkerboard(image, RED, BLUE)
    assert image.rgb[0, 0].tolist() == [*RED] and image.rgb[0, 8].tolist() == [*BLUE] and image.alpha.max() == 0
    line = dibkit.Image(6, 1)
    assert dibkit.draw_dashes(line, "top", 0, 5, 0, first=RED, second=BLUE) == 5
    assert line.rgb[0].tolist() == [[*BLUE]] * 3 + [[*RED]] * 3
    stroke, at = dibkit.stroke((0, 0, 20, 20), (5, 5), (10, 5), width=3)
    assert stroke.depth == 8 and stroke.numpy()[5 - at[1], 7 - at[0]] == 255 and stroke.numpy()[0, 0] == 0


def test_frames():
    gray = true_colour([(100, 100, 100), (0, 0, 0)])
    mask = np.array([[False, True]])
    # 100 * 128 / 255 = 50
    image, of_it = dibkit.fade_to_colour(gray, (0, 0, 0), 128, mask)
    assert image.colour_at((0, 0)) == (50, 50, 50) and of_it.tolist() == mask.tolist()
    # 50 % is 128 / 256 of the way from 100 to 200.
    image, _ = dibkit.fill_frame(gray, (100, 100, 100), (200, 200, 200), percent=50)
    assert image.colour_at((0, 0)) == (150, 150, 150)
    merged, holes, at = dibkit.merge_frames(true_colour([RED]), true_colour([BLUE]), at_b=(2, 0))
    assert at == (0, 0) and holes.tolist() == [[False, True, False]] and merged.colour_at((2, 0)) == BLUE
    assert dibkit.same_frame(gray, dibkit.to_32_bits(gray)) and not dibkit.same_frame(gray, gray, mask)
    piece, outside = dibkit.crop_frame(gray, dibkit.Region.from_spans([(0, 1, 2)]), mask)
    assert piece.size == (1, 1) and outside.tolist() == [[True]]
    assert dibkit.magic_wand_frame(gray, (0, 0), mask=mask, canvas=(4, 1)).box == (0, 0, 1, 1)
    filled, _ = dibkit.fill_frame_connected(gray, (1, 0), GREEN)
    assert filled.colour_at((1, 0)) == GREEN and filled.colour_at((0, 0)) == (100, 100, 100)
    noisy = true_colour(*[[(0, 0, 0)] * 3] * 3)
    noisy.rgb[1, 1] = 255
    assert dibkit.remove_noise(noisy).rgb.max() == 0


def test_changes_between_frames():
    before, after = true_colour([RED, RED, RED]), true_colour([RED, BLUE, RED])
    piece, mask, at, same = dibkit.frame_change(before, after)
    assert piece.size == (1, 1) and at == (1, 0) and mask is None and not same
    assert piece.colour_at((0, 0)) == BLUE
    assert dibkit.frame_change(before, before) is None
    with pytest.raises(ValueError, match="opaque to transparent"):
        dibkit.frame_change(before, after, mask_b=np.array([[False, True, False]]))


def test_masks():
    image = rgba([(200, 0, 0, 128), (9, 9, 9, 0)])
    flat, mask = dibkit.split_alpha(image, background=(0, 0, 0), transparent=GREEN)
    # 200 * 128 / 255 = 100
    assert shown(flat) == [[[100, 0, 0], [*GREEN]]] and mask.tolist() == [[False, True]]
    padded, around = dibkit.pad(flat, (1, 0, 0, 1), mask)
    assert around.tolist() == [[True, False, True], [True] * 3] and padded.rgb[1].max() == 0
    assert dibkit.flatten(flat, BLUE, mask).colour_at((1, 0)) == BLUE
    assert dibkit.flatten(flat, BLUE, margins=(0, 1, 0, 0)).size == (2, 2)
    assert dibkit.mark_region(mask, dibkit.Region.rectangle((0, 0, 1, 1))).all()
    assert dibkit.mark_rectangle(np.zeros((2, 2), bool), (0, 0, 1, 1), outside=True).tolist() == [
        [False, True],
        [True, True],
    ]
    assert dibkit.copy_mask(mask, np.array([[True]])).tolist() == [[True, True]]
    assert dibkit.mask_margins(around) == (1, 0, 1, 1)
    assert dibkit.opaque_region(mask).spans() == [(0, 0, 1)]


def test_lines_and_shapes():
    line = dibkit.draw_line((0, 0, 5, 3), (0, 1), (4, 1))
    assert line.numpy()[1, 1:4].tolist() == [1, 1, 1] and line.numpy()[0].max() == 0
    shape, at = dibkit.draw_shape((10, 10, 20, 20), filled=True)
    assert shape.depth == 4 and (at[0], at[1]) == (10, 10)
    assert shape.numpy()[5, 5] == 1 and shape.numpy()[0, 0] == 2
    polygon, at = dibkit.draw_polygon([(0, 0), (9, 0), (9, 9), (0, 9)])
    assert polygon.numpy()[4 - at[1], 4 - at[0]] == 1
    stroke, at = dibkit.draw_polyline((0, 0, 50, 50), np.array([(20, 20), (30, 20)]), 3)
    assert stroke.numpy()[20 - at[1], 25 - at[0]] == 0 and stroke.numpy()[0, 0] == 1


def test_water():
    picture = dibkit.lake((40, 30))
    still = picture.rgb.copy()
    water = dibkit.Ripple(picture)
    del picture
    water.flatten()
    assert (water.render().rgb == still).all()
    water.drop((20, 15), radius=5)
    assert (water.next().rgb != still).any()
    assert dibkit.ripple_picture(dibkit.dahlia((60, 40)), 4).size == (60, 40)


@pytest.mark.parametrize("effect", dibkit.effects(), ids=lambda effect: effect.name)
def test_transitions_go_from_one_picture_to_the_other(effect):
    a, b = dibkit.Image.filled(24, 16, RED), dibkit.Image.filled(24, 16, BLUE)
    for style in effect.styles or [None]:
        assert effect.frame(a, b, 0.0, style) == a
        assert effect.frame(a, b, 1.0, style) == b
    a, b = dibkit.lake((24, 16)), dibkit.to_32_bits(dibkit.to_grays(dibkit.lake((24, 16))))
    half = effect.frame(a, b, 0.5)
    assert half == effect.frame(a, b, 0.5) and half not in (a, b)
    if effect.number is not None:
        found = dibkit.effect_piece(effect.number, b, *effect.parameters(1.0, b.size))
        assert found is not None and found[1] == (0, 0, 24, 16) or effect.name == "clock"


def test_numbers_of_numpy_and_luminance():
    image = dibkit.Image(np.int64(3), np.uint8(2))
    dibkit.composite(image, image, at=np.array([1, 1]))
    assert dibkit.luminance_difference((255, 255, 255), (0, 0, 0)) == math.floor(255 * (117 + 601 + 306) / 1024)
