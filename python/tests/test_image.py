"""Images: arrays that share their memory, life times, and what they are made of and become."""

import copy
import gc
import io
import pickle

import numpy as np
import PIL.Image
import pytest
from conftest import rgba
from hypothesis import given
from hypothesis import strategies as some
from hypothesis.extra import numpy as arrays

import dibkit

sides = some.integers(0, 9)
SHAPES = {
    1: (np.bool_, ()),
    8: (np.uint8, ()),
    16: (np.uint16, ()),
    24: (np.uint8, (3,)),
    32: (np.uint8, (4,)),
}


@some.composite
def pictures(draw):
    """An array that becomes an image, with any strides."""
    depth = draw(some.sampled_from(list(SHAPES)))
    dtype, channels = SHAPES[depth]
    height, width = draw(sides), draw(sides)
    array = draw(arrays.arrays(dtype, (height, width, *channels)))
    kind = draw(some.sampled_from(["plain", "mirrored", "every second", "transposed", "read-only"]))
    if kind == "mirrored":
        array = array[::-1, ::-1]
    elif kind == "every second":
        array = np.repeat(array, 2, axis=1)[:, ::2]
    elif kind == "transposed":
        array = np.asfortranarray(array)
    elif kind == "read-only":
        array.flags.writeable = False
    return depth, array


@given(pictures())
def test_an_array_becomes_an_image_and_comes_back(picture):
    depth, array = picture
    image = dibkit.Image.from_array(array, order="bgr" if depth >= 24 else None)
    assert (image.depth, image.height, image.width) == (depth, *array.shape[:2])
    back = image.numpy()
    np.testing.assert_array_equal(back.astype(bool) if depth == 1 else back, array)
    assert pickle.loads(pickle.dumps(image)) == image == copy.deepcopy(image)


def test_views_share_memory_and_show_the_channels_in_both_orders():
    image = rgba([(1, 2, 3, 4), (5, 6, 7, 8)], [(9, 10, 11, 12), (13, 14, 15, 16)])
    stored, rgb, alpha = image.numpy(), image.rgb, image.alpha
    assert stored[0, 0].tolist() == [3, 2, 1, 4]
    assert rgb[0, 0].tolist() == [1, 2, 3]
    assert alpha.tolist() == [[4, 8], [12, 16]]
    # Rows are stored from the bottom: a step down goes back in memory.
    assert stored.strides == (-8, 4, 1) and rgb.strides == (-8, 4, -1)
    address = stored.__array_interface__["data"][0]
    assert np.asarray(image).__array_interface__["data"][0] == address
    assert image.__array_interface__["data"][0] == address == image.numpy().__array_interface__["data"][0]
    assert rgb.__array_interface__["data"][0] == address + 2
    rgb[1, 1] = 0
    assert stored[1, 1].tolist() == [0, 0, 0, 16]
    dibkit.fill(image, (255, 0, 0))
    assert rgb[..., 0].min() == 255 and alpha.min() == 255


def test_a_view_outlives_its_image():
    views = []
    for i in range(20):
        image = dibkit.Image.filled(64, 64, (i, i, i))
        views.append((image.numpy(), image.rgb, memoryview(image)))
    del image
    gc.collect()
    for i, (stored, rgb, memory) in enumerate(views):
        assert stored[63, 63].tolist() == [i, i, i, 255]
        assert rgb[0, 0].tolist() == [i, i, i]
        assert memory[0, 0, 0] == i


def test_the_buffer_has_strides_or_is_refused():
    image = dibkit.Image(3, 2, 24)
    view = memoryview(image)
    assert (view.shape, view.strides, view.readonly) == ((2, 3, 3), (-12, 3, 1), False)
    with pytest.raises((BufferError, TypeError, ValueError)):
        io.BytesIO().write(image)  # wants one piece of memory, which would run past the rows
    with pytest.raises(BufferError):
        memoryview(dibkit.Image(3, 2, 4))


def test_indexes_and_palettes():
    image = dibkit.Image.from_array(np.array([[0, 1], [1, 0]], np.uint8), depth=4, palette=[(1, 2, 3), "#ff8000"])
    assert image.numpy().tolist() == [[0, 1], [1, 0]]
    assert not image.numpy().flags.writeable
    assert image.palette.tolist() == [[1, 2, 3], [255, 128, 0]]
    image.palette[0] = (9, 8, 7)
    assert image.colour_at((0, 0)) == (9, 8, 7)
    image.palette = [(0, 0, 0), (1, 1, 1)]
    assert dibkit.to_24_bits(image).rgb[0, 1].tolist() == [1, 1, 1]
    with pytest.raises(ValueError, match="2 colours, not 1"):
        image.palette = [(0, 0, 0)]
    with pytest.raises(ValueError, match="index 2"):
        dibkit.Image.from_array(np.array([[2]], np.uint8), depth=1)


def test_fields_of_16_bits():
    green = np.array([[0x07E0]], np.uint16)
    assert dibkit.to_24_bits(dibkit.Image.from_array(np.array([[0x7C1F]], np.uint16))).rgb.tolist() == [[[248, 0, 248]]]
    image = dibkit.Image.from_array(green, fields=(0xF800, 0x07E0, 0x001F))
    assert dibkit.to_32_bits(image).rgb[0, 0, 1] >= 252
    assert pickle.loads(pickle.dumps(image)) == image


@pytest.mark.parametrize("mode", ["1", "L", "P", "RGB", "RGBA"])
def test_pillow_images_come_back(mode):
    picture = dibkit.dahlia((20, 14)).to_pil().convert(mode)
    back = dibkit.Image.from_pil(picture).to_pil()
    assert back.size == picture.size
    for there in ("RGB", "RGBA"):
        assert back.convert(there).tobytes() == picture.convert(there).tobytes()


def test_files(tmp_path):
    image = dibkit.dahlia((20, 14))
    image.save(tmp_path / "a.png")
    assert dibkit.Image.open(tmp_path / "a.png") == image == dibkit.Image.open((tmp_path / "a.png").read_bytes())
    assert np.array_equal(np.asarray(PIL.Image.open(io.BytesIO(image._repr_png_()))), np.dstack((image.rgb, image.alpha)))
    image.save(tmp_path / "a.bmp")
    assert PIL.Image.open(tmp_path / "a.bmp").size == (20, 14)
    with pytest.raises(FileNotFoundError):
        dibkit.Image.open(tmp_path / "missing.png")
    with pytest.raises(OSError):
        image.save(tmp_path / "no folder" / "a.png")
    with pytest.raises(ValueError, match="cannot be written"):
        image.save(tmp_path / "a.jpg")
    with pytest.raises(ValueError):
        dibkit.Image.open(b"no picture")


@pytest.mark.parametrize("state", [b"", b"x" * 40, pickle.dumps, bytearray(40)])
def test_no_bytes_of_a_pickle_crash(state):
    image = dibkit.Image.__new__(dibkit.Image)
    with pytest.raises((ValueError, TypeError)):
        image.__setstate__(state)


@pytest.mark.parametrize("kind", [dibkit.Image, dibkit.Region, dibkit.Ripple, dibkit.Effect, dibkit._native.Frames])
def test_no_object_without_its_contents_crashes(kind):
    """Python can allocate an object without initialising it."""
    with pytest.raises((TypeError, MemoryError)):
        empty = kind.__new__(kind)
        for use in (repr, bool, np.asarray, pickle.dumps, len, lambda region: (1, 1) in region, dibkit.is_opaque):
            try:
                use(empty)
            except (TypeError, MemoryError):
                pass
        empty.next() if kind is dibkit.Ripple else repr(empty)
