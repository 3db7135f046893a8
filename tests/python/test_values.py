"""What the package tells is what the batch program tells, to the last digit and byte."""
import csv
import io
import json

import numpy as np
import pytest

import zelmo

from conftest import PROCESS


def test_numbers_and_summary_are_those_of_the_batch_program(batch, layout):
    folder = batch("--no-pictures", "--summary", "summary.json")
    told = json.loads((folder / "summary.json").read_text())
    run = zelmo.Run(layout, folder / "process.txt")
    for step in run:
        assert run.numbers() == told["steps"][step.number - 1]["layers"]
    summary = run.summary()
    assert summary["complete"] is True
    for key in ("grid", "cell", "version"):
        assert summary[key] == told[key]
    assert ([entry["sha256"] for entry in summary["inputs"]]
            == [entry["sha256"] for entry in told["inputs"]])
    for mine, other in zip(summary["steps"], told["steps"]):
        assert {key: mine[key] for key in ("number", "name", "line")} == {
            key: other[key] for key in ("number", "name", "line")}
    assert "layers" not in summary["steps"][0] and summary["steps"][-1]["layers"]


def test_probes_are_those_of_the_batch_program(batch, layout):
    places = [(2.5, 3.5), (6.999, 5.999), (1, 2)]
    arguments = [word for x, y in places for word in ("--probe", f"{x},{y}")]
    folder = batch("--no-pictures", *arguments, "--csv", "probes.csv")
    run = zelmo.Run(layout, folder / "process.txt")
    rows = list(csv.DictReader(io.StringIO((folder / "probes.csv").read_text())))
    probed = [(place, step.number, run.probe(*place)) for step in run for place in places]
    probed.sort(key=lambda told: (places.index(told[0]), told[1]))
    mine = [(number, part) for _, number, parts in probed for part in parts]
    assert len(mine) == len(rows)
    for (number, part), row in zip(mine, rows):
        values = list(row.values())
        assert str(number) in values
        texts = {f"{part.start:.3f}", f"{part.end:.3f}", f"{part.thickness:.3f}"}
        assert {text.replace("-0.000", "0.000") for text in texts} <= {
            value.replace("-0.000", "0.000") for value in values}
        assert part.layer is None or part.material in values


def test_sections_are_those_of_the_batch_program(batch, layout):
    folder = batch("--no-pictures", "--cut", "1.5,3,6.5,5", "--cuts", "cuts", "--stretch", "2",
                   "--steps", "last")
    run = zelmo.Run(layout, folder / "process.txt").run()
    cut = run.section(1.5, 3, 6.5, 5)
    assert [path.read_text() for path in (folder / "cuts").glob("*.csv")] == [cut.csv()]
    assert [path.read_text() for path in (folder / "cuts").glob("*.svg")] == [cut.svg(stretch=2)]
    assert cut._repr_svg_().startswith("<svg") or "<svg" in cut._repr_svg_()
    assert cut.along[0] == 0 and cut.along[-1] == pytest.approx(np.hypot(5, 2))
    assert cut.x.shape == cut.y.shape == cut.along.shape
    assert [layer.number for layer in cut.layers] == [layer.number for layer in run.layers]
    assert all(layer.bottom.shape == layer.top.shape == cut.along.shape for layer in cut.layers)
    with pytest.raises(ValueError, match="outside the window"):
        run.section(0, 0, 3, 3)
    with pytest.raises(ValueError):
        run.section(2, 3, 2, 3)
    with pytest.raises(ValueError, match="outside the window"):
        run.probe(100, 3)


def test_a_dump_is_that_of_the_batch_program(batch, layout, tmp_path):
    folder = batch("--no-pictures")
    zelmo.Run(layout, PROCESS, dumps=tmp_path).run()
    assert ((tmp_path / "VertexData.txt").read_bytes()
            == (folder / "VertexData.txt").read_bytes())


def test_lengths_follow_the_unit_of_the_process(layout):
    in_um = zelmo.Run(layout, PROCESS).run()
    text = PROCESS.replace("-legend", "-legend -use_nm").replace(
        "-x 1 -y 2 -dx 6 -dy 4", "-x 1000 -y 2000 -dx 6000 -dy 4000").replace("-res 0.15",
                                                                              "-res 150")
    in_nm = zelmo.Run(layout, text).run()
    assert in_nm.settings["unit"] == "nm" and in_um.settings["unit"] == "um"
    assert in_nm.probe(2500, 3500) == in_um.probe(2.5, 3.5)
    assert in_nm.section(1500, 3000, 6500, 5000).layers[1].top == pytest.approx(
        in_um.section(1.5, 3, 6.5, 5).layers[1].top)


def test_results_do_not_depend_on_the_threads(layout):
    try:
        zelmo.set_threads(1)
        assert zelmo.threads() == 1
        alone = zelmo.Run(layout, PROCESS).run()
        zelmo.set_threads(4)
        four = zelmo.Run(layout, PROCESS).run()
    finally:
        zelmo.set_threads(0)
    assert alone.numbers() == four.numbers()
    for a, b in zip(alone.layers, four.layers):
        assert np.array_equal(a.top, b.top) and np.array_equal(a.bottom, b.bottom)
    with pytest.raises(ValueError):
        zelmo.set_threads(-1)
