#!/usr/bin/env python3
"""Runs the batch program with --report and reads its pages with page_reader.py: every height against
the numbers that the model's dump tells, texts that try to be more than texts, and what a page of an
example holds.

    written_pages_test.py PROGRAM ASSETS EXAMPLES
"""
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile

import page_reader

SCRIPT = "document.body.append('\u00e9 < 1');\n"
STYLE = "body { margin: 0 }\n"

HOSTILE = ["</script><script>alert(1)</script>", "<!--<script>", "\"double\"'single'\\u003c",
           "&lt;img/src=x&gt;", "\u202eright\u2066left", "\u2028\u2029", "caf\u00e9\U0001f525"]


def make_assets(source, folder):
    """The program's own, with a stand-in for what shows the page."""
    for name in ("colors.txt", "surface.shader", "point.shader"):
        shutil.copy(os.path.join(source, name), folder)
    for name, text in (("page.js", SCRIPT), ("page.css", STYLE)):
        with open(os.path.join(folder, name), "w", encoding="utf-8", newline="") as file:
            file.write(text)


def report(program, assets, layout, process, folder, *more):
    """A page of a run, in `folder`, where a dump lands as well."""
    path = os.path.join(folder, "page.html")
    subprocess.run([program, layout, process, "--quiet", "--no-notes", "--overwrite", "--assets",
                    assets, "--report", path, *more], check=True, cwd=folder)
    return page_reader.PageFile(path)


def read_dump(path):
    """{(layer, row, column): (lower, upper)} of a dump, in micrometres."""
    heights = {}
    line = re.compile(r"M: (\d+)\tN: (\d+)\tL: (\d+)\tBOT: (\S+)\tTOP: (\S+)\t")
    with open(path, encoding="ascii") as file:
        for match in map(line.match, file):
            if match:
                row, column, layer = (int(match.group(i)) for i in (1, 2, 3))
                heights[layer, row, column] = float(match.group(4)), float(match.group(5))
    return heights


def window_cells(columns, width, positions):
    """The cells of the grid at positions in the window, by the numbers that docs/process-file.md
    gives for the dump."""
    spacing = 1.2 * width / (columns - 1)
    cells = [(position + width_margin) / spacing
             for position, width_margin in positions]
    for cell in cells:
        assert abs(cell - round(cell)) < 0.01, cell
    return [round(cell) for cell in cells]


def check_heights(program, assets, examples, folder, columns, thinned):
    """Every surface of the last step is that of the model, to half a quantum."""
    with open(os.path.join(examples, "cmos_inverter.txt"), encoding="ascii") as file:
        process = file.read().replace("\nstop", "\ndump\nstop")
    assert "\ndump" in process
    path = os.path.join(folder, "dumped.txt")
    with open(path, "w", encoding="ascii") as file:
        file.write(process)
    page = report(program, assets, os.path.join(examples, "cmos_inverter.gds"), path, folder,
                  "--no-pictures", "--columns", str(columns), "--report-columns", str(thinned))
    dump = read_dump(os.path.join(folder, "VertexData.txt"))
    run = page.run
    dx, dy = run["window"]["dx"], run["window"]["dy"]
    cols = window_cells(columns, dx, [(x, dx / 10) for x in run["grid"]["x"]])
    rows = window_cells(columns, dx, [(y, dy / 10) for y in run["grid"]["y"]])
    assert len(cols) <= thinned
    most = run["quantum"] / 2 * (1 + 1e-9)
    step = run["steps"][-1]
    assert {layer["number"] - 1 for layer in step["layers"]} == {key[0] for key in dump}
    for layer in step["layers"]:
        top, bottom = page.fields[layer["top"]], page.fields[layer["bottom"]]
        for i, row in enumerate(rows):
            for j, col in enumerate(cols):
                lower, upper = dump[layer["number"] - 1, row, col]
                at = i * page.columns + j
                assert abs(bottom[at] * run["quantum"] - lower) <= most, (layer, row, col)
                assert abs(top[at] * run["quantum"] - upper) <= most, (layer, row, col)
    return len(step["layers"]) * len(rows) * len(cols)


def check_policy(page):
    """Nothing runs or is loaded but the page's own."""
    policy = page.policy()
    assert policy["default-src"] == ["'none'"]
    assert policy["script-src"] == [page_reader.digest(SCRIPT)]
    assert policy["style-src"] == [page_reader.digest(STYLE)]
    assert sorted(policy) == ["base-uri", "default-src", "form-action", "img-src", "script-src",
                              "style-src"]
    assert [attributes.get("type") for attributes, _ in page.elements.scripts] == [
        "application/json", "text/plain", None]
    assert page.elements.scripts[2][1] == SCRIPT and page.elements.styles == [STYLE]
    assert not re.search(r"(src|href)=|url\(|@import", page.text.split("<style>")[0])


