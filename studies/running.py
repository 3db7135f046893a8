"""A study from its file to its results."""
import contextlib
import dataclasses
import hashlib
import os
import signal
import threading
import time

import zelmo

from . import worker
from .errors import Cut, ExitStatus, StudyError
from .progress import Progress, duration
from .results import ROWS, TIMES, Results, write_file
from .study_file import kept_name, read_study
from .times import Times
from .tree import build_tree, most_states, steps_by_number

SMALL_PLAN = 40  # so many variants are looked at here
PLAN_PIECE = 20  # and so many in a task of a worker
STATES_SHARE = 0.4  # of the workers' memory, for states that are kept


@dataclasses.dataclass
class StudyResult:
    """What a study came to. `frame` has a row a variant."""

    output: str
    variants: int
    failed: int
    page: str = ""

    @property
    def frame(self):
        """The rows as a pandas frame: parameters, measures and `error`, which is empty where all went
        well; its index is the variants' numbers."""
        import pandas
        frame = pandas.read_csv(os.path.join(self.output, ROWS), index_col="variant",
                                keep_default_na=False, na_values={})
        for name in frame.columns:
            if name != "error":
                texts = frame[name]
                numbers = pandas.to_numeric(texts, errors="coerce")
                if numbers.notna().eq(texts.astype(str) != "").all():
                    frame[name] = numbers
        return frame

    def _repr_html_(self):
        return self.frame._repr_html_()


def make_job(study):
    """What the workers need of a study. Raises StudyError if its files cannot be read."""
    try:
        layout_hash = worker.hash_of_file(study.layout)
        zelmo.Layout(study.layout)
    except OSError as error:
        raise StudyError(f"{study.layout}: {error.strerror}: give its place beside the study",
                         ExitStatus.LAYOUT) from None
    except zelmo.LayoutError as error:
        raise StudyError(worker.one_line(error), ExitStatus.LAYOUT) from None
    process, name = study.process, "<process>"
    if isinstance(process, str) and "\n" not in process:
        name = process
        try:
            with open(process, "rb") as file:
                process = file.read().decode("utf-8", "surrogateescape")
        except OSError as error:
            raise StudyError(f"{name}: {error.strerror}: give its place beside the study") from None
        if "\n" not in process:
            process += "\n"
    return worker.Job(study.layout, layout_hash, process, name, study.run, study.settings,
                      tuple(study.parameters.values()), tuple(study.measures), tuple(study.kept),
                      study.until, study.time_limit)


def facts_of(study, job):
    """What rows depend on, for whoever goes on with them."""
    process = job.process if isinstance(job.process, str) else "\n".join(str(each) for each in job.process)
    return {
        "layout": job.layout_sha256,
        "process": hashlib.sha256(process.encode("utf-8", "surrogateescape")).hexdigest(),
        "parameters, measures or files": study.digest,
        "version of Zelmo": zelmo.__version__,
    }


def plan(study, job, numbers, client=None):
    """The tree of the variants with these numbers, and outcomes of those that cannot run. With a client
    its workers look at the variants."""
    plans, refused = {}, []
    for number, found in zip(numbers, _looked_at(study, job, numbers, client)):
        if isinstance(found, str):
            refused.append(worker.Outcome(number, error=found))
        else:
            plans[number] = found
    if refused and len(refused) == len(study.variants):
        raise StudyError(f"no variant can run: {refused[0].error}")
    return build_tree(plans), refused


def _looked_at(study, job, numbers, client):
    """For each variant its fingerprints, or the reason why there are none."""
    variants = [study.variants[number - 1] for number in numbers]
    if client is None or len(variants) < SMALL_PLAN:
        return worker.fingerprints(job, variants)
    pieces = [variants[i:i + PLAN_PIECE] for i in range(0, len(variants), PLAN_PIECE)]
    shared = client.submit(worker.same, job, pure=False)
    futures = [client.submit(worker.fingerprints, shared, piece, pure=False, retries=2) for piece in pieces]
    return [each for found in client.gather(futures) for each in found]


def sample(study, job, times, numbers):
    """Executes one variant here, for its times. The bytes of its last state."""
    zelmo.set_threads(job.threads)
    for number in numbers:
        try:
            run = worker.prepare(job, study.variants[number - 1])
            run.run(until=worker.length_of(job, run))
            times.add_steps([(step.number, step.seconds) for step in run.steps[:run.done]])
            return run.nbytes
        except (worker.VariantError, zelmo.Error):
            continue
    return 0


