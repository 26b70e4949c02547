"""The module as a whole: nothing of the library is left out, stubs and page are those of the module, calls are cheap."""

import subprocess
import sys
import timeit
from pathlib import Path

import pytest

import dibkit

PYTHON = Path(__file__).resolve().parent.parent


@pytest.mark.parametrize("script", ["stubs", "names"])
def test_what_is_written_from_the_module_is_up_to_date(script):
    folder = Path(dibkit.__file__).parent.parent
    subprocess.run([sys.executable, PYTHON / script, folder, "--check"], check=True)


def test_everything_public_is_documented():
    for name in dibkit._native.__all__:
        member = getattr(dibkit, name)
        assert member.__doc__, name
    for name in ("composite", "fill_connected", "crop_frame"):
        text = getattr(dibkit, name).__doc__
        assert "Parameters\n----------\n" in text and "Raises\n------\n" in text and "In C++: " in text


@pytest.mark.parametrize(
    "call",
    [
        "dibkit.composite(image, image)",
        "dibkit.is_opaque(image)",
        "dibkit.fill(image, (1, 2, 3))",
        "dibkit.copy_pixels(image, image, at=(0, 0))",
        "dibkit.to_24_bits(image)",
    ],
)
def test_a_call_costs_less_than_two_microseconds(call):
    names = {"dibkit": dibkit, "image": dibkit.Image(1, 1)}
    times = timeit.repeat(call, globals=names, number=2000, repeat=25)
    assert min(times) / 2000 < 2e-6
