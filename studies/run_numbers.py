"""The names that expressions have over a run as it stands. Places are in the unit of the process
file's location, heights and thicknesses in nm, heights above the substrate's first upper side, areas
in um2, volumes in um3, lengths along a line in um."""
import numpy

from .errors import did_you_mean
from .expressions import ExpressionError

OFFERED_NAMES = ("layers", "thickness", "top", "bottom", "level", "area", "volume", "contact_area",
                 "exposed_area", "width", "number_of_layers", "probe", "seconds")
_NUMBERS = {
    "area": "area_um2",
    "volume": "volume_um3",
    "least_thickness": "least_thickness_nm",
    "greatest_thickness": "greatest_thickness_nm",
    "mean_thickness": "mean_thickness_nm",
    "lowest_level": "lowest_level_nm",
    "highest_level": "highest_level_nm",
}


class RunNumbers:
    """What a run's stack is asked for; everything is computed when it is asked for."""

    def __init__(self, run):
        self.run = run
        self._rows = None

    def names(self):
        """The names of OFFERED_NAMES."""
        return {
            "layers": LayerTable(self),
            "thickness": lambda name, x, y: self.layer(name).thickness_at(x, y),
            "top": lambda name, x, y: self.layer(name).top_at(x, y),
            "bottom": lambda name, x, y: self.layer(name).bottom_at(x, y),
            "level": self.level,
            "area": lambda name: self.layer(name).area,
            "volume": lambda name: self.layer(name).volume,
            "contact_area": self.contact_area,
            "exposed_area": self.exposed_area,
            "width": lambda name, *line, at: self.layer(name).width(*line, at=at),
            "number_of_layers": len(self.run.layers),
            "probe": lambda x, y: tuple(Part(each) for each in self.run.probe(x, y)),
            "seconds": sum(step.seconds or 0.0 for step in self.run.steps),
        }

    def layer(self, name):
        """A layer by its material or label; one of the process that is nowhere counts as empty."""
        if name in self.run.layers:
            return LayerNumbers(self, self.run.layers[name])
        known = {step.arguments.get("-name", step.arguments.get("name", "")) for step in self.run.steps
                 if step.kind in ("deposition", "coating", "implant", "photo")}
        if name in known:
            return LayerNumbers(self, None)
        raise ExpressionError(f'there is no layer "{name}"'
                              + did_you_mean(name, (known | set(self.run.layers.names)) - {""}))

    def row(self, number):
        """The summary's numbers of a layer."""
        if self._rows is None:
            self._rows = {row["layer"]: row for row in self.run.numbers()}
        return self._rows.get(number, {})

    def level(self, x, y):
        """The height of the stack's upper side at a place."""
        return self.run.probe(x, y)[0].end

    def cell_areas(self):
        """(rows, columns) um2 of the window that each cell stands for."""
        x, y, width, height = self.run.settings["window"]
        spacing = float(self.run.x[1] - self.run.x[0])
        return numpy.outer(_shares(self.run.y, spacing, y, height),
                           _shares(self.run.x, spacing, x, width))

    def contact_area(self, upper, lower):
        """The area in which `upper` lies directly on `lower`."""
        above, below = self.layer(upper).layer, self.layer(lower).layer
        if above is None or below is None:
            return 0.0
        touch = (above.top > above.bottom) & (below.top > below.bottom) & (above.bottom == below.top)
        return float(self.cell_areas()[touch].sum())

    def exposed_area(self, name):
        """The area in which nothing lies on a layer."""
        layer = self.layer(name).layer
        if layer is None:
            return 0.0
        exposed = layer.top > layer.bottom
        layers = list(self.run.layers)  # the lowest first
        for each in layers[[each.number for each in layers].index(layer.number) + 1:]:
            exposed &= each.top == each.bottom
        return float(self.cell_areas()[exposed].sum())


class LayerTable:
    """`layers["Oxide"]`"""

    OFFERED = ("[]",)

    def __init__(self, numbers):
        self._numbers = numbers

    def __getitem__(self, name):
        return self._numbers.layer(name)


class LayerNumbers:
    """What a layer is asked for. Without `layer`, one of which nothing is left."""

    OFFERED = (*_NUMBERS, "thickness_at", "top_at", "bottom_at", "width")

    def __init__(self, numbers, layer):
        self.numbers = numbers
        self.layer = layer

    def __getattr__(self, name):
        if name not in _NUMBERS:
            raise AttributeError(name)
        row = self.numbers.row(self.layer.number) if self.layer is not None else {}
        value = row.get(_NUMBERS[name])
        if value is None:
            return 0.0 if name not in ("lowest_level", "highest_level") else float("nan")
        return value

    def _part(self, x, y):
        parts = self.numbers.run.probe(x, y)
        found = [part for part in parts if self.layer is not None and part.layer == self.layer.number]
        return found[0] if found else None

    def thickness_at(self, x, y):
        part = self._part(x, y)
        return part.thickness if part else 0.0

    def top_at(self, x, y):
        part = self._part(x, y)
        return max(part.start, part.end) if part else float("nan")

    def bottom_at(self, x, y):
        part = self._part(x, y)
        return min(part.start, part.end) if part else float("nan")

    def width(self, x0, y0, x1, y1, at):
        """How much of a line lies within the layer at the height `at`, in um along the line."""
        if self.layer is None:
            return 0.0
        section = self.numbers.run.section(x0, y0, x1, y1)
        for each in section.layers:
            if each.number == self.layer.number:
                return width_at(numpy.asarray(section.along), numpy.asarray(each.bottom),
                                numpy.asarray(each.top), at)
        return 0.0


def width_at(along, bottom, top, at):
    """The length along a section within which bottom <= at <= top; surfaces are straight between
    its points."""
    low, high = at - bottom, top - at  # both 0 or more within the layer
    begin, end = numpy.zeros(len(along) - 1), numpy.ones(len(along) - 1)
    for values in (low, high):
        first, last = values[:-1], values[1:]
        change = numpy.where(first == last, 1.0, last - first)
        crossing = -first / change
        begin = numpy.where((first < 0) & (last >= 0), numpy.maximum(begin, crossing), begin)
        end = numpy.where((first >= 0) & (last < 0), numpy.minimum(end, crossing), end)
        end = numpy.where((first < 0) & (last < 0), -1.0, end)
    thick = (top > bottom)[:-1] | (top > bottom)[1:]
    return float((numpy.where(thick, numpy.maximum(end - begin, 0.0), 0.0) * numpy.diff(along)).sum())


class Part:
    """A part of a probe: a layer or a gap at one place."""

    OFFERED = ("material", "label", "start", "end", "thickness")

    def __init__(self, part):
        self.material, self.label = part.material, part.label
        self.start, self.end, self.thickness = part.start, part.end, part.thickness


def _shares(places, spacing, begin, length):
    """How much of [begin, begin + length] each cell's piece of an axis covers."""
    low = numpy.maximum(numpy.asarray(places) - spacing / 2, begin)
    high = numpy.minimum(numpy.asarray(places) + spacing / 2, begin + length)
    return numpy.maximum(high - low, 0.0)
