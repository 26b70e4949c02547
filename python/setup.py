"""The wheel of dibkit: the modules in Python and the extension that CMake builds.

CMake's folder is build/python of the sources; CMAKE_ARGS adds options to its configuration.
"""

import os
import re
import shlex
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCES = Path(__file__).resolve().parent.parent
BUILD = SOURCES / "build" / "python"
OPTIONS = [
    "-DDIBKIT_PYTHON=ON",
    "-DDIBKIT_SHARED=OFF",  # the extension holds the library
    "-DDIBKIT_TOOLS=OFF",
    "-DDIBKIT_TESTS=OFF",
    "-DDIBKIT_EXAMPLES=OFF",
    "-DDIBKIT_INSTALL=OFF",
]


class CMakeBuild(build_ext):
    def build_extension(self, ext: Extension) -> None:
        options = OPTIONS + [f"-DPython_EXECUTABLE={sys.executable}"]
        options += shlex.split(os.environ.get("CMAKE_ARGS", ""))
        subprocess.run(["cmake", "-S", SOURCES, "-B", BUILD, "-G", "Ninja", *options], check=True)
        subprocess.run(["cmake", "--build", BUILD, "--target", "dibkit_python"], check=True)
        target = Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        (built,) = (BUILD / "python" / "dibkit").glob("_native.*.so")
        self.copy_file(str(built), str(target))


def version() -> str:
    match = re.search(r"VERSION (\d+\.\d+\.\d+)", (SOURCES / "CMakeLists.txt").read_text())
    assert match
    return match[1]


setup(
    version=version(),
    packages=["dibkit"],
    package_data={"dibkit": ["py.typed", "*.pyi"]},
    ext_modules=[Extension("dibkit._native", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
)
