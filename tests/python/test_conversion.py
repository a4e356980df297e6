"""How values cross between Python and the library."""

import decimal
import enum
import gc
import pickle
import weakref

import numpy
import pytest

import vorquill21
from vorquill21 import BoundedArray, LibraryError, Missing

UTILS = vorquill21.CMathUtils()
STATISTICS = vorquill21.CStatistics()
STRINGS = vorquill21.CString()
PATHS = vorquill21.CFile()


@pytest.fixture
def returned(stream):
    """Passes a value to the library as a variant, which returns it."""
    return lambda value: stream.GetFieldString("NO SUCH FIELD", value)


class TestTexts:
    @pytest.mark.parametrize("text", ["", "a", "zwölf", "€", "\U0001f600", "a\U0001f600b", "\ud83d", "\ude00", "\ud83dx",
                                      "\ude00\ud83d", "nul\0nul", "\uffff", "\U0010ffff", "\xff" * 100])
    def test_units_survive(self, text):
        assert STRINGS.ReplaceMulti(text, "none", "") == text

    def test_surrogates_that_are_partners_become_one_character(self):
        assert STRINGS.ReplaceMulti("\ud83d\ude00", "none", "") == "\U0001f600"

    def test_a_character_beyond_the_basic_plane_is_two_units(self):
        assert STRINGS.RTrimMulti("\U0001f600", ["\ude00"]) == "\ud83d"

    @pytest.mark.parametrize("other", [b"bytes", 5, None, ["a"]])
    def test_only_str_is_a_text(self, other):
        with pytest.raises(TypeError):
            PATHS.ParseFileExt(other)


class Colour(enum.IntEnum):
    RED = 7


class TestVariants:
    @pytest.mark.parametrize("value", [None, Missing, True, False, 0, -2**31, 2**31 - 1, 1.5, float("inf"), "", "text"])
    def test_scalars_come_back_as_they_were(self, stream, value):
        if value is Missing:
            assert stream.GetFieldString("NONE", value) == ""  # as if it were left out
            return
        back = stream.GetFieldString("NONE", value)
        assert type(back) is type(value)
        assert back == value

    @pytest.mark.parametrize("value, plain", [(numpy.float64(1.5), 1.5), (numpy.float32(0.5), 0.5), (numpy.int64(7), 7),
                                              (numpy.uint8(255), 255), (numpy.bool_(True), True), (numpy.str_("x"), "x"),
                                              (numpy.array(2.5), 2.5), (Colour.RED, 7)])
    def test_scalars_of_numpy_and_enumerations_are_plain_values(self, returned, value, plain):
        back = returned(value)
        assert type(back) is type(plain)
        assert back == plain

    @pytest.mark.parametrize("value", [2**31, -2**31 - 1, 10**30, numpy.int64(2**31)])
    def test_integers_beyond_32_bits_are_refused_in_words(self, returned, value):
        with pytest.raises(OverflowError, match=f"{value} does not fit into 32 bits"):
            returned(value)
        with pytest.raises(OverflowError, match="does not fit into 32 bits"):
            returned([1, [value]])

    def test_true_is_minus_1(self):
        assert UTILS.CopyArray1D([True, False]).tolist() == [-1, 0]

    @pytest.mark.parametrize("value", [decimal.Decimal(1), b"x", {}, object(), 1j])
    def test_other_objects_are_passed_on(self, returned, raises, value):
        assert returned(value) is value
        with raises(13):
            UTILS.NumbersAreEqual(value, 1, 1)

    def test_an_object_is_let_go(self, returned):
        class Thing:
            pass

        thing = Thing()
        gone = weakref.ref(thing)
        assert returned([thing])[0] is thing
        del thing
        gc.collect()
        assert gone() is None


