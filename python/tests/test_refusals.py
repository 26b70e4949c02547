"""Wrong arguments and a lack of memory: an exception with one clear sentence, never a crash."""

import subprocess
import sys
import textwrap

import numpy as np
import pytest

import dibkit

image = dibkit.Image(4, 3)
indexed = dibkit.Image(4, 3, 8)
mask = np.zeros((3, 4), bool)


@pytest.mark.parametrize(
    "error, sentence, call",
    [
        (ValueError, "1, 4, 8, 16, 24 or 32 bits", lambda: dibkit.Image(1, 1, 7)),
        (ValueError, "side below 0", lambda: dibkit.Image(-1, 1)),
        (ValueError, "more than an image can have", lambda: dibkit.Image(2**31 - 1, 2**31 - 1)),
        (ValueError, "a number from", lambda: dibkit.Image(2**70, 1)),
        (ValueError, "32 bits is needed, not of 8", lambda: dibkit.composite(image, indexed)),
        (ValueError, "at most 2 colours", lambda: dibkit.Image(1, 1, 1, colours=3)),
        (ValueError, "from 0 to 255 is needed, not 256", lambda: dibkit.composite(image, image, reduction=256)),
        (ValueError, "'#12' is no colour", lambda: dibkit.fill(image, "#12")),
        (ValueError, "from 0 to 255, not 999", lambda: dibkit.fill(image, (0, 0, 999))),
        (ValueError, "not 3 numbers", lambda: dibkit.composite(image, image, at=(1, 2, 3))),
        (ValueError, "order of the channels", lambda: dibkit.Image.from_array(np.zeros((2, 2, 3), np.uint8))),
        (ValueError, r"not \(2, 2, 5\)", lambda: dibkit.Image.from_array(np.zeros((2, 2, 5), np.uint8))),
        (ValueError, r"not \(2,\)", lambda: dibkit.Image.from_array(np.zeros(2, np.uint8))),
        (ValueError, "the mask has 2 x 2 pixels", lambda: dibkit.pad(image, (0, 0, 0, 0), np.zeros((2, 2), bool))),
        (ValueError, "seed is outside", lambda: dibkit.fill_connected(image, (4, 0), (1, 1, 1))),
        (ValueError, "do not overlap", lambda: dibkit.trim(image, (3, 0, 2, 0))),
        (ValueError, "outside the image", lambda: image.colour_at((0, 3))),
        (ValueError, "no style", lambda: dibkit.find_effect("fade").frame(image, image, 0.5, "circle")),
        (ValueError, "one size", lambda: dibkit.find_effect("fade").frame(image, dibkit.Image(1, 1), 0.5)),
        (ValueError, "spread", lambda: dibkit.transition(image, image, "spraed")),
        (ValueError, "fits", lambda: dibkit.transition(image, image, fit="fits")),
        (ValueError, "needs a frame", lambda: dibkit.Animation([])),
        (ValueError, "one size", lambda: dibkit.Animation([image, dibkit.Image(1, 1)])),
        (ValueError, "more than 256 colours", lambda: dibkit.colours(many_colours())),
        (ValueError, "Infinity|ten minutes|600,000", lambda: dibkit.Animation([image], delay=float("inf"))),
        (TypeError, "an Image is needed, not numpy.ndarray", lambda: dibkit.composite(mask, image)),
        (TypeError, "an Image is needed, not NoneType", lambda: dibkit.to_24_bits(None)),
        (TypeError, "a mask .* is needed, not list", lambda: dibkit.pad(image, (0, 0, 0, 0), [[True]])),
        (TypeError, "not an array of other numbers", lambda: dibkit.opaque_region(mask.astype(int))),
        (TypeError, "uint8 or uint16 is needed, not of float64", lambda: dibkit.Image.from_array(np.zeros((2, 2)))),
        (TypeError, "not of >u2", lambda: dibkit.Image.from_array(np.zeros((2, 2), ">u2"))),
        (TypeError, "a whole number is needed, not float", lambda: dibkit.composite(image, image, reduction=1.5)),
        (TypeError, "a Region is needed", lambda: dibkit.soft_erase(image, mask, clip=(0, 0, 1, 1))),
        (TypeError, "a function is needed", lambda: dibkit.to_24_bits(image, progress=3)),
        (TypeError, "order=", lambda: dibkit.transition(mask, mask)),
        (TypeError, "path", lambda: dibkit.Image.open(3)),
    ],
)
def test_a_sentence_says_what_is_wrong(error, sentence, call):
    with pytest.raises(error, match=sentence) as raised:
        call()
    assert "\n" not in str(raised.value)


def many_colours():
    """257 of them."""
    image = dibkit.Image(257, 1)
    image.numpy()[0, :, 0] = np.arange(257) % 256
    image.rgb[0, 256] = 1
    return image


def test_a_failing_allocation_is_a_memory_error():
    program = """
        import resource
        import dibkit
        small = dibkit.Image(9000, 9000, 8)  # 81 MB
        pages = int(open("/proc/self/statm").read().split()[0])
        limit = pages * resource.getpagesize() + (60 << 20)
        resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
        for make in (lambda: dibkit.Image(9000, 9000), lambda: dibkit.to_32_bits(small), small.copy,
                     lambda: dibkit.pad(small, (1, 1, 1, 1)), lambda: dibkit.to_16_bits(small),
                     lambda: dibkit.lake((8000, 8000)), lambda: dibkit.Image.filled(9000, 9000, (1, 2, 3))):
            try:
                make()
            except MemoryError:
                continue
            raise SystemExit("no MemoryError")
        assert dibkit.Image(10, 10).size == (10, 10)
    """
    subprocess.run([sys.executable, "-c", textwrap.dedent(program)], check=True)
