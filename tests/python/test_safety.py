"""Nothing that Python can do ends in a crash or a hang. Also run under the address sanitizer."""
import _thread
import gc
import os
import random
import shutil
import signal
import sys
import threading
import time

import numpy as np
import pytest

import zelmo

from conftest import LONG_PROCESS, PROCESS, SLOW
from test_run import surfaces


def in_threads(count, work):
    """Does work in so many threads at the same time; what they throw is thrown on."""
    problems = []

    def guarded(number):
        try:
            work(number)
        except BaseException as problem:  # noqa: B902
            problems.append(problem)

    threads = [threading.Thread(target=guarded, args=(number,)) for number in range(count)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(120)
        assert not thread.is_alive()
    if problems:
        raise problems[0]


def test_runs_in_several_threads_do_not_disturb_each_other(layout):
    depths = [150, 200, 250, 300]
    expected = [surfaces(zelmo.Run(layout, PROCESS, set={"DEPTH": depth}).run())
                for depth in depths]

    def work(number):
        run = zelmo.Run(layout, PROCESS, set={"DEPTH": depths[number]})
        for _ in run:
            run.numbers()
        assert surfaces(run) == expected[number]

    in_threads(4, work)


def test_a_run_is_executed_by_one_thread_and_read_by_all(layout):
    run = zelmo.Run(layout, LONG_PROCESS, columns=600)
    busy = []
    ended = threading.Event()

    def work(number):
        if number == 0:
            try:
                run.run()
            finally:
                ended.set()
            return
        while not ended.is_set():
            assert len(run.layers) >= 0 and run.copy().done <= 5
            if run.done:
                run.numbers()
                run.probe(5, 6)
            try:
                run.adopt(run.copy())
            except (RuntimeError, ValueError) as problem:
                busy.append(str(problem))

    in_threads(3, work)
    assert run.finished
    assert any("busy" in text for text in busy)


def test_the_interpreter_goes_on_while_a_step_is_executed(layout):
    run = zelmo.Run(layout, LONG_PROCESS, columns=800).run(until=1)
    counted = 0
    thread = threading.Thread(target=run.run)
    start = time.monotonic()
    thread.start()
    while thread.is_alive():
        counted += 1
        time.sleep(0.001)
    assert counted > 20 * (time.monotonic() - start)


@pytest.mark.skipif(threading.current_thread() is not threading.main_thread(), reason="signals")
def test_ctrl_c_ends_a_long_step_soon(layout):
    run = zelmo.Run(layout, LONG_PROCESS).run(until=2)
    sent = []

    def interrupt():
        time.sleep(0.4)
        sent.append(time.monotonic())
        os.kill(os.getpid(), signal.SIGINT)

    thread = threading.Thread(target=interrupt)
    before = surfaces(run)
    thread.start()
    with pytest.raises(KeyboardInterrupt):
        run.run()
    taken = time.monotonic() - sent[0]
    thread.join()
    assert taken < 0.2 * patience()
    done = run.done
    assert 2 <= done < 5 and (done > 2 or surfaces(run) == before)
    run.copy().run(until=done)  # it can go on


def patience():
    """How much longer than usual things may take: the machine may be busy, checks may be slow."""
    return 5 if SLOW or os.getloadavg()[0] > os.cpu_count() else 1


def test_another_thread_stops_a_step(layout):
    run = zelmo.Run(layout, LONG_PROCESS).run(until=2)
    timer = threading.Timer(0.3, run.stop)
    timer.start()
    start = time.monotonic()
    with pytest.raises(zelmo.Stopped):
        run.run()
    assert time.monotonic() - start < 0.3 + 0.2 * patience()
    assert run.done in (2, 3, 4)
    timer.join()
    run.stop()  # nothing is executed: nothing happens
    assert run.copy().run(until=run.done).done == run.done


def child(work):
    """Does work in a forked child and returns its exit status; None where it hangs."""
    sys.stdout.flush()
    pid = os.fork()
    if pid == 0:
        status = 1
        try:
            work()
            status = 0
        except BaseException as problem:  # noqa: B902
            print("in the child:", repr(problem), file=sys.stderr, flush=True)
        finally:
            os._exit(status)
    for _ in range(6000):
        done, status = os.waitpid(pid, os.WNOHANG)
        if done:
            return os.waitstatus_to_exitcode(status)
        time.sleep(0.01)
    os.kill(pid, signal.SIGKILL)
    os.waitpid(pid, 0)
    return None


def test_a_forked_child_goes_on_by_itself(layout):
    run = zelmo.Run(layout, PROCESS).run(until="photo")
    view = run.layers[0].top
    total = float(view.sum())

    def work():
        assert float(view.sum()) == total
        assert run.run().finished
        assert zelmo.Run(layout, PROCESS).run().numbers() == run.numbers()

    assert child(work) == 0
    assert run.done == 3
    expected = run.run().numbers()
    assert zelmo.Run(layout, PROCESS).run().numbers() == expected


def test_a_child_that_is_forked_in_the_middle_of_a_step_goes_on(layout):
    run = zelmo.Run(layout, LONG_PROCESS, columns=1000).run(until=1)
    thread = threading.Thread(target=run.run, kwargs={"until": 2})
    thread.start()
    time.sleep(0.05)
    other = zelmo.Run(layout, PROCESS)

    def work():
        other.run()
        run.numbers()
        run.copy()
        run.adopt(run.copy())

    status = child(work)
    thread.join()
    assert status == 0


def test_arrays_outlive_everything_they_came_from(layout_path):
    views = []
    for _ in range(3):
        run = zelmo.Run(zelmo.Layout(layout_path), PROCESS)
        for _ in run:
            views += [(array, array.copy()) for layer in run.layers
                      for array in (layer.top, layer.bottom)]
            views.append((run.cover.slot, run.cover.slot.copy()))
        state = run.state()
        del run
        gc.collect()
        views.append((state._values[4][0][::2], state._values[4][0][::2].copy()))
    random.Random(3).shuffle(views)
    while views:
        view, copy = views.pop()
        assert np.array_equal(view, copy)
        del view
        if len(views) % 10 == 0:
            gc.collect()


def test_parts_go_in_any_order(layout_path):
    generator = random.Random(5)
    for _ in range(30):
        layout = zelmo.Layout(layout_path)
        run = zelmo.Run(layout, PROCESS).run(until=generator.randint(1, 7))
        parts = [layout, run, run.copy(), run.layers, run.steps, run.state(), iter(run), run.cover,
                 run.section(2, 3, 5, 5)]
        parts[0].__dict__["ring"] = parts  # only the collector finds that
        del layout, run
        generator.shuffle(parts)
        while parts:
            parts.pop()
        del parts
    gc.collect()


WRONG = [None, 5, -1, 2.5, "x", b"x", [], {}, (1, 2), object(), float("nan"), "\ud800", "a\0b",
         np.zeros(3), range(10 ** 9), 10 ** 30, lambda: None]


def test_arguments_of_wrong_types_are_exceptions(layout, run, tmp_path):
    run.run(until=3)
    state = run.state()
    calls = [
        zelmo.Layout, lambda wrong: zelmo.Run(wrong, PROCESS), lambda wrong: zelmo.Run(layout, wrong),
        lambda wrong: zelmo.Run(layout, PROCESS, columns=wrong or "no"),
        lambda wrong: zelmo.Run(layout, PROCESS, set={"OXIDE": wrong, "NONE": 1}),
        lambda wrong: zelmo.Run(layout, PROCESS, set={wrong: "1"} if wrong.__hash__ else wrong),
        lambda wrong: zelmo.Run(layout, PROCESS, window=wrong if wrong is not None else 1),
        lambda wrong: zelmo.Run(layout, PROCESS, cell=wrong if wrong is not None else 1),
        layout.layers, layout.box, lambda wrong: layout.polygons("CMOS_INVERTER", window=wrong or 1),
        lambda wrong: layout.box("CMOS_INVERTER", wrong if wrong not in (None, [], {}, 5, -1,
                                                                         10 ** 30) else 2.5)
        if not isinstance(wrong, (np.ndarray, range, tuple)) else layout.box(5),
        lambda wrong: run.probe(wrong, "x"), lambda wrong: run.section(wrong, 3, 4, object()),
        run.adopt, run.restore, lambda wrong: run.restore(zelmo.RunState(b"", wrong)),
        lambda wrong: run.restore(zelmo.RunState(wrong, state._values)),
        lambda wrong: run.picture(width=wrong), lambda wrong: run.export(wrong),
        lambda wrong: run.choose(wrong), lambda wrong: zelmo.set_threads(wrong or "x"),
        lambda wrong: run.layers[wrong if wrong not in (-1, 2.5) else "y"]
        if not isinstance(wrong, np.ndarray) else run.layers["z"],
    ]
    here = os.getcwd()
    os.chdir(tmp_path)
    try:
        for call in calls:
            for wrong in WRONG:
                try:
                    call(wrong)
                except Exception:
                    continue
                # What is taken after all leaves a run that works.
        assert zelmo.Run(layout, PROCESS).run().finished
    finally:
        os.chdir(here)
        zelmo.set_threads(0)
    assert run.run().finished


def test_the_compiled_part_refuses_what_is_none_of_its_own(layout, run):
    from zelmo import _zelmo
    run.run(until=2)
    for wrong in WRONG:
        for call in (lambda: _zelmo.Layout(wrong, wrong), lambda: _zelmo.Run(wrong),
                     lambda: run._core.adopt(wrong), lambda: run._core.restore(wrong, wrong),
                     lambda: run._core.step_facts(10 ** 6), lambda: run._core.step_done(99),
                     lambda: _zelmo.PageMaker(wrong, wrong)):
            with pytest.raises(Exception):
                call()


def test_files_may_vanish(layout_path, process_path, tmp_path):
    gone = tmp_path / "gone.gds"
    shutil.copy(layout_path, gone)
    layout = zelmo.Layout(gone)
    run = zelmo.Run(layout, process_path)
    gone.unlink()
    process_path.unlink()
    assert run.run().finished and run.numbers()
    with pytest.raises(OSError, match="gone.gds"):
        run.summary()
    other = run.copy()
    assert zelmo.Run(layout, PROCESS).run().numbers() == other.numbers()


def test_the_end_of_python_waits_for_what_was_left(build, layout_path):
    import subprocess
    script = ("import sys, threading, zelmo\n"
              "run = zelmo.Run(sys.argv[1], sys.argv[2]).run(until=2)\n"
              "threading.Timer(0.2, run.stop).start()\n"
              "try:\n    run.run()\nexcept zelmo.Stopped:\n    print('stopped')\n")
    done = subprocess.run([sys.executable, "-c", script, layout_path, LONG_PROCESS],
                          env={**os.environ, "PYTHONPATH": str(build / "python")},
                          capture_output=True, text=True, timeout=300)
    assert (done.returncode, done.stdout) == (0, "stopped\n"), done.stderr


def test_the_interrupt_of_the_main_thread_is_seen(layout):
    run = zelmo.Run(layout, LONG_PROCESS).run(until=2)
    timer = threading.Timer(0.2, _thread.interrupt_main)
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        run.run()
    timer.join()
