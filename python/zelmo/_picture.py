"""Pictures, models and pages."""

from __future__ import annotations

import os
import tempfile
from pathlib import Path
from typing import Any, Optional, Sequence, Tuple, Union

import numpy as np

PathLike = Union[str, os.PathLike]


def write_whole(path: PathLike, content: bytes, overwrite: bool) -> None:
    """Writes a file that is there when it is complete. OSError where it cannot be written, among
    them FileExistsError."""
    target = Path(os.fsdecode(path))
    handle, part = tempfile.mkstemp(dir=target.parent, prefix="." + target.name[:80] + ".")
    try:
        with os.fdopen(handle, "wb") as file:
            file.write(content)
        mask = os.umask(0)
        os.umask(mask)
        os.chmod(part, 0o666 & ~mask)
        if overwrite:
            os.replace(part, target)
        else:
            os.link(part, target)  # never in place of another
            os.unlink(part)
    except BaseException:
        if os.path.exists(part):
            os.unlink(part)
        raise


def extension_of(path: PathLike) -> str:
    """The extension of a file in small letters, without its dot."""
    return Path(os.fsdecode(path)).suffix[1:].lower()


def view_of(view: Union[None, Sequence[float]], parallel: bool
            ) -> Optional[Tuple[float, float, bool]]:
    """From where a picture is taken, as the compiled part takes it."""
    if view is None:
        if parallel:
            raise ValueError("parallel: only with a view")
        return None
    azimuth, elevation = (float(angle) for angle in view)
    if not (abs(azimuth) <= 360 and abs(elevation) <= 90):
        raise ValueError("view: azimuth and elevation, degrees from -360 to 360 and from -90 to 90")
    return azimuth, elevation, bool(parallel)


class Picture:
    """The picture of a stack."""

    def __init__(self, core: Any):
        self._core = core

    @property
    def pixels(self) -> np.ndarray:
        """(height, width, 4) uint8: red, green, blue and opacity, the top row first"""
        return self._core.pixels()

    def png(self) -> bytes:
        """The bytes of a PNG file, as `zelmo-batch` writes it."""
        return self._core.bytes("png")

    def save(self, path: PathLike, overwrite: bool = True) -> None:
        """Writes a file, .png or .bmp."""
        write_whole(path, self._core.bytes(extension_of(path)), overwrite)

    def _repr_png_(self) -> bytes:
        return self.png()


class Report:
    """The page of a run: one file of HTML that needs nothing else."""

    def __init__(self, html: bytes):
        #: the file's text
        self.html: str = html.decode("utf-8")

    def save(self, path: PathLike, overwrite: bool = True) -> None:
        """Writes the page."""
        write_whole(path, self.html.encode("utf-8"), overwrite)

    def _repr_html_(self) -> str:
        # In a frame of its own, so that its styles and scripts stay with it.
        page = self.html.replace("&", "&amp;").replace('"', "&quot;")
        return f'<iframe srcdoc="{page}" style="width: 100%; height: 44em; border: 0"></iframe>'

    def __repr__(self) -> str:
        return f"<zelmo.Report, {len(self.html)} characters>"
