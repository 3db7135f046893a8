"""The script for Slurm: on a Slurm of one node that the test starts, where Debian's packages are installed
and the test may start daemons; and with a stand-in for `srun` everywhere."""
import os
import shutil
import signal
import socket
import subprocess
import time

import pytest
from conftest import BUILD, spacer_study, write_toml

SCRIPT = BUILD / "zelmo-study.sbatch"
DAEMONS = ("munged", "slurmctld", "slurmd", "sbatch", "sinfo")

CONFIGURATION = """\
ClusterName=one
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={ports[0]}
SlurmdPort={ports[1]}
AuthInfo=socket={folder}/munge.socket
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
ReturnToService=2
SlurmUser=root
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmdSpoolDir={folder}/spool
StateSaveLocation={folder}/state
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
NodeName={host} NodeAddr=127.0.0.1 CPUs={cores} State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES State=UP
"""


def environment():
    return {**os.environ, "ZELMO_PYTHON": "/usr/bin/python3", "ZELMO_STUDY": str(BUILD / "zelmo-study")}


def test_the_script_starts_scheduler_and_workers_and_ends_them(folder):
    """With an `srun` that starts two processes on this machine, as Slurm would in an allocation."""
    write_toml(folder / "s.toml", spacer_study(folder))
    (folder / "bin").mkdir()
    srun = folder / "bin" / "srun"
    srun.write_text('#!/bin/sh\nwhile [ "${1#--}" != "$1" ]; do shift; done\n"$@" & one=$!\n"$@" & two=$!\n'
                    'trap "kill $one $two" TERM\nwait\nwait\n')
    srun.chmod(0o755)
    told = subprocess.run([str(SCRIPT), str(folder / "s.toml"), "--no-page"], capture_output=True, text=True,
                          timeout=600, env={**environment(), "PATH": f"{folder / 'bin'}:{os.environ['PATH']}",
                                            "TMPDIR": str(folder)})
    assert told.returncode == 0, told.stderr + told.stdout
    assert "12 variants done" in told.stdout
    assert not list(folder.glob("zelmo-study-*"))


def free_ports(count):
    sockets = [socket.socket() for _ in range(count)]
    for each in sockets:
        each.bind(("127.0.0.1", 0))
    ports = [each.getsockname()[1] for each in sockets]
    for each in sockets:
        each.close()
    return ports


@pytest.fixture
def slurm(tmp_path):
    """The environment of a Slurm of this machine alone."""
    missing = [each for each in DAEMONS if not shutil.which(each, path=os.environ["PATH"] + ":/usr/sbin")]
    if missing or os.geteuid() != 0:
        pytest.skip("Slurm does not run here: " + (", ".join(missing) + " not installed" if missing else
                                                    "its daemons need root"))
    (tmp_path / "state").mkdir()
    (tmp_path / "munge.key").write_bytes(os.urandom(128))
    (tmp_path / "munge.key").chmod(0o600)
    configuration = tmp_path / "slurm.conf"
    configuration.write_text(CONFIGURATION.format(host=socket.gethostname().partition(".")[0], folder=tmp_path,
                                                  ports=free_ports(2), cores=os.cpu_count()))
    used = {**environment(), "SLURM_CONF": str(configuration), "PATH": os.environ["PATH"] + ":/usr/sbin"}
    commands = [["munged", "--foreground", "--force", f"--key-file={tmp_path}/munge.key",
                 f"--socket={tmp_path}/munge.socket", f"--pid-file={tmp_path}/munge.pid",
                 f"--log-file={tmp_path}/munge.log", f"--seed-file={tmp_path}/munge.seed"],
                ["slurmctld", "-D", "-f", str(configuration)], ["slurmd", "-D", "-f", str(configuration)]]
    daemons = []
    try:
        for command in commands:
            daemons.append(subprocess.Popen(command, env=used, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
            time.sleep(0.5)
        for _ in range(300):
            state = subprocess.run(["sinfo", "-h", "-o", "%t"], env=used, capture_output=True, text=True).stdout
            if state.strip() == "idle":
                break
            time.sleep(0.3)
        else:
            logs = "".join(path.read_text() for path in tmp_path.glob("*.log"))
            pytest.skip("Slurm does not run here: its node does not become idle: " + logs[-400:])
        yield used
    finally:
        for daemon in reversed(daemons):
            daemon.send_signal(signal.SIGTERM)
            try:
                daemon.wait(timeout=10)
            except subprocess.TimeoutExpired:
                daemon.kill()


def test_a_study_runs_in_an_allocation_of_slurm(folder, slurm):
    write_toml(folder / "s.toml", spacer_study(folder))
    told = subprocess.run(["sbatch", "--wait", f"--ntasks={min(2, os.cpu_count())}", f"--chdir={folder}", str(SCRIPT),
                           str(folder / "s.toml"), "--no-page"], capture_output=True, text=True, timeout=600, env=slurm)
    log = "".join(path.read_text() for path in folder.glob("slurm-*.out"))
    assert told.returncode == 0, told.stderr + log
    assert "12 variants done" in log
