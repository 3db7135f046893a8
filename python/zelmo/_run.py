"""Runs."""

from __future__ import annotations

import itertools
import json
import os
from pathlib import Path
from typing import Any, Dict, Iterator, List, Mapping, Optional, Sequence, Tuple, Union

import numpy as np

from . import _zelmo
from ._data import data_file_digest, data_folders
from ._errors import StateError
from ._layout import Layout
from ._picture import Picture, Report, extension_of, view_of, write_whole
from ._results import Part, Section
from ._stack import Cover, Layer, Layers
from ._state import RunState
from ._steps import Note, Step, StepInfo, _value_text

PathLike = Union[str, os.PathLike]
Process = Union[str, os.PathLike, Sequence[Step]]


def _read_process(process: Process, name: Optional[str]) -> Tuple[bytes, bytes]:
    """The text of a process, and its name."""
    if isinstance(process, str) and "\n" in process:
        return process.encode("utf-8", "surrogateescape"), os.fsencode(name or "<process>")
    if isinstance(process, (str, bytes, os.PathLike)):
        return Path(os.fsdecode(process)).read_bytes(), os.fsencode(name or process)
    lines = []
    for step in process:
        if not isinstance(step, (Step, str)):
            raise TypeError(f"process: a path, a text or a list of zelmo.Step, not {step!r}")
        lines.append(str(step))
    return ("\n".join(lines) + "\n").encode("utf-8"), os.fsencode(name or "<process>")


def _window(window: Any) -> Any:
    if window is None or isinstance(window, str):
        return window
    values = [float(value) for value in itertools.islice(window, 5)]
    if len(values) != 4 or not all(np.isfinite(values)):
        raise ValueError("window: four numbers, x, y, width and height in um, or \"fit\" or "
                         "\"fit:MARGIN\"")
    return values


