"""Pictures, models and pages: the bytes of the batch program."""
import pathlib
import struct
import sys

import numpy as np
import pytest

import zelmo

from conftest import PROCESS


def only(paths):
    """The only one of some paths."""
    (path,) = paths
    return path


def test_pictures_are_those_of_the_batch_program(batch, layout, tmp_path):
    folder = batch("--steps", "last")
    run = zelmo.Run(layout, folder / "process.txt").run()
    picture = run.picture()
    assert picture.png() == only((folder / "pictures").glob("*.png")).read_bytes()
    assert run._repr_png_() == picture.png() == picture._repr_png_()
    assert picture.pixels.dtype == np.uint8 and picture.pixels.shape[1:] == (1920, 4)
    assert (picture.pixels[..., 3] == 255).all()
    run.picture(tmp_path / "a.png")
    assert (tmp_path / "a.png").read_bytes() == picture.png()
    picture.save(tmp_path / "a.bmp")
    assert (tmp_path / "a.bmp").read_bytes()[:2] == b"BM"
    with pytest.raises(FileExistsError):
        picture.save(tmp_path / "a.bmp", overwrite=False)
    with pytest.raises(ValueError, match="jpg"):
        picture.save(tmp_path / "a.jpg")
    with pytest.raises(FileNotFoundError):
        picture.save(tmp_path / "none" / "a.png")
    assert sorted(path.name for path in tmp_path.iterdir()) == ["a.bmp", "a.png"]


def test_slides_are_those_of_the_batch_program(batch, layout):
    folder = batch("--steps", "last", "--width", 640, "--smooth", "--title", "--scale",
                   "--transparent", "--crop", "--view", "30,40,parallel", "--thin", "50")
    run = zelmo.Run(layout, folder / "process.txt").run()
    picture = run.picture(width=640, smooth=True, title=True, scale=True, transparent=True,
                          crop=True, view=(30, 40), parallel=True, thin=50)
    assert picture.png() == only((folder / "pictures").glob("*.png")).read_bytes()
    assert (picture.pixels[..., 3] == 0).any()


def test_wrong_choices_are_refused(run):
    with pytest.raises(zelmo.PictureError, match="before the first step"):
        run.picture()
    assert run._repr_png_() is None
    run.run(until=1)
    for wrong in ({"width": 100}, {"view": (1, 2, 3)}, {"view": (0, 91)}, {"parallel": True},
                  {"thin": -1}):
        with pytest.raises(ValueError):
            run.picture(**wrong)


def test_a_model_is_that_of_the_batch_program(batch, layout, tmp_path):
    folder = batch("--no-pictures", "--export", "stack.glb", "--export-tolerance", "1")
    run = zelmo.Run(layout, folder / "process.txt").run()
    run.export(tmp_path / "stack.glb", tolerance=1)
    assert (tmp_path / "stack.glb").read_bytes() == (folder / "stack.glb").read_bytes()
    run.export(tmp_path / "stack.STL")
    triangles = struct.unpack_from("<I", (tmp_path / "stack.STL").read_bytes(), 80)[0]
    assert (tmp_path / "stack.STL").stat().st_size == 84 + 50 * triangles and triangles > 100
    with pytest.raises(FileExistsError):
        run.export(tmp_path / "stack.STL")
    with pytest.raises(ValueError, match="obj"):
        run.export(tmp_path / "stack.obj")


def test_a_page_tells_what_that_of_the_batch_program_tells(batch, layout, tmp_path):
    sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "report"))
    import page_reader
    folder = batch("--report", "page.html", "--steps", "Gate", "--report-columns", "100")
    run = zelmo.Run(layout, folder / "process.txt").run()
    page = run.report(tmp_path / "page.html", steps="Gate", columns=100)
    assert run.finished and (tmp_path / "page.html").read_text(encoding="utf-8") == page.html
    mine = page_reader.PageFile(tmp_path / "page.html")
    told = page_reader.PageFile(folder / "page.html")
    assert without_times(mine.run) == without_times(told.run)
    assert mine.data == told.data and mine.fields
    assert [step["console"][0] for step in mine.run["steps"]] == [
        step["console"][0] for step in told.run["steps"]]
    assert page._repr_html_().startswith("<iframe")


def without_times(value):
    """A page's data without what differs from run to run and from program to program."""
    if isinstance(value, dict):
        return {key: without_times(part) for key, part in value.items()
                if key not in ("seconds", "program", "console", "notes")}
    if isinstance(value, list):
        return [without_times(part) for part in value]
    return value
