"""The calculator."""

from __future__ import annotations

import ctypes
import os
from types import TracebackType
from typing import Any, Iterable, Optional, Sequence, Tuple, Type, Union

from ._library import library
from ._records import AlignmentPoint, CAlignmentPoint, CMoves, CPoint, Plan, Point, Position, from_c

FileName = Union[str, "os.PathLike[str]"]
_TEXT_SIZE = 4096


class Error(Exception):
    """The component refused a call."""

    def __init__(self, code: int, source: str, description: str) -> None:
        super().__init__(code, source, description)
        self.code = code
        """The component's code, for example 0x8A00000E. docs/errors.md lists all codes."""
        self.source = source
        """The operation that failed."""
        self.description = description
        """The component's description of the failure."""

    def __str__(self) -> str:
        return f"{self.description} (0x{self.code:08X}, {self.source})"


def _raise_last(calculator: Any) -> None:
    source = ctypes.create_string_buffer(_TEXT_SIZE)
    description = ctypes.create_string_buffer(_TEXT_SIZE)
    code = library.qmv40_last_error(calculator, source, _TEXT_SIZE, description, _TEXT_SIZE)
    raise Error(code & 0xFFFFFFFF, source.value.decode(), description.value.decode())


def _points(rows: Iterable[Sequence[float]]) -> Any:
    """Converts rows A, B, X, Y, Z: tuples, lists or a numpy array."""
    width = len(AlignmentPoint._fields)
    points = [tuple(row) for row in rows]
    for row, point in enumerate(points):
        if len(point) != width:
            raise ValueError(f"row {row} has {len(point)} numbers, not the five A, B, X, Y, Z")
    return (CAlignmentPoint * len(points))(*points)


class Calculator:
    """Plans how the machine turns one probe head.

    Angles are degrees: A (tilt) 0 to 90, B (swivel) -180 to 180, both in steps of 15. Lengths are in the unit of the
    captured points, positions in machine coordinates. A refused call raises `Error`.

    Use a calculator on the thread that created it; any number of threads can have their own calculators. It is freed
    by `close`, at the end of a `with` block, or with its last reference.
    """

    def __init__(self) -> None:
        self._calculator = ctypes.c_void_p()
        if library.qmv40_create(ctypes.byref(self._calculator)) != 0:
            _raise_last(None)

    def close(self) -> None:
        """Frees the calculator. All later calls are refused."""
        calculator, self._calculator = self._calculator, ctypes.c_void_p()
        library.qmv40_destroy(calculator)

    def __enter__(self) -> "Calculator":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def __del__(self) -> None:
        if getattr(self, "_calculator", None):
            self.close()

    def _call(self, function: Any, *arguments: Any) -> None:
        if function(self._calculator, *arguments) < 0:
            _raise_last(self._calculator)

    def load(self, file_name: FileName) -> None:
        """Replaces the head geometry by the one saved in a file."""
        self._call(library.qmv40_load, os.fspath(file_name).encode())

    def save(self, file_name: FileName) -> None:
        """Saves the head geometry into a file."""
        self._call(library.qmv40_save, os.fspath(file_name).encode())

    def enter_geometry(self, a_points: Iterable[Sequence[float]], b_points: Iterable[Sequence[float]]) -> None:
        """Computes the head geometry from captured points, at least four for each axis.

        Each row is A, B, X, Y, Z: the head's angles in degrees, and the machine position while the stylus tip is on
        the pole sphere and the head is unlocked. `a_points` were captured while A alone was turned, `b_points` while B
        alone was turned. They can be lists, tuples or numpy arrays.
        """
        a, b = _points(a_points), _points(b_points)
        self._call(library.qmv40_enter_geometry, a, len(a), b, len(b))

    @property
    def position(self) -> Position:
        """The head's current angles A and B in degrees: as last set, or the target of the last `calculate_move`."""
        a, b = ctypes.c_double(), ctypes.c_double()
        self._call(library.qmv40_get_position, ctypes.byref(a), ctypes.byref(b))
        return Position(a.value, b.value)

    @position.setter
    def position(self, angles: Tuple[float, float]) -> None:
        a, b = angles
        self._call(library.qmv40_set_position, a, b)

    def calculate_move(self, a: float, b: float) -> Plan:
        """Plans the 19 moves to the angles `a` and `b` (degrees), which become the current position."""
        moves = CMoves()
        origin_a, origin_b = ctypes.c_double(), ctypes.c_double()
        # If the position is unknown, the next call fails and names the reason.
        library.qmv40_get_position(self._calculator, ctypes.byref(origin_a), ctypes.byref(origin_b))
        self._call(library.qmv40_calculate_move, a, b, ctypes.byref(moves))
        return Plan._from_c(moves, Position(origin_a.value, origin_b.value), self.position)

    def start_position(self) -> Point:
        """The first point of any indexing from the current position, in machine coordinates."""
        return self._point(library.qmv40_start_position)

    def pole_sphere(self) -> Point:
        """The centre of the pole sphere, which is the head centre of the geometry, in machine coordinates."""
        return self._point(library.qmv40_pole_sphere)

    def _point(self, function: Any) -> Point:
        point = CPoint()
        self._call(function, ctypes.byref(point))
        record = from_c(point)
        assert isinstance(record, Point)
        return record

    @property
    def component(self) -> str:
        """The file of the component that is in use."""
        name = ctypes.create_string_buffer(_TEXT_SIZE)
        self._call(library.qmv40_component, name, _TEXT_SIZE)
        return name.value.decode()


def version() -> str:
    """The version of the C interface in use."""
    return str(library.qmv40_version().decode())
