import gzip
import pickle

import numpy as np
import pytest

import zelmo


def test_a_layout_tells_its_cells_and_layers(layout):
    assert "CMOS_INVERTER" in layout.cells
    assert layout.top_cells == ["CMOS_INVERTER"]
    assert (3, 0) in layout.layers("CMOS_INVERTER")
    assert layout.layers("CMOS_INVERTER") == sorted(layout.layers("CMOS_INVERTER"))
    assert layout.um_per_unit == pytest.approx(0.001)
    assert layout.repairs == []


def test_boxes_and_polygons_are_those_of_the_cell(layout):
    box = layout.box("CMOS_INVERTER")
    polygons = layout.polygons("CMOS_INVERTER")
    corners = np.concatenate([polygon.points for polygon in polygons])
    assert corners.dtype == np.float64 and corners.shape[1] == 2
    assert box == pytest.approx((*corners.min(axis=0), *corners.max(axis=0)))
    gates = layout.polygons("CMOS_INVERTER", layers=[3])
    assert gates and {(gate.layer, gate.datatype) for gate in gates} == {(3, 0)}
    assert layout.box("CMOS_INVERTER", [3]) == layout.box("CMOS_INVERTER", [(3, 0)])
    assert layout.box("CMOS_INVERTER", [(3, 99)]) is None
    assert layout.box("CMOS_INVERTER", [3])[2] < box[2]


def test_a_window_takes_what_overlaps_it_whole(layout):
    gates = layout.polygons("CMOS_INVERTER", [3])
    x0, y0, x1, y1 = layout.box("CMOS_INVERTER", [3])
    inside = layout.polygons("CMOS_INVERTER", [3], window=(x0, y0, x1 - x0, y1 - y0))
    assert len(inside) == len(gates)
    assert all(np.array_equal(a.points, b.points) for a, b in zip(gates, inside))
    assert layout.polygons("CMOS_INVERTER", [3], window=(x1 + 1, y1 + 1, 1, 1)) == []
    with pytest.raises(ValueError):
        layout.polygons("CMOS_INVERTER", window=(1, 2, 3))


def test_an_unknown_cell_is_a_key_error(layout):
    for ask in (layout.layers, layout.box, layout.polygons):
        with pytest.raises(KeyError, match="NOWHERE"):
            ask("NOWHERE")


def test_a_refused_layout_names_file_and_place(tmp_path, layout_path):
    missing = tmp_path / "none.gds"
    with pytest.raises(zelmo.LayoutError, match="no such file") as caught:
        zelmo.Layout(missing)
    assert caught.value.file == str(missing) and caught.value.code == 2
    broken = tmp_path / "broken.gds"
    broken.write_bytes(b"\x00\x06\x00\x02\x00\x03" + b"\x00\x04\x07\x00" * 3)
    with pytest.raises(zelmo.LayoutError) as caught:
        zelmo.Layout(broken)
    assert isinstance(caught.value, zelmo.Error)
    assert caught.value.byte == 6 and str(broken) in str(caught.value)
    assert pickle.loads(pickle.dumps(caught.value)).byte == 6
    with pytest.raises(zelmo.LayoutError, match="folder"):
        zelmo.Layout(tmp_path)
    packed = tmp_path / "packed.gds.gz"
    packed.write_bytes(gzip.compress(layout_path.read_bytes()))
    assert zelmo.Layout(packed).cells


def test_names_of_files_survive_whatever_bytes_they_hold(tmp_path, layout_path):
    path = bytes(tmp_path) + b"/\xff \xc3\xa4.gds"
    with open(path, "wb") as file:
        file.write(layout_path.read_bytes())
    assert zelmo.Layout(path).cells
    with pytest.raises(zelmo.LayoutError) as caught:
        zelmo.Layout(path + b"x")
    assert caught.value.file.encode("utf-8", "surrogateescape") == path + b"x"


def test_a_layout_is_pickled_by_its_file(layout):
    assert pickle.loads(pickle.dumps(layout)).cells == layout.cells
