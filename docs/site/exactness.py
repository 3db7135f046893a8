"""Measures how exact the model is against plain geometry: the place of a wall, the width of an opening,
films on walls. The tables of docs/exactness.md are these numbers.

    exactness.py BUILD check | update
"""
import csv
import pathlib
import sys

import markdown
from sandbox import ROOT, Sandbox

PAGE = ROOT / "docs/exactness.md"
COLUMNS = [200, 300, 500, 1000, 2000]
WIDTH = 4.0  # of the window, um
# Windows that lie otherwise against the mask by parts of a cell, um
OFFSETS = [0.0, 0.0007, 0.0021, 0.0048, 0.0093, 0.0131, 0.0177]

HEAD = "settings -version 4 -N {columns}\nlocation -x {left} -y 0 -dx 4 -dy 0.1\ngds -cell EDGE\n"
FILM = "deposition -name Film -type film -thickness 500 -sc 1.0 -color 0 0 0 0\n"
WALL = FILM + ("photo -name Edge -mask_id 13 -type 1 -res {res} -thickness 50 -taper 89\n"
               "etch -name Edge -targets film -depth 500 -iso 0.0 -resist 0\nstrip -name Edge\n")
OPENING = FILM + ("photo -name Slot -mask_id 14 -type 0 -res {res} -thickness 50 -taper 89\n"
                  "etch -name Slot -targets film -depth {depth} -iso {iso} -resist 0\nstrip -name Slot\n")
ON_WALL = WALL + "deposition -name Wall -type wall -thickness {grown} -sc {sc} -color 0 0 0 0\n"


def crossings(rows, level):
    """Where the highest surface crosses a level, um."""
    found = []
    for (x0, h0), (x1, h1) in zip(rows, rows[1:]):
        if (h0 - level) * (h1 - level) < 0:
            found.append(x0 + (level - h0) / (h1 - h0) * (x1 - x0))
    return found


def surface(sandbox, columns, offset, steps, **values):
    """The section's upper side: pairs of x in um and a height in nm."""
    left = -WIDTH / 2 + offset
    text = (HEAD + steps).format(columns=columns, left=left, **values)
    (sandbox.folder / "exact.txt").write_text(text)
    sandbox.run("zelmo-batch guide.gds exact.txt --quiet --no-notes --no-pictures --overwrite --steps "
                f"last --cut {left},0.05,{left + WIDTH},0.05 --cuts exact --output exact")
    with next((sandbox.folder / "exact").glob("*.csv")).open() as file:
        table = list(csv.reader(file))
    return [(float(row[1]), max(float(height) for height in row[3:])) for row in table[1:]]


def wall_place(sandbox, columns, offset, **values):
    return crossings(surface(sandbox, columns, offset, WALL, **values), 250)[0] * 1000


def opening_width(sandbox, columns, offset, **values):
    left, right = crossings(surface(sandbox, columns, offset, OPENING, **values),
                            500 - values["depth"] / 2)[:2]
    return (right - left) * 1000


def wall_film(sandbox, columns, offset, **values):
    """Measured 150 nm above the film's foot, from the wall as it is in the grid."""
    bare = crossings(surface(sandbox, columns, offset, WALL, res=values["res"]), 250)[0]
    level = 250 + values["grown"] / 2
    return (crossings(surface(sandbox, columns, offset, ON_WALL, **values), level)[0] - bare) * 1000


# Name of the table, its title, measure, exact value in nm, values of the process
MEASURES = [
    ("wall", "A wall at x = 0", wall_place, 0, {"res": 0}),
    ("opening", "An opening of 1000 nm", opening_width, 1000,
     {"res": 0, "depth": 400, "iso": 0.0}),
    ("film200", "200 nm on a wall, step coverage 1.0", wall_film, 200,
     {"res": 0, "grown": 200, "sc": 1.0}),
    ("film50", "50 nm on a wall, step coverage 1.0", wall_film, 50,
     {"res": 0, "grown": 50, "sc": 1.0}),
    ("half", "200 nm on a wall, step coverage 0.5", wall_film, 100,
     {"res": 0, "grown": 200, "sc": 0.5}),
]


def measure(build):
    """For each measure and number of columns the errors at all offsets, nm."""
    with Sandbox(build) as sandbox:
        return {name: {columns: [call(sandbox, columns, offset, **values) - exact
                                 for offset in OFFSETS] for columns in COLUMNS}
                for name, _, call, exact, values in MEASURES}


def table(errors):
    lines = ["| `-N` | Cell, nm | " + " | ".join(title for _, title, *_ in MEASURES) + " |",
             "|---" * (len(MEASURES) + 2) + "|"]
    for columns in COLUMNS:
        cells = [f"{min(errors[name][columns]):+.1f} to {max(errors[name][columns]):+.1f}"
                 for name, *_ in MEASURES]
        spacing = 1.2 * WIDTH / (columns - 1) * 1000
        lines.append(f"| {columns} | {spacing:.1f} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def plot(errors):
    """The worst error in cells of the grid against the columns, as SVG: which stays below a bound."""
    colors = ["#1f6fb2", "#c03a2b", "#2e8b57", "#8e5bb5", "#b8860b"]
    out = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 640 300" font-family="sans-serif" '
           'font-size="12"><rect width="640" height="300" fill="white"/>']
    for step in range(5):
        y = 250 - step * 50
        out.append(f'<path d="M60 {y}H430" stroke="#ddd"/><text x="52" y="{y + 4}" '
                   f'text-anchor="end">{step / 2:.1f}</text>')
    places = {columns: 70 + 85 * index for index, columns in enumerate(COLUMNS)}
    for columns, x in places.items():
        out.append(f'<text x="{x}" y="270" text-anchor="middle">{columns}</text>')
    out.append('<text x="245" y="290" text-anchor="middle">columns (-N)</text>'
               '<text x="12" y="30">largest error, in cells of the grid</text>')
    for index, (name, title, *_) in enumerate(MEASURES):
        points = []
        for columns, x in places.items():
            cells = max(map(abs, errors[name][columns])) / (1.2 * WIDTH / (columns - 1) * 1000)
            points.append(f"{x},{250 - cells * 100:.1f}")
        out.append(f'<polyline points="{" ".join(points)}" fill="none" stroke="{colors[index]}" '
                   f'stroke-width="2"/><text x="440" y="{60 + 22 * index}" font-size="10" '
                   f'fill="{colors[index]}">{title}</text>')
    return "\n".join(out) + "\n</svg>\n"


def main():
    build, task = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2]
    errors = measure(build)
    page = PAGE.read_text()
    made = markdown.replace_table(page, "errors", table(errors))
    picture = ROOT / "docs/images/guide/exactness.svg"
    if task == "update":
        PAGE.write_text(made)
        picture.write_text(plot(errors))
        return 0
    if made != page or picture.read_text() != plot(errors):
        print("docs/exactness.md is not what is measured now:\n" + table(errors))
        return 1
    print(f"{len(COLUMNS) * len(OFFSETS) * len(MEASURES)} measurements are as the page tells")
    return 0


if __name__ == "__main__":
    sys.exit(main())
