"""CMathUtils."""

import numpy
import pytest

import vorquill21
from vorquill21 import BoundedArray, EBoundsChecks, EMonotonicScale

UTILS = vorquill21.CMathUtils()


def test_locating_in_a_table():
    nodes = numpy.arange(5.0)
    assert UTILS.ArrayLocate(nodes, 2) == (True, 2)
    assert UTILS.ArrayLocate(nodes, 1) == (True, 0)
    assert UTILS.ArrayLocate(nodes, -1) == (False, 3)
    assert UTILS.ArrayLocate(BoundedArray(nodes, 10), 2.5) == (True, 12)


def test_an_error_leaves_the_index_as_it_was():
    with pytest.raises(vorquill21.LibraryError) as info:
        UTILS.ArrayLocate([], 1, anIndex=77)
    assert info.value.number == vorquill21.EErrorsMathUtil.eErrMathUtilInvalidArrayLimts
    assert info.value.source == "Vorquill21MathUtils.ArrayLocate"
    assert str(info.value) == "One or more array bounds are below 0"
    assert info.value.results == (77,)


def test_copies_keep_their_bounds():
    copy = UTILS.CopyArray1D(["1", 2, True, None])
    assert isinstance(copy, numpy.ndarray)
    assert copy.tolist() == [1, 2, -1, 0]
    assert UTILS.CopyArray2D([[1, 2], [3, 4]]).tolist() == [[1, 2], [3, 4]]
    assert UTILS.CopyArray3D(numpy.arange(8).reshape(2, 2, 2)).tolist() == [[[0, 1], [2, 3]], [[4, 5], [6, 7]]]
    assert UTILS.CopyArray1D(BoundedArray([5, 6], 3)) == BoundedArray([5.0, 6.0], 3)
    assert UTILS.CopyArray1D(None).tolist() == [0]


def test_a_copy_holds_the_elements_before_a_fault(raises):
    with raises(13) as info:
        UTILS.CopyArray1D(["1", "2", "x", "4"])
    assert info.value.results[0].tolist() == [1, 2, 0, 0]
    with raises(13) as info:
        UTILS.CopyArray1D("x", arTargetArray=[9.0])
    assert info.value.results[0].tolist() == [9]


def test_words(raises):
    assert UTILS.DWordMake(-1, 2) == -65534
    assert UTILS.DWordGetHighWord(-65534) == -1
    assert UTILS.DWordGetLowWord(-65534) == 2
    with raises(6):
        UTILS.DWordMake(40000, 0)


def test_numbers_are_equal_within_a_tolerance():
    assert UTILS.NumbersAreEqual(1, 2, 0) is True
    assert UTILS.NumbersAreEqual("1.5", 1.505, 2) is True
    assert UTILS.NumbersAreEqual(1, 1.1, 2) is False


def test_arrays_are_equal():
    assert UTILS.ArraysAreEqual([1, 2], [1, 2, 3], 1)
    assert not UTILS.ArraysAreEqual([1, 2, 3], [1, 2], 1)
    assert UTILS.ArraysAreEqual(numpy.eye(2), [[1.005, 0], [0, 1]], 2, 2)
    assert not UTILS.ArraysAreEqual(numpy.eye(2), [[1.1, 0], [0, 1]], 2, anNDPs=2)
    assert not UTILS.ArraysAreEqual([1, 2], BoundedArray([1, 2], 1), 1)


def test_monotonic_arrays():
    assert UTILS.ArrayIsMonotonic1D([1, 2, 3], EMonotonicScale.emsPositive, "X") == (True, "")
    assert UTILS.ArrayIsMonotonic1D([1, 1], EMonotonicScale.emsPositive, "X") == (False, "X must be monotonic positive")
    assert UTILS.ArrayIsMonotonic1D([1, 2], 1, "X") == (False, "X must be monotonic negative")
    assert UTILS.ArrayIsMonotonic1D([3, 2], 1, "X", asStatusMsg="before") == (True, "before")


def test_deliberate_another_scale_demands_nothing():
    assert UTILS.ArrayIsMonotonic1D([3, 1, 2], 2, "X") == (True, "")


def test_limits():
    inclusive = EBoundsChecks.evcBetween | EBoundsChecks.evcInclusive
    assert UTILS.IsInBounds(1, "X", inclusive, 1, 5) == (True, "")
    assert UTILS.IsInBounds(9, "X", inclusive, 1, 5) == (False, "X must be equal to or between 1 and5")
    assert UTILS.IsInBounds(1, "X", EBoundsChecks.evcGreaterThan, 1) == (False, "X must be greater than 1")
    assert UTILS.IsInBounds("", "X", EBoundsChecks.evcNotEqual, "") == (False, "X must not be empty ")
    assert UTILS.IsInBounds(2, "X", 1, 1, asStatusMsg="before") == (True, "before")


def test_deliberate_modes_that_do_not_exist_never_fail():
    assert UTILS.IsInBounds(9, "X", 3, 1, 5) == (True, "")


def test_a_second_limit_that_is_left_out_is_missing(raises):
    with raises(13):
        UTILS.IsInBounds(9, "X", EBoundsChecks.evcBetween, 1)
    with raises(13):
        UTILS.IsInBounds(9, "X", EBoundsChecks.evcBetween, 1, vorquill21.Missing)
