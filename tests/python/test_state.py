import gc
import os
import pickle
import subprocess
import sys

import numpy as np
import pytest

import zelmo

from conftest import PROCESS
from test_run import surfaces


def test_fingerprints_agree_up_to_the_first_step_that_differs(layout):
    one = zelmo.Run(layout, PROCESS)
    assert len(one.fingerprints) == len(one.steps) == len(set(one.fingerprints))
    assert all(isinstance(key, bytes) and len(key) == 32 for key in one.fingerprints)
    assert zelmo.Run(layout, "# a line more\n" + PROCESS).fingerprints == one.fingerprints
    assert zelmo.Run(layout, PROCESS, angle=50).fingerprints == one.fingerprints
    deeper = zelmo.Run(layout, PROCESS, set={"DEPTH": 310}).fingerprints
    agree = [a == b for a, b in zip(one.fingerprints, deeper)]
    assert agree == [True, True, True, False, False, False, False]
    assert not set(zelmo.Run(layout, PROCESS, columns=201).fingerprints) & set(one.fingerprints)


def test_fingerprints_are_the_same_in_every_process(layout, layout_path, build):
    script = ("import sys, zelmo\n"
              "run = zelmo.Run(sys.argv[1], sys.argv[2])\n"
              "print(run.fingerprints[-1].hex())\n")
    told = subprocess.run([sys.executable, "-c", script, layout_path, PROCESS],
                          env={**os.environ, "PYTHONPATH": str(build / "python")},
                          capture_output=True, text=True, check=True).stdout.strip()
    assert told == zelmo.Run(layout, PROCESS).fingerprints[-1].hex()


def test_a_run_goes_on_where_another_one_stands(layout):
    shallow = zelmo.Run(layout, PROCESS).run(until="photo")
    deep = zelmo.Run(layout, PROCESS, set={"DEPTH": 350})
    straight = zelmo.Run(layout, PROCESS, set={"DEPTH": 350}).run()
    assert deep.adopt(shallow).done == 3
    assert zelmo.shared_nbytes([deep, shallow]) == shallow.nbytes
    assert surfaces(deep.run()) == surfaces(straight)
    assert deep.numbers() == straight.numbers()
    assert shallow.done == 3
    with pytest.raises(ValueError, match="differ"):
        zelmo.Run(layout, PROCESS).adopt(deep)
    with pytest.raises(ValueError):
        zelmo.Run(layout, PROCESS).adopt(zelmo.Run(layout, PROCESS))
    with pytest.raises(TypeError):
        deep.adopt(deep.state())


def test_a_state_travels_without_copies_of_its_surfaces(run, layout):
    run.run(until="Gate")
    state = run.state()
    assert state.done == 5 and state.fingerprint == run.fingerprints[4]
    buffers = []
    text = pickle.dumps(state, protocol=5, buffer_callback=buffers.append)
    assert len(text) < 5000
    address = run.layers[0].top.__array_interface__["data"][0]
    held = [np.frombuffer(buffer.raw(), np.uint8).__array_interface__["data"][0]
            for buffer in buffers]
    assert address in held
    other = zelmo.Run(layout, PROCESS, set={"DEPTH": 300})
    other.restore(pickle.loads(text, buffers=[bytes(buffer) for buffer in buffers]))
    assert surfaces(other) == surfaces(run)
    assert [step.seconds for step in other.steps] == [step.seconds for step in run.steps]
    assert surfaces(other.run()) == surfaces(run.run())
    assert [step.notes for step in other.steps] == [step.notes for step in run.steps]


@pytest.mark.parametrize("protocol", [2, 4, 5])
def test_a_state_is_pickled_in_band_as_well(run, layout, protocol):
    run.run(until=6)
    state = pickle.loads(pickle.dumps(run.state(), protocol=protocol))
    assert surfaces(zelmo.Run(layout, PROCESS).restore(state)) == surfaces(run)


def test_a_state_keeps_what_it_shows(run, layout):
    run.run(until="Oxide")
    state = run.state()
    run.run()
    gc.collect()
    assert zelmo.Run(layout, PROCESS).restore(state).done == 2


def test_a_state_of_another_run_is_refused(run, layout):
    run.run(until="etch")
    state = run.state()
    for other in (zelmo.Run(layout, PROCESS, set={"DEPTH": 200}),
                  zelmo.Run(layout, PROCESS, columns=210),
                  zelmo.Run(layout, PROCESS, window=(0, 0, 4, 4))):
        with pytest.raises(zelmo.StateError):
            other.restore(state)
        assert other.done == 0
    with pytest.raises(TypeError):
        run.restore(b"state")
    with pytest.raises(zelmo.StateError):
        zelmo.Run(layout, PROCESS).state()
    with pytest.raises(TypeError, match="state"):
        pickle.dumps(run)


def damaged(state, place, value):
    """A state with one of its parts in another's place."""
    values = list(state._values)
    values[place] = value
    return zelmo.RunState(state.fingerprint, tuple(values))


def test_a_damaged_state_is_refused(run, layout):
    run.run(until="Gate")
    state = run.state()
    surfaces_of, slots, heights = state._values[4], state._values[5], state._values[6]
    layers = state._values[1]
    other = zelmo.Run(layout, PROCESS)
    nan = surfaces_of[0].copy()
    nan[3, 4] = np.nan
    wild = slots.copy()
    wild[0, 0] = 99
    below = slots.copy()
    below[0, 0] = -1
    for place, value in [
            (0, "thick"), (0, float("nan")), (1, []), (1, None), (1, [None]), (1, [(1, 2)]),
            (1, [(*layers[0][:6], 77, 0)]), (1, [(*layers[0][:6], -1, 0)]), (2, 5),
            (2, [(1.0, [("no kind", b"", 0, b"")], [])]), (2, state._values[2][:2]), (2, []),
            (3, {"a": True}), (4, []), (4, [surfaces_of[0][:5]] * len(surfaces_of)),
            (4, [surfaces_of[0].astype(np.float64)] * len(surfaces_of)),
            (4, [nan] * len(surfaces_of)), (4, ["a"] * len(surfaces_of)), (4, 7),
            (5, wild), (5, below), (5, slots[:, :3]), (5, heights), (5, None), (6, slots), (6, 3.0)]:
        with pytest.raises((zelmo.StateError, TypeError, ValueError)):
            other.restore(damaged(state, place, value))
        assert other.done == 0
    for values in ((), state._values[:6], (*state._values, 1)):
        with pytest.raises(zelmo.StateError):
            other.restore(zelmo.RunState(state.fingerprint, values))
    with pytest.raises((zelmo.StateError, TypeError)):
        other.restore(zelmo.RunState(b"short", state._values))
    assert surfaces(other.restore(state)) == surfaces(run)


def test_damaged_bytes_of_a_state_are_noticed(run):
    run.run(until=3)
    buffers = []
    text = pickle.dumps(run.state(), protocol=5, buffer_callback=buffers.append)
    kept = [bytearray(buffer.raw()) for buffer in buffers]
    kept[1][40] ^= 1
    with pytest.raises(zelmo.StateError, match="damaged"):
        pickle.loads(text, buffers=kept)
    with pytest.raises(Exception):
        pickle.loads(text, buffers=kept[:-1])
    for cut in range(0, len(text), max(1, len(text) // 40)):
        with pytest.raises(Exception):
            pickle.loads(text[:cut], buffers=kept)
