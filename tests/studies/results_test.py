import os
import subprocess
import sys

import pytest
from conftest import spacer_study
from zelmo.studies.errors import StudyError
from zelmo.studies.results import ROWS, Results, write_file
from zelmo.studies.study_file import read_study
from zelmo.studies.worker import Outcome

FACTS = {"process": "1"}


@pytest.fixture
def study(folder):
    return read_study(spacer_study(folder), output=folder / "results")


def outcome(number, error=""):
    return Outcome(number, {"foot": number / 3, "left_over": None}, error)


def rows(study):
    with open(os.path.join(study.output, ROWS), newline="") as file:
        return file.read().splitlines()


def test_rows_are_there_as_soon_as_they_are_appended(study):
    results = Results(study, FACTS)
    results.append([outcome(3), outcome(1, "it\nfailed, \"badly\"")])
    assert rows(study) == ["variant,THICKNESS,ETCH,foot,left_over,error", "3,60,100,1.0,,",
                           '1,60,60,0.3333333333333333,,"it / failed, ""badly"""']
    results.sort()
    assert [row.split(",")[0] for row in rows(study)] == ["variant", "1", "3"]
    results.close()


@pytest.mark.parametrize("keep", range(0, 90, 7))
def test_a_file_that_was_torn_anywhere_goes_on_behind_its_last_whole_row(study, keep):
    results = Results(study, FACTS)
    results.append([outcome(n) for n in (1, 2, 3, 4)])
    results.close()
    path = os.path.join(study.output, ROWS)
    data = open(path, "rb").read()
    with open(path, "wb") as file:
        file.write(data[:keep])
    results = Results(study, FACTS)
    assert len(results.rows) == max(0, data[:keep].count(b"\n") - 1)
    results.append([outcome(n) for n in (1, 2, 3, 4) if n not in results.rows])
    results.sort()
    results.close()
    assert open(path, "rb").read() == data


def test_rows_are_known_by_their_parameters_when_values_are_added(study, folder):
    results = Results(study, FACTS)
    results.append([outcome(5)])
    results.close()
    more = read_study(spacer_study(folder, parameters={"THICKNESS": [50, 60, 80, 100]}),
                      output=folder / "results")
    results = Results(more, FACTS)
    assert list(results.rows) == [9]
    assert results.rows[9][:3] == ["9", "80", "60"]
    results.close()


def test_results_of_another_study_are_not_mixed(study):
    Results(study, FACTS).close()
    with pytest.raises(StudyError, match="another study .process.: give another folder"):
        Results(study, {"process": "2"})
    results = Results(study, {"process": "2"}, overwrite=True)
    assert not results.rows
    results.close()


def test_a_row_that_was_changed_by_hand_is_told(study):
    Results(study, FACTS).close()
    with open(os.path.join(study.output, ROWS), "a") as file:
        file.write("1,2\n")
    with pytest.raises(StudyError, match=r"results.csv:2: 2 fields for 6 columns"):
        Results(study, FACTS)


def test_two_studies_do_not_write_into_one_folder(study):
    results = Results(study, FACTS)
    with pytest.raises(StudyError, match="another study writes there"):
        Results(study, FACTS)
    results.close()
    Results(study, FACTS).close()


def test_variants_that_failed_run_again_when_that_is_asked_for(study):
    results = Results(study, FACTS)
    results.append([outcome(1), outcome(2, "failed")])
    results.close()
    results = Results(study, FACTS, retry_errors=True)
    assert list(results.rows) == [1]
    results.close()


def test_a_variant_whose_file_is_gone_is_done_again(folder):
    study = read_study(spacer_study(folder, sections=[{"file": "{variant}.svg", "from": [0, 0], "to": [1, 0]}]),
                       output=folder / "results")
    results = Results(study, FACTS)
    for number in (1, 2):
        done = outcome(number)
        done.files = {f"{number}.svg": b"<svg/>"}
        results.append([done])
    results.close()
    os.unlink(folder / "results" / "1.svg")
    results = Results(study, FACTS)
    assert list(results.rows) == [2]
    results.close()


FULL_DISK = """
import resource, signal, sys
signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
sys.path.insert(0, sys.argv[1])
import pathlib
from conftest import spacer_study
from results_test import FACTS, outcome
from zelmo.studies.errors import StudyError
from zelmo.studies.results import Results
from zelmo.studies.study_file import read_study
folder = pathlib.Path(sys.argv[2])
results = Results(read_study(spacer_study(folder), output=folder / "results"), FACTS)
resource.setrlimit(resource.RLIMIT_FSIZE, (120, resource.RLIM_INFINITY))
try:
    for n in range(1, 13):
        results.append([outcome(n)])
except StudyError as error:
    print(error)
"""


def test_where_no_more_can_be_written_whole_rows_stay_and_the_reason_is_told(study, folder):
    here = os.path.dirname(__file__)
    told = subprocess.run([sys.executable, "-c", FULL_DISK, here, str(folder)], capture_output=True, text=True,
                          timeout=120)
    assert "results.csv: File too large: nothing that was done is lost" in told.stdout, told.stderr
    data = open(os.path.join(study.output, ROWS), "rb").read()
    assert len(data) <= 120 and data.endswith(b"\n") and data.count(b"\n") > 2
    results = Results(study, FACTS)
    assert 0 < len(results.rows) < 12
    results.close()


def test_a_file_that_cannot_be_written_leaves_nothing_half(folder):
    os.makedirs(folder / "target")
    with pytest.raises(OSError):
        write_file(str(folder / "target"), b"x")
    assert sorted(os.listdir(folder)) == ["target"]
