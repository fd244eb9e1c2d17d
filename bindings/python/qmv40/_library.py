"""Finds and declares the C interface."""

from __future__ import annotations

import ctypes
import os
import sys
from pathlib import Path
from typing import Iterator

from ._records import CAlignmentPoint, CMoves, CPoint

_IS_WINDOWS = sys.platform == "win32"
_NAME = "qmv40.dll" if _IS_WINDOWS else "libqmv40.so.1"


def _places() -> Iterator[str]:
    """The possible places of the library, in the order of the search.

    A name without a folder is searched for by the system.
    """
    package = Path(__file__).resolve().parent
    if "QMV40_LIBRARY" in os.environ:
        yield os.environ["QMV40_LIBRARY"]
        return
    # In a wheel the library is in the package. In an installation the package is in lib/python3/dist-packages, and the
    # library is in lib or in the folder above lib.
    for folder in (package, *list(package.parents)[2:4]):
        if (folder / _NAME).is_file():
            yield str(folder / _NAME)
    yield _NAME


def _open() -> ctypes.CDLL:
    problem: OSError = OSError(_NAME + " was not found")
    for place in _places():
        try:
            return ctypes.CDLL(place)
        except OSError as error:
            problem = error
    raise ImportError(f"the C interface of qmv40 cannot be loaded: {problem}") from problem


def _declare(library: ctypes.CDLL) -> ctypes.CDLL:
    calculator = ctypes.c_void_p
    angle = ctypes.c_double
    place = ctypes.POINTER
    size = ctypes.c_size_t
    text = ctypes.c_char_p
    points = place(CAlignmentPoint)
    arguments = {
        "qmv40_create": [place(calculator)],
        "qmv40_destroy": [calculator],
        "qmv40_version": [],
        "qmv40_load": [calculator, text],
        "qmv40_save": [calculator, text],
        "qmv40_enter_geometry": [calculator, points, size, points, size],
        "qmv40_set_position": [calculator, angle, angle],
        "qmv40_get_position": [calculator, place(angle), place(angle)],
        "qmv40_calculate_move": [calculator, angle, angle, place(CMoves)],
        "qmv40_start_position": [calculator, place(CPoint)],
        "qmv40_pole_sphere": [calculator, place(CPoint)],
        "qmv40_last_error": [calculator, text, size, text, size],
        "qmv40_component": [calculator, text, size],
    }
    for name, types in arguments.items():
        function = getattr(library, name)
        function.argtypes = types
        function.restype = ctypes.c_int32
    library.qmv40_destroy.restype = None
    library.qmv40_version.restype = text
    return library


library = _declare(_open())
