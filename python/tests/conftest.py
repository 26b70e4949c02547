"""What several tests use."""

import os
import shutil
import subprocess
from pathlib import Path

import numpy as np
import pytest

import dibkit


def rgba(*rows):
    """An image of 32 bits from rows of (red, green, blue, alpha)."""
    return dibkit.Image.from_array(np.array(rows, np.uint8), order="rgb")


def shown(image):
    """The pixels of 24 or 32 bits as nested lists, red first."""
    parts = [image.rgb] + ([image.alpha[..., None]] if image.depth == 32 else [])
    return np.concatenate(parts, axis=2).tolist()


@pytest.fixture(scope="session")
def program():
    """Runs the command line; DIBKIT_PROGRAM says where it is."""
    path = os.environ.get("DIBKIT_PROGRAM") or shutil.which("dibkit")
    if path is None:
        pytest.skip("the command line is not built; DIBKIT_PROGRAM says where it is")

    def run(*arguments):
        return subprocess.run([Path(path).resolve(), *map(str, arguments)], check=True, capture_output=True).stdout

    return run
