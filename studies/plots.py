"""Pictures of a study's numbers: main effects, lines in small multiples, maps of two parameters."""
import matplotlib

matplotlib.use("Agg")  # no window, wherever this runs

import numpy  # noqa: E402
from matplotlib.figure import Figure  # noqa: E402

from .parameters import text_of  # noqa: E402

MOST_LINES = 10
MOST_PANELS = 12
MOST_EFFECTS = 8
INK = "#1f2933"
STYLE = {"font.size": 9, "axes.edgecolor": "#9aa5b1", "axes.labelcolor": INK, "xtick.color": INK,
         "ytick.color": INK, "axes.grid": True, "grid.color": "#e4e7eb", "axes.axisbelow": True,
         "axes.spines.top": False, "axes.spines.right": False, "figure.dpi": 110}


class Table:
    """The numbers of a study, by variant: one array a parameter and a measure."""

    def __init__(self, study, frame):
        self.study = study
        self.parameters = {name: each for name, each in study.parameters.items()}
        self.measures = {each.name: each for each in study.measures}
        numbers = [number - 1 for number in frame.index]
        self.values = {name: [study.variants[n][name] for n in numbers] for name in self.parameters}
        self.results = {name: numpy.array([_number(value) for value in frame[name]], dtype=float)
                        for name in self.measures}

    def levels(self, name):
        """The values of a parameter in their order: numbers by size, others as the study has them."""
        found = list(dict.fromkeys(self.values[name]))
        return sorted(found) if all(_is_number(each) for each in found) else found

    def places(self, name):
        """Where the levels stand on an axis: their numbers, or 0, 1, 2, ... for texts."""
        levels = self.levels(name)
        return levels if all(_is_number(each) for each in levels) else list(range(len(levels)))

    def chosen(self, **wanted):
        """Which variants have these values."""
        found = numpy.ones(len(next(iter(self.values.values()))), dtype=bool)
        for name, value in wanted.items():
            found &= numpy.array([each == value for each in self.values[name]], dtype=bool)
        return found

    def varied(self):
        """The parameters with several values, those with the most first."""
        found = [name for name in self.parameters if len(self.levels(name)) > 1]
        return sorted(found, key=lambda name: -len(self.levels(name)))


def _number(value):
    try:
        return float(value)
    except (TypeError, ValueError):
        return numpy.nan


