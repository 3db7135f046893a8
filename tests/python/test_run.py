import copy
import pathlib

import numpy as np
import pytest

import zelmo

from conftest import PROCESS


def surfaces(run):
    """All surfaces of a run as bytes."""
    return [(layer.number, layer.material, layer.top.tobytes(), layer.bottom.tobytes())
            for layer in run.layers]


def test_a_run_executes_step_by_step(run):
    assert [step.kind for step in run.steps] == ["substrate", "deposition", "photo", "etch", "strip",
                                                 "deposition", "dump"]
    assert run.done == 0 and not run.finished and len(run.layers) == 0
    taken = [(step.number, run.done) for step in run]
    assert taken == [(number, number) for number in range(1, 8)]
    assert run.finished and run.step() is None
    step = run.steps[1]
    assert step.name == "Oxide deposition" and step.line == 5 and step.seconds > 0
    assert step.arguments["-thickness"] == "400"
    assert run.layers.names == ["Substrate", "Oxide", "Metal"] or "Oxide" in run.layers.names


def test_until_takes_numbers_and_what_steps_are_called(layout):
    run = zelmo.Run(layout, PROCESS)
    assert run.run(until=2).done == 2
    assert run.run(until="Gate").done == 5  # photo, etch and strip are called so: the last counts
    assert run.run(until=1).done == 5
    assert run.run(until="last").done == 7
    assert run.choose("photo,6-7") == [2, 5, 6]
    for wrong in (0, 8, -1, "Nothing", "9"):
        with pytest.raises(ValueError):
            run.run(until=wrong)
    with pytest.raises(ValueError, match="nearest name"):
        run.choose("Gat")


def test_a_process_is_a_file_a_text_or_a_list_of_steps(layout, process_path):
    by_file = zelmo.Run(layout, process_path).run()
    steps = [
        zelmo.Step("settings", version=4, N=200, angle=30, legend=True, heights=False),
        zelmo.Step("location", x=1, y=2, dx=6, dy=4),
        zelmo.Step("gds", cell="CMOS_INVERTER"),
        zelmo.Step("deposition", name="Oxide", type="oxide", thickness=400, sc=1.0,
                   color=(180, 200, 230, 100)),
        zelmo.Step("photo", name="Gate", mask_id=3, type=1, res=0.15, thickness=900, taper=80),
        zelmo.Step("etch", name="Gate", targets=["oxide"], depth=300, iso=0.3),
        zelmo.Step("strip", name="Gate"),
        zelmo.Step("deposition", name="Metal", type="metal", thickness=250, sc=0.5,
                   color=(90, 130, 190, 100), alpha=0.5),
        zelmo.Step("dump"),
        zelmo.Step("stop")]
    by_steps = zelmo.Run(layout, steps).run()
    by_text = zelmo.Run(layout, PROCESS).run()
    assert surfaces(by_file) == surfaces(by_steps) == surfaces(by_text)
    assert by_file.fingerprints == by_steps.fingerprints == by_text.fingerprints
    assert str(steps[3]).startswith("deposition -name Oxide -type oxide -thickness 400 -sc 1.0")
    with pytest.raises(ValueError):
        zelmo.Run(layout, [zelmo.Step("stop", name="a\nstop")])


def test_errors_of_a_process_have_their_lines(layout, process_path):
    with pytest.raises(zelmo.ProcessError) as caught:
        zelmo.Run(layout, PROCESS.replace("-sc 1.0", "-sc 2.0").replace("strip", "stripp"))
    assert caught.value.line == 5 and caught.value.file == "<process>"
    assert [line for line, _ in caught.value.errors][:2] == [5, 8]
    process_path.write_text("etch\n")
    with pytest.raises(zelmo.ProcessError) as caught:
        zelmo.Run(layout, process_path)
    assert caught.value.file == str(process_path) and str(process_path) in str(caught.value)
    with pytest.raises(OSError):
        zelmo.Run(layout, process_path.with_name("none.txt"))
    with pytest.raises(zelmo.ProcessError, match="OXYDE"):
        zelmo.Run(layout, PROCESS, set={"OXYDE": 300})
    with pytest.raises(zelmo.ProcessError, match="NOWHERE"):
        zelmo.Run(layout, PROCESS, cell="NOWHERE")