class TestArraysInVariants:
    def test_lists_are_arrays_of_variants(self, returned):
        assert returned([1, "a", None, 2.5, [1, 2]]) == [1, "a", None, 2.5, [1, 2]]
        assert returned(("a", "b")) == ["a", "b"]

    def test_lists_of_doubles_come_back_as_an_array(self, returned):
        back = returned([1.0, 2.0])
        assert isinstance(back, numpy.ndarray)
        assert back.tolist() == [1, 2]

    def test_nested_lists_are_tables(self, returned):
        back = returned([[1, "a"], [2, "b"]])
        assert back.dtype == object
        assert back.tolist() == [[1, "a"], [2, "b"]]
        assert returned([[[1.0], [2.0]]]).shape == (1, 2, 1)

    def test_ragged_tables_are_refused(self, returned):
        with pytest.raises(ValueError, match="the same length"):
            returned([[1, 2], [3]])
        with pytest.raises(ValueError):
            returned([[[1], [2]], [3, 4]])

    def test_a_list_that_holds_itself_is_refused(self, returned):
        endless = []
        endless.append(endless)
        with pytest.raises(RecursionError):
            returned(endless)

    @pytest.mark.parametrize("dtype", ["f8", "f4", "f2", ">f8", "i8", "i1", "u2"])
    def test_arrays_of_numbers_are_doubles(self, returned, dtype):
        back = returned(numpy.array([[1, 2], [3, 4]], dtype))
        assert back.dtype == numpy.float64
        assert back.tolist() == [[1, 2], [3, 4]]

    def test_other_arrays_keep_their_elements(self, returned):
        assert returned(numpy.array([True, False])) == [True, False]
        assert returned(numpy.array(["a", "bc"])) == ["a", "bc"]
        assert returned(numpy.array([1, "a", None], object)) == [1, "a", None]

    def test_strides_and_order_do_not_matter(self, returned):
        table = numpy.arange(12.0).reshape(3, 4)
        assert returned(table.T).tolist() == table.T.tolist()
        assert returned(table[::2, ::-1]).tolist() == table[::2, ::-1].tolist()

    def test_bounds_survive(self, returned):
        for values in ([1.0, 2.0], ["a", 1], [[1.0], [2.0]]):
            array = BoundedArray(values, -5)
            assert returned(array) == array
        assert returned(BoundedArray()) == BoundedArray()

    def test_a_table_without_cells_is_an_error(self, returned, raises):
        with raises(9):
            returned(numpy.zeros((0, 3)))
        with raises(9):
            returned([[], []])

    def test_four_dimensions_are_refused(self, returned):
        with pytest.raises(TypeError):
            returned(numpy.zeros((1, 1, 1, 1)))


class TestArraysOfNumbers:
    @pytest.mark.parametrize("values", [
        [1, 2, 6], (1.0, 2.0, 6.0), numpy.array([1, 2, 6]), numpy.array([1, 2, 6], "f4"), numpy.array([1, 2, 6], ">f8"),
        numpy.array([1.0, 0, 2, 0, 6])[::2], numpy.array([6.0, 2, 1])[::-1], range(1, 7, 1)[0:2:1] and [1, 2, 6],
        memoryview(numpy.array([1.0, 2, 6])), BoundedArray([1, 2, 6], 7)])
    def test_what_holds_numbers_is_taken(self, values):
        assert STATISTICS.ArithmeticMean(values) == 3

    def test_an_array_that_is_not_aligned_is_taken(self):
        shifted = numpy.frombuffer(b"x" + numpy.array([1.0, 2, 6]).tobytes(), offset=1, dtype="f8")
        assert not shifted.flags.aligned
        assert STATISTICS.ArithmeticMean(shifted) == 3

    def test_an_array_that_may_not_be_written_is_taken(self):
        values = numpy.array([1.0, 2, 6])
        values.flags.writeable = False
        assert STATISTICS.ArithmeticMean(values) == 3

    @pytest.mark.parametrize("values", ["123", ["1", "2"], [None], [1, None], numpy.array([True]), [1j], {1: 2}, 5, None,
                                        [2**70]])
    def test_what_holds_other_things_is_refused(self, values):
        with pytest.raises(TypeError):
            STATISTICS.ArithmeticMean(values)

    def test_ragged_rows_are_refused(self):
        with pytest.raises(ValueError):
            STATISTICS.ArithmeticMean([[1, 2], [3]])

    def test_nan_and_infinity_pass(self):
        assert STATISTICS.Maximum([1, float("inf"), float("nan")]) == (float("inf"), 1)


