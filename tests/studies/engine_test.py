"""Studies on a real scheduler with real worker processes."""
import contextlib
import os
import pathlib
import signal
import threading
import time

import pytest
import zelmo
from conftest import spacer_study
from zelmo.studies import cluster, engine, running
from zelmo.studies.measures import take
from zelmo.studies.results import number_text
from zelmo.studies.study_file import read_study

SECTION = {"file": "{THICKNESS} {ETCH}.svg", "variants": "ETCH == 80", "from": [0.5, 0.2], "to": [1.5, 0.2]}
NUMBERS = {**SECTION, "file": "{THICKNESS} {ETCH}.csv"}


def run(tables, folder, scheduler, **options):
    return running.run_study(read_study(tables, output=folder / "results"), scheduler=scheduler, quiet=True,
                             page=False, **options)


def row_of(result, **wanted):
    frame = result.frame
    for name, value in wanted.items():
        frame = frame[frame[name] == value]
    assert len(frame) == 1
    return frame.iloc[0]


@pytest.fixture
def executed(monkeypatch):
    """The steps that ran, as the study was told of them."""
    steps = []
    monkeypatch.setattr(engine.Engine, "_take_result", _counting(engine.Engine._take_result, steps))
    return steps


def _counting(function, steps):
    def counted(self, task, result, found):
        if task.numbers:
            steps.extend(number for outcome in result for number, _ in outcome.steps)
        else:
            steps.extend(number for number, _ in result[1])
        return function(self, task, result, found)
    return counted


def test_a_study_gives_the_same_bytes_as_separate_runs_and_no_step_runs_twice(folder, scheduler, executed):
    tables = spacer_study(folder, sections=[SECTION, NUMBERS])
    result = run(tables, folder, scheduler)
    # 6 steps before the film, 3 films and 12 etches
    assert len(executed) == 6 + 3 + 12
    study = read_study(tables)
    assert result.variants == 12 and result.failed == 0
    lines = (folder / "results" / "results.csv").read_text().splitlines()[1:]
    for line, variant in zip(lines, study.variants):
        alone = zelmo.Run(study.layout, pathlib.Path(study.process), set=variant, columns=200).run()
        values = [number_text(take(measure, alone, variant, {})) for measure in study.measures]
        assert line.split(",")[3:] == [*values, ""]
        if variant["ETCH"] == 80:
            section = alone.section(0.5, 0.2, 1.5, 0.2)
            name = f"{variant['THICKNESS']} 80"
            assert (folder / "results" / f"{name}.svg").read_text() == section.svg()
            assert (folder / "results" / f"{name}.csv").read_bytes() == section.csv().encode()


def test_a_state_is_the_same_after_its_journey_to_another_process(folder, scheduler):
    from distributed import Client
    from zelmo.studies import worker
    job = running.make_job(read_study(spacer_study(folder)))
    variant = {"THICKNESS": 80, "ETCH": 100}
    kept = worker.grow(job, None, variant, 8, "")
    with Client(scheduler, set_as_default=False) as client:
        back = client.submit(lambda each: each, kept, pure=False).result()
    ended = []
    for each in (kept, back):
        one = worker.prepare(job, variant)
        each.go_on(one)
        assert one.done == 8
        ended.append(one.run())
    for here, there in zip(ended[0].layers, ended[1].layers):
        assert here.top.tobytes() == there.top.tobytes() and here.bottom.tobytes() == there.bottom.tobytes()


def test_measures_may_be_taken_on_the_way_and_of_each_other(folder, scheduler):
    tables = spacer_study(folder, measures={
        "film": {"expression": 'thickness("Spacer", 1.9, 0.2)', "after": "Spacer deposition"},
        "share": "foot / film * 1000 + 0 * ETCH"})
    result = run(tables, folder, scheduler)
    assert result.failed == 0
    assert list(result.frame.film.round(1)) == [60.0] * 4 + [80.0] * 4 + [100.0] * 4
    row = row_of(result, THICKNESS=60, ETCH=60)
    assert row.share == pytest.approx(1000 * row.foot / row.film)