def test_what_is_given_stands_in_place_of_what_the_process_says(layout):
    run = zelmo.Run(layout, PROCESS, set={"OXIDE": 250.0, "DEPTH": "100"}, columns=220, angle=10,
                    window=(2, 3, 3, 2))
    assert run.steps[1].arguments["-thickness"] == "250.0"
    assert run.settings["window"] == (2, 3, 3, 2) and run.settings["angle"] == 10
    assert run.settings["columns"] == run.x.size and run.settings["rows"] == run.y.size
    fitted = zelmo.Run(layout, PROCESS, window="fit:0.5").settings["window"]
    x0, y0, x1, y1 = layout.box("CMOS_INVERTER", [3])
    assert fitted[1] == pytest.approx(y0 - 0.5) and fitted[3] == pytest.approx(y1 - y0 + 1)
    for wrong in ({"columns": 100}, {"angle": 91}, {"window": "fitt"}, {"window": (1, 2, 0, 3)},
                  {"window": (1, 2, 3)}, {"set": {"1": 2}}, {"set": {"OXIDE": "a b"}}):
        with pytest.raises(ValueError):
            zelmo.Run(layout, PROCESS, **wrong)


def test_layers_are_views_of_the_models_memory(run):
    run.run(until="Oxide")
    oxide = run.layers["Oxide"]
    assert oxide.top.dtype == np.float32
    assert oxide.top.shape == (run.y.size, run.x.size)
    assert not oxide.top.flags.writeable and not oxide.top.flags.owndata
    with pytest.raises(ValueError):
        oxide.top[0, 0] = 1
    with pytest.raises(ValueError):
        oxide.top.flags.writeable = True
    again = run.layers["Oxide"].top
    assert again.__array_interface__["data"] == oxide.top.__array_interface__["data"]
    assert np.allclose(oxide.thickness, 0.4)
    assert run.layers[0].number == 1 and run.layers[-1].material == "Oxide"
    assert "Oxide" in run.layers and "Nothing" not in run.layers
    with pytest.raises(KeyError, match="Nothing"):
        run.layers["Nothing"]
    with pytest.raises(IndexError):
        run.layers[9]


def test_a_view_keeps_the_state_at_which_it_was_taken(run):
    run.run(until="Oxide")
    before = run.layers["Oxide"].top
    kept = before.copy()
    run.run()
    after = run.layers["Oxide"].top
    assert np.array_equal(before, kept) and not np.array_equal(before, after)


def test_axes_cover_and_inside_belong_to_the_layout(run):
    run.run()
    x, y, width, height = run.settings["window"]
    rows, columns = run.inside
    assert run.x[columns][0] >= x - 1e-6 and run.x[columns][-1] <= x + width + 1e-6
    assert run.y[rows][0] >= y - 1e-6 and run.y[rows][-1] <= y + height + 1e-6
    spacing = run.settings["spacing"]
    assert np.allclose(np.diff(run.x), spacing)
    cover = run.cover
    assert cover.slot.dtype == np.int32 and cover.height.dtype == np.float32
    assert set(np.unique(cover.slot) + 1) <= {layer.number for layer in run.layers}
    metal = run.layers["Metal"]
    shows = cover.slot == metal.number - 1
    assert shows.any() and np.array_equal(cover.height[shows], metal.top[shows])
    with pytest.raises(ValueError):
        cover.slot[0, 0] = 1


def test_a_copy_goes_its_own_way_and_shares_what_neither_rewrites(run):
    run.run(until="Gate")
    for other in (run.copy(), copy.copy(run), copy.deepcopy(run)):
        assert surfaces(other) == surfaces(run)
        assert (other.layers[0].top.__array_interface__["data"]
                == run.layers[0].top.__array_interface__["data"])
        assert zelmo.shared_nbytes([run, other]) == zelmo.shared_nbytes([run]) == run.nbytes
        before = surfaces(run)
        other.run()
        assert other.finished and run.done == 5 and surfaces(run) == before
        assert zelmo.shared_nbytes([run, other]) > run.nbytes
    straight = zelmo.Run(run.layout, PROCESS).run()
    assert surfaces(other) == surfaces(straight)


def test_dumps_go_where_the_run_is_told(layout, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    zelmo.Run(layout, PROCESS).run()
    assert list(tmp_path.iterdir()) == []
    folder = tmp_path / "dumps"
    folder.mkdir()
    zelmo.Run(layout, PROCESS, dumps=folder).run()
    assert [path.name for path in folder.iterdir()] == ["VertexData.txt"]
    assert [path.name for path in tmp_path.iterdir()] == ["dumps"]
    lost = zelmo.Run(layout, PROCESS, dumps=tmp_path / "none")
    with pytest.raises(FileNotFoundError):
        lost.run()
    assert lost.done == 6
    assert not pathlib.Path("VertexData.txt").exists()


def test_notes_stand_with_the_run_and_its_steps(layout):
    etch = "etch -name All -targets oxide -depth 900 -iso 0.0\n"
    run = zelmo.Run(layout, PROCESS.replace("strip", etch + "strip"), name="my process")
    notes = run.notes + [note for step in run for note in step.notes]
    assert run.steps[1].notes == [] and notes
    assert all(note.file in ("my process", run.layout.path) and note.text for note in notes)
    assert [(note.kind, note.line) for note in run.steps[4].notes] == [("substrate-reached", 8)]
