"""What a study varies: parameters with their values, and the variants that come of them."""
import csv
import dataclasses
import decimal
import itertools
import math
import re

from .errors import StudyError, did_you_mean

MOST_VARIANTS = 10_000_000
# What of a run a parameter can be, beside a variable of the process file.
RUN_ARGUMENTS = ("columns", "angle", "cell", "window")
# What is only told of a variant, in measures and plots: the run does not know of it.
TAG = "tag"
NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]*\Z")


@dataclasses.dataclass(frozen=True)
class Parameter:
    """One thing that varies. `kind` is "set", a variable of the process file, of RUN_ARGUMENTS or TAG."""

    name: str
    values: tuple
    kind: str = "set"
    variable: str = ""
    label: str = ""
    unit: str = ""

    @property
    def title(self):
        """What stands at an axis."""
        return f"{self.label or self.name} ({self.unit})" if self.unit else self.label or self.name


def read_parameters(tables, table_file):
    """The parameters of [parameters], by name. `table_file`: CSV with values for some, or None."""
    columns = read_table(table_file) if table_file else {}
    found = {}
    for name in tables.keys():
        if not NAME.match(name):
            tables.refuse(name, "a name has letters, digits and underscores")
        found[name] = _read_parameter(tables, name, columns)
    for name, values in columns.items():
        found.setdefault(name, Parameter(name, values, variable=name))
    if not found:
        tables.refuse("", "nothing varies: give a parameter with its values, or a table")
    return found, set(columns)


def _read_parameter(tables, name, columns):
    given = tables.data[name]
    if isinstance(given, dict):
        table = tables.table(name)
        kind = table.choice("is", ("set", *RUN_ARGUMENTS, TAG), "set")
        variable = table.text("variable", name)
        label, unit = table.text("label", ""), table.text("unit", "")
        if name in columns:
            if "values" in given or "start" in given:
                table.refuse("values", "the table has this column as well: give one of them")
            values = columns[name]
        elif "values" in given:
            values = _checked(table, table.list("values"))
        else:
            values = _range(table)
        table.finish()
        if kind != "set" and "variable" in given:
            table.refuse("variable", f"it is a {kind}, no variable of the process file")
    else:
        if name in columns:
            tables.refuse(name, "the table has this column as well: give one of them")
        if not isinstance(given, list):
            tables.refuse(name, "values are a list, as in [100, 200], or a range: "
                          "{start = 100, stop = 200, step = 10}")
        kind, variable, label, unit = "set", name, "", ""
        values = _checked(tables, given, name)
    values = tuple(_of_kind(tables, name, kind, value) for value in values)
    return Parameter(name, values, kind, variable, label, unit)


def _checked(table, values, name="values"):
    if not values:
        table.refuse(name, "the list is empty: give one value or more")
    for value in values:
        if isinstance(value, list) and all(isinstance(each, (int, float)) for each in value):
            continue
        if isinstance(value, bool) or not isinstance(value, (int, float, str)):
            table.refuse(name, f"{value!r} is neither a number nor a text")
        if isinstance(value, float) and not math.isfinite(value):
            table.refuse(name, f"{value!r} is no number that a process can have")
    if len({text_of(value) for value in values}) != len(values):
        table.refuse(name, "a value comes twice: leave one of them out")
    return values


def _of_kind(tables, name, kind, value):
    """The value as the run takes it; refuses what can never be one."""
    if isinstance(value, str) and len(f"{value}.".splitlines()) > 1:
        tables.refuse(name, f"{value!r} has several lines: a value stands in one")
    if kind in ("columns", "angle"):
        if not re.fullmatch(r"[0-9]+", text_of(value)):
            tables.refuse(name, f"{kind} are whole numbers, not {text_of(value)}")
        return int(text_of(value))
    if kind == "cell" and not isinstance(value, str):
        tables.refuse(name, "a cell is a text in quotes")
    if kind == "window":
        parts = value.split(",") if isinstance(value, str) else value
        if isinstance(value, str) and re.fullmatch(r"fit(:.*)?", value):
            return value
        try:
            window = tuple(float(each) for each in parts)
        except (TypeError, ValueError):
            window = ()
        if len(window) != 4:
            tables.refuse(name, "a window is [x, y, width, height] in um, or \"fit\"")
        return window
    if kind in ("set", TAG) and isinstance(value, list):
        tables.refuse(name, "a value is one number or text, no list")
    return value


