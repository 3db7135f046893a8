"""Layers of a stack, as arrays."""

from __future__ import annotations

from typing import Iterator, List, NamedTuple, Tuple, Union

import numpy as np


class Layer(NamedTuple):
    """A layer of a stack as it was when it was asked for. Where `top` equals `bottom`, it is not.

    The arrays are views of the model's own memory: (rows, columns) float32, read-only, um above the
    substrate's underside. They keep what they show as long as somebody holds them.
    """

    #: from the substrate's, 1, on; a layer keeps it, and no other gets it
    number: int
    material: str
    label: str
    #: red, green, blue, 0 to 1
    color: Tuple[float, float, float]
    #: opacity, 0 to 1
    alpha: float
    top: np.ndarray
    bottom: np.ndarray

    @property
    def thickness(self) -> np.ndarray:
        """(rows, columns) float32, um: `top` - `bottom`, a new array."""
        return self.top - self.bottom

    def __repr__(self) -> str:
        rows, columns = self.top.shape
        return f"<layer {self.number} {self.material!r} {rows} x {columns}>"


class Layers:
    """The layers of a stack, the lowest first: a sequence, and by material or label a mapping. Of
    several layers with one name it gives the uppermost."""

    def __init__(self, layers: List[Layer]):
        self._layers = tuple(layers)

    @property
    def names(self) -> List[str]:
        """The materials, the lowest layer's first."""
        return [layer.material for layer in self._layers]

    def __len__(self) -> int:
        return len(self._layers)

    def __iter__(self) -> Iterator[Layer]:
        return iter(self._layers)

    def __contains__(self, name: object) -> bool:
        return any(name in (layer.material, layer.label) for layer in self._layers)

    def __getitem__(self, key: Union[str, int]) -> Layer:
        if not isinstance(key, str):
            return self._layers[key]
        for attribute in ("material", "label"):
            for layer in reversed(self._layers):
                if getattr(layer, attribute) == key:
                    return layer
        raise KeyError(f"no layer is called {key!r}; there are {', '.join(self.names) or 'none'}")

    def __repr__(self) -> str:
        return f"<layers {self.names}>"


class Cover(NamedTuple):
    """What is exposed at each cell: read-only views of the model's own memory, (rows, columns)."""

    #: int32: one less than the number (Layer.number) of the exposed layer
    slot: np.ndarray
    #: float32, um above the substrate's underside: its upper surface there
    height: np.ndarray
