"""Where the files lie that are needed beside the code: colours, shaders, the page's script."""

from __future__ import annotations

import os
from pathlib import Path
from typing import List

from . import _zelmo


def data_folders() -> List[bytes]:
    """In the package, beside the programs of a build, or where the installed ones have them."""
    package = Path(__file__).resolve().parent
    folders = [package / "data", package.parents[1]]
    if len(package.parents) > 3:
        folders.append(package.parents[3] / "share" / "zelmo")
    return [os.fsencode(folder) for folder in folders]


def data_file(name: str) -> str:
    """The path of one of them, or where the first folder would have it."""
    folders = [Path(os.fsdecode(folder)) for folder in data_folders()]
    return str(next((folder / name for folder in folders if (folder / name).exists()),
                    folders[0] / name))


def data_file_digest(name: str) -> str:
    """SHA-256 of one of them."""
    digest = _zelmo.file_digest(os.fsencode(data_file(name)))
    if digest is None:
        raise OSError(f"the file {data_file(name)} cannot be read")
    return digest
