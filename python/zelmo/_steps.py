"""Steps: those that a process is made of in Python, and those of a run."""

from __future__ import annotations

from typing import Any, Dict, List, NamedTuple, Optional


class Note(NamedTuple):
    """Something that is probably not meant, though it can be run."""

    kind: str
    #: in which it is to be mended
    file: str
    #: of the file; 0: the file as a whole
    line: int
    text: str


def _value_text(value: Any) -> str:
    if isinstance(value, (list, tuple)):
        return " ".join(_value_text(part) for part in value)
    return repr(float(value)) if isinstance(value, float) else str(value)


class Step:
    """A line of a process file: the command's word and its arguments, each by its name without the
    "-". True stands for an argument without a value, None or False for one that is left out, a list
    or tuple for several values:

        Step("deposition", name="Oxide", type="oxide", thickness=500, color=(200, 200, 255))
        Step("settings", version=4, N=300, legend=True)

    What is wrong with it is told when a run is made of it, as with any process file.
    """

    def __init__(self, command: str, **arguments: Any):
        self.command = command
        self.arguments: Dict[str, Any] = dict(arguments)

    def __str__(self) -> str:
        words = [self.command]
        for name, value in self.arguments.items():
            if value is None or value is False:
                continue
            words.append("-" + name)
            if value is not True:
                words.append(_value_text(value))
        line = " ".join(words)
        if "\n" in line or "\r" in line or "\0" in line:
            raise ValueError(f"a step is one line: {line!r}")
        return line

    def __repr__(self) -> str:
        values = "".join(f", {name}={value!r}" for name, value in self.arguments.items())
        return f"Step({self.command!r}{values})"

    def __eq__(self, other: object) -> bool:
        return (isinstance(other, Step) and self.command == other.command
                and self.arguments == other.arguments)

    __hash__ = None  # type: ignore[assignment]


class StepInfo:
    """A step of a run, and what is known of it so far."""

    __slots__ = ("number", "name", "kind", "line", "arguments", "_run")

    def __init__(self, run: Any, number: int, name: str, kind: str, line: int,
                 arguments: Dict[str, str]):
        #: in the run, from 1, the substrate's, on
        self.number: int = number
        #: as it stands in the names of pictures
        self.name: str = name
        #: the command that makes it; "substrate" for the first
        self.kind: str = kind
        #: of the process; 0: of none
        self.line: int = line
        #: as they stand in the process, variables replaced: "-thickness" -> "500"
        self.arguments: Dict[str, str] = arguments
        self._run = run

    @property
    def executed(self) -> bool:
        """Whether the run stands behind this step."""
        return self._run.done() >= self.number

    @property
    def seconds(self) -> Optional[float]:
        """What it took; None until it is executed."""
        return self._run.step_done(self.number - 1)[0] if self.executed else None

    @property
    def notes(self) -> List[Note]:
        """What is probably not meant in it; none until it is executed."""
        if not self.executed:
            return []
        return [Note(*note) for note in self._run.step_done(self.number - 1)[1]]

    def __repr__(self) -> str:
        return f"<step {self.number} {self.name!r}, {self.kind}, line {self.line}>"