def dry_run(study, workers):
    """What a study would do, as lines of text; one variant is executed for its times."""
    job = make_job(study)
    job.threads = max(1, (os.cpu_count() or 1) // workers)
    every = range(1, len(study.variants) + 1)
    tree, refused = plan(study, job, every)
    times = Times.read(os.path.join(study.output, TIMES))
    source = "earlier results"
    state_bytes = 0
    if not times.steps:
        begun = time.perf_counter()
        state_bytes = sample(study, job, times, tree.lengths)
        source = f"one variant, executed in {duration(time.perf_counter() - begun)}"
    counts = steps_by_number(tree)
    separate = {}
    for length in tree.lengths.values():
        for number in range(1, length + 1):
            separate[number] = separate.get(number, 0) + 1
    alone, shared = (times.of(each, len(tree.lengths)) / workers for each in (separate, counts))
    varied = ", ".join(f"{each.name} ({len(set(each.values))})" for each in study.parameters.values())
    lines = [
        f"{len(study.variants)} variants of {varied}",
        f"{tree.steps} steps to run; {tree.shared_steps} of {tree.separate_steps} are shared",
        f"about {duration(shared)} on {workers} workers, {duration(alone)} without sharing (by {source})",
    ]
    if tree.branch_count:
        depth = most_states(tree)
        size = f", {state_bytes / 2**20:.0f} MiB each at most" if state_bytes else ""
        lines.append(f"{tree.branch_count} states to branch from, {depth} at once along one path{size}")
    if refused:
        lines.append(f"{len(refused)} variants cannot run; variant {refused[0].number}: {refused[0].error}")
    return lines


def _tell(quiet, text):
    if not quiet:
        print(text, flush=True)


def run_study(study, scheduler=None, workers=None, memory=None, overwrite=False, retry_errors=False,
              quiet=False, page=True):
    """Runs what of a study is not done yet. Returns a StudyResult; raises StudyError and Cut."""
    job = make_job(study)
    workers = workers or os.cpu_count() or 1
    results = Results(study, facts_of(study, job), overwrite, retry_errors)
    try:
        todo = [n for n in range(1, len(study.variants) + 1) if n not in results.rows]
        _tell(quiet, f"{len(study.variants)} variants, {len(study.variants) - len(todo)} of them done already")
        if todo:
            _execute(study, job, todo, results, scheduler, workers, memory, quiet)
        results.sort()
        result = StudyResult(study.output, len(study.variants), results.failed())
    finally:
        results.close()
    if page:
        from .page import write_page
        result.page = write_page(study, result)
    return result


def _execute(study, job, todo, results, scheduler, workers, memory, quiet):
    from . import cluster
    if len(todo) < SMALL_PLAN:  # what is refused at once needs no workers
        tree, refused = plan(study, job, todo)
    job.threads = 1 if scheduler else max(1, (os.cpu_count() or 1) // workers)
    opened = cluster.remote_client(scheduler) if scheduler else cluster.local_client(workers, memory)
    with opened as client:
        if len(todo) >= SMALL_PLAN:
            tree, refused = plan(study, job, todo, client)
        if refused:
            results.append(refused)
        _tell(quiet, f"{tree.steps} steps to run; {tree.shared_steps} of {tree.separate_steps} are shared")
        if tree.lengths:
            _run_tree(study, job, tree, results, client, quiet)


def _run_tree(study, job, tree, results, client, quiet):
    from . import engine
    times = Times.read(results.path(TIMES))
    progress = Progress(len(study.variants), len(results.rows), quiet=quiet)
    total = sum(each["memory_limit"] or 0 for each in client.scheduler_info()["workers"].values())
    runner = engine.Engine(client, job, study, tree, lambda n: _names(study, n),
                           total * STATES_SHARE or float("inf"), times)
    left = _Left(tree, times, runner)
    try:
        with _signals(runner):
            for found in runner.outcomes():
                if found:
                    results.append(found)
                progress.show(found, left.seconds(found), _doing(runner))
    except Cut as cut:
        raise Cut(len(results.rows), len(study.variants), cut.signal_number) from None
    finally:
        progress.end()
        runner.close()
        _save_times(results, times)


def _names(study, number):
    """The files of a variant, with what goes into them."""
    return [(kept, kept_name(kept, study, number)) for kept in study.kept if number in kept.variants]


def _doing(runner):
    """What each worker does, in a few words."""
    workers = {}
    for (address, _), each in runner.running.items():
        workers.setdefault(address, []).append(each[2])
    told = [", ".join(each) for each in workers.values()]
    return told[:8] + ([f"and {len(told) - 8} more"] if len(told) > 8 else [])


class _Left:
    """The time that is left, by what steps took up to now."""

    def __init__(self, tree, times, runner):
        self.counts = steps_by_number(tree)
        self.variants = len(tree.lengths)
        self.times, self.runner = times, runner
        self.before = {number: entry[1] for number, entry in times.steps.items()}

    def seconds(self, outcomes):
        self.variants -= len(outcomes)
        if not self.times.steps:
            return None
        left = {}
        for number, count in self.counts.items():
            done = self.times.steps.get(number, (0, 0))[1] - self.before.get(number, 0)
            left[number] = max(0, count - done)
        return self.times.of(left, self.variants) / max(1, self.runner.threads())


@contextlib.contextmanager
def _signals(runner):
    """Ctrl-C and a request to end let the study end cleanly."""
    if threading.current_thread() is not threading.main_thread():
        yield
        return
    earlier = {number: signal.signal(number, lambda number, frame: runner.stop(number))
               for number in (signal.SIGINT, signal.SIGTERM)}
    try:
        yield
    finally:
        for number, handler in earlier.items():
            signal.signal(number, handler)


def _save_times(results, times):
    try:
        write_file(results.path(TIMES), times.to_bytes())
    except OSError:
        pass  # only estimates are made of it


def study(source, *, output=None, scheduler=None, workers=None, memory=None, overwrite=False,
          retry_errors=False, quiet=False, page=True):
    """Runs a study: a path of a STUDY.toml, or a dictionary with the same tables, in which measures may
    be Python functions of (run, parameters) and a process a list of steps.

    `output`: the folder of results, in place of the study's. `scheduler`: the address of a Dask
    scheduler; without one, `workers` processes (default: one a core) of this machine are started, which
    share `memory` (bytes, or a text such as "4GiB"). The same call goes on where it was cut off.
    Returns a StudyResult, whose `frame` is a pandas frame with a row a variant. Raises StudyError.
    """
    if isinstance(memory, str):
        from .cluster import bytes_of
        text, memory = memory, bytes_of(memory)
        if not memory:
            raise StudyError(f"memory: \"{text}\" is no size: give one such as 4GiB", ExitStatus.USAGE)
    try:
        return run_study(read_study(source, output=output), scheduler, workers, memory, overwrite,
                         retry_errors, quiet, page)
    except Cut as cut:
        raise KeyboardInterrupt(str(cut)) from None