def _is_number(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def _axis(axes, table, name):
    axes.set_xlabel(table.parameters[name].title)
    levels = table.levels(name)
    if not all(_is_number(each) for each in levels):
        axes.set_xticks(range(len(levels)), [_short(each) for each in levels])


def _mean(values):
    values = values[numpy.isfinite(values)]
    return values.mean() if len(values) else numpy.nan


def _extent(values):
    values = values[numpy.isfinite(values)]
    return (values.min(), values.max()) if len(values) else (numpy.nan, numpy.nan)


def main_effects(table, measure=None):
    """For each measure and parameter the mean over everything else, and what it lies between."""
    names = table.varied()[:MOST_EFFECTS]
    measures = [measure] if measure else list(table.measures)[:MOST_EFFECTS]
    figure = Figure(figsize=(2.9 * len(names) + 0.6, 2.2 * len(measures) + 0.5), layout="constrained")
    panels = figure.subplots(len(measures), len(names), squeeze=False, sharey="row")
    for row, each in zip(panels, measures):
        for axes, name in zip(row, names):
            levels, places = table.levels(name), table.places(name)
            results = [table.results[each][table.chosen(**{name: level})] for level in levels]
            low, high = zip(*(_extent(values) for values in results))
            axes.fill_between(places, low, high, color="#2680c2", alpha=0.15, linewidth=0)
            axes.plot(places, [_mean(values) for values in results], "o-", color="#2680c2", markersize=3.5)
            _axis(axes, table, name)
        row[0].set_ylabel(table.measures[each].title)
    figure.suptitle("Main effects: mean over all other parameters, and least to greatest", color=INK)
    return figure


def _roles(table, plot):
    """Which parameter is x, which has lines, which panels: what the study says, then what is left."""
    given = [plot.get(role) for role in ("x", "lines", "panels")]
    free = _independent(table, [name for name in table.varied() if name not in given], given)
    numeric = [name for name in free if all(_is_number(each) for each in table.levels(name))]
    x = given[0] or (numeric or free)[0]
    free = _independent(table, [name for name in free if name != x], [x])
    line = given[1] or (free[0] if free else "")
    free = _independent(table, [name for name in free if name != line], [line])
    return x, line, given[2] or (free[0] if free else "")


def _independent(table, names, used):
    """Those names whose values do not go side by side with those of others that are used already."""
    bound = {name for group in table.study.groups if set(group) & set(used) for name in group}
    return [name for name in names if name not in bound]


def _short(value):
    return f"{value:g}" if isinstance(value, float) else text_of(value)


def _some(levels, most):
    """As many levels as fit, spread over all of them."""
    if len(levels) <= most:
        return levels
    return [levels[round(i * (len(levels) - 1) / (most - 1))] for i in range(most)]


def lines(table, plot):
    """A measure over x, a line for each value of one parameter, a panel for each of another."""
    x, line, panel = _roles(table, plot)
    levels = _some(table.levels(panel), MOST_PANELS) if panel else [None]
    columns = min(4, len(levels))
    rows = -(-len(levels) // columns)
    figure = Figure(figsize=(3.2 * columns + 1.6, 2.6 * rows + 0.5), layout="constrained")
    grid = figure.subplots(rows, columns, squeeze=False, sharex=True, sharey=True)
    colors = matplotlib.colormaps["viridis"]
    line_levels = _some(table.levels(line), MOST_LINES) if line else [None]
    for axes, level in zip(grid.flat, levels):
        for i, each in enumerate(line_levels):
            wanted = {**({panel: level} if panel else {}), **({line: each} if line else {})}
            points = [(place, _mean(table.results[plot["measure"]][table.chosen(**wanted, **{x: value})]))
                      for value, place in zip(table.levels(x), table.places(x))]
            axes.plot(*zip(*points), "o-", markersize=3, color=colors(0.88 * i / max(1, len(line_levels) - 1)),
                      label=_short(each) if line else None)
        _axis(axes, table, x)
        if panel:
            axes.set_title(f"{table.parameters[panel].title} = {_short(level)}", fontsize=9, color=INK)
    for axes in list(grid.flat)[len(levels):]:
        axes.set_visible(False)
    for row in grid:
        row[0].set_ylabel(table.measures[plot["measure"]].title)
    if line:
        figure.legend(*grid.flat[0].get_legend_handles_labels(), title=table.parameters[line].title,
                      loc="center left", bbox_to_anchor=(1.0, 0.5), frameon=False)
    return figure


def field(table, plot):
    """A measure over two parameters, as colours with their numbers where they fit."""
    x, y, _ = _roles(table, plot)
    across, up = table.levels(x), table.levels(y)
    values = numpy.array([[_mean(table.results[plot["measure"]][table.chosen(**{x: a, y: b})]) for a in across]
                          for b in up])
    figure = Figure(figsize=(1.8 + 0.55 * min(len(across), 14), 1.2 + 0.38 * min(len(up), 14)), layout="constrained")
    axes = figure.subplots()
    axes.grid(False)
    image = axes.imshow(values, origin="lower", aspect="auto", cmap="viridis")
    figure.colorbar(image, ax=axes, label=table.measures[plot["measure"]].title)
    for setter, levels in ((axes.set_xticks, across), (axes.set_yticks, up)):
        shown = _some(list(range(len(levels))), 12)
        setter(shown, [_short(levels[i]) for i in shown])
    axes.set_xlabel(table.parameters[x].title)
    axes.set_ylabel(table.parameters[y].title)
    if values.size <= 150:
        middle = numpy.nanmean(_extent(values.ravel())) if numpy.isfinite(values).any() else 0.0
        for (row, column), value in numpy.ndenumerate(values):
            if numpy.isfinite(value):
                axes.text(column, row, f"{value:.3g}", ha="center", va="center", fontsize=6.5,
                          color="white" if value < middle else INK)
    return figure


def make_plots(study, frame):
    """(title, PNG bytes) of everything that is drawn of a study: its own plots, or the usual ones."""
    import io
    if not study.measures or frame.empty:
        return []
    with matplotlib.rc_context(STYLE):
        table = Table(study, frame)
        if not table.varied():
            return []
        made = []
        for title, draw in _wanted(study, table):
            figure = draw()
            data = io.BytesIO()
            figure.savefig(data, format="png", bbox_inches="tight", facecolor="white")
            made.append((title, data.getvalue()))
        return made


def _wanted(study, table):
    plots = study.plots
    if not plots:
        plots = [{"kind": "main effects", "measure": ""}]
        if len(table.varied()) > 1:
            plots += [{"kind": "lines", "measure": name} for name in list(table.measures)[:MOST_EFFECTS]]
    kinds = {"lines": lines, "map": field}
    for plot in plots:
        name = plot["measure"]
        title = plot.get("title") or (table.measures[name].label or name if name else "Main effects")
        if plot["kind"] == "main effects":
            yield title, lambda plot=plot: main_effects(table, plot["measure"] or None)
        elif plot["kind"] == "map" and len(table.varied()) < 2:
            continue
        else:
            yield title, lambda plot=plot: kinds[plot["kind"]](table, plot)
