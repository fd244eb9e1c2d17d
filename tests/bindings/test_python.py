"""The Python package over the C interface of this build tree (PYTHONPATH and QMV40_LIBRARY name both)."""

import json
import os
import pathlib
import pickle
import sys
import tempfile
import threading
import unittest

import qmv40

ROOT = pathlib.Path(__file__).resolve().parents[2]
HEADS = sorted((ROOT / "tests/data/heads").glob("*.json"))
KEY = r"HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator"
AGREEMENT = 1e-9  # mm and degrees: far above the rounding of coordinates of some hundred millimetres


def use_settings(folder, texts):
    """The component reads its settings again from the file that the environment names."""
    lines = ["REGEDIT4", "", f"[{KEY}]"] + [f'"{name}"="{text}"' for name, text in texts.items()]
    file = pathlib.Path(folder) / "settings.reg"
    file.write_text("\n".join(lines) + "\n")
    os.environ["QMV40_SETTINGS"] = str(file)


class Case(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="qmv40 test ")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        use_settings(folder.name, {})

    def head(self):
        head = qmv40.Calculator()
        head.load(ROOT / "samples/head.ini")
        head.position = (0, 0)
        return head


class Plans(Case):
    def test_are_those_of_the_reference_heads(self):
        plans = 0
        for file in HEADS:
            reference = json.loads(file.read_text())
            use_settings(self.folder, reference["settings"])
            head = qmv40.Calculator()
            head.enter_geometry(reference["aAxisPoints"], reference["bAxisPoints"])
            for expected in reference["expected"]["moves"]:
                head.position = expected["from"]
                plan = head.calculate_move(*expected["to"])
                self.assertEqual([move.name for move in plan], list(expected["moves"]))
                for move in plan:
                    for number, wanted in zip(move.record, expected["moves"][move.name].values(), strict=True):
                        self.assertAlmostEqual(number, wanted, delta=AGREEMENT, msg=f"{file.name} {move}")
                plans += 1
        self.assertGreater(plans, 20)

    def test_are_sequences_of_numbered_moves(self):
        plan = self.head().calculate_move(45, 90)
        self.assertEqual([move.number for move in plan], list(range(1, 20)))
        arcs = {move.number for move in plan if move.kind == "arc"}
        self.assertEqual(arcs, {3, 5, 9, 10, 11, 14, 18})
        self.assertEqual(plan[1].record, (130.3, 180.7, -336.55))
        self.assertEqual(plan.MoveToBPosition.RotationAngle, -90)
        self.assertEqual((plan.origin, plan.target), ((0, 0), (45, 90)))
        with self.assertRaises(AttributeError):
            plan.NoSuchMove

    def test_survive_pickling(self):
        plan = self.head().calculate_move(45, 90)
        again = pickle.loads(pickle.dumps(plan))
        self.assertEqual(again, plan)
        self.assertEqual(again.UnLock, plan.UnLock)
        self.assertNotEqual(again, self.head().calculate_move(15, 90))

    def test_begin_at_the_start_position(self):
        head = self.head()
        self.assertEqual(head.start_position(), head.calculate_move(45, 90)[0].record)
        self.assertEqual(head.pole_sphere(), (100, 200, -300))


class Refusals(Case):
    def test_a_target_off_the_steps(self):
        head = self.head()
        with self.assertRaises(qmv40.Error) as raised:
            head.calculate_move(50, 90)
        error = raised.exception
        self.assertEqual(error.code, 0x8A00000E)
        self.assertEqual(error.source, "CQMVCalculator::ValidateMoveTarget")
        self.assertEqual(error.description, "Invalid A Target Angle, value must be a 15 degree interval.")
        self.assertIn("0x8A00000E", str(error))
        self.assertEqual(head.position, (0, 0))
        again = pickle.loads(pickle.dumps(error))
        self.assertEqual((again.code, again.source, again.description), (error.code, error.source, error.description))

    def test_what_is_not_known_yet(self):
        head = qmv40.Calculator()
        for refused, code in ((lambda: head.position, 0x8A000004), (lambda: head.calculate_move(0, 0), 0x8A000003),
                              (head.start_position, 0x8A000003), (lambda: head.load("no such file"), 0x8A000001)):
            with self.assertRaises(qmv40.Error) as raised:
                refused()
            self.assertEqual(raised.exception.code, code)

    def test_points_with_another_number_of_columns(self):
        with self.assertRaisesRegex(ValueError, "row 1 has 4 numbers"):
            qmv40.Calculator().enter_geometry([[0, 0, 0, 0, 0], [0, 0, 0, 0]], [])

    def test_too_few_points(self):
        with self.assertRaises(qmv40.Error) as raised:
            qmv40.Calculator().enter_geometry([], [])
        self.assertEqual(raised.exception.code, 0x8A000009)

    def test_a_closed_calculator(self):
        with self.head() as head:
            self.assertEqual(head.position, (0, 0))
        with self.assertRaises(qmv40.Error):
            head.position
        head.close()


class Files(Case):
    def test_names_in_any_letters_and_relative(self):
        name = "Köpfe für Prüfer.ini"
        self.head().save(self.folder / name)
        before = os.getcwd()
        os.chdir(self.folder)
        self.addCleanup(os.chdir, before)
        head = qmv40.Calculator()
        head.load(name)
        head.position = 0, 0
        self.assertEqual(head.calculate_move(45, 90), self.head().calculate_move(45, 90))

    def test_of_the_component_is_the_one_beside_the_library(self):
        library = pathlib.Path(os.environ["QMV40_LIBRARY"])
        component = pathlib.Path(qmv40.Calculator().component)
        self.assertEqual(component.parent.resolve(), library.parent.resolve())
        self.assertIn("CoQMV40Calculator", component.name)


class Arrays(Case):
    def test_numpy_arrays_are_taken_and_given(self):
        try:
            import numpy
        except ImportError:
            self.skipTest("numpy is not here")
        reference = json.loads(HEADS[0].read_text())
        use_settings(self.folder, reference["settings"])
        by_lists, by_arrays = qmv40.Calculator(), qmv40.Calculator()
        points = reference["aAxisPoints"], reference["bAxisPoints"]
        by_lists.enter_geometry(*points)
        by_arrays.enter_geometry(*map(numpy.array, points))
        self.assertEqual(by_arrays.pole_sphere(), by_lists.pole_sphere())
        by_lists.position = numpy.array([0.0, 0.0])
        plan = by_lists.calculate_move(45, 90)
        self.assertEqual(plan.ends().shape, (12, 3))  # of the 12 straight moves
        self.assertEqual(plan[2].record.array().tolist(), list(plan[2].record))

    def test_numpy_is_not_needed(self):
        before = sys.modules.get("numpy")
        sys.modules["numpy"] = None
        try:
            self.assertEqual(len(self.head().calculate_move(45, 90)), 19)
        finally:
            del sys.modules["numpy"]
            if before is not None:
                sys.modules["numpy"] = before


class Threads(Case):
    def test_each_with_a_calculator_of_its_own(self):
        expected = self.head().calculate_move(45, 90)
        plans = []
        threads = [threading.Thread(target=lambda: plans.append(self.head().calculate_move(45, 90))) for _ in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(plans, [expected] * 8)


if __name__ == "__main__":
    unittest.main()