def test_a_variant_that_fails_is_a_row_and_the_others_are_done(folder, scheduler):
    def picky(run, parameters):
        if parameters["ETCH"] == 80:
            raise ValueError("not this one")
        return len(run.layers)

    tables = spacer_study(folder, parameters={"THICKNESS": [60, "wide"]}, measures={"count": picky})
    result = run(tables, folder, scheduler)
    frame = result.frame
    assert result.failed == 1 + 4
    failed = row_of(result, THICKNESS="60", ETCH=80)
    assert failed.error == "count: ValueError: not this one" and failed.foot > 0
    assert all("spacer.txt:11" in error for error in frame[frame.THICKNESS == "wide"].error)


def test_a_study_whose_variants_are_all_refused_is_refused(folder, scheduler):
    tables = spacer_study(folder, parameters={"THICKNESS": ["a", "b"]})
    with pytest.raises(running.StudyError, match="no variant can run: .*spacer.txt:11"):
        run(tables, folder, scheduler)


def test_a_study_that_is_cut_off_goes_on_where_it_was(folder, scheduler, executed, monkeypatch):
    tables = spacer_study(folder)
    whole = run(spacer_study(folder), folder / "whole", scheduler)
    executed.clear()
    real = engine.Engine.outcomes

    def cut_after_four(self):
        count = 0
        for found in real(self):
            yield found
            count += len(found)
            if count >= 4:
                self.stop(signal.SIGINT)

    monkeypatch.setattr(engine.Engine, "outcomes", cut_after_four)
    with pytest.raises(running.Cut) as cut:
        run(tables, folder, scheduler)
    done = cut.value.done
    assert 4 <= done < 12 and cut.value.status == 130
    monkeypatch.setattr(engine.Engine, "outcomes", real)
    executed.clear()
    result = run(tables, folder, scheduler)
    assert executed.count(8) == 12 - done  # the last step, once for each variant that was left
    assert (folder / "results" / "results.csv").read_bytes() == (
        pathlib.Path(whole.output) / "results.csv").read_bytes()
    assert result.failed == 0


def hanging(kind):
    def measure(run, parameters):
        if parameters["ETCH"] == 80 and parameters["THICKNESS"] == 60:
            if kind == "python":
                while True:
                    pass
            import re
            re.match(r"(a*)*b", "a" * 60)  # never lets go of the interpreter
        return 1
    return measure


@pytest.mark.parametrize("kind", ["python", "interpreter"])
def test_a_variant_that_never_ends_is_given_up_and_its_worker_replaced(folder, scheduler, monkeypatch, kind):
    monkeypatch.setattr(engine, "GRACE", 1.0)
    tables = spacer_study(folder, study={"time_limit": 4}, measures={"m": hanging(kind)})
    result = run(tables, folder, scheduler)
    assert result.failed == 1
    assert row_of(result, THICKNESS=60, ETCH=80).error == (
        "it took longer than the limit of 4 s, and its worker was replaced")


def test_a_step_that_takes_too_long_is_stopped_at_its_limit(folder, scheduler):
    # A grid of 2000 columns with a film that is far thicker than the picture is wide takes long.
    tables = spacer_study(folder, study={"time_limit": 0.3, "columns": 2000},
                          parameters={"THICKNESS": [100], "ETCH": [100, 120]})
    process = (folder / "spacer.txt")
    text = process.read_text().replace("-dy 0.4", "-dy 2")
    process.write_text(text.replace("-depth 300 -iso 0.0", "-depth 300 -iso 5.0"))
    begun = time.monotonic()
    result = run(tables, folder, scheduler)
    assert result.failed == 2 and time.monotonic() - begun < 200
    assert all("longer than the limit of 0.3 s" in error for error in result.frame.error)


