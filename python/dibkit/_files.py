"""Bytes from and to files: paths, binary file objects, or bytes themselves."""

from __future__ import annotations

import os
import tempfile
from pathlib import Path
from typing import Any, BinaryIO, Union

PathLike = Union[str, "os.PathLike[str]"]
ReadableFile = Union[PathLike, BinaryIO, bytes, bytearray, memoryview]
WritableFile = Union[PathLike, BinaryIO]


def read(file: ReadableFile) -> Any:
    """All bytes of a file; `file` itself if it is bytes."""
    if isinstance(file, (bytes, bytearray, memoryview)):
        return file
    if isinstance(file, (str, os.PathLike)):
        return Path(file).read_bytes()
    if hasattr(file, "read"):
        return file.read()
    raise TypeError(f"a path, a binary file or bytes are needed, not {type(file).__name__}")


def write(file: WritableFile, data: bytes) -> None:
    """Write a whole file. A path gets all of it or keeps what it had."""
    if not isinstance(file, (str, os.PathLike)):
        if not hasattr(file, "write"):
            raise TypeError(f"a path or a binary file is needed, not {type(file).__name__}")
        file.write(data)
        return
    target = Path(file)
    if target.exists() and not target.is_file():
        target.write_bytes(data)  # a device, or a folder, which raises
        return
    target = target.resolve()
    descriptor, name = tempfile.mkstemp(dir=target.parent, prefix=f".{target.name}.")
    try:
        with os.fdopen(descriptor, "wb") as temporary:
            temporary.write(data)
        os.chmod(name, target.stat().st_mode & 0o777 if target.exists() else 0o666 & ~_umask())
        os.replace(name, target)
    except BaseException:
        os.unlink(name)
        raise


def _umask() -> int:
    mask = os.umask(0o077)
    os.umask(mask)
    return mask


def format_of(file: WritableFile) -> str:
    """The format that the ending of a path names; "png" for a file object."""
    if not isinstance(file, (str, os.PathLike)):
        return "png"
    ending = Path(file).suffix.lower()
    if ending in (".bmp", ".dib"):
        return "bmp"
    if ending in ("", ".png"):
        return "png"
    raise ValueError(f"'{Path(file).name}' cannot be written; name it .png or .bmp")
