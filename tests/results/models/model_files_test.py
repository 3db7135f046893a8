#!/usr/bin/env python3
"""Exports the stack of an example and reads the models with other programs and readers than the
project's own: glTF by a reader of its own and by the Khronos validator, which is among the packages
of web/; STL by ADMesh. The volumes are compared with those between the surfaces of the dump.

    model_files_test.py PROGRAM LAYOUT PROCESS ASSETS NODE_MODULES
"""
import collections
import json
import os
import re
import struct
import subprocess
import sys
import tempfile

VALIDATE = """
const {createRequire} = require('module');
const validator = createRequire(process.argv[1])('gltf-validator');
const bytes = new Uint8Array(require('fs').readFileSync(process.argv[2]));
validator.validateBytes(bytes).then(report => console.log(JSON.stringify(report)));
"""


def run(program, layout, process, assets, folder):
    """Both kinds of models, the summary and the dump of one run each, at 200 columns."""
    with open(process, encoding="utf-8") as file:
        text = file.read()
    steps, count = re.subn(r"^stop$", "dump\nstop", text, flags=re.MULTILINE)
    assert count == 1
    with open(os.path.join(folder, "process.txt"), "w", encoding="utf-8") as file:
        file.write(steps)
    for name in ("stack.glb", "stack.stl"):
        subprocess.run(
            [os.path.abspath(program), os.path.abspath(layout), "process.txt", "--quiet",
             "--no-pictures", "--columns", "200", "--assets", os.path.abspath(assets), "--steps",
             "last", "--summary", "summary.json", "--export", name], check=True, cwd=folder)


def read_glb(path):
    """(description, bytes of the numbers)"""
    with open(path, "rb") as file:
        data = file.read()
    magic, version, length, text_length, text_kind = struct.unpack_from("<4sIII4s", data)
    assert (magic, version, length, text_kind) == (b"glTF", 2, len(data), b"JSON")
    start = 20 + text_length
    size, kind = struct.unpack_from("<I4s", data, start)
    assert kind == b"BIN\0" and start + 8 + size == len(data)
    return json.loads(data[20:start]), data[start + 8:]


def read_accessor(gltf, numbers, index, letter, width):
    accessor = gltf["accessors"][index]
    view = gltf["bufferViews"][accessor["bufferView"]]
    count = accessor["count"] * width
    assert view["byteLength"] == 4 * count
    return struct.unpack_from(f"<{count}{letter}", numbers, view.get("byteOffset", 0))


def read_solids(gltf, numbers):
    """[(node, vertices, triangles)] of the nodes below the one that scales."""
    root = gltf["nodes"][gltf["scenes"][gltf["scene"]]["nodes"][0]]
    assert root["scale"] == [1e-6] * 3, "metres"
    solids = []
    for child in root["children"]:
        node = gltf["nodes"][child]
        primitive = gltf["meshes"][node["mesh"]]["primitives"][0]
        flat = read_accessor(gltf, numbers, primitive["attributes"]["POSITION"], "f", 3)
        corners = read_accessor(gltf, numbers, primitive["indices"], "I", 1)
        solids.append((node, list(zip(*[iter(flat)] * 3)), list(zip(*[iter(corners)] * 3))))
    return solids


def check_closed(name, triangles):
    """Every edge has two triangles, one in each direction."""
    edges = collections.Counter(
        (triangle[i], triangle[(i + 1) % 3]) for triangle in triangles for i in range(3))
    assert max(edges.values()) == 1, name
    assert all((b, a) in edges for a, b in edges), name


def volume(vertices, triangles):
    total = 0.0
    for corners in triangles:
        (ax, ay, az), (bx, by, bz), (cx, cy, cz) = (vertices[corner] for corner in corners)
        total += ax * (by * cz - bz * cy) + ay * (bz * cx - bx * cz) + az * (bx * cy - by * cx)
    return total / 6


def drawn_volumes(folder, grid):
    """{layer's number: volume between its surfaces as they are drawn}, from the dump."""
    thickness = collections.defaultdict(dict)
    line = re.compile(r"M: (\d+)\tN: (\d+)\tL: (\d+)\tBOT: (\S+)\tTOP: (\S+)")
    with open(os.path.join(folder, "VertexData.txt"), encoding="ascii") as file:
        for match in map(line.match, file):
            if match:
                row, col, layer = (int(group) for group in match.groups()[:3])
                thickness[layer + 1][col, row] = float(match[5]) - float(match[4])
    spacing = grid["spacing_um"]
    skipped = [int((grid[f"window_{axis}_um"] - grid[f"origin_{axis}_um"]) / spacing)
               for axis in "xy"]
    volumes = {}
    for number, cells in thickness.items():
        total = 0.0
        for row in range(skipped[1], grid["rows"] - skipped[1] - 1):
            for col in range(skipped[0], grid["columns"] - skipped[0] - 1):
                diagonal = cells[col + 1, row] + cells[col, row + 1]
                total += cells[col, row] + cells[col + 1, row + 1] + 2 * diagonal
        volumes[number] = total * spacing * spacing / 6
    return volumes


def check_glb(folder, summary):
    """The layers' solids; the sum of their volumes."""
    gltf, numbers = read_glb(os.path.join(folder, "stack.glb"))
    expected = drawn_volumes(folder, summary["grid"])
    layers = {layer["layer"]: layer for layer in summary["steps"][-1]["layers"]}
    total = 0.0
    for node, vertices, triangles in read_solids(gltf, numbers):
        number = node["extras"]["number"]
        assert node["name"] == f"{number:02} {layers[number]['label']}"
        check_closed(node["name"], triangles)
        measured = volume(vertices, triangles)
        assert abs(measured - expected[number]) <= 1e-5 * expected[number], (
            node["name"], measured, expected[number])
        # By the window's exact edges, and by cells instead of triangles
        assert abs(measured - layers[number]["volume_um3"]) < 0.05 * measured, node["name"]
        total += measured
    assert len(gltf["nodes"]) == 1 + len([v for v in expected.values() if v > 0])
    return total


def check_with_validator(folder, modules):
    report = json.loads(subprocess.run(
        ["node", "-e", VALIDATE, os.path.join(os.path.abspath(modules), "x"), os.path.join(folder, "stack.glb")],
        check=True, capture_output=True, encoding="utf-8").stdout)
    issues = report["issues"]
    assert issues["numErrors"] == issues["numWarnings"] == issues["numInfos"] == 0, issues
    assert report["info"]["totalTriangleCount"] > 1000


def check_with_admesh(folder, total):
    """Closed, oriented and of the same volume."""
    text = subprocess.run(["admesh", os.path.join(folder, "stack.stl")], check=True,
                          capture_output=True, encoding="utf-8").stdout
    assert "All facets connected." in text

    def number(label):
        return float(re.search(re.escape(label) + r"\s*:\s*([-\d.]+)", text)[1])

    for label in ("Total disconnected facets", "Degenerate facets", "Edges fixed",
                  "Facets removed", "Facets added", "Facets reversed", "Backwards edges",
                  "Normals fixed"):
        assert number(label) == 0, label
    assert abs(number("Volume") - total) < 1e-4 * total


def main():
    program, layout, process, assets, modules = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        run(program, layout, process, assets, folder)
        with open(os.path.join(folder, "summary.json"), encoding="utf-8") as file:
            total = check_glb(folder, json.load(file))
        check_with_admesh(folder, total)
        check_with_validator(folder, modules)


if __name__ == "__main__":
    main()
