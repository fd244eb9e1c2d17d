"""The records of the C interface as Python tuples."""

from __future__ import annotations

import ctypes
import dataclasses
from typing import TYPE_CHECKING, Any, NamedTuple, Sequence, Tuple, Union

if TYPE_CHECKING:
    import numpy


def _to_array(rows: Sequence[Any]) -> "numpy.ndarray":
    import numpy  # raises ImportError if it is missing

    return numpy.array(rows, dtype=float)


class Point(NamedTuple):
    """A point in machine coordinates, in the unit of the captured points."""

    XPosition: float
    YPosition: float
    ZPosition: float

    def array(self) -> "numpy.ndarray":
        """X, Y and Z as a numpy array (needs numpy)."""
        return _to_array(self)


class Arc(NamedTuple):
    """A turn of the machine's position about an axis.

    With a positive angle the position moves clockwise when seen from the tip of the rotation vector towards its origin
    (left-handed). The origin is a point on the axis, in machine coordinates and the unit of the captured points; the
    vector is the axis' direction, of length 1; the angle is in degrees, signed.
    """

    XOrigin: float
    YOrigin: float
    ZOrigin: float
    iRotationVector: float
    jRotationVector: float
    kRotationVector: float
    RotationAngle: float

    def array(self) -> "numpy.ndarray":
        """The seven numbers as a numpy array (needs numpy)."""
        return _to_array(self)


class AlignmentPoint(NamedTuple):
    """A captured point: the head's angles in degrees, and the machine position while the stylus tip is on the pole
    sphere and the head is unlocked."""

    APosition: float
    BPosition: float
    XPosition: float
    YPosition: float
    ZPosition: float


class Position(NamedTuple):
    """The head's angles in degrees."""

    A: float
    B: float


def _structure(record: Any) -> Any:
    """The C struct of a record whose fields are all doubles."""
    fields = [(name, ctypes.c_double) for name in record._fields]
    return type("C" + record.__name__, (ctypes.Structure,), {"_fields_": fields})


CPoint = _structure(Point)
CArc = _structure(Arc)
CAlignmentPoint = _structure(AlignmentPoint)


class CMoves(ctypes.Structure):
    """The 19 moves in the order in which the machine makes them. Plan takes their names from here."""

    _fields_ = [
        ("ApproachUnLockLever", CPoint),
        ("EngageWithUnLockLever", CPoint),
        ("UnLock", CArc),
        ("DisengageFromUnLockLever", CPoint),
        ("RotateToPeg", CArc),
        ("MoveToPegAtSafeZ", CPoint),
        ("ApproachPeg", CPoint),
        ("EngageWithPeg", CPoint),
        ("IntermediateAPosition", CArc),
        ("MoveToBPosition", CArc),
        ("MoveToAPosition", CArc),
        ("DisengageFromPeg", CPoint),
        ("DisengageFromPegToSafeZ", CPoint),
        ("RotateToLockLever", CArc),
        ("MoveToLockLeverAtSafeZ", CPoint),
        ("ApproachLockLever", CPoint),
        ("EngageWithLockLever", CPoint),
        ("Lock", CArc),
        ("DisengageFromLockLever", CPoint),
    ]


def from_c(structure: ctypes.Structure) -> Union[Point, Arc]:
    record = Point if isinstance(structure, CPoint) else Arc
    return record(*(getattr(structure, name) for name in record._fields))


class Move(NamedTuple):
    """One of the 19 moves."""

    number: int
    """1 to 19."""
    name: str
    """The field's name in the component's record, for example "UnLock"."""
    kind: str
    """"straight" or "arc"."""
    record: Union[Point, Arc]
    """The end of a straight move, or the axis and the angle of an arc."""


@dataclasses.dataclass(frozen=True, repr=False)
class Plan(Sequence[Move]):
    """The 19 moves of one indexing, in order: a sequence that can be compared, copied and pickled."""

    _moves: Tuple[Move, ...]
    origin: Position
    """The head's angles before the first move, in degrees."""
    target: Position
    """The head's angles after the last move, in degrees."""

    @classmethod
    def _from_c(cls, moves: CMoves, origin: Position, target: Position) -> "Plan":
        numbered = []
        for number, (name, _) in enumerate(CMoves._fields_, 1):
            record = from_c(getattr(moves, name))
            numbered.append(Move(number, name, "straight" if isinstance(record, Point) else "arc", record))
        return cls(tuple(numbered), origin, target)

    def __len__(self) -> int:
        return len(self._moves)

    def __getitem__(self, index: Any) -> Any:
        return self._moves[index]

    def __getattr__(self, name: str) -> Union[Point, Arc]:
        """The record of a move by its name: plan.UnLock."""
        for move in self.__dict__.get("_moves", ()):
            if move.name == name:
                return move.record
        raise AttributeError(name)

    def __repr__(self) -> str:
        return f"<Plan of {len(self)} moves from {tuple(self.origin)} to {tuple(self.target)}>"

    def ends(self) -> "numpy.ndarray":
        """The ends of the straight moves, in order: a numpy array of 12 rows X, Y, Z (needs numpy)."""
        return _to_array([move.record for move in self if move.kind == "straight"])
