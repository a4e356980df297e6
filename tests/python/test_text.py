"""CString."""

import numpy
import pytest

import vorquill21

STRINGS = vorquill21.CString()


def test_command_lines():
    arguments = STRINGS.CommandLineArgumentsParse(True, 'first "second one" ""')
    assert arguments == [None, "first", "second one", None]
    assert STRINGS.CommandLineArgumentIndex(arguments, "FIRST") == 1
    assert STRINGS.CommandLineArgumentIndex(numpy.array(["a", "b"]), "b") == 1
    assert STRINGS.CommandLineArgumentIndex(arguments, "none") == 0


def test_the_command_line_of_the_process():
    arguments = STRINGS.CommandLineArgumentsParse()
    assert arguments[0] is None
    assert STRINGS.CommandLineArgumentsParse(abIsTestMode=False, asTestCommandLine="x") == arguments


def test_brackets_and_replacing():
    assert STRINGS.MidBracketed("a<b>c", "<", ">") == "b"
    assert STRINGS.ReplaceMulti("a,,,b", ",", ";") == "a;b"


def test_trimming(raises):
    assert STRINGS.RTrimMulti("abc \t", [" ", "\t"]) == "abc"
    assert STRINGS.RTrimMulti("abc", ("c",)) == "ab"
    with raises(9):
        STRINGS.RTrimMulti("abc", vorquill21.BoundedArray())
    with pytest.raises(TypeError):
        STRINGS.RTrimMulti("abc", "c")


def test_splitting(raises):
    assert STRINGS.Split5("a b c") == ["a", "b", "c"]
    assert STRINGS.Split5("aXbxc", "x", aeCompareMethod=1) == ["a", "b", "c"]
    assert STRINGS.Split5("a b c", aiLimit=2) == ["a", "b"]
    assert STRINGS.SplitMulti("a,,b", ",") == ["a", "", "b"]
    assert STRINGS.SplitMulti("a,,b", ",", True) == ["a", "b"]
    assert STRINGS.SplitMulti("") == []
    with raises(9):
        STRINGS.Split5("a", aiLimit=0)


def test_deliberate_nothing_left_is_101_empty_values():
    assert STRINGS.SplitMulti("   ", abTreatMultipleDelimitersAsOne=True) == [None] * 101


def test_the_self_test_appends_names():
    assert STRINGS.SelfTest_Main() == (None, [])
    assert STRINGS.SelfTest_Main(aoFailedTests=["before"]) == (None, ["before"])
