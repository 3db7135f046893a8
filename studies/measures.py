"""Measures: what a study asks of each variant, an expression or a Python function."""
import dataclasses
import hashlib
import math
import os
import typing

from .errors import StudyError, did_you_mean
from .expressions import CONSTANTS, FUNCTIONS, Expression, ExpressionError
from .parameters import NAME
from .run_numbers import OFFERED_NAMES, RunNumbers

RESERVED = ("variant", "error")


class MeasureError(Exception):
    """A measure that could not be taken of a variant, in words."""


@dataclasses.dataclass(frozen=True)
class Measure:
    """A column of the results. With `after`, what it is taken of is the stack after that step."""

    name: str
    expression: str = ""
    function: typing.Any = None  # a callable, or the function's name in `source`
    source: str = ""
    file: str = ""
    after: typing.Any = None
    label: str = ""
    unit: str = ""

    @property
    def title(self):
        """What stands at an axis."""
        return f"{self.label or self.name} ({self.unit})" if self.unit else self.label or self.name

    def digest(self):
        """What the measure's numbers depend on."""
        if callable(self.function):
            facts = _facts_of(self.function)
        else:
            facts = (self.expression, self.function or "", self.source)
        text = "\0".join((*facts, str(self.after)))
        return hashlib.sha256(text.encode("utf-8", "surrogatepass")).hexdigest()


def _facts_of(function):
    """Texts that tell whether a function is still the same, in another process as well: its code and
    plain values that it brings along."""
    code = getattr(function, "__code__", function if hasattr(function, "co_code") else None)
    if code is None:
        return (getattr(function, "__module__", "") or "", getattr(function, "__qualname__", type(function).__name__))
    facts = [code.co_code.hex(), repr(code.co_names)]
    cells = [cell.cell_contents for cell in getattr(function, "__closure__", None) or () if _is_filled(cell)]
    for each in (*code.co_consts, *cells, *(getattr(function, "__defaults__", None) or ())):
        if hasattr(each, "co_code") or hasattr(each, "__code__"):
            facts.extend(_facts_of(each))
        elif isinstance(each, (int, float, str, bytes, tuple, list, dict, type(None))):
            facts.append(repr(each))
    return tuple(facts)


def _is_filled(cell):
    try:
        return cell.cell_contents is not None
    except ValueError:
        return False


def read_measures(table, parameters, folder):
    """The measures of [measures], in their order."""
    measures = []
    known = [*OFFERED_NAMES, *parameters]
    for name in table.keys():
        if not NAME.match(name):
            table.refuse(name, "a name has letters, digits and underscores")
        if name in RESERVED or name in parameters or name in OFFERED_NAMES or name in FUNCTIONS or name in CONSTANTS:
            table.refuse(name, "the name means something else already: give another one")
        measure = _read_measure(table, name, folder)
        if measure.expression:
            offered = OFFERED_NAMES if measure.after is not None else known
            try:
                Expression(measure.expression, offered)
            except ExpressionError as error:
                table.refuse(name, str(error))
        measures.append(measure)
        known.append(name)
    for name in parameters:
        if name in OFFERED_NAMES or name in FUNCTIONS or name in CONSTANTS or name in RESERVED:
            raise StudyError(f"{table.file}: [parameters] {name}: the name means something else in "
                             f"measures: give another one, with variable = \"{name}\"")
    return measures


def _read_measure(table, name, folder):
    given = table.data[name]
    if isinstance(given, str):
        return Measure(name, expression=given)
    if callable(given):
        return Measure(name, function=given)
    inner = table.table(name)
    after = inner.data.get("after")
    if isinstance(after, int) and not isinstance(after, bool):
        after = inner.whole("after", 1, 10**6)
    else:
        after = inner.text("after", "") or None
    told = {"after": after, "label": inner.text("label", ""), "unit": inner.text("unit", "")}
    if ("expression" in inner.data) == ("function" in inner.data):
        inner.refuse("", "give an expression or a function, one of them")
    if "expression" in inner.data:
        measure = Measure(name, expression=inner.text("expression"), **told)
    elif callable(inner.data["function"]):
        inner.asked.add("function")
        measure = Measure(name, function=inner.data["function"], **told)
    else:
        measure = _read_function(inner, name, folder, told)
    inner.finish()
    return measure


def _read_function(table, name, folder, told):
    given = table.text("function")
    path, colon, function = given.rpartition(":")
    if not colon or not path or not NAME.match(function):
        table.refuse("function", "it is a file and a function in it, as in \"measures.py:width\"")
    path = os.path.join(folder, path)
    try:
        with open(path, encoding="utf-8") as file:
            source = file.read()
        scope = load_functions(source, path)
    except OSError as error:
        table.refuse("function", f"{path}: {error.strerror}")
    except Exception as error:  # whatever a person's own file does
        table.refuse("function", f"{path}: {type(error).__name__}: {error}")
    if not callable(scope.get(function)):
        known = [key for key, value in scope.items() if callable(value) and not key.startswith("_")]
        table.refuse("function", f"{path} has no function {function}{did_you_mean(function, known)}")
    return Measure(name, function=function, source=source, file=path, **told)


_loaded = {}


def load_functions(source, path):
    """The names that a file of functions defines; read once a process."""
    key = (source, path)
    if key not in _loaded:
        scope = {"__name__": "study_measures", "__file__": path}
        exec(compile(source, path, "exec"), scope)  # a person's own file, which the study names
        _loaded[key] = scope
    return _loaded[key]


def take(measure, run, variant, earlier, numbers=None):
    """The measure of a run as it stands: a finite number, or None where it is none.

    `earlier`: the measures that were taken before; `numbers`: the run's RunNumbers, where several
    measures share them. Raises MeasureError with the reason.
    """
    try:
        if measure.expression:
            names = (numbers or RunNumbers(run)).names()
            if measure.after is None:
                names.update(variant)
                names.update(earlier)
            value = Expression(measure.expression, names).value(names)
        else:
            function = measure.function
            if not callable(function):
                function = load_functions(measure.source, measure.file)[function]
            value = function(run, dict(variant))
    except ExpressionError as error:
        raise MeasureError(f"{measure.name}: {error}") from None
    except MemoryError:
        raise
    except Exception as error:  # whatever a person's own function does
        raise MeasureError(f"{measure.name}: {type(error).__name__}: {error}") from None
    return _number(measure, value)


def _number(measure, value):
    if hasattr(value, "item") and getattr(value, "size", 1) == 1:
        value = value.item()
    if value is None or (isinstance(value, float) and math.isnan(value)):
        return None
    if isinstance(value, bool):
        return int(value)
    if not isinstance(value, (int, float)):
        raise MeasureError(f"{measure.name}: it comes to {type(value).__name__}, not to a number")
    if not math.isfinite(value):
        raise MeasureError(f"{measure.name}: it comes to {value}")
    return value
