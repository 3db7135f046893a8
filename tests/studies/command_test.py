"""The program zelmo-study, as a person or a script calls it."""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time

import pytest
from conftest import BUILD, spacer_study, write_toml

PROGRAM = [sys.executable, str(BUILD / "zelmo-study")]
SLOW = """
import time
def slow(run, parameters):
    time.sleep({seconds})
    return parameters["ETCH"]
"""


def call(*arguments, **options):
    return subprocess.run([*PROGRAM, *map(str, arguments)], capture_output=True, text=True, timeout=300, **options)


@pytest.fixture
def study(folder):
    """A study in a file, whose variants take a while each."""
    (folder / "slow.py").write_text(SLOW.format(seconds=0.15))
    write_toml(folder / "s.toml", spacer_study(folder, measures={"m": {"function": "slow.py:slow"}}))
    return folder / "s.toml"


def test_help_tells_of_studies_options_and_exit_statuses():
    told = call("--help")
    assert told.returncode == 0
    for word in ("STUDY.toml", "[parameters]", "[measures]", "--dry-run", "--scheduler", "--memory", "Exit status"):
        assert word in told.stdout


def test_the_installed_program_finds_its_package(study, folder):
    made = subprocess.run(["cmake", "--install", str(BUILD), "--prefix", str(folder / "usr"), "--component", "python"],
                          capture_output=True, text=True, timeout=300)
    assert made.returncode == 0, made.stderr
    for name in ("share/man/man1/zelmo-study.1.gz", "share/zelmo/zelmo-study.sbatch",
                 "share/doc/python3-zelmo/examples/studies/spacer.toml"):
        assert (folder / "usr" / name).is_file(), name
    shutil.copy(BUILD / "colors.txt", folder / "usr" / "share" / "zelmo")  # of the package that this one needs
    installed = {name: each for name, each in os.environ.items() if name != "PYTHONPATH"}
    told = subprocess.run([str(folder / "usr" / "bin" / "zelmo-study"), "--dry-run", str(study)], capture_output=True,
                          text=True, timeout=300, env=installed)
    assert told.returncode == 0 and "21 steps to run" in told.stdout, told.stderr


@pytest.mark.parametrize("arguments, status, words", [
    ([], 1, "STUDY.toml"), (["--wrong", "x"], 1, "--wrong"), (["none.toml"], 1, "none.toml: no such file"),
    (["s.toml", "--workers", "0"], 1, "no number from 1 to 4096"), (["s.toml", "--memory", "1"], 1, "no size"),
    (["s.toml", "--scheduler", "tcp://x:1", "--workers", "2"], 1, "--scheduler has workers"),
    (["s.toml", "--part", "3/2"], 1, "no part"),
])
def test_wrong_command_lines_end_with_1(study, arguments, status, words):
    told = call(*arguments, cwd=study.parent)
    assert told.returncode == status and words in told.stderr
    assert told.stderr.startswith("zelmo-study: ") and told.stderr.count("\n") == 1


@pytest.mark.parametrize("change, status, words", [
    ({"study": {"layout": "none.gds"}}, 2, "none.gds"), ({"study": {"process": "none.txt"}}, 3, "none.txt"),
    ({"study": {"until": "Nowhere"}}, 3, "no variant can run"),
    ({"set": {"NONE": 1}}, 3, "NONE"), ({"measures": {"m": "1 +"}}, 3, "[measures] m"),
])
def test_files_that_are_refused_end_with_the_statuses_of_the_batch_program(folder, change, status, words):
    write_toml(folder / "s.toml", spacer_study(folder, **change))
    told = call("s.toml", cwd=folder)
    assert told.returncode == status, told.stderr
    assert words in told.stderr and "Traceback" not in told.stderr


def test_a_dry_run_tells_steps_and_time_and_leaves_nothing(study):
    told = call("--dry-run", "--workers", 2, study)
    assert told.returncode == 0, told.stderr
    assert "12 variants of THICKNESS (3), ETCH (4)" in told.stdout
    assert "21 steps to run; 75 of 96 are shared" in told.stdout
    assert "on 2 workers" in told.stdout
    assert not (study.parent / "s results").exists()


def rows(folder):
    try:
        return (folder / "results.csv").read_bytes().count(b"\n") - 1
    except OSError:
        return 0


def begin(study, *arguments):
    return subprocess.Popen([*PROGRAM, str(study), "--workers", "2", "--no-page", *arguments],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, start_new_session=True)


def wait_for_rows(process, folder, count):
    for _ in range(15000):
        if rows(folder) >= count or process.poll() is not None:
            break
        time.sleep(0.02)
    assert process.poll() is None and rows(folder) >= count


def processes_of(session):
    """The processes of a session that still run."""
    found = []
    for each in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = each.read_text().rpartition(")")[2].split()
        except OSError:
            continue
        if int(fields[3]) == session and fields[0] != "Z":
            found.append(int(each.parent.name))
    return found


def wait_for_end(session):
    for _ in range(1200):
        if not processes_of(session):
            return True
        time.sleep(0.1)
    return False


def test_a_study_that_is_killed_or_interrupted_goes_on_with_the_same_command(study):
    results = study.parent / "s results"
    first = begin(study)
    wait_for_rows(first, results, 2)
    os.kill(first.pid, signal.SIGKILL)
    first.communicate()
    kept = rows(results)
    assert 2 <= kept < 12
    assert wait_for_end(first.pid), "workers outlive their study"

    second = begin(study)
    wait_for_rows(second, results, kept + 2)
    os.killpg(second.pid, signal.SIGINT)  # as a terminal sends it, to all its processes
    out, told = second.communicate(timeout=200)
    assert second.returncode == 130 and "the same command goes on" in told and "Traceback" not in told + out
    assert wait_for_end(second.pid)
    interrupted = rows(results)

    third = begin(study)
    out, told = third.communicate(timeout=300)
    assert third.returncode == 0, told
    assert f"12 variants, {interrupted} of them done already" in out
    lines = (results / "results.csv").read_text().splitlines()
    assert [line.split(",")[0] for line in lines[1:]] == [str(n) for n in range(1, 13)]
    assert not [line for line in lines[1:] if line.split(",")[-1]]


def test_a_full_disk_ends_with_5_and_the_study_goes_on_when_there_is_room(study):
    results = study.parent / "s results"
    program = "import runpy, resource, signal, sys; signal.signal(signal.SIGXFSZ, signal.SIG_IGN); " \
              "import zelmo.studies.results as r; real = r.Results.append; count = [0]\n" \
              "def append(self, outcomes):\n" \
              "    count[0] += 1\n" \
              "    if count[0] == 3: resource.setrlimit(resource.RLIMIT_FSIZE, (150, resource.RLIM_INFINITY))\n" \
              "    return real(self, outcomes)\n" \
              "r.Results.append = append\n" \
              "from zelmo.studies.command import main; sys.exit(main(sys.argv[1:]))"
    told = subprocess.run([sys.executable, "-c", program, str(study), "--workers", "2", "--no-page"],
                          capture_output=True, text=True, timeout=300)
    assert told.returncode == 5, told.stderr
    assert "nothing that was done is lost" in told.stderr and "Traceback" not in told.stderr
    kept = rows(results)
    assert 0 < kept < 12 and (results / "results.csv").read_bytes().endswith(b"\n")
    again = call(study, "--workers", 2)
    assert again.returncode == 0 and f"{kept} of them done already" in again.stdout
    assert (results / "index.html").exists() and (results / "plot 1.png").read_bytes()[:4] == b"\x89PNG"
    assert rows(results) == 12
