"""What runs on the workers: prepare a variant, execute steps, take measures and files."""
import dataclasses
import hashlib
import os
import socket
import threading
import time
import typing

import zelmo

from . import measures as measures_of
from .parameters import TAG
from .run_numbers import RunNumbers

# What a run has beside its surfaces, by which states that are kept count as more than those.
RUN_BYTES_A_CELL = 56

_layouts = {}
_lock = threading.Lock()


class VariantError(Exception):
    """Why a variant came to nothing, in words."""


@dataclasses.dataclass
class Job:
    """What all variants of a study share, as a worker needs it."""

    layout: str
    layout_sha256: str
    process: typing.Any  # a text or steps
    process_name: str
    run: dict
    settings: dict
    parameters: tuple
    measures: tuple
    kept: tuple
    until: typing.Any
    time_limit: float
    topic: str = ""
    threads: int = 1


@dataclasses.dataclass
class Outcome:
    """What came of a variant: its numbers, or why there are none, and its files."""

    number: int
    values: dict = dataclasses.field(default_factory=dict)
    error: str = ""
    files: dict = dataclasses.field(default_factory=dict)  # name to bytes
    steps: list = dataclasses.field(default_factory=list)  # (number, seconds)
    seconds: float = 0.0


class Kept:
    """The stack after some steps of a variant, and the measures that were taken on the way. Where it
    was made it is a run; to other processes it travels as a state."""

    def __init__(self, run, state, taken, own_bytes, steps):
        self.run = run
        self.state = state
        self.taken = taken  # (measure, after how many steps) to a number, or to a reason
        self.own_bytes = own_bytes  # beside those that it shares with the state before it
        self.steps = steps  # (number, seconds) of those that were executed for it
        self.lock = threading.Lock()

    def __sizeof__(self):
        return object.__sizeof__(self) + self.own_bytes

    def __reduce__(self):
        with self.lock:
            state = self.run.state() if self.run is not None else self.state
        return Kept, (None, state, self.taken, state.nbytes, self.steps)

    def go_on(self, run):
        """Puts a run where this one stands. It shares the surfaces."""
        with self.lock:
            if self.run is None:
                run.restore(self.state)
                self.run, self.state = run.copy(), None
            else:
                run.adopt(self.run)

    @property
    def done(self):
        return self.run.done if self.run is not None else self.state.done


def hash_of_file(path):
    """SHA-256 of a file's bytes. Raises OSError."""
    total = hashlib.sha256()
    with open(path, "rb") as file:
        while block := file.read(1 << 20):
            total.update(block)
    return total.hexdigest()


def layout_of(job):
    """The job's layout, read once a process."""
    key = (job.layout, job.layout_sha256)
    with _lock:
        if key not in _layouts:
            try:
                found = hash_of_file(job.layout)
            except OSError as error:
                raise VariantError(f"{job.layout}: {error.strerror} on {socket.gethostname()}: let all "
                                   "workers have the layout at the same place") from None
            if found != job.layout_sha256:
                raise VariantError(f"{job.layout}: it is another one than when the study began")
            _layouts.clear()
            _layouts[key] = zelmo.Layout(job.layout)
        return _layouts[key]


def prepare(job, variant):
    """The run of a variant before its first step. Raises VariantError."""
    arguments, settings = dict(job.run), dict(job.settings)
    for parameter in job.parameters:
        value = variant[parameter.name]
        if parameter.kind == "set":
            settings[parameter.variable] = value
        elif parameter.kind != TAG:
            arguments[parameter.kind] = value
    try:
        return zelmo.Run(layout_of(job), job.process, set=settings, name=job.process_name, **arguments)
    except zelmo.Error as error:
        raise VariantError(one_line(error)) from None
    except (ValueError, TypeError) as error:
        raise VariantError(one_line(error)) from None


def length_of(job, run):
    """How many steps of a run the study executes."""
    return _after(run, job.until) if job.until is not None else len(run.steps)


def _after(run, wanted):
    """The number of the last step that a text chooses."""
    try:
        return run.choose(str(wanted))[-1] + 1
    except (zelmo.Error, ValueError, IndexError) as error:
        raise VariantError(one_line(error)) from None


def fingerprints(job, variants):
    """For each variant the fingerprints of its steps, or a text that tells why there is no run."""
    found = []
    for variant in variants:
        try:
            run = prepare(job, variant)
            for measure in job.measures:
                if measure.after is not None:
                    _stop_of(job, run, measure)
            found.append(list(run.fingerprints[:length_of(job, run)]))
        except VariantError as error:
            found.append(str(error))
    return found


def _stop_of(job, run, measure):
    stop = _after(run, measure.after)
    if stop > length_of(job, run):
        raise VariantError(f"{measure.name}: \"{measure.after}\" lies behind the study's last step")
    return stop


def one_line(error):
    """An error in one line, with the file and the line that it has."""
    text = " / ".join(str(error).split("\n")).strip() or type(error).__name__
    file, line = getattr(error, "file", None), getattr(error, "line", None)
    place = ":".join(str(each) for each in (file, line) if each)
    return f"{place}: {text}" if place and not text.startswith(str(file)) else text


