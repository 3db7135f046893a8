"""What docs/studies.md shows of studies is read as it stands there."""
import pathlib
import re
import shutil
import tomllib

import pytest
from conftest import EXAMPLES
from zelmo.studies.expressions import FUNCTIONS
from zelmo.studies.run_numbers import OFFERED_NAMES, LayerNumbers
from zelmo.studies.study_file import read_study

PAGE = (pathlib.Path(__file__).parents[2] / "docs" / "studies.md").read_text()
BLOCKS = re.findall(r"```toml\n(.*?)```", PAGE, re.S)


def test_the_first_study_of_the_page_is_a_study(folder):
    for name in ("spacer.gds", "spacer.txt"):
        shutil.copy(EXAMPLES / name, folder)
    (folder / "spacer.toml").write_text(BLOCKS[0])
    study = read_study(folder / "spacer.toml")
    assert len(study.variants) == 30 and study.output == str(folder / "spacer results")


@pytest.mark.parametrize("number", range(len(BLOCKS)))
def test_what_the_page_shows_is_toml(number):
    assert tomllib.loads(BLOCKS[number])


def test_the_tables_of_the_page_are_a_study(folder):
    (folder / "measures.py").write_text("def dip(run, parameters):\n    return 0\n")
    parameters = BLOCKS[1].replace("[parameters.ASPECT]", "[parameters.ASPECT]\nvalues = [1]")
    measures = BLOCKS[2].replace("oxide / T_OXIDE", "oxide / thin")
    kept = BLOCKS[3].replace("THICKNESS == 100", "thin == 100").replace("ETCH > 200", "grid > 0")
    for old, new in (("{THICKNESS} {ETCH}", "{variant}"), ("foot", "oxide"), ('"ETCH"', '"grid"'),
                     ('"THICKNESS"', '"thin"'), ('"OXIDE"', '"ASPECT"')):
        kept = kept.replace(old, new)
    (folder / "all.toml").write_text('[study]\nlayout = "a.gds"\nprocess = "a.txt"\n' + parameters + measures + kept)
    study = read_study(folder / "all.toml")
    assert list(study.parameters) == ["grid", "thin", "ASPECT"] and len(study.variants) == 3 * 7
    assert [each.name for each in study.measures] == ["oxide", "share", "film", "dip"]


def test_every_name_of_expressions_is_on_the_page():
    for name in (*OFFERED_NAMES, *FUNCTIONS, *LayerNumbers.OFFERED):
        assert re.search(rf"\b{name}\b", PAGE), name