class TestBoundedArray:
    def test_an_array_is_seen_and_not_copied(self):
        values = numpy.arange(3.0)
        array = BoundedArray(values, 5)
        assert array.values is values
        array[6] = 70
        assert values[1] == 70
        assert numpy.shares_memory(numpy.asarray(array), values)

    def test_bounds(self):
        array = BoundedArray(numpy.zeros((2, 3)), (1, -4))
        assert array.lower_bounds == (1, -4)
        assert array.upper_bounds == (2, -2)
        assert len(array) == 2
        assert BoundedArray([]).upper_bounds == (-1,)
        assert BoundedArray().lower_bounds == () == BoundedArray().upper_bounds

    def test_indices_are_checked(self):
        array = BoundedArray([10, 20], 1)
        assert (array[1], array[2]) == (10, 20)
        for index in (0, 3, -1, (1, 1), ()):
            with pytest.raises(IndexError):
                array[index]
        with pytest.raises(IndexError):
            BoundedArray()[0]
        with pytest.raises(IndexError):
            array[0] = 1
        for index in ("1", 1.0, None, slice(1, 2)):
            with pytest.raises(TypeError):
                array[index]

    def test_elements_are_numbers_or_objects(self):
        assert BoundedArray([1, 2.5]).values.dtype == numpy.float64
        assert BoundedArray([1, "a"]).values.dtype == object
        assert BoundedArray([[1, None]]).values.tolist() == [[1, None]]
        assert list(BoundedArray([1, 2], 9)) == [1, 2]
        assert list(BoundedArray()) == []

    @pytest.mark.parametrize("values, bounds", [(numpy.zeros((1, 1, 1, 1)), 0), (5, 0), ([1], (0, 0)), ([1, 2], 2**31 - 1),
                                                ([[1], [2, 3]], 0)])
    def test_impossible_bounds_are_refused(self, values, bounds):
        with pytest.raises(ValueError):
            BoundedArray(values, bounds)

    def test_equality(self):
        assert BoundedArray([1, 2], 1) == BoundedArray([1.0, 2.0], 1)
        assert BoundedArray([1, 2], 1) != BoundedArray([1, 2], 0)
        assert BoundedArray([1, 2], 1) != BoundedArray([1, 3], 1)
        assert BoundedArray([1, 2], 1) != "text"
        with pytest.raises(TypeError):
            hash(BoundedArray())

    def test_it_shows_itself(self):
        assert repr(BoundedArray([1.5], 2)) == "BoundedArray(array([1.5]), lower_bounds=(2,))"
        assert repr(BoundedArray()) == "BoundedArray()"

    def test_it_is_a_buffer(self):
        view = memoryview(BoundedArray([[1.0, 2.0], [3.0, 4.0]], 1))
        assert view.format == "d"
        assert view.shape == (2, 2)
        assert view.tolist() == [[1, 2], [3, 4]]


class TestArguments:
    def test_integers(self):
        assert UTILS.DWordGetLowWord(numpy.int32(70000)) == 4464
        with pytest.raises(OverflowError, match="2147483648 does not fit into 32 bits"):
            UTILS.DWordGetLowWord(2**31)
        with pytest.raises(TypeError):
            UTILS.DWordGetLowWord(1.0)
        with pytest.raises(TypeError):
            UTILS.DWordGetLowWord("1")

    def test_booleans(self):
        assert STRINGS.SplitMulti("a,,b", ",", numpy.bool_(True)) == ["a", "b"]
        for other in (1, 0, None, "x", [], numpy.array([True])):
            with pytest.raises(TypeError):
                STRINGS.SplitMulti("a,,b", ",", other)

    def test_numbers(self):
        trigonometry = vorquill21.CTrigonometry()
        assert trigonometry.Radians(numpy.float32(180)) == trigonometry.Radians(180) == trigonometry.Radians(180.0)
        for other in ("180", None, 1j, [180.0]):
            with pytest.raises(TypeError):
                trigonometry.Radians(other)

    def test_enumerations_are_integers(self):
        with pytest.raises(OverflowError):
            UTILS.ArrayIsMonotonic1D([1], 2**40, "X")
        with pytest.raises(TypeError):
            UTILS.ArrayIsMonotonic1D([1], "emsPositive", "X")

    def test_results_are_given_by_name_only(self):
        with pytest.raises(TypeError):
            UTILS.ArrayLocate([1, 2], 1, 5)


class TestLibraryError:
    def test_it_is_its_description(self):
        error = LibraryError(53, "CFile.Read", "File not found")
        assert (error.number, error.source, error.description, error.results) == (53, "CFile.Read", "File not found", ())
        assert str(error) == "File not found"
        assert repr(error) == "LibraryError(53, 'CFile.Read', 'File not found')"

    def test_it_can_be_pickled(self):
        error = pickle.loads(pickle.dumps(LibraryError(53, "a", "b")))
        assert (error.number, error.source, error.description) == (53, "a", "b")

    def test_errors_of_the_runtime_have_no_source(self, raises):
        with raises(6) as info:
            UTILS.DWordMake(2**20, 0)
        assert info.value.source == ""
        assert info.value.description == "Overflow"
