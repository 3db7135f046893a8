import numpy
import pytest
import zelmo
from conftest import EXAMPLES
from zelmo.studies.expressions import Expression, ExpressionError
from zelmo.studies.run_numbers import RunNumbers, width_at


@pytest.fixture(scope="module")
def contact():
    return zelmo.Run(EXAMPLES / "contact.gds", EXAMPLES / "contact.txt", columns=300).run()


def value_of(run, text):
    names = RunNumbers(run).names()
    return Expression(text, names).value(names)


def test_numbers_of_layers_are_those_of_the_summary(contact):
    for row in contact.numbers():
        names = {"area": "area_um2", "volume": "volume_um3", "mean_thickness": "mean_thickness_nm",
                 "highest_level": "highest_level_nm"}
        for name, key in names.items():
            assert value_of(contact, f'layers["{row["label"]}"].{name}') == row[key]


def test_cells_share_out_the_window(contact):
    areas = RunNumbers(contact).cell_areas()
    assert areas.sum() == pytest.approx(1.8 * 0.8)
    plug = contact.layers["Plug"]
    assert areas[plug.thickness > 0].sum() == pytest.approx(value_of(contact, 'area("Plug")'), rel=1e-6)


def test_areas_of_contact_are_parts_of_what_lies_above(contact):
    landed = value_of(contact, 'contact_area("Plug", "Silicon")')
    assert 0.8 * 0.3**2 < landed < 1.1 * 0.3**2
    assert value_of(contact, 'contact_area("Plug", "Poly") + contact_area("Plug", "Spacer")') == 0
    exposed = value_of(contact, 'exposed_area("Plug") + exposed_area("PMD")')
    assert exposed == pytest.approx(1.8 * 0.8, rel=1e-6)


def test_thicknesses_at_a_place_are_those_of_the_probe(contact):
    parts = {part.label: part for part in contact.probe(0, 0)}
    assert value_of(contact, 'thickness("Poly", 0, 0)') == parts["Poly"].thickness
    assert value_of(contact, 'top("Poly", 0, 0) - bottom("Poly", 0, 0)') == pytest.approx(200, abs=0.01)
    assert value_of(contact, "level(0, 0)") == contact.probe(0, 0)[0].end
    assert value_of(contact, "probe(0, 0)[0].label") == "PMD"
    assert value_of(contact, 'thickness("Plug", 0, 0)') == 0


def test_a_layer_that_is_gone_is_empty_and_one_that_never_was_is_told(contact):
    early = zelmo.Run(EXAMPLES / "contact.gds", EXAMPLES / "contact.txt", columns=200).run(until=3)
    assert value_of(early, 'area("Plug") + thickness("Plug", 0, 0) + width("Plug", 0, 0, 1, 0, at=5)') == 0
    with pytest.raises(ExpressionError, match='there is no layer "Plgu": did you mean Plug'):
        value_of(early, 'area("Plgu")')
    with pytest.raises(ExpressionError, match="outside"):
        value_of(early, "level(50, 0)")


def test_a_width_is_the_length_within_a_layer(contact):
    # The gate is 0.40 um wide, a little more at its foot.
    assert value_of(contact, 'width("Poly", -0.5, 0, 0.5, 0, at=500)') == pytest.approx(0.4, abs=0.02)


def test_widths_of_random_surfaces_are_those_of_a_fine_sampling():
    random = numpy.random.default_rng(3)
    for _ in range(50):
        along = numpy.cumsum(random.uniform(0.01, 1, 12))
        bottom = random.uniform(-1, 1, 12)
        top = bottom + random.uniform(0, 1, 12) * random.integers(0, 2, 12)
        fine = numpy.linspace(along[0], along[-1], 200001)
        low, high = numpy.interp(fine, along, bottom), numpy.interp(fine, along, top)
        sampled = ((low <= 0.2) & (high >= 0.2) & (high > low)).mean() * (along[-1] - along[0])
        assert width_at(along, bottom, top, 0.2) == pytest.approx(sampled, abs=0.002)
