"""Arrays cross without copies, and nothing is left behind."""

import gc
import resource
import subprocess
import sys
import textwrap
import weakref

import numpy
import pytest

import vorquill21
from conftest import measures_memory

MEGABYTE = 1 << 20


def memory_in_use():
    """Pages of this process that lie in memory, in bytes."""
    with open("/proc/self/statm", encoding="ascii") as status:
        return int(status.read().split()[1]) * resource.getpagesize()


def run_with_little_memory(code):
    """Runs code in a process of its own that has `values`, 512 MB of numbers, and no room for another 512 MB."""
    head = """
        import resource, numpy, vorquill21
        values = numpy.zeros(1 << 26)
        used = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
        resource.setrlimit(resource.RLIMIT_AS, (used + (100 << 20),) * 2)
        statistics = vorquill21.CStatistics()
        """
    return subprocess.run([sys.executable, "-c", textwrap.dedent(head) + code], capture_output=True, text=True)


@measures_memory
@pytest.mark.parametrize("values", ["values", "vorquill21.BoundedArray(values, 1)", "values[5:]", "memoryview(values)"])
def test_an_array_of_doubles_is_read_where_it_lies(values):
    done = run_with_little_memory(f"print(statistics.Maximum({values})[0])")
    assert done.stdout == "0.0\n", done.stderr


@measures_memory
@pytest.mark.parametrize("values", ["values[::2]", "values.view('>f8')"])
def test_any_other_array_is_converted(values):
    done = run_with_little_memory(f"print(statistics.Maximum({values})[0])")
    assert "MemoryError" in done.stderr


@measures_memory
def test_a_result_is_moved_and_owned_by_python():
    """A table of 32 MB is taken over, not copied: it is gone with its array."""
    utils = vorquill21.CMathUtils()
    source = numpy.zeros((2048, 2048))
    utils.CopyArray2D(source)
    before = memory_in_use()
    copy = utils.CopyArray2D(source)
    assert copy.flags.writeable
    assert copy.base is not None
    assert memory_in_use() - before < 40 * MEGABYTE
    del copy
    assert memory_in_use() - before < 8 * MEGABYTE


def test_a_result_outlives_its_object():
    values = vorquill21.CMathUtils().CopyArray1D([1.5, 2.5])
    gc.collect()
    values[0] = 7
    assert values.tolist() == [7, 2.5]


def test_a_row_of_a_table_is_read_where_it_lies():
    table = numpy.zeros((2, 1 << 20))
    before = sys.getrefcount(table)
    row = vorquill21.BoundedArray(table[1], 1)
    table[1, 7] = 3
    assert vorquill21.CStatistics().Maximum(row) == (3.0, 8)
    del row
    assert sys.getrefcount(table) == before


class Thing:
    """Something that one can count references to."""


def calls():
    """Calls of every kind: results of each type, errors, refused arguments, overrides, handlers."""
    utils, strings = vorquill21.CMathUtils(), vorquill21.CString()
    stream, log, main = vorquill21.CFileStream(), vorquill21.CLog(), vorquill21.Main()
    numbers = numpy.arange(10.0)
    bounded = vorquill21.BoundedArray(numbers, 1)
    thing = Thing()

    class Derived(vorquill21.CMathUtils):
        def ArrayLocate(self, arXVals, arX):
            return super().ArrayLocate(arXVals, arX)

    interpolate = vorquill21.CInterpolate()

    def refused(call, *arguments):
        try:
            call(*arguments)
        except (vorquill21.LibraryError, TypeError, ValueError, OverflowError, RecursionError):
            return
        raise AssertionError("nothing was raised")

    def with_an_override():
        interpolate.moUtils = Derived()
        interpolate.OneDLinearInterpolate(0, numbers, numbers, 2.5)

    def with_a_handler():
        log.EntryLogged.Disconnect(log.EntryLogged.Connect(lambda message, action: thing))

    return {
        "numbers": lambda: vorquill21.CStatistics().Maximum(numbers),
        "bounds": lambda: vorquill21.CStatistics().Maximum(bounded),
        "conversion": lambda: vorquill21.CStatistics().Maximum([1, 2, 3]),
        "texts": lambda: strings.SplitMulti("a b c"),
        "variants": lambda: stream.GetFieldString("NONE", [1, "a", None, thing, [2.5], numbers, True]),
        "tables": lambda: stream.GetFieldString("NONE", [[1, "a"], [thing, None]]),
        "doubles": lambda: utils.CopyArray1D(bounded),
        "fits": lambda: interpolate.OneDPolynomialFit(numbers, numbers, 1),
        "errors": lambda: refused(utils.CopyArray1D, [1, "x"]),
        "error before the call": lambda: refused(stream.GetFieldString, "NONE", numpy.zeros((0, 2))),
        "types": lambda: refused(utils.DWordMake, "x", 1),
        "overflow": lambda: refused(utils.NumbersAreEqual, 2**40, 1, 1),
        "ragged": lambda: refused(utils.CopyArray2D, [[1], [1, 2]]),
        "overrides": with_an_override,
        "handlers": with_a_handler,
        "accessors": lambda: (main.LibLog(), main.LibFile()),
        "buffers": lambda: memoryview(bounded).tolist(),
        "indices": lambda: (bounded[1], refused(lambda: bounded["x"])),
    }


