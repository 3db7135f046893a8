"""Zelmo: what a fabrication process does to a chip, step by step, as arrays and numbers.

    import zelmo
    run = zelmo.Run("inverter.gds", "inverter.txt", columns=300)
    for step in run:
        print(step.number, step.name, step.seconds)
    metal = run.layers["Metal1"]
    print(metal.thickness.max(), "um")

Lengths are um and arrays over the grid are (rows, columns); heights of probes, sections and
summaries are nm above the upper side that the substrate had in the beginning.
"""

from __future__ import annotations

import atexit as _atexit
from typing import Any

from . import _zelmo
from ._errors import (Error, LayoutError, ModelError, PictureError, ProcessError, StateError,
                      Stopped)
from ._layout import Layout, Polygon
from ._picture import Picture, Report
from ._results import Part, Section, SectionLayer
from ._run import Run
from ._stack import Cover, Layer, Layers
from ._state import RunState, shared_nbytes
from ._steps import Note, Step, StepInfo

__version__: str = _zelmo.version

__all__ = ["Cover", "Error", "Layer", "Layers", "Layout", "LayoutError", "ModelError", "Note",
           "Part", "Picture", "PictureError", "Polygon", "ProcessError", "Report", "Run", "RunState", "Section",
           "SectionLayer", "StateError", "Step", "StepInfo", "Stopped", "set_threads",
           "shared_nbytes", "threads"]


def threads() -> int:
    """How many threads a step uses at most in this process."""
    return _zelmo.threads()


def set_threads(count: int) -> None:
    """Sets that; 0 sets it back to the machine's cores. Results do not depend on it."""
    if count < 0:
        raise ValueError("set_threads: a whole number, 0 or more")
    _zelmo.set_threads(int(count))


def __getattr__(name: str) -> Any:
    if name == "study":
        # What it needs is large, and not wanted by those who run single processes.
        from .studies import study
        return study
    raise AttributeError(f"module 'zelmo' has no attribute {name!r}")


_atexit.register(_zelmo.wait_for_left_steps)