class Run:
    """A process on a layout, executed step by step.

    `layout` is a Layout or the path of one. `process` is the path of a process file, the text of
    one (a str with a line end in it), or a list of Step. `set` replaces ${NAME} in it. `cell`,
    `window`, `columns` and `angle` stand in place of what the process says: the window in um, as
    x, y, width and height, or "fit" or "fit:0.5" for what the masks need with a margin around it.
    `dumps` is the folder that `dump` steps write to; without one they write nothing. `name` is what
    errors and notes call a process that is no file.

    All files are read here, and nothing is executed. Raises LayoutError, ProcessError, and OSError
    where the process file cannot be read.

    A run is executed by one thread at a time (RuntimeError otherwise); it can be read at any time,
    and then stands behind its last whole step.
    """

    def __init__(self, layout: Union[Layout, PathLike], process: Process, *,
                 set: Optional[Mapping[str, Any]] = None, cell: Optional[str] = None,
                 window: Any = None, columns: Optional[int] = None, angle: Optional[float] = None,
                 dumps: Optional[PathLike] = None, name: Optional[str] = None):
        if not isinstance(layout, Layout):
            layout = Layout(layout)
        text, file = _read_process(process, name)
        values = {key: _value_text(value) for key, value in (set or {}).items()}
        self._layout = layout
        self._process = (text, file)
        self._core = _zelmo.Run(layout._core, text, file, data_folders(), values,
                                None if cell is None else cell.encode("utf-8", "surrogateescape"),
                                _window(window), columns, angle)
        self._core.set_dumps(None if dumps is None else os.fsencode(dumps))
        self._steps: Optional[Tuple[StepInfo, ...]] = None

    # What it consists of

    @property
    def layout(self) -> Layout:
        """The layout."""
        return self._layout

    @property
    def steps(self) -> Tuple[StepInfo, ...]:
        """All steps, executed or not, the substrate first."""
        if self._steps is None:
            self._steps = tuple(StepInfo(self._core, *self._core.step_facts(index))
                                for index in range(self._core.step_count()))
        return self._steps

    @property
    def notes(self) -> List[Note]:
        """What is probably not meant in the layout and in the process; steps have notes of their
        own."""
        return [Note(*note) for note in self._core.notes()]

    @property
    def settings(self) -> Dict[str, Any]:
        """cell; columns and rows of the grid, spacing in um between its cells; window (x, y, width,
        height) in um; angle of the camera in degrees; unit ("um" or "nm") of the process's lengths
        in the layout."""
        return self._core.settings()

    @property
    def fingerprints(self) -> Tuple[bytes, ...]:
        """32 bytes for each step. Those of two runs are equal up to a step exactly where their
        stacks agree up to it by what they come from: grid, window, steps and polygons of masks. The
        same in every process and on every machine with one version of Zelmo."""
        return self._core.fingerprints()

    def choose(self, steps: str) -> List[int]:
        """The indices of the steps that a list chooses, as `zelmo-batch --steps` has it: numbers, 1
        the substrate's, ranges such as "3-7", "first", "last", commands such as "photo", names of
        the process. ValueError where it fits none."""
        return self._core.choose(steps.encode("utf-8", "surrogateescape"))

    # Executing

    @property
    def done(self) -> int:
        """The steps that were executed."""
        return self._core.done()

    @property
    def finished(self) -> bool:
        """Whether all steps were."""
        return self._core.done() == self._core.step_count()

    def step(self) -> Optional[StepInfo]:
        """Executes the next step and returns it; None where there is none. Ctrl-C ends it within
        0.2 s with KeyboardInterrupt: the run stands behind the last whole step then."""
        if self.finished:
            return None
        self._core.step()
        return self.steps[self._core.done() - 1]

    def __iter__(self) -> Iterator[StepInfo]:
        """Executes the steps that are left, one after the other."""
        while (step := self.step()) is not None:
            yield step

    def run(self, until: Union[None, int, str] = None) -> "Run":
        """Executes to the end, or to the end of a step: its number, or a list that chooses steps
        (Run.choose), of which the last counts. Does nothing where the run stands there or beyond.
        Returns the run."""
        last = self._core.step_count()
        if isinstance(until, str):
            last = self.choose(until)[-1] + 1
        elif until is not None:
            if not 1 <= until <= last:
                raise ValueError(f"until: there is no step {until}; they are numbered from 1, the "
                                 f"substrate, to {last}")
            last = int(until)
        while self._core.done() < last:
            self._core.step()
        return self

    def stop(self) -> None:
        """Ends the step that another thread executes, with Stopped there."""
        self._core.stop()

    def copy(self) -> "Run":
        """A run that stands where this one does and goes its own way from here. It shares the
        surfaces that neither has rewritten, so that it costs next to nothing."""
        copy = object.__new__(Run)
        copy._layout = self._layout
        copy._process = self._process
        copy._core = self._core.copy()
        copy._steps = None
        return copy

    __copy__ = copy

    def __deepcopy__(self, memo: Any) -> "Run":
        return self.copy()

    def __reduce__(self):
        raise TypeError("a run is not pickled: pickle Run.state() and give it to Run.restore() of a "
                        "run that was made in the same way")

    def adopt(self, other: "Run") -> "Run":
        """Goes on behind the last executed step of another run, whose fingerprint there is to be
        this run's (ValueError). Shares the surfaces. Returns the run."""
        if not isinstance(other, Run):
            raise TypeError("adopt takes a Run; Run.restore takes a RunState")
        self._core.adopt(other._core)
        return self

    def state(self) -> RunState:
        """Where the run stands, for pickle and for `restore`. Nothing is copied."""
        done = self._core.done()
        if done == 0:
            raise StateError("there is no state before the first step was executed")
        values = self._core.state()
        return RunState(self._core.fingerprints()[len(values[2]) - 1], values)

    def restore(self, state: RunState) -> "Run":
        """Goes on where another run stood, maybe in another process. StateError where the state is
        of a run that differs from this one before that, or is damaged. Copies the surfaces. Returns
        the run."""
        if not isinstance(state, RunState) or not isinstance(state._values, tuple):
            raise TypeError("restore takes a RunState")
        self._core.restore(state._values, state.fingerprint)
        return self

    # The stack

    @property
    def layers(self) -> Layers:
        """The layers of the present stack."""
        return Layers([Layer(*layer) for layer in self._core.layers()])

    @property
    def cover(self) -> Cover:
        """What is exposed of the present stack."""
        return Cover(*self._core.cover())

    @property
    def x(self) -> np.ndarray:
        """(columns,) float64, um: the places of the grid's columns in the layout"""
        return self._core.axes()[0]

    @property
    def y(self) -> np.ndarray:
        """(rows,) float64, um: the places of the grid's rows in the layout"""
        return self._core.axes()[1]

    @property
    def inside(self) -> Tuple[slice, slice]:
        """Rows and columns of the grid that lie in the window; the grid overhangs it by a tenth on
        each side."""
        left, low, width, height = self._core.settings()["window"]
        x, y = self._core.axes()
        return (slice(int(np.searchsorted(y, low)), int(np.searchsorted(y, low + height, "right"))),
                slice(int(np.searchsorted(x, left)),
                      int(np.searchsorted(x, left + width, "right"))))

    @property
    def substrate_top(self) -> float:
        """um: the height from which the nm of probes, sections and summaries are counted"""
        return self._core.substrate_top()

    @property
    def nbytes(self) -> int:
        """The bytes of the present surfaces and of the cover map."""
        return self.state().nbytes if self.done else 0

    # Numbers

    def probe(self, x: float, y: float) -> List[Part]:
        """What lies above a place of the layout, the uppermost first, heights in nm. The place is in
        the unit of the process (`settings`), as with `zelmo-batch --probe`. ValueError outside of
        the window."""
        return [Part(*part) for part in self._core.probe(float(x), float(y))]

    def section(self, x0: float, y0: float, x1: float, y1: float) -> Section:
        """The stack along a line between two places in the unit of the process, as with
        `zelmo-batch --cut`. ValueError outside of the window."""
        return Section(self._core.section([float(x0), float(y0), float(x1), float(y1)]))

    def numbers(self) -> List[Dict[str, Any]]:
        """What the layers of the present stack measure in the window, the lowest first: the
        `layers` of a step in the summary."""
        steps = json.loads(self._core.summary([]))["steps"]
        return steps[-1]["layers"] if steps else []

    def summary(self) -> Dict[str, Any]:
        """What the file of `zelmo-batch --summary` tells, of the steps so far, with the layers of
        the last one. OSError where the layout is not there any more, of which it has the digest."""
        text, name = self._process
        inputs = [["layout", os.fsencode(self._layout.path), self._layout._file_digest()],
                  ["process", name, _zelmo.text_digest(text)],
                  ["colors", b"colors.txt", data_file_digest("colors.txt")]]
        return json.loads(self._core.summary(inputs))

    # Pictures, models, pages

    def picture(self, path: Optional[PathLike] = None, *, width: int = 1920, smooth: bool = False,
                title: bool = False, scale: bool = False, transparent: bool = False,
                crop: bool = False, view: Optional[Sequence[float]] = None, parallel: bool = False,
                thin: float = 0.0, overwrite: bool = True) -> Picture:
        """The picture of the present stack, saved as a file (.png, .bmp) where a path is given.
        The choices are those of `zelmo-batch`: `width` in pixels (320 to 16384), `view` as azimuth
        and elevation in degrees, `thin` in nm. Raises PictureError."""
        if not 320 <= width <= 16384:
            raise ValueError("width: a whole number of pixels from 320 to 16384")
        if not 0 <= thin <= 1e6:
            raise ValueError("thin: nm from 0 to 1000000")
        picture = Picture(self._core.picture(width, smooth, title, scale, transparent, crop,
                                             view_of(view, parallel), float(thin)))
        if path is not None:
            picture.save(path, overwrite)
        return picture

    def _repr_png_(self) -> Optional[bytes]:
        return self.picture().png() if self.done else None

    def export(self, path: PathLike, tolerance: float = 0.1, overwrite: bool = False) -> None:
        """Writes a 3D model of the present stack, .glb or .stl; `tolerance` in nm. Raises
        ModelError, and FileExistsError unless a file may be replaced."""
        if not 0 <= tolerance <= 1e6:
            raise ValueError("tolerance: nm from 0 to 1000000")
        content = self._core.model(extension_of(path), float(tolerance))
        write_whole(path, content, overwrite)

    def report(self, path: Optional[PathLike] = None, *, steps: str = "", columns: int = 200,
               pictures: bool = True, overwrite: bool = True) -> Report:
        """The page of the steps so far, or of those that a list chooses (`choose`), with a model of
        `columns` columns at most. Executes the process once more, up to the present step, to take
        them: the run itself stays where it is."""
        if not 2 <= columns <= 2000:
            raise ValueError("columns: a whole number from 2 to 2000")
        chosen = frozenset(self.choose(steps) if steps else range(len(self.steps)))
        maker = _zelmo.PageMaker(self._core, columns)
        again = self._core.fresh()
        for index in range(self.done):
            again.step()
            if index in chosen:
                drawn = (again.picture(1920, False, False, False, False, False, None, 0.0)
                         if pictures else None)
                maker.take(again, drawn)
        report = Report(maker.html(again))
        if path is not None:
            report.save(path, overwrite)
        return report

    def __repr__(self) -> str:
        settings = self.settings
        return (f"<zelmo.Run {os.fsdecode(self._process[1])!r} on {settings['cell']!r}: step "
                f"{self.done} of {len(self.steps)}, {settings['columns']} x {settings['rows']}>")