CALLS = calls()


def growth(call):
    """By how many blocks the objects of Python grow in 200 calls."""
    gc.collect()
    before = sys.getallocatedblocks()
    for _ in range(200):
        call()
    gc.collect()
    return sys.getallocatedblocks() - before


@measures_memory
@pytest.mark.parametrize("name", CALLS)
def test_no_reference_is_left_behind(name):
    """Caches may grow for a while; a leak grows in every round."""
    assert min(growth(CALLS[name]) for _ in range(5)) < 20


@measures_memory
@pytest.mark.parametrize("name", CALLS)
def test_no_memory_is_left_behind(name):
    """What the allocator of C++ gives, too."""
    call = CALLS[name]
    for _ in range(2000):
        call()
    before = memory_in_use()
    for _ in range(8000):
        call()
    assert memory_in_use() - before < 1 * MEGABYTE


def test_arrays_that_were_passed_are_let_go():
    values = numpy.arange(10.0)
    before = sys.getrefcount(values)
    vorquill21.CStatistics().Maximum(values)
    vorquill21.CMathUtils().CopyArray1D(values)
    with pytest.raises(vorquill21.LibraryError):
        vorquill21.CInterpolate().OneDPolynomialFit(values, values, -1)
    gc.collect()
    assert sys.getrefcount(values) == before


def test_objects_die_with_their_last_reference():
    for name in ("CFile", "CFileStream", "CLog", "CInterpolate", "CMathUtils", "CImportColumnData", "Main"):
        made = getattr(vorquill21, name)()
        gone = weakref.ref(made)
        del made
        assert gone() is None, name


class Window:
    """A host that holds a log, which calls one of the host's methods."""

    def __init__(self, log):
        self.log = log
        self.connection = log.EntryLogged.Connect(self.shown)
        self.seen = []

    def shown(self, message, action):
        self.seen.append(message)


class TestCircles:
    def test_a_log_whose_handler_refers_to_it_is_let_go(self):
        class Derived(vorquill21.CLog):
            pass

        for kind in (vorquill21.CLog, Derived):
            window = Window(kind())
            gone = weakref.ref(window)
            del window
            gc.collect()
            assert gone() is None

    def test_a_handler_stays_while_somebody_has_the_log(self, log):
        gone = weakref.ref(Window(log))
        gc.collect()
        log.AddEntry("entry", 1)
        assert gone().seen == ["entry"]

    def test_a_handler_stays_while_somebody_has_the_event(self):
        log = vorquill21.CLog()
        event = log.EntryLogged
        gone = weakref.ref(Window(log))
        del log
        gc.collect()
        assert gone() is not None
        del event
        gc.collect()
        assert gone() is None

    def test_a_handler_of_the_log_of_main_stays(self, tmp_path):
        main = vorquill21.Main()
        main.LibLog().Initialise(str(tmp_path / "x.log"), 1000, False, False, "")
        gone = weakref.ref(Window(main.LibLog()))
        gc.collect()
        main.LibLog().AddEntry("entry", 1)
        assert gone().seen == ["entry"]

    def test_utils_that_refer_to_their_interpolation_are_let_go(self):
        class Derived(vorquill21.CMathUtils):
            pass

        interpolate = vorquill21.CInterpolate()
        utils = Derived()
        utils.owner = interpolate
        interpolate.moUtils = utils
        gone = weakref.ref(utils)
        del utils
        gc.collect()
        assert gone() is not None
        del interpolate
        gc.collect()
        assert gone() is None

    def test_utils_that_somebody_else_has_stay(self):
        class Derived(vorquill21.CMathUtils):
            pass

        first, second = vorquill21.CInterpolate(), vorquill21.CInterpolate()
        utils = Derived()
        utils.owner = first
        first.moUtils = second.moUtils = utils
        gone = weakref.ref(utils)
        del utils, first
        gc.collect()
        assert second.moUtils is gone()

    def test_the_collector_may_run_while_a_log_dies(self):
        class Collecting:
            def __call__(self, message, action):
                pass

            def __del__(self):
                gc.collect()

        for _ in range(20):
            log = vorquill21.CLog()
            log.EntryLogged.Connect(Collecting())
            del log
