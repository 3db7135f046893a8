#!/usr/bin/env python3
"""Runs the batch program on an example and reads what it writes with other readers than its own:
the summary against its schema, JSON, CSV and SVG, and that they tell the same numbers.

    written_files_test.py PROGRAM SCHEMA LAYOUT PROCESS ASSETS
"""
import csv
import glob
import hashlib
import json
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

import jsonschema

SVG = "{http://www.w3.org/2000/svg}"


def run(program, layout, process, assets, folder):
    """One run with every file that tells numbers, in `folder`."""
    subprocess.run(
        [program, layout, process, "--quiet", "--no-pictures", "--assets", assets,
         "--steps", "deposition,last", "--probe", "2,4", "--probe", "5,5",
         "--csv", os.path.join(folder, "probes.csv"), "--json", os.path.join(folder, "probes.json"),
         "--cut", "0,4,10,4", "--cuts", os.path.join(folder, "cuts"),
         "--summary", os.path.join(folder, "summary.json")], check=True)


def read_json(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def read_csv(path):
    with open(path, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def check_summary(summary, schema, inputs):
    """The summary fits its schema and names its inputs' digests; spoilt ones do not fit."""
    validator = jsonschema.Draft7Validator(schema)
    jsonschema.Draft7Validator.check_schema(schema)
    validator.validate(summary)
    for spoil in (lambda s: s.pop("grid"), lambda s: s["steps"][0].update(number="1"),
                  lambda s: s["inputs"][0].update(sha256="0"), lambda s: s.update(more=1),
                  lambda s: s["steps"][-1]["layers"][0].pop("area_um2")):
        spoilt = json.loads(json.dumps(summary))
        spoil(spoilt)
        assert not validator.is_valid(spoilt)
    digests = {entry["role"]: entry["sha256"] for entry in summary["inputs"]}
    for role, path in inputs.items():
        with open(path, "rb") as file:
            assert digests[role] == hashlib.sha256(file.read()).hexdigest(), role
    assert summary["complete"] is True
    window = summary["grid"]["window_width_um"] * summary["grid"]["window_height_um"]
    for step in summary["steps"]:
        for layer in step.get("layers", []):
            assert 0 <= layer["area_um2"] <= window * 1.0001
            if layer["area_um2"]:
                assert (layer["least_thickness_nm"] <= layer["mean_thickness_nm"] + 0.001
                        <= layer["greatest_thickness_nm"] + 0.002)
                mean = layer["volume_um3"] / layer["area_um2"] * 1000
                assert abs(mean - layer["mean_thickness_nm"]) < 0.01
    return {step["number"] for step in summary["steps"] if "layers" in step}


def check_probes(rows, probes, chosen):
    """The CSV file and the JSON file tell the same."""
    flat = []
    for number, probe in enumerate(probes["probes"], 1):
        assert {step["number"] for step in probe["steps"]} == chosen
        for step in probe["steps"]:
            for part in step["stack"]:
                flat.append((str(number), str(step["number"]), step["name"],
                             str(part.get("layer", "")), part.get("label", ""), part["from_nm"],
                             part["to_nm"]))
    assert flat == [(row["probe"], row["step"], row["step_name"], row["layer"], row["label"],
                     float(row["from_nm"]), float(row["to_nm"])) for row in rows]
    assert len(flat) > 20


def check_cut(path, probes):
    """The SVG picture is XML with what the section's CSV file holds, and the section passes through
    the first probe with the same heights."""
    root = ElementTree.parse(path).getroot()
    assert root.tag == SVG + "svg"
    step = int(os.path.basename(path)[:3])
    texts = [element.text for element in root.iter(SVG + "text")]
    assert any(text.startswith(f"{step:03d} ") for text in texts)
    assert "along the cut [um]" in texts and "height [nm]" in texts
    rows = read_csv(path[:-4] + ".csv")
    names = [name[:-len(" top_nm")] for name in rows[0] if name.endswith(" top_nm")]
    there = {name.split(" ", 1)[1] for name in names
             if any(row[name + " top_nm"] != row[name + " bottom_nm"] for row in rows)}
    assert {element.text for element in root.iter(SVG + "title")} == there
    assert there <= set(texts), "the legend"
    stack = next(s["stack"] for s in probes["probes"][0]["steps"] if s["number"] == step)
    above = min(rows, key=lambda row: abs(float(row["x_um"]) - 2.0))
    highest = max(float(above[name + " top_nm"]) for name in names
                  if above[name + " top_nm"] != above[name + " bottom_nm"])
    assert abs(highest - stack[0]["to_nm"]) < 100.0


def main():
    program, schema, layout, process, assets = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        run(program, layout, process, assets, folder)
        summary = read_json(os.path.join(folder, "summary.json"))
        probes = read_json(os.path.join(folder, "probes.json"))
        chosen = check_summary(summary, read_json(schema), {
            "layout": layout, "process": process,
            "colors": os.path.join(assets, "colors.txt")})
        check_probes(read_csv(os.path.join(folder, "probes.csv")), probes, chosen)
        pictures = sorted(glob.glob(os.path.join(folder, "cuts", "*.svg")))
        assert {int(os.path.basename(path)[:3]) for path in pictures} == chosen
        for path in pictures:
            check_cut(path, probes)
    print(f"{len(chosen)} steps: summary, probes and cuts are as they should be")


if __name__ == "__main__":
    main()
