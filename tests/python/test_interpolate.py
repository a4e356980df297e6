"""CInterpolate."""

import gc
import weakref

import numpy
import pytest

import vorquill21
from vorquill21 import BoundedArray, EOutOfBoundsBehaviour

X = [0.0, 1.0, 2.0]
Y = [0.0, 10.0, 30.0]


@pytest.fixture
def interpolate():
    return vorquill21.CInterpolate()


def test_lines_in_a_table(interpolate):
    clip, extrapolate = EOutOfBoundsBehaviour
    assert interpolate.OneDLinearInterpolate(clip, X, Y, 1.5) == 20
    assert interpolate.OneDLinearInterpolate(clip, X, Y, 5) == 30
    assert interpolate.OneDLinearInterpolate(extrapolate, X, Y, 3) == 50
    assert interpolate.OneDLinearInterpolateWithBounds(clip, X, Y, 5, 0, 1) == 10
    assert interpolate.OneDLinearInterpolateFromPoints(0, 2, 0, 4, 1) == 2


def test_deliberate_another_behaviour_is_0_outside(interpolate):
    assert interpolate.OneDLinearInterpolate(2, X, Y, 5) == 0


def test_equal_nodes_are_an_error(interpolate):
    with pytest.raises(vorquill21.LibraryError, match="X values are coincident") as info:
        interpolate.OneDLinearInterpolateFromPoints(1, 1, 0, 4, 1)
    assert info.value.number == 380
    assert info.value.source == "Vorquill21.CMathUtils.OneDLinearInterpolateFromPoints"


def test_a_fit_has_an_element_for_each_point_from_1_on(interpolate):
    coefficients, deviation = interpolate.OneDPolynomialFit([0, 1, 2, 3], [1, 3, 5, 7], 1)
    assert coefficients == BoundedArray([1.0, 2.0, 0.0, 0.0], 1)
    assert deviation == 0
    assert interpolate.OneDPolynomialInterpolate(10, coefficients) == 21


def test_a_fit_of_a_surface_begins_at_0(interpolate):
    x, y = numpy.meshgrid(numpy.arange(4.0), numpy.arange(4.0))
    coefficients, deviation = interpolate.TwoDPolynomialFit(x.ravel(), y.ravel(), (2 + 3 * x + 5 * y).ravel(), 1)
    assert isinstance(coefficients, numpy.ndarray)
    assert coefficients.tolist() == [[2, 3], [5, 0]]
    assert deviation == 0
    assert interpolate.TwoDPolynomialInterpolate(1, 2, coefficients) == 15


def test_a_fit_that_fails_tells_what_it_supports(interpolate, raises):
    with raises(11) as info:
        interpolate.OneDPolynomialFit([1, 1, 2], [1, 1, 2], 5)
    coefficients, deviation = info.value.results
    assert coefficients == BoundedArray([0.0, 1.0, 0.0], 1)
    assert deviation == 0


class Counting(vorquill21.CMathUtils):
    def __init__(self):
        super().__init__()
        self.seen = []

    def ArrayLocate(self, arXVals, arX):
        self.seen.append((arXVals, arX))
        return super().ArrayLocate(arXVals, arX)


def test_a_class_of_the_host_finds_the_intervals(interpolate):
    utils = Counting()
    interpolate.moUtils = utils
    assert interpolate.moUtils is utils
    assert interpolate.OneDLinearInterpolate(0, X, Y, 1.5) == 20
    assert utils.seen[0][1] == 1.5
    assert utils.seen[0][0].tolist() == X


def test_an_override_sees_the_bounds_and_may_keep_the_array(interpolate):
    utils = Counting()
    interpolate.moUtils = utils
    interpolate.OneDLinearInterpolate(0, BoundedArray(X, 5), BoundedArray(Y, 5), 0.5)
    assert utils.seen[0][0] == BoundedArray(X, 5)


def test_the_object_of_the_host_lives_as_long_as_it_is_used(interpolate):
    utils = Counting()
    gone = weakref.ref(utils)
    interpolate.moUtils = utils
    del utils
    gc.collect()
    assert gone() is not None
    interpolate.OneDLinearInterpolate(0, X, Y, 1.5)
    assert len(gone().seen) == 1
    interpolate.moUtils = vorquill21.CMathUtils()
    assert gone() is None


def test_an_override_decides(interpolate):
    class Last(vorquill21.CMathUtils):
        def ArrayLocate(self, arXVals, arX):
            return True, len(arXVals) - 2

    interpolate.moUtils = Last()
    assert interpolate.OneDLinearInterpolate(0, X, Y, 0.5) == 0


def test_what_an_override_raises_comes_through(interpolate):
    class Failing(vorquill21.CMathUtils):
        def ArrayLocate(self, arXVals, arX):
            raise KeyError("mine")

    interpolate.moUtils = Failing()
    with pytest.raises(KeyError, match="mine"):
        interpolate.OneDLinearInterpolate(0, X, Y, 0.5)


@pytest.mark.parametrize("returned", [(True,), True, None, (True, 1, 2), (True, "1")])
def test_an_override_that_returns_other_things_is_an_error(interpolate, returned):
    class Odd(vorquill21.CMathUtils):
        def ArrayLocate(self, arXVals, arX):
            return returned

    interpolate.moUtils = Odd()
    with pytest.raises(TypeError, match="ArrayLocate returns"):
        interpolate.OneDLinearInterpolate(0, X, Y, 0.5)


def test_without_utils_tables_are_an_error(interpolate, raises):
    interpolate.moUtils = None
    assert interpolate.moUtils is None
    with raises(5):
        interpolate.OneDLinearInterpolate(0, X, Y, 0.5)


def test_other_objects_are_refused(interpolate):
    with pytest.raises(TypeError):
        interpolate.moUtils = 5
