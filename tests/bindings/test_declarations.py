"""Python and C# declare the structs and functions of the C header a second time: names, order and types must agree.

PYTHONPATH and QMV40_LIBRARY name the package and the library of this build tree.
"""

import ctypes
import pathlib
import re
import unittest

from qmv40 import _library, _records

ROOT = pathlib.Path(__file__).resolve().parents[2]
STRUCTS = {
    "qmv40_xyz": ("Point", _records.CPoint),
    "qmv40_arc": ("Arc", _records.CArc),
    "qmv40_alignment_point": ("AlignmentPoint", _records.CAlignmentPoint),
    "qmv40_moves": ("Moves", _records.CMoves),
}
# C, C#, Python's ctypes. A type that is not here fails the test.
TYPES = {
    "void": ("void", None),
    "int32_t": ("int", ctypes.c_int32),
    "double": ("double", ctypes.c_double),
    "size_t": ("UIntPtr", ctypes.c_size_t),
    "char*": ("byte[]", ctypes.c_char_p),
    "const char*": ("byte[]", ctypes.c_char_p),
    "double*": ("out double", ctypes.POINTER(ctypes.c_double)),
    "qmv40_calculator*": ("CalculatorHandle", ctypes.c_void_p),
    "qmv40_calculator**": ("out CalculatorHandle", ctypes.POINTER(ctypes.c_void_p)),
    **{f"struct {name}": types for name, types in STRUCTS.items()},
    **{f"struct {name}*": (f"out {sharp}", ctypes.POINTER(python)) for name, (sharp, python) in STRUCTS.items()},
    **{f"const struct {name}*": (f"{sharp}[]", ctypes.POINTER(python)) for name, (sharp, python) in STRUCTS.items()},
}


def split(declaration):
    """The type and the name of a field or a parameter."""
    kind, name = re.fullmatch(r"\s*(.*?[ *])\s*(\w+)\s*", declaration, re.DOTALL).groups()
    return kind.strip(), name


def of_header():
    """The structs (names and types of their fields) and the functions (types of result and parameters) of the header."""
    text = re.sub(r"/\*.*?\*/", "", (ROOT / "bindings/c/qmv40.h").read_text(), flags=re.DOTALL)
    structs, functions = {}, {}
    for name, body in re.findall(r"^struct (\w+) \{(.*?)^\};", text, re.DOTALL | re.MULTILINE):
        structs[name] = [split(field) for field in body.split(";") if field.strip()]
    for head, parameters in re.findall(r"^(\w[\w *]*?)\(([^()]*)\);", text, re.MULTILINE):
        result, name = split(head)
        given = [] if parameters == "void" else parameters.split(",")
        functions[name] = (result, [split(parameter)[0] for parameter in given])
    return structs, functions


def of_csharp():
    """The same of the C# file."""
    text = re.sub(r"//.*", "", (ROOT / "bindings/csharp/Qmv40.cs").read_text())
    structs, functions = {}, {}
    for name, body in re.findall(r"\[StructLayout\(LayoutKind.Sequential\)\]\s+public struct (\w+)\s+\{(.*?)\n    \}",
                                 text, re.DOTALL):
        lines = re.findall(r"^ +public ([^(){};]+);", body, re.MULTILINE)
        structs[name] = [(kind, field) for kind, fields in (line.split(" ", 1) for line in lines)
                         for field in fields.split(", ")]
    for result, name, parameters in re.findall(r"extern ([\w\[\]]+) (\w+)\(([^()]*)\);", text):
        functions[name] = (result, [split(parameter)[0] for parameter in parameters.split(",")])
    return structs, functions


class Declarations(unittest.TestCase):
    def setUp(self):
        self.structs, self.functions = of_header()
        self.assertEqual(list(self.structs), list(STRUCTS))
        self.assertEqual(len(self.functions), 13)

    def test_structs_of_csharp_are_those_of_the_header(self):
        structs, _ = of_csharp()
        for name, fields in self.structs.items():
            self.assertEqual(structs[STRUCTS[name][0]], [(TYPES[kind][0], field) for kind, field in fields], name)

    def test_functions_of_csharp_are_those_of_the_header(self):
        _, functions = of_csharp()
        self.assertEqual(len(functions), 11)  # C# does not use qmv40_version and qmv40_component
        for name, (result, parameters) in functions.items():
            expected = self.functions[name]
            if name == "qmv40_destroy":  # the handle calls it with its own pointer
                parameters = [kind.replace("IntPtr", "CalculatorHandle") for kind in parameters]
            self.assertEqual((result, parameters), (TYPES[expected[0]][0], [TYPES[kind][0] for kind in expected[1]]), name)

    def test_structs_of_python_are_those_of_the_header(self):
        for name, fields in self.structs.items():
            self.assertEqual(STRUCTS[name][1]._fields_, [(field, TYPES[kind][1]) for kind, field in fields], name)

    def test_functions_of_python_are_those_of_the_header(self):
        for name, (result, parameters) in self.functions.items():
            function = getattr(_library.library, name)
            self.assertEqual(function.restype, TYPES[result][1], name)
            self.assertEqual(function.argtypes, [TYPES[kind][1] for kind in parameters], name)


if __name__ == "__main__":
    unittest.main()
