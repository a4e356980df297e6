"""Whatever is passed to whatever member ends in a result or an exception that the page tells of."""

import inspect
import random

import numpy
import pytest

import vorquill21
from vorquill21 import BoundedArray, LibraryError, Missing

CLASSES = [getattr(vorquill21, name) for name in vorquill21.__all__ if name == "Main" or name.startswith("C")]
METHODS = [(kind, name) for kind in CLASSES for name in vars(kind)
           if not name.startswith("_") and inspect.isroutine(getattr(kind, name))]
PROMISED = (LibraryError, TypeError, ValueError, OverflowError)
CALLS_OF_EACH = 150

TEXTS = ["", "a", "[A]", "x\\y", "\t", "\r\n", "1.5", "\ud800", "\U0001f600", "nul\0nul", "A" * 300, "*.*", "DEC SEP"]
INTEGERS = [-1, 0, 1, 2, 3, 7, 16]
NUMBERS = [0.0, -0.0, 1.0, -2.5, 1e308, 5e-324, float("inf"), float("nan")]
ARRAYS = [[], [1, 2, 3], ["a", "1"], [None, Missing, True], [[1, 2], [3, 4]], [[[1.0]]], [[1], "x"], numpy.arange(5.0),
          numpy.zeros((2, 3)), numpy.zeros((0, 2)), numpy.zeros((2, 2, 2)), numpy.array(["a"]), numpy.array([1, None], object),
          BoundedArray(), BoundedArray([1, 2, 3], 1), BoundedArray([[1.0, 2.0], [3.0, 4.0]], 1), BoundedArray(["a"], -3),
          BoundedArray([1.0], 1000), BoundedArray(numpy.zeros((2, 2, 2)), (0, 1, -1)), [2**40], numpy.zeros((1, 1, 1, 1))]
OTHERS = [None, Missing, True, object(), b"x", {}, 1j, 2**31, -2**63, range(3), vorquill21.CLog()]
BY_PREFIX = {"as": TEXTS, "an": INTEGERS, "ai": INTEGERS, "ae": INTEGERS, "ab": [True, False], "ao": [[], ["a"], BoundedArray()],
             "aa": ARRAYS, "av": TEXTS + INTEGERS + NUMBERS + ARRAYS + OTHERS, "ar": NUMBERS + ARRAYS}
ANYTHING = TEXTS + INTEGERS + NUMBERS + ARRAYS + OTHERS


@pytest.fixture(autouse=True)
def nothing_outside_is_touched(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    for name in ("DISPLAY", "WAYLAND_DISPLAY"):
        monkeypatch.delenv(name, raising=False)
    for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"):
        monkeypatch.setenv(name, str(tmp_path))


def arguments(chance, method):
    """Mostly of the right kind, sometimes anything; results by reference are sometimes given."""
    passed = {}
    for parameter in list(inspect.signature(method).parameters.values())[1:]:
        given_by_name_only = parameter.kind == parameter.KEYWORD_ONLY
        if given_by_name_only and chance.random() < 0.5:
            continue
        fitting = BY_PREFIX[parameter.name[:2]]
        passed[parameter.name] = chance.choice(fitting if chance.random() < 0.9 else ANYTHING)
    return passed


@pytest.mark.parametrize("kind, name", METHODS, ids=lambda value: getattr(value, "__name__", value))
def test_any_arguments(kind, name):
    chance = random.Random(name)
    made = kind()
    if kind is vorquill21.CLog:
        made.Initialise("log.txt", 1000, True, True, "")
    for _ in range(5 if kind is vorquill21.Main else CALLS_OF_EACH):
        passed = arguments(chance, getattr(kind, name))
        try:
            getattr(made, name)(**passed)
        except PROMISED:
            pass
