"""Reads STUDY.toml: what varies, what is measured, what is kept."""
import dataclasses
import hashlib
import json
import os
import re
import tomllib
import typing

from . import measures as measures_of
from .errors import ExitStatus, StudyError, did_you_mean
from .expressions import Expression, ExpressionError
from .parameters import TAG, make_variants, read_parameters, text_of
from .tables import Table

PICTURE_CHOICES = {
    "width": int,
    "smooth": bool,
    "title": bool,
    "scale": bool,
    "transparent": bool,
    "crop": bool,
    "parallel": bool,
    "view": (str, list),
    "thinnest_film": (int, float),
}


@dataclasses.dataclass(frozen=True)
class KeptFile:
    """A picture or a section of chosen variants, with a file name for each of them."""

    kind: str  # "picture", "svg" or "csv"
    name: str  # with {PARAMETER} in it
    variants: frozenset  # numbers, from 1
    choice: dict  # of a picture
    line: tuple = ()  # of a section: x0, y0, x1, y1 in the unit of the process file
    stretch: float = 1.0


@dataclasses.dataclass
class Study:
    """All that a study asks for. Paths are absolute; variants are numbered from 1."""

    file: str
    title: str
    text: str
    layout: str
    process: typing.Any  # a path, or the text or steps themselves
    output: str
    run: dict  # cell, window, columns, angle, as zelmo.Run takes them
    settings: dict  # variables that are the same for all
    until: typing.Any
    time_limit: float
    parameters: dict
    variants: list
    measures: list
    kept: list
    plots: list
    groups: list = dataclasses.field(default_factory=list)  # of parameters whose values go side by side
    digest: str = ""  # of what a row of results depends on, but for its parameters

    def row_key(self, variant):
        return tuple(text_of(variant[name]) for name in self.parameters)


def read_study(source, file=None, output=None):
    """The study of a file, or of a dictionary with the same tables. Raises StudyError."""
    if isinstance(source, dict):
        file, folder, data = file or "study", os.getcwd(), source
    else:
        file = os.fspath(source)
        folder, data = os.path.dirname(os.path.abspath(file)), _load(file)
    top = Table(data, file, "")
    general = top.table("study")
    layout = os.path.join(folder, general.text("layout"))
    process = _process(general, folder)
    table_file = general.text("table", "")
    parameters, columns = read_parameters(
        top.table("parameters"), os.path.join(folder, table_file) if table_file else None)
    groups = _groups(general, parameters, columns)
    variants = make_variants(parameters, groups, lambda reason: general.refuse("zip", reason))
    study = Study(
        file=file,
        title=general.text("title", os.path.splitext(os.path.basename(file))[0]),
        text=general.text("text", ""),
        layout=layout,
        process=process,
        output=_output(general, file, folder, output),
        run=_run_arguments(general, parameters),
        settings=_settings(top.table("set"), parameters),
        until=_until(general),
        time_limit=_time_limit(general),
        parameters=parameters,
        variants=variants,
        measures=measures_of.read_measures(top.table("measures"), parameters, folder),
        kept=[],
        plots=[],
        groups=groups)
    for table in top.tables("pictures"):
        study.kept.append(_picture(table, study))
    for table in top.tables("sections"):
        study.kept.append(_section(table, study))
    study.plots = [_plot(table, study) for table in top.tables("plots")]
    general.finish()
    top.finish()
    _check_names(study)
    if not study.measures and not study.kept:
        top.refuse("", "nothing is taken of the variants: give [measures], [[pictures]] or [[sections]]")
    study.digest = _digest(study)
    return study


def _load(file):
    try:
        with open(file, "rb") as stream:
            return tomllib.load(stream)
    except OSError as error:
        raise StudyError(f"{file}: {error.strerror}: give the path of a study") from None
    except tomllib.TOMLDecodeError as error:
        raise StudyError(f"{file}: no TOML: {error}") from None
    except UnicodeDecodeError:
        raise StudyError(f"{file}: no text in UTF-8: save it as such") from None
    except RecursionError:
        raise StudyError(f"{file}: it is nested too deeply") from None