def webp_size(data):
    """Width and height of a WebP picture, lossless or not."""
    assert data[:4] == b"RIFF" and data[8:12] == b"WEBP"
    assert len(data) == struct.unpack("<I", data[4:8])[0] + 8
    if data[12:16] == b"VP8L":
        bits = struct.unpack("<I", data[21:25])[0]
        return (bits & 0x3fff) + 1, (bits >> 14 & 0x3fff) + 1
    assert data[12:16] == b"VP8 "
    width, height = struct.unpack("<HH", data[26:30])
    return width & 0x3fff, height & 0x3fff


def check_example(program, assets, examples, folder):
    """A page of an example with pictures: all of its data lies where it says, and nothing else."""
    page = report(program, assets, os.path.join(examples, "array.gds"),
                  os.path.join(examples, "array.txt"), folder, "-o", os.path.join(folder, "out"))
    check_policy(page)
    run = page.run
    with open(os.path.join(examples, "array.txt"), encoding="utf-8") as file:
        assert run["processFile"] == file.read().split("\n")[:-1]
    places = list(run["chunks"])
    for number, step in enumerate(run["steps"], 1):
        assert step["number"] == number
        places += [step["picture"], step["thumbnail"]]
        for kind in ("picture", "thumbnail"):
            size = webp_size(page.bytes_of(step[kind]))
            assert size == (step[kind]["width"], step[kind]["height"])
        if step["line"]:
            line = run["processFile"][step["line"] - 1]
            assert line.startswith(step["kind"] + " ")
            for argument in step["arguments"]:
                assert argument["name"] in line and argument["meaning"], argument
        for layer in step["layers"]:
            assert layer["top"] < len(page.fields) and layer["bottom"] < len(page.fields)
    end = 0
    for place in sorted(places, key=lambda entry: entry["offset"]):
        assert place["offset"] == end
        end += place["length"]
    assert end == len(page.data)
    used = {layer[side] for step in run["steps"] for layer in step["layers"]
            for side in ("top", "bottom")}
    assert used == set(range(len(page.fields)))
    # Between two neighbouring steps no field comes again.
    for before, after in zip(run["steps"], run["steps"][1:]):
        near = {layer[side] for step in (before, after) for layer in step["layers"]
                for side in ("top", "bottom")}
        assert len({page.fields[number].tobytes() for number in near}) == len(near)
    return len(run["steps"])


def check_hostile_texts(program, assets, examples, folder):
    """Names are texts, whatever they hold, and add nothing to the page's elements."""
    names = [text.encode() for text in HOSTILE] + [b"latin-\xe9t\xe9", b"esc\x1b[31m\x7f"]
    lines = ["settings -version 4 -N 200", "location -x 0 -y 0 -dx 1 -dy 1",
             "gds -cell " + json.loads(subprocess.run(
                 [program.replace("zelmo-batch", "zelmo-layout"), "--json",
                  os.path.join(examples, "array.gds")], check=True, capture_output=True,
                 text=True).stdout)["cells"][0]["name"]]
    content = "\n".join(lines).encode() + b"\n"
    for name in names:
        content += (b"deposition -name " + name + b" -type t -thickness 10 -color 1 2 3 100\n"
                    b"# " + name + b"\n")
    path = os.path.join(folder, "hostile <b>&lt;\"' \u202e.txt")
    with open(path, "wb") as file:
        file.write(content)
    page = report(program, assets, os.path.join(examples, "array.gds"), path, folder,
                  "--no-pictures")
    check_policy(page)
    assert page.elements.tags == ["html", "head", "meta", "meta", "meta", "title", "style", "body",
                                  "noscript", "script", "script", "script"], page.elements.tags
    assert page.run["title"] == os.path.basename(path)
    assert page.elements.title == os.path.basename(path)
    for index, step in enumerate(page.run["steps"][1:]):
        expected = (HOSTILE[index] if index < len(HOSTILE) else
                    ["latin-\uffe9t\uffe9", "esc\x1b[31m\x7f"][index - len(HOSTILE)])
        assert step["arguments"][0]["value"] == expected, (step, expected)
        assert step["layers"][-1]["name"] == expected
        assert step["name"].startswith(expected)
        assert page.run["processFile"][step["line"]] == "# " + expected


def main():
    program, source, examples = map(os.path.abspath, sys.argv[1:])
    with tempfile.TemporaryDirectory() as folder:
        assets = os.path.join(folder, "assets")
        os.mkdir(assets)
        make_assets(source, assets)
        cells = sum(check_heights(program, assets, examples, folder, columns, thinned)
                    for columns, thinned in ((200, 2000), (250, 60)))
        steps = check_example(program, assets, examples, folder)
        check_hostile_texts(program, assets, examples, folder)
    print(f"{cells} cells of two pages are those of the model, a page of {steps} steps and hostile "
          "names are as they should be")


if __name__ == "__main__":
    main()
