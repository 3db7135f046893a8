"""What the tests of the Python package share: the example layout of the build, a short process on
it, and the batch program beside which results are held."""
import os
import pathlib
import subprocess
import sys

import pytest

BUILD = pathlib.Path(os.environ["ZELMO_BUILD"])
sys.path.insert(0, str(BUILD / "python"))

import zelmo  # noqa: E402

PROCESS = """# A short process with a film, a mask and a second film
settings -version 4 -N 200 -angle 30 -legend
location -x 1 -y 2 -dx 6 -dy 4
gds -cell CMOS_INVERTER
deposition -name Oxide -type oxide -thickness ${OXIDE:-400} -sc 1.0 -color 180 200 230 100
photo -name Gate -mask_id 3 -type 1 -res 0.15 -thickness 900 -taper 80
etch -name Gate -targets oxide -depth ${DEPTH:-300} -iso 0.3
strip -name Gate
deposition -name Metal -type metal -thickness 250 -sc 0.5 -color 90 130 190 100 -alpha 0.5
dump
stop
"""

#: Whether checks make all of the package slow.
SLOW = bool(os.environ.get("ZELMO_SLOW"))

#: Steps that take seconds, with checks as well.
LONG_PROCESS = f"""settings -version 4 -N {700 if SLOW else 2000}
location -x 0 -y 1 -dx 10 -dy 10
gds -cell CMOS_INVERTER
deposition -name Film -type film -thickness 3000 -sc 1.0 -color 180 200 230 100
photo -name Gate -mask_id 3 -type 1 -res 1.5 -thickness 900 -taper 45
etch -name Gate -targets film -depth 2000 -iso 1.0
strip -name Gate
stop
"""


@pytest.fixture(scope="session")
def build():
    """The build folder."""
    return BUILD


@pytest.fixture(scope="session")
def layout_path():
    """A layout file."""
    return BUILD / "examples" / "cmos_inverter.gds"


@pytest.fixture(scope="session")
def layout(layout_path):
    """The layout of that file."""
    return zelmo.Layout(layout_path)


@pytest.fixture
def process_path(tmp_path):
    """A process file."""
    path = tmp_path / "process.txt"
    path.write_text(PROCESS)
    return path


@pytest.fixture
def run(layout):
    """A run of the short process, nothing executed."""
    return zelmo.Run(layout, PROCESS)


@pytest.fixture(scope="session")
def batch(layout_path, tmp_path_factory):
    """What the batch program makes of the short process: its folder. Arguments are added."""
    def call(*arguments):
        folder = tmp_path_factory.mktemp("batch")
        (folder / "process.txt").write_text(PROCESS)
        done = subprocess.run(
            [BUILD / "zelmo-batch", layout_path, "process.txt", "-o", "pictures", "--no-notes",
             *map(str, arguments)], cwd=folder, capture_output=True, check=False)
        assert done.returncode == 0, done.stderr.decode()
        return folder
    return call