def _process(general, folder):
    given = general.data.get("process")
    if isinstance(given, list):  # steps, from Python
        general.asked.add("process")
        return given
    text = general.text("process")
    return text if "\n" in text else os.path.join(folder, text)


def _output(general, file, folder, output):
    wanted = general.text("output", "")
    if output:
        return os.path.abspath(output)
    return os.path.join(folder, wanted or os.path.splitext(os.path.basename(file))[0] + " results")


def _groups(general, parameters, columns):
    groups = [list(columns)] if columns else []
    for group in general.list("zip", []):
        if not isinstance(group, list) or not all(isinstance(each, str) for each in group):
            general.refuse("zip", "it is a list of lists of names, as in [[\"A\", \"B\"]]")
        groups.append(group)
    for name in columns:
        if name not in parameters:
            general.refuse("table", f"{name} is no parameter{did_you_mean(name, parameters)}")
    return groups


def _run_arguments(general, parameters):
    found = {}
    if "cell" in general.data:
        found["cell"] = general.text("cell")
    if "columns" in general.data:
        found["columns"] = general.whole("columns", 200, 2000)
    if "angle" in general.data:
        found["angle"] = general.whole("angle", 0, 90)
    if "window" in general.data:
        given = general.data["window"]
        is_fit = isinstance(given, str)
        found["window"] = general.text("window") if is_fit else general.place_list("window", 4)
    for parameter in parameters.values():
        if parameter.kind in found:
            general.refuse(parameter.kind, f"the parameter {parameter.name} varies it: leave it out")
    kinds = [each.kind for each in parameters.values() if each.kind not in ("set", TAG)]
    for kind in kinds:
        if kinds.count(kind) > 1:
            general.refuse("", f"two parameters vary {kind}: leave one of them out")
    return found


def _settings(table, parameters):
    varied = {each.variable: each.name for each in parameters.values() if each.kind == "set"}
    for name in table.keys():
        value = table.data[name]
        if isinstance(value, bool) or not isinstance(value, (int, float, str)):
            table.refuse(name, f"{value!r} is neither a number nor a text")
        if name in varied:
            table.refuse(name, f"the parameter {varied[name]} varies it: leave it out here")
    return dict(table.data)


def _until(general):
    given = general.data.get("until")
    if isinstance(given, int) and not isinstance(given, bool):
        return general.whole("until", 1, 10**6)
    return general.text("until", "") or None


def _time_limit(general):
    limit = general.number("time_limit", 0)
    if limit < 0:
        general.refuse("time_limit", "it is a number of seconds above 0; without it there is none")
    return float(limit)


def _chosen(table, study):
    """The numbers of the variants that a table chooses: all, a list of numbers or an expression."""
    every = range(1, len(study.variants) + 1)
    given = table.data.get("variants", "all")
    table.asked.add("variants")
    if given == "all":
        return frozenset(every)
    if isinstance(given, list):
        for number in given:
            if isinstance(number, bool) or not isinstance(number, int) or number not in every:
                table.refuse("variants", f"{number!r} is no variant: they go from 1 to {len(every)}")
        return frozenset(given)
    if not isinstance(given, str):
        table.refuse("variants", "it is \"all\", a list of numbers or an expression over parameters")
    try:
        expression = Expression(given, study.parameters)
        chosen = frozenset(n for n in every if expression.value(study.variants[n - 1]))
    except ExpressionError as error:
        table.refuse("variants", str(error))
    if not chosen:
        table.refuse("variants", "no variant is chosen: let it be true for one at least")
    return chosen


def _file_name(table, study, endings):
    name = table.text("file")
    ending = os.path.splitext(name)[1]
    if ending not in endings:
        table.refuse("file", "its name ends with " + " or ".join(endings))
    for field in re.findall(r"\{([^{}]*)\}", name):
        if field != "variant" and field not in study.parameters:
            table.refuse("file", f"{{{field}}} is no parameter"
                         + did_you_mean(field, [*study.parameters, "variant"]))
    if re.search(r"[{}]", re.sub(r"\{[^{}]*\}", "", name)):
        table.refuse("file", "a brace has no partner")
    if os.path.basename(name) != name or name.startswith("."):
        table.refuse("file", "it is the name of a file in the folder of results, without a path")
    return name, ending


