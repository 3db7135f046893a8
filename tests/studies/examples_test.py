"""The worked studies: what they are about comes out, on coarse grids and with some of their variants."""
import os
import runpy
import shutil

import pytest
from conftest import EXAMPLES
from zelmo.studies import running
from zelmo.studies.plots import make_plots
from zelmo.studies.study_file import read_study


def some_of(name, folder, scheduler, wanted):
    """The frame of those variants of a worked study for which `wanted` is true, and the study."""
    study = read_study(EXAMPLES / f"{name}.toml", output=folder / name)
    study.variants = [variant for variant in study.variants if wanted(variant)]
    study.kept = []
    study.run = {"columns": 300}
    result = running.run_study(study, scheduler=scheduler, quiet=True)
    assert result.failed == 0 and os.path.getsize(result.page) > 1000
    return result.frame, study


def test_spacers_are_as_wide_as_their_film_when_the_etch_just_clears_it(folder, scheduler):
    frame, study = some_of("spacer", folder, scheduler,
                           lambda v: v["THICKNESS"] in (60, 100) and v["ETCH"] in (60, 120, 300))
    found = frame.set_index(["THICKNESS", "ETCH"])
    assert found.left_over[100, 60] == pytest.approx(40, abs=0.5)
    assert found.left_over[100, 120] == 0
    assert found.foot[60, 120] == pytest.approx(0.06, abs=0.012)
    assert found.foot[100, 120] == pytest.approx(0.1, abs=0.012)
    assert found.foot[100, 300] < found.foot[100, 120] or found.height[100, 300] < found.height[100, 120]
    assert all(data.startswith(b"\x89PNG") for _, data in make_plots(study, frame))


def test_a_contact_that_is_moved_towards_the_gate_lands_on_it(folder, scheduler):
    frame, _ = some_of("contact", folder, scheduler,
                       lambda v: v["OVERLAY"] in (-0.4, -0.2, 0.0) and v["TAPER"] in (75, 89))
    found = frame.set_index(["OVERLAY", "TAPER"])
    assert found.wrong[0.0, 89] == 0 and found.right[0.0, 89] == pytest.approx(0.09, rel=0.15)
    assert found.gate[-0.4, 89] > 0.01
    assert found.right[-0.4, 89] < found.right[-0.2, 89] < found.right[0.0, 89]
    assert found.right[0.0, 75] > found.right[0.0, 89]
    assert found.wrong[-0.2, 75] > found.wrong[-0.2, 89]


def test_walls_are_covered_by_the_sideways_share_until_the_trench_closes(folder, scheduler):
    frame, _ = some_of("coverage", folder, scheduler, lambda v: v["ASPECT"] in (1, 4) and v["SC"] in (0.25, 1.0))
    found = frame.set_index(["ASPECT", "SC"])
    assert found.wall[1, 0.25] == pytest.approx(0.25, abs=0.08)
    assert found.wall[1, 1.0] == pytest.approx(1.0, abs=0.08)
    assert found.middle[1, 0.25] == pytest.approx(1.0, abs=0.02)
    assert found.middle[4, 1.0] > 1.5 and found.dip[4, 1.0] < found.dip[1, 1.0]


def test_the_step_at_the_isolation_is_what_polish_and_wet_etch_leave(folder, scheduler):
    frame, _ = some_of("isolation", folder, scheduler,
                       lambda v: v["OVER"] in (0, 50, 100) and v["NITRIDE"] == 120 and v["DEGLAZE"] in (30, 60))
    found = frame.set_index(["OVER", "DEGLAZE"])
    for over in (0, 50, 100):
        for etched in (30, 60):
            assert found.step[over, etched] == pytest.approx(130 - over - etched, abs=1)
    assert found.dip[100, 60] > found.dip[0, 30]


def test_the_notebook_runs_from_its_first_cell_to_its_last(folder):
    for name in ("spacer.gds", "spacer.txt", "spacer_notebook.py"):
        shutil.copy(EXAMPLES / name, folder)
    names = runpy.run_path(str(folder / "spacer_notebook.py"), run_name="__main__")
    assert len(names["frame"]) == 21 and not names["frame"].error.any()
    text = (folder / "spacer_notebook.py").read_text()
    assert text.startswith("# %%") and text.count("\n# %%") > 5
