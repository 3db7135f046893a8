"""Layouts."""

from __future__ import annotations

import itertools
import os
from typing import Iterable, List, NamedTuple, Optional, Sequence, Tuple, Union

import numpy as np

from . import _zelmo

LayerName = Union[int, Tuple[int, int]]


class Polygon(NamedTuple):
    """A polygon as it lies in a cell, with all that the placements above it did to it."""

    layer: int
    datatype: int
    #: (n, 2) float64, um: the corners, without the first one again at the end
    points: np.ndarray


def _cell_bytes(name: str) -> bytes:
    return name.encode("utf-8", "surrogateescape")


def _pairs(layers: Optional[Iterable[LayerName]]) -> Optional[List[Tuple[int, int]]]:
    if layers is None:
        return None
    if isinstance(layers, int):
        layers = [layers]
    return [(layer, -1) if isinstance(layer, int) else (int(layer[0]), int(layer[1]))
            for layer in layers]


class Layout:
    """A GDSII layout, read whole. It never changes, so that runs and threads can share it.

    `repair` reads paths that would be refused for their shape as what they mean, and skips
    references to cells that are not there; `repairs` tells what became of that. Raises LayoutError.
    """

    def __init__(self, path: Union[str, os.PathLike], repair: bool = False):
        self._path = os.fspath(path)
        self._repair = bool(repair)
        self._core = _zelmo.Layout(os.fsencode(self._path), self._repair)
        self._digest: Optional[str] = None

    @property
    def path(self) -> str:
        """The file, as it was named."""
        return os.fsdecode(self._path)

    @property
    def cells(self) -> List[str]:
        """The names of all cells, in the order of the file."""
        return self._core.cells()

    @property
    def top_cells(self) -> List[str]:
        """The names of the cells that no other cell refers to."""
        return self._core.top_cells()

    @property
    def um_per_unit(self) -> float:
        """The database unit in um."""
        return self._core.um_per_unit()

    @property
    def repairs(self) -> List[str]:
        """A line for each kind of repair that was made."""
        return self._core.repairs()

    def layers(self, cell: str) -> List[Tuple[int, int]]:
        """The layers and datatypes that a cell and all below it draw on, sorted. KeyError where
        there is no such cell."""
        return self._core.layers(_cell_bytes(cell))

    def box(self, cell: str, layers: Optional[Iterable[LayerName]] = None
            ) -> Optional[Tuple[float, float, float, float]]:
        """The box around what a cell and all below it draw, in um: x and y of its lower left and of
        its upper right corner. None where nothing is drawn. `layers` are numbers, which stand for
        all datatypes, and pairs of layer and datatype."""
        return self._core.box(_cell_bytes(cell), _pairs(layers))

    def polygons(self, cell: str, layers: Optional[Iterable[LayerName]] = None,
                 window: Optional[Sequence[float]] = None) -> List[Polygon]:
        """The polygons of a cell and of all below it; with a window (x, y, width, height in um)
        those whose boxes overlap it, whole. Paths are polygons here."""
        box = None if window is None else [
            float(value) for value in itertools.islice(window, 5)]
        if box is not None and len(box) != 4:
            raise ValueError("window: four numbers, x, y, width and height in um")
        return [Polygon(*found) for found in
                self._core.polygons(_cell_bytes(cell), _pairs(layers), box)]

    def __repr__(self) -> str:
        return f"<zelmo.Layout {self.path!r}>"

    def __reduce__(self):
        return (Layout, (self._path, self._repair))

    def _file_digest(self) -> str:
        """SHA-256 of the file."""
        if self._digest is None:
            digest = _zelmo.file_digest(os.fsencode(self._path))
            if digest is None:
                raise OSError(f"the layout {self.path} cannot be read for its digest")
            self._digest = digest
        return self._digest
