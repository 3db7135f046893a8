"""What a run carries from process to process."""

from __future__ import annotations

import zlib
from typing import Any, Iterable, List, Union

import numpy as np

from ._errors import StateError


def _check_sum(arrays: Iterable[np.ndarray]) -> int:
    total = 0
    for array in arrays:
        total = zlib.crc32(np.ascontiguousarray(array).view(np.uint8).reshape(-1), total)
    return total


class RunState:
    """Where a run stands, for pickle. With protocol 5 its surfaces travel out of band: they are
    views of the model's own memory, and none is copied."""

    def __init__(self, fingerprint: bytes, values: tuple):
        #: stands for all that the state comes from (Run.fingerprints)
        self.fingerprint = fingerprint
        self._values = values

    @property
    def done(self) -> int:
        """The steps that were executed."""
        return len(self._values[2])

    @property
    def nbytes(self) -> int:
        """The bytes of the surfaces and of the cover map."""
        return sum(array.nbytes for array in self._arrays())

    def _arrays(self) -> List[np.ndarray]:
        return [*self._values[4], self._values[5], self._values[6]]

    def __reduce__(self):
        plain = self._values[:4]
        arrays = [np.ascontiguousarray(array) for array in self._arrays()]
        return (_revive, (1, self.fingerprint, plain, arrays, _check_sum(arrays)))

    def __repr__(self) -> str:
        return f"<zelmo.RunState behind step {self.done}, {self.nbytes} bytes>"


def _revive(version: int, fingerprint: bytes, plain: tuple, arrays: List[np.ndarray],
            check_sum: int) -> RunState:
    """The state of what was pickled. Damage is found here, before a run goes on with it."""
    if version != 1 or len(plain) != 4 or len(arrays) < 2:
        raise StateError("the state has other parts than this version's")
    if not all(isinstance(array, np.ndarray) for array in arrays):
        raise StateError("the state has parts that are no arrays")
    if _check_sum(arrays) != check_sum:
        raise StateError("the state is damaged: its surfaces are not those that were kept")
    return RunState(fingerprint, (*plain, list(arrays[:-2]), arrays[-2], arrays[-1]))


def shared_nbytes(holders: Iterable[Union["RunState", Any]]) -> int:
    """The bytes that the surfaces of some runs and states take together, each counted once however
    many of them share it."""
    seen = {}
    for holder in holders:
        state = holder if isinstance(holder, RunState) else holder.state()
        for array in state._arrays():
            seen[array.__array_interface__["data"][0]] = array.nbytes
    return sum(seen.values())
