"""Workers: processes of this machine, or a scheduler that is there already."""
import contextlib
import logging
import os
import re
import signal
import sys
import tempfile

import dask
from distributed import Client, LocalCluster
from distributed.diagnostics.plugin import WorkerPlugin

from .errors import ExitStatus, StudyError

START_SECONDS = 60
UNITS = {"": 2**20, "k": 2**10, "m": 2**20, "g": 2**30, "t": 2**40}


def bytes_of(text):
    """The bytes of a text such as 4GiB, 800MB (as 800MiB) or 2000, which is in MiB; None if it is none."""
    found = re.fullmatch(r"\s*([0-9]+(?:\.[0-9]+)?)\s*(?:([kmgt])i?b?)?\s*", str(text), re.IGNORECASE)
    return int(float(found[1]) * UNITS[(found[2] or "").lower()]) if found else None


class _Quiet(WorkerPlugin):
    """Ctrl-C on the terminal is the study's affair: it ends its workers itself."""

    name = "zelmo-study-quiet"

    def setup(self, worker):
        logging.getLogger("distributed").setLevel(logging.CRITICAL + 1)
        try:
            signal.signal(signal.SIGINT, signal.SIG_IGN)
        except ValueError:  # not the main thread
            pass


@contextlib.contextmanager
def _main_is_not_run_again():
    """New processes would run the program's own file once more, and a script with a study in it would
    begin that study in each of its workers."""
    main = sys.modules["__main__"]
    kept = {name: getattr(main, name) for name in ("__file__", "__spec__") if hasattr(main, name)}
    if "__file__" in kept:
        del main.__file__
    main.__spec__ = None
    try:
        yield
    finally:
        for name, value in kept.items():
            setattr(main, name, value)


@contextlib.contextmanager
def local_client(workers, memory):
    """A client of so many new worker processes, which share `memory` bytes (None: three quarters of
    the machine's)."""
    if memory is None:
        memory = int(os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") * 0.75)
    each = memory // workers
    with contextlib.ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory(prefix="zelmo-study-", ignore_cleanup_errors=True))
        stack.enter_context(dask.config.set({
            # The study counts failures itself. On a machine that is busy with other things a worker may
            # take minutes to start or to answer: that is no reason to do without it.
            "distributed.scheduler.allowed-failures": 0,
            "distributed.scheduler.worker-ttl": "1 hour",
            "distributed.deploy.lost-worker-timeout": "1 hour",
            # Steps take and leave surfaces of some MB all the time: giving them back to the system at once,
            # as Dask's workers would, takes half as long again.
            "distributed.nanny.pre-spawn-environ.MALLOC_TRIM_THRESHOLD_": 64 * 2**20,
            "distributed.nanny.pre-spawn-environ.MALLOC_MMAP_THRESHOLD_": 32 * 2**20,
            "distributed.comm.timeouts.connect": "5 minutes",
            "distributed.comm.timeouts.tcp": "5 minutes",
            "distributed.worker.memory.monitor-interval": "50ms",
            "distributed.worker.daemon": True,
            "distributed.worker.profile.enabled": False,
            "distributed.admin.tick.limit": "1h",
        }))
        stack.enter_context(_main_is_not_run_again())
        try:
            cluster = LocalCluster(
                n_workers=workers, threads_per_worker=1, processes=True, memory_limit=each,
                host="127.0.0.1", dashboard_address="127.0.0.1:0", local_directory=folder,
                silence_logs=logging.CRITICAL + 1)
        except (OSError, TimeoutError, RuntimeError) as error:
            raise StudyError(f"the workers did not start: {error}", ExitStatus.OTHER) from None
        stack.callback(_close, cluster)
        client = stack.enter_context(Client(cluster, set_as_default=False))
        client.register_worker_plugin(_Quiet())
        yield client


def replace_workers(client):
    """Starts the workers of this machine again that are gone with their nannies. Whether there are any
    to start: those of a scheduler elsewhere are not the study's."""
    if client.cluster is None:
        return False
    client.cluster.scale(len(client.cluster.worker_spec))
    return True


def _close(cluster):
    try:
        cluster.close(timeout=5)
    except Exception:  # processes that did not end are ended by their nannies' end
        pass


@contextlib.contextmanager
def remote_client(address):
    """A client of a scheduler that runs somewhere, with at least one worker."""
    try:
        client = Client(address, timeout=START_SECONDS, set_as_default=False)
    except (OSError, TimeoutError, ValueError) as error:
        raise StudyError(f"--scheduler {address}: nobody answers there: {error or type(error).__name__}",
                         ExitStatus.OTHER) from None
    with client:
        try:
            client.wait_for_workers(1, timeout=START_SECONDS)
        except TimeoutError:
            raise StudyError(f"--scheduler {address}: it has no workers: start some", ExitStatus.OTHER) from None
        yield client