def _range(table):
    """start, stop and step or count, both ends included, without the rounding of binary sums."""
    start, stop = table.number("start"), table.number("stop")
    scale = table.choice("scale", ("linear", "log"), "linear")
    if "step" in table.data and "count" in table.data:
        table.refuse("step", "it comes with count: give one of them")
    if "step" in table.data:
        return _steps(table, start, stop, table.number("step"), scale)
    count = table.whole("count", 2, MOST_VARIANTS)
    if scale == "log":
        if start <= 0 or stop <= 0:
            table.refuse("start", "a logarithmic range lies above 0")
        ratio = math.log(stop / start) / (count - 1)
        return tuple(float(f"{start * math.exp(i * ratio):.12g}") for i in range(count))
    first, last = _exact(start), _exact(stop)
    values = (first + (last - first) * i / (count - 1) for i in range(count))
    return tuple(_plain(value, isinstance(start, float) or isinstance(stop, float)) for value in values)


def _steps(table, start, stop, step, scale):
    if scale == "log":
        table.refuse("step", "a logarithmic range takes count in its place")
    if step == 0 or (stop - start) / step < 0:
        table.refuse("step", "it does not lead from start to stop: let it be "
                     + ("above" if stop >= start else "below") + " 0")
    first, by = _exact(start), _exact(step)
    count = int((_exact(stop) - first) / by) + 1
    if count > MOST_VARIANTS:
        table.refuse("step", f"it gives {count} values: at most {MOST_VARIANTS} are taken")
    as_float = any(isinstance(each, float) for each in (start, step))
    return tuple(_plain(first + by * i, as_float) for i in range(count))


def _exact(value):
    return decimal.Decimal(repr(value))


def _plain(value, as_float):
    if not as_float and value == value.to_integral_value():
        return int(value)
    return float(f"{value:.15g}")


def read_table(path):
    """The columns of a CSV file with a line of names, as numbers where they are some."""
    try:
        with open(path, newline="", encoding="utf-8-sig") as file:
            rows = list(csv.reader(file, strict=True))
    except OSError as error:
        raise StudyError(f"{path}: {error.strerror}: give the table's place beside the study") from None
    except (csv.Error, UnicodeDecodeError) as error:
        raise StudyError(f"{path}: no CSV in UTF-8: {error}") from None
    rows = [(number, row) for number, row in enumerate(rows, 1) if row]
    if len(rows) < 2:
        raise StudyError(f"{path}: it needs a line of names and one of values")
    names = [name.strip() for name in rows[0][1]]
    for name in names:
        if not NAME.match(name):
            raise StudyError(f"{path}:1: \"{name}\" is no name: one has letters, digits and underscores")
    if len(set(names)) != len(names):
        raise StudyError(f"{path}:1: a name comes twice: leave one of the columns out")
    for number, row in rows[1:]:
        if len(row) != len(names):
            raise StudyError(f"{path}:{number}: {len(row)} fields for {len(names)} names")
    return {name: tuple(_value(row[i].strip()) for _, row in rows[1:]) for i, name in enumerate(names)}


def _value(text):
    for kind in (int, float):
        try:
            value = kind(text)
            return value if math.isfinite(value) else text
        except ValueError:
            continue
    return text


def text_of(value):
    """A value as it stands in results and as `--set` takes it."""
    if isinstance(value, float):
        return repr(value)
    if isinstance(value, (tuple, list)):
        return ",".join(text_of(each) for each in value)
    return str(value)


def make_variants(parameters, groups, refuse):
    """All variants as dictionaries from a parameter's name to its value.

    `groups`: lists of names whose values go side by side; everything else makes a grid, in the order
    of the parameters, the last one's values changing fastest.
    """
    grouped = {}
    for group in groups:
        for name in group:
            if name not in parameters:
                refuse(f"{name} is no parameter{did_you_mean(name, parameters)}")
            if name in grouped:
                refuse(f"{name} comes twice")
            grouped[name] = tuple(group)
        lengths = {name: len(parameters[name].values) for name in group}
        if len(set(lengths.values())) > 1:
            told = ", ".join(f"{name} {length}" for name, length in lengths.items())
            refuse(f"values that go side by side are as many: {told}")
    axes = list(dict.fromkeys(grouped.get(name, (name,)) for name in parameters))
    count = math.prod(len(parameters[axis[0]].values) for axis in axes)
    if count > MOST_VARIANTS:
        refuse(f"that makes {count} variants: at most {MOST_VARIANTS} are taken; cut the study")
    choices = [list(zip(*(parameters[name].values for name in axis))) for axis in axes]
    variants = []
    for choice in itertools.product(*choices):
        values = {name: value for axis, each in zip(axes, choice) for name, value in zip(axis, each)}
        variants.append({name: values[name] for name in parameters})
    return variants
