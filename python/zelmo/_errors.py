"""The exceptions of the package."""

from __future__ import annotations

from typing import List, Optional, Tuple


class Error(Exception):
    """Whatever Zelmo refuses. `file` is the file that it is about and `line` its line, each None
    where there is none."""

    def __init__(self, message: str, file: Optional[str] = None, line: Optional[int] = None):
        super().__init__(message)
        self.file = file
        self.line = line

    def __reduce__(self):
        return (_revive, (type(self), self.args, self.__dict__))


def _revive(kind: type, args: tuple, state: dict) -> Error:
    error = kind.__new__(kind)
    Exception.__init__(error, *args)
    error.__dict__.update(state)
    return error


class LayoutError(Error):
    """A layout that was refused. `code` is the number of the fault, `byte` where its record begins
    and `cell` the cell that this stands in, each None where it is not known."""

    def __init__(self, message: str, file: Optional[str] = None, code: Optional[int] = None,
                 byte: Optional[int] = None, cell: Optional[str] = None):
        super().__init__(message, file)
        self.code = code
        self.byte = byte
        self.cell = cell


class ProcessError(Error):
    """A process that cannot be run. `errors` are all faults as pairs of line and text; the line is
    0 for what is about the process as a whole. `line` is that of the first."""

    def __init__(self, message: str, file: Optional[str] = None,
                 errors: Optional[List[Tuple[int, str]]] = None):
        errors = list(errors or [])
        super().__init__(message, file, (errors[0][0] or None) if errors else None)
        self.errors = errors


class StateError(Error, ValueError):
    """A state that a run cannot go on with."""


class PictureError(Error):
    """A picture that could not be made."""


class ModelError(Error):
    """A 3D model that could not be made."""


class Stopped(Error):
    """A step that another thread stopped (Run.stop)."""