def killing(marker, times):
    def measure(run, parameters):
        if parameters["ETCH"] == 80 and parameters["THICKNESS"] == 60:
            begun = len(os.listdir(marker))
            if begun < times:
                open(os.path.join(marker, str(begun)), "w").close()
                time.sleep(0.3)
                os.kill(os.getpid(), signal.SIGKILL)
        return 1
    return measure


def test_a_worker_that_is_killed_in_the_middle_costs_nothing_but_time(folder, scheduler):
    (folder / "marks").mkdir()
    result = run(spacer_study(folder, measures={"m": killing(str(folder / "marks"), 1)}), folder, scheduler)
    assert result.failed == 0 and list(result.frame.m) == [1] * 12
    assert len(os.listdir(folder / "marks")) == 1


def test_a_variant_that_takes_its_worker_with_it_each_time_is_a_row(folder, scheduler):
    (folder / "marks").mkdir()
    result = run(spacer_study(folder, measures={"m": killing(str(folder / "marks"), 99)}), folder, scheduler)
    assert result.failed == 1
    assert "its worker was lost 2 times" in row_of(result, THICKNESS=60, ETCH=80).error


def test_a_worker_killed_from_outside_while_states_are_on_it_costs_nothing_but_time(folder, scheduler):
    def slow(run, parameters):
        time.sleep(0.15)
        return os.getpid()

    tables = spacer_study(folder, measures={"m": slow})
    killed = []

    def kill_one():
        path = folder / "results" / "results.csv"
        while not path.exists() or len(path.read_text().splitlines()) < 4:
            time.sleep(0.02)
        pid = int(path.read_text().splitlines()[1].split(",")[5])
        os.kill(pid, signal.SIGKILL)
        killed.append(pid)

    killer = threading.Thread(target=kill_one, daemon=True)
    killer.start()
    result = run(tables, folder, scheduler)
    killer.join(timeout=10)
    assert killed and result.failed == 0 and len(result.frame) == 12


def test_memory_is_bounded_and_what_does_not_fit_is_a_row(folder):
    import psutil

    def greedy(run, parameters):
        if parameters["ETCH"] == 80:
            import numpy
            kept = []
            while True:
                kept.append(numpy.ones(1 << 19))
                time.sleep(0.02)
        return 1

    bound = 2 * 420 * 2**20
    highest = [0]
    ended = threading.Event()

    def watch():
        while not ended.wait(0.02):
            total = 0
            for child in psutil.Process().children(recursive=True):
                try:
                    if "spawn_main" in " ".join(child.cmdline()):
                        total += child.memory_info().rss
                except psutil.Error:
                    continue
            highest[0] = max(highest[0], total)

    tables = spacer_study(folder, parameters={"THICKNESS": [60], "ETCH": [60, 80, 100]}, measures={"m": greedy})
    watcher = threading.Thread(target=watch)
    watcher.start()
    try:
        result = run(tables, folder, None, workers=2, memory=bound)
    finally:
        ended.set()
        watcher.join()
    assert "out of its memory" in row_of(result, THICKNESS=60, ETCH=80).error
    assert result.failed == 1
    assert 0 < highest[0] <= 1.15 * bound


def test_workers_that_are_gone_with_their_nannies_are_started_again(folder, monkeypatch):
    monkeypatch.setattr(engine, "REPLACE_SECONDS", 0.5)
    with cluster.local_client(1, 2**30) as client:
        nanny = client.cluster.workers.pop(0)
        client.cluster.sync(nanny.close)
        monkeypatch.setattr(cluster, "local_client", lambda workers, memory: contextlib.nullcontext(client))
        tables = spacer_study(folder, parameters={"THICKNESS": [60], "ETCH": [60, 80]})
        result = run(tables, folder, None, workers=1)
    assert result.failed == 0 and len(result.frame) == 2


def test_a_scheduler_that_is_not_there_is_told(folder, monkeypatch):
    monkeypatch.setattr(cluster, "START_SECONDS", 1)
    with pytest.raises(running.StudyError, match="tcp://127.0.0.1:9: nobody answers there"):
        run(spacer_study(folder), folder, "tcp://127.0.0.1:9")