class _Tasks:
    """Tells the study what this worker begins; nothing where there is no worker."""

    def __init__(self, job, task):
        self.job = job
        self.task = task

    def begin(self, variant, what):
        try:
            from distributed import get_worker
            worker = get_worker()
        except (ImportError, ValueError):
            return
        worker.log_event(self.job.topic, {
            "task": self.task, "variant": variant, "what": what, "worker": worker.address,
            "thread": threading.get_ident(), "pid": os.getpid(), "host": socket.gethostname()})


class _Limit:
    """Stops a run when its time is over, again and again until it listens."""

    def __init__(self, job, run):
        self.seconds, self.run = job.time_limit, run
        self.ended = threading.Event()

    def __enter__(self):
        if self.seconds:
            threading.Thread(target=self._watch, daemon=True).start()

    def _watch(self):
        wait = self.seconds
        while not self.ended.wait(wait):
            self.run.stop()
            wait = 0.05  # between two steps nobody is there to be stopped

    def __exit__(self, *unused):
        self.ended.set()


def _execute(job, run, variant, last, taken):
    """Executes up to the step `last` and takes the measures that belong to steps on the way."""
    first = run.done
    stops = {}
    for measure in job.measures:
        if measure.after is not None:
            stops.setdefault(_stop_of(job, run, measure), []).append(measure)
    for stop in sorted({stop for stop in stops if first < stop <= last} | {last}):
        run.run(until=stop)
        for measure in stops.get(stop, ()):
            try:
                taken[measure.name, stop] = measures_of.take(measure, run, variant, {})
            except measures_of.MeasureError as error:
                taken[measure.name, stop] = error
    return [(step.number, step.seconds) for step in run.steps[first:last]]


def grow(job, parent, variant, last, task):
    """The state of a variant after `last` steps, as far as the parent's steps do not have it yet."""
    _Tasks(job, task).begin(0, f"steps to {last}")
    zelmo.set_threads(job.threads)
    run = prepare(job, variant)
    taken = dict(parent.taken) if parent else {}
    with _Limit(job, run):
        try:
            if parent:
                parent.go_on(run)
            steps = _execute(job, run, variant, last, taken)
        except (zelmo.Error, ValueError) as error:
            raise VariantError(_reason(job, error)) from None
    own = zelmo.shared_nbytes([run])
    if parent:
        own = zelmo.shared_nbytes([run, parent.run]) - zelmo.shared_nbytes([parent.run])
    own += RUN_BYTES_A_CELL * run.settings["rows"] * run.settings["columns"]
    return Kept(run, None, taken, own, steps)


def same(value):
    """What several tasks depend on, so that it travels once."""
    return value


def told(kept):
    """What the study wants to know of a state without having it."""
    return kept.own_bytes, kept.steps


def finish(job, parent, batch, task):
    """The outcomes of some variants, (number, values of parameters, files) each."""
    zelmo.set_threads(job.threads)
    tasks, outcomes = _Tasks(job, task), []
    for number, variant, names in batch:
        tasks.begin(number, f"variant {number}")
        begun = time.perf_counter()
        outcome = Outcome(number)
        try:
            _fill(job, parent, variant, names, outcome)
        except (VariantError, measures_of.MeasureError) as error:
            outcome.error = one_line(error)
        except MemoryError:
            outcome.error = "out of memory: give the workers more, or let the grid have fewer columns"
        except Exception as error:  # one variant is not to end the study
            outcome.error = _reason(job, error)
        outcome.seconds = time.perf_counter() - begun
        outcomes.append(outcome)
    return outcomes


def _fill(job, parent, variant, names, outcome):
    run = prepare(job, variant)
    taken = dict(parent.taken) if parent else {}
    stops = {each.name: _stop_of(job, run, each) for each in job.measures if each.after is not None}
    if parent and any(stop <= parent.done and (name, stop) not in taken
                      for name, stop in stops.items()):
        parent, taken = None, {}  # its steps were executed for a variant that measures elsewhere
    with _Limit(job, run):
        if parent:
            parent.go_on(run)
        outcome.steps = _execute(job, run, variant, length_of(job, run), taken)
    _measure(job, run, variant, stops, taken, outcome)
    for kept, name in names:
        outcome.files[name] = _file_of(kept, run)


def _measure(job, run, variant, stops, taken, outcome):
    """All measures; one that fails leaves the others their numbers."""
    reasons, numbers = [], RunNumbers(run)
    for measure in job.measures:
        try:
            if measure.after is not None:
                value = taken[measure.name, stops[measure.name]]
                if isinstance(value, Exception):
                    raise value
            else:
                value = measures_of.take(measure, run, variant, outcome.values, numbers)
            outcome.values[measure.name] = value
        except measures_of.MeasureError as error:
            outcome.values.setdefault(measure.name, None)
            reasons.append(one_line(error))
    outcome.error = "; ".join(reasons)


def _file_of(kept, run):
    if kept.kind == "picture":
        return run.picture(**kept.choice).png()
    section = run.section(*kept.line)
    text = section.csv() if kept.kind == "csv" else section.svg(stretch=kept.stretch)
    return text.encode("utf-8")


def _reason(job, error):
    if isinstance(error, zelmo.Stopped):
        return f"it took longer than the limit of {job.time_limit:g} s"
    if isinstance(error, zelmo.Error):
        return one_line(error)
    return f"{type(error).__name__}: {one_line(error)}"
