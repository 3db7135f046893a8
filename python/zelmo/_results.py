"""Numbers of a stack."""

from __future__ import annotations

from typing import Any, List, NamedTuple, Optional, Tuple

import numpy as np


class Part(NamedTuple):
    """A layer at some place, or the gap between two: then `layer`, `material` and `label` are None.
    Heights are nm above the upper side that the substrate had in the beginning."""

    layer: Optional[int]
    material: Optional[str]
    label: Optional[str]
    start: float
    end: float

    @property
    def thickness(self) -> float:
        """nm"""
        return self.end - self.start


class SectionLayer(NamedTuple):
    """A layer along a cut, (n,) float64 each: nm above the upper side that the substrate had in the
    beginning."""

    number: int
    material: str
    label: str
    color: Tuple[float, float, float]
    alpha: float
    bottom: np.ndarray
    top: np.ndarray


class Section:
    """The stack along a cut. Between neighbouring ones of its n points every surface is straight."""

    def __init__(self, core: Any):
        self._core = core

    @property
    def along(self) -> np.ndarray:
        """(n,) float64, um from the beginning of the cut"""
        return self._core.along()

    @property
    def x(self) -> np.ndarray:
        """(n,) float64, um in the layout"""
        return self._core.x()

    @property
    def y(self) -> np.ndarray:
        """(n,) float64, um in the layout"""
        return self._core.y()

    @property
    def layers(self) -> List[SectionLayer]:
        """The lowest first."""
        return [SectionLayer(*layer) for layer in self._core.layers()]

    def csv(self) -> str:
        """The text of the file that `zelmo-batch --cut` writes."""
        return self._core.csv()

    def svg(self, stretch: float = 1.0) -> str:
        """The text of the picture that `zelmo-batch --cut` draws of this step alone; `stretch`
        stretches heights."""
        if not stretch > 0:
            raise ValueError("stretch: a number above 0")
        return self._core.svg(float(stretch))

    def _repr_svg_(self) -> str:
        return self.svg()
