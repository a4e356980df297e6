"""CFileStream."""

import numpy
import pytest

import vorquill21
from vorquill21 import BoundedArray


def test_fields(stream):
    stream.AddField("TEXT", "some text")
    stream.AddField("NUMBERS", [1, 2.5, True, None])
    assert stream.FieldExists("TEXT")
    assert stream.GetFieldString("TEXT") == "some text"
    assert stream.GetFieldString("NUMBERS") == ["1", "2.5", "True"]
    numbers = stream.GetFieldNumber("NUMBERS")
    assert isinstance(numbers, numpy.ndarray)
    assert numbers.tolist() == [1, 2.5, 0]
    assert stream.RemoveField("TEXT")
    assert not stream.FieldExists("TEXT")
    assert stream.RemoveField("TEXT") is False


def test_defaults(stream):
    assert stream.GetFieldString("NONE") == ""
    assert stream.GetFieldString("NONE", 5) == 5
    assert stream.GetFieldString("NONE", ["a", "b"]) == ["a", "b"]
    assert stream.GetFieldString("NONE", None) is None
    assert stream.GetFieldNumber("NONE") == 0
    assert stream.GetFieldNumber("NONE", "7") == 7
    assert stream.GetFieldNumber("NONE", BoundedArray([1.0, 2.0], 1)) == BoundedArray([1.0, 2.0], 1)
    thing = object()
    assert stream.GetFieldString("NONE", thing) is thing


def test_tables(stream):
    table = numpy.arange(6.0).reshape(2, 3)
    assert stream.AddTable2d("T", table) is True
    read = stream.GetTable2d("T")
    assert isinstance(read, numpy.ndarray)
    assert read.tolist() == table.tolist()
    assert stream.GetTable2d("NONE") is None
    assert stream.AddTable2d("L", [[1, "2"], [None, True]])
    assert stream.GetTable2d("L").tolist() == [[1, 2], [0, 0]]


def test_pages(stream):
    pages = numpy.arange(24.0).reshape(2, 3, 4)
    assert stream.AddTable3d("P", pages) is True
    read = stream.GetTable3d("P", 1, 2, 3)
    assert read.shape == (2, 3, 4)
    assert read[0, 0, 0] is None
    assert read[:, :, 1:].astype(float).tolist() == pages[:, :, 1:].tolist()
    assert stream.GetTable3d("P", 1, 2, 9) is False
    assert stream.AddTable3d("Q", pages, anEndRowIdx=1, anEndlnColIdx=1, anEndPageIdx=1)
    assert stream.GetTable2d("Q PAGE 1").tolist() == [[1, 5], [13, 17]]


def test_files(stream, tmp_path, raises):
    path = str(tmp_path / "data.txt")
    stream.AddField("A", "x")
    assert stream.FileWrite(path) is True
    other = vorquill21.CFileStream()
    assert other.FileRead(path) == (True, stream.GetContents() + "\r")
    assert other.GetFieldString("A") == "x"
    assert other.FileRead(str(tmp_path / "none"), asFileStream="before") == (False, "")
    assert stream.FileWrite(path, abAppend=True)
    with raises(70) as info:
        stream.FileWrite(str(tmp_path))
    assert info.value.source == "CFileStream.FileWrite"
    assert f"An error occurred while writing file: {tmp_path}\r\nError was: " in str(info.value)


def test_contents():
    stream = vorquill21.CFileStream()
    stream.SetContents("[FILEVERSION]\tTYRE DATA 2.10\r\n")
    assert stream.FileVersion() == "TYRE DATA 2.10"
    assert stream.FileVersionNumber() == "2.1"
    assert stream.FileVersionType() == "TYRE"
    assert stream.GetContents() == "[FILEVERSION]\tTYRE DATA 2.10\r\n[DEC SEP]\t.\r\n"


def test_versions(raises):
    stream = vorquill21.CFileStream()
    assert stream.Initialise("V2", ["V1", "V1.1"]) is None
    assert stream.IsCompatibleVersion(True) == (True, "")
    compatible, status = stream.IsCompatibleVersion(True, "V3")
    assert compatible is False
    assert status.startswith("Wrong file version\r\n\r\nFile version required = V1 V1.1")
    assert stream.IsCompatibleVersion(True, asActualVersion="X", asCompatibleVersions="X Y") == (True, "")
    with raises(9):
        stream.Initialise("V2", BoundedArray())


def test_a_message_tells_of_a_failure(stream, capfd, monkeypatch):
    monkeypatch.delenv("DISPLAY", raising=False)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)
    assert stream.AddTable2d("T", [["no number"]]) is False
    assert "An error occurred while adding table: T to the filestream" in capfd.readouterr().err


@pytest.mark.parametrize("text", ["\ud800", "a\udc80b", "\U0001f600", "nul\0nul", "zwölf €"])
def test_any_text_survives(stream, text):
    stream.AddField("A", text)
    assert stream.GetFieldString("A") == text