def _picture(table, study):
    name, _ = _file_name(table, study, (".png",))
    chosen = _chosen(table, study)
    choice = {}
    for key, kinds in PICTURE_CHOICES.items():
        if key in table.data:
            choice[key] = table._get(key, None, kinds if isinstance(kinds, tuple) else (kinds,),
                                     "another kind of value")
    if isinstance(choice.get("view"), list):
        choice["view"] = table.place_list("view", 2)
    table.finish()
    return KeptFile("picture", name, chosen, choice)


def _section(table, study):
    name, ending = _file_name(table, study, (".svg", ".csv"))
    chosen = _chosen(table, study)
    line = table.place_list("from", 2) + table.place_list("to", 2)
    stretch = table.number("stretch", 1.0)
    if stretch <= 0:
        table.refuse("stretch", "heights are stretched by a number above 0")
    table.finish()
    return KeptFile(ending[1:], name, chosen, {}, line, float(stretch))


def kept_name(kept, study, number):
    """The file of a variant. Characters that a file name cannot hold are `_`."""
    values = {name: text_of(value) for name, value in study.variants[number - 1].items()}
    values["variant"] = str(number)
    return re.sub(r"\{([^{}]*)\}",
                  lambda found: re.sub(r'[\\/:*?"<>|\x00-\x1f]', "_", values[found[1]]), kept.name)


def _check_names(study):
    """Refuses two files of one name: one of them would be lost."""
    seen = {}
    for kept in study.kept:
        for number in sorted(kept.variants):
            name = kept_name(kept, study, number)
            if name in seen:
                raise StudyError(
                    f"{study.file}: file \"{name}\" would be that of variants {seen[name]} and {number}: "
                    "let the name have {variant} or the parameters that differ")
            if name == "results.csv" or re.fullmatch(r"plot [0-9]+\.png", name):
                raise StudyError(f"{study.file}: file \"{name}\" is one of the study's own: "
                                 "give another name")
            seen[name] = number


PLOT_KINDS = ("main effects", "lines", "map")


def _plot(table, study):
    plot = {"kind": table.choice("kind", PLOT_KINDS, "lines"), "title": table.text("title", "")}
    names = [measure.name for measure in study.measures]
    plot["measure"] = table.text("measure")
    if plot["measure"] not in names:
        table.refuse("measure", f"{plot['measure']} is no measure{did_you_mean(plot['measure'], names)}")
    for key in ("x", "lines", "panels"):
        plot[key] = table.text(key, "")
        if plot[key] and plot[key] not in study.parameters:
            table.refuse(key, f"{plot[key]} is no parameter{did_you_mean(plot[key], study.parameters)}")
    table.finish()
    return plot


def take_part(study, number, count):
    """Leaves the study the `number`-th of `count` parts of its variants, with a folder of its own."""
    total = len(study.variants)
    if count > total:
        raise StudyError(f"--part: {total} variants are not {count} parts", ExitStatus.USAGE)
    first, end = total * (number - 1) // count, total * number // count
    study.variants = study.variants[first:end]
    study.output = os.path.join(study.output, f"part {number} of {count}")
    study.kept = [dataclasses.replace(kept, variants=frozenset(
        n - first for n in kept.variants if first < n <= end)) for kept in study.kept]


def _digest(study):
    """What a row depends on beside its parameters: measures, fixed values and kept files."""
    facts = {
        "run": study.run,
        "set": {name: text_of(value) for name, value in study.settings.items()},
        "until": study.until,
        "parameters": [(each.name, each.kind, each.variable) for each in study.parameters.values()],
        "measures": [(each.name, each.digest()) for each in study.measures],
        "kept": [(each.kind, each.name, each.choice, each.line, each.stretch) for each in study.kept],
    }
    if any("{variant}" in each.name for each in study.kept):
        facts["numbers"] = [study.row_key(variant) for variant in study.variants]
    return hashlib.sha256(json.dumps(facts, sort_keys=True).encode()).hexdigest()
