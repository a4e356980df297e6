"""CTrigonometry, CStatistics, CGeometry."""

import math

import numpy
import pytest

import vorquill21
from conftest import bits

PI = 3.14159265358979


class TestTrigonometry:
    trigonometry = vorquill21.CTrigonometry()

    def test_pi_is_its_own(self):
        assert bits(self.trigonometry.Pi()) == "400921fb54442d11"

    def test_inverse_functions(self):
        assert self.trigonometry.ArcSin(7) == PI / 2
        assert self.trigonometry.ArcCos(7) == 0
        assert self.trigonometry.ArcCos(-7) == PI
        assert self.trigonometry.ArcTan2(-1, 1) == pytest.approx(-PI / 4)

    def test_a_half_turn_is_360_degrees(self):
        assert self.trigonometry.Degrees(PI) == 360
        assert self.trigonometry.Radians(180) == PI / 2

    def test_results_by_reference_come_as_a_tuple(self):
        assert self.trigonometry.PolarToXY(0, 2) == (2.0, 0.0)
        assert self.trigonometry.XYToPolar(arX=0, arY=-3) == (-PI / 2, 3.0)

    def test_an_error_tells_what_was_written_before_it(self, raises):
        with raises(6) as info:
            self.trigonometry.XYToPolar(1e200, 1e200, arRadians=7, arRadius=8)
        assert info.value.results == (math.atan(1), 8.0)


class TestStatistics:
    statistics = vorquill21.CStatistics()
    values = numpy.array([2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0])

    def test_means_and_deviations(self):
        assert self.statistics.ArithmeticMean(self.values) == 5
        assert self.statistics.VariancePop(self.values) == 4
        assert self.statistics.StandardDeviationPop(self.values) == 2
        assert self.statistics.Variance(self.values) == 32 / 7
        assert self.statistics.StandardDeviation(self.values) == math.sqrt(32 / 7)
        assert self.statistics.RMS([3, 4, 0, 0]) == 2.5

    def test_extremes_come_with_their_index(self):
        assert self.statistics.Maximum(self.values) == (9.0, 7)
        assert self.statistics.Minimum(self.values) == (2.0, 0)

    def test_indices_count_from_the_lower_bound(self):
        bounded = vorquill21.BoundedArray(self.values, -3)
        assert self.statistics.Maximum(bounded) == (9.0, 4)
        assert self.statistics.Minimum(bounded) == (2.0, -3)

    def test_without_elements(self, raises):
        assert self.statistics.ArithmeticMean([]) == 0
        with raises(9) as info:
            self.statistics.Maximum([], anMaxIndex=5)
        assert info.value.results == (0,)

    def test_several_dimensions_are_an_error(self, raises):
        with raises(9):
            self.statistics.RMS(numpy.zeros((2, 2)))
        with raises(9):
            self.statistics.RMS(vorquill21.BoundedArray())


class TestGeometry:
    geometry = vorquill21.CGeometry()

    def test_angles(self):
        assert self.geometry.AngleBetweenLines(0, 0, 0, 1, 0, 0, 5, 5, 5, 5, 6, 5) == pytest.approx(90)
        assert self.geometry.AngleBetweenVectors(1, 0, 0, -1, 0, 0) == 179.9999999764967

    def test_matrices_have_the_bounds_from_1_on(self):
        matrix = self.geometry.BuildTransformationMatrix(0, 0, 90)
        assert matrix.lower_bounds == (1, 1)
        assert matrix.upper_bounds == (3, 3)
        assert matrix[2, 1] == pytest.approx(1)
        product = self.geometry.MatrixMultiply(matrix, matrix)
        assert product.lower_bounds == (1, 1)
        assert product[1, 1] == pytest.approx(-1)
        assert self.geometry.TransformPoint(1, 0, 0, matrix) == pytest.approx((0, 1, 0), abs=1e-8)

    def test_a_matrix_from_0_lacks_its_last_row(self, raises):
        with raises(9):
            self.geometry.TransformPoint(1, 0, 0, numpy.eye(3))

    def test_points_and_lines(self):
        line = (0, 0, 0, 2, 0, 0)
        assert self.geometry.IntersectNormalPointToLine(*line, 1, 5, 0) == (1.0, 0.0, 0.0)
        assert self.geometry.LineDistanceToPoint(*line, 1, 5, 0) == 5
        with pytest.raises(vorquill21.LibraryError, match="Division by zero"):
            self.geometry.IntersectNormalPointToLine(1, 1, 1, 1, 1, 1, 0, 0, 0)

    def test_vectors(self):
        assert self.geometry.UnitVector3d(0, 3, 4) == (0.0, 0.6, 0.8)
        assert self.geometry.VectorAdd3d(1, 2, 3, 4, 5, 6) == (5.0, 7.0, 9.0)
        assert self.geometry.VectorSubtract3d(1, 2, 3, 4, 5, 6) == (-3.0, -3.0, -3.0)
        assert self.geometry.VectorCrossProduct3d(1, 0, 0, 0, 1, 0) == (0.0, 0.0, 1.0)
        assert self.geometry.VectorDotProduct3d(1, 2, 3, 4, 5, 6) == 32.0
        assert self.geometry.VectorMagnitude3d(2, 3, 6) == 7.0

    def test_results_before_a_fault_are_set(self, raises):
        with raises(6) as info:
            self.geometry.VectorAdd3d(1, 1e308, 1, 1, 1e308, 1, arResultY=-1, arResultZ=-2)
        assert info.value.results == (2.0, -1.0, -2.0)

    def test_a_product_holds_the_elements_before_a_fault(self, raises):
        left = vorquill21.BoundedArray([[1.0, 1.0], [1e308, 1.0]], 1)
        right = vorquill21.BoundedArray([[2.0, 1.0], [1.0, 1.0]], 1)
        with raises(6) as info:
            self.geometry.MatrixMultiply(left, right)
        (product,) = info.value.results
        assert product == vorquill21.BoundedArray([[3.0, 2.0], [0.0, 0.0]], 1)
