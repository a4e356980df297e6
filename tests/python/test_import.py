"""CImportColumnData."""

import numpy
import pytest

import vorquill21


@pytest.fixture
def columns(tmp_path):
    path = tmp_path / "columns.txt"
    path.write_bytes(b"time,force\r\n1,10\r\n2,20.5\r\n3,30\r\n")
    made = vorquill21.CImportColumnData()
    made.Filepath = str(path)
    made.Delimiter = ","
    made.HeaderRow = 1
    made.FirstValueRow = 2
    return made


def test_importing(columns):
    assert columns.Import() == (True, "")
    assert columns.LastImportSuccessful is True
    assert columns.ColumnCount == 2
    assert columns.DataRowCount == 3
    assert columns.ColumnHeaderData(1) == "force"
    values = columns.ColumnData(1)
    assert isinstance(values, numpy.ndarray)
    assert values.dtype == numpy.float64
    assert values.tolist() == [10, 20.5, 30]
    assert columns.ColumnData(0, anDataIndex=2) == 3
    columns.OffsetColumnData(0, 0.5)
    assert columns.ColumnData(0).tolist() == [0.5, 1.5, 2.5]


def test_columns_that_do_not_exist(columns, raises):
    columns.Import()
    for call in (lambda: columns.ColumnData(2), lambda: columns.ColumnData(0, 3), lambda: columns.ColumnHeaderData(2)):
        with raises(9):
            call()


def test_too_many_columns(columns):
    columns.MaxColumns = 2
    told = "Maximum number of data columns exceeded. Columns 2 and above will be ignored."
    assert columns.Import() == (True, told)
    assert columns.ColumnCount == 1
    assert columns.MaxColumns == 2


def test_a_failure_leaves_the_last_import(columns, tmp_path):
    columns.Import()
    columns.Filepath = str(tmp_path / "none")
    assert columns.Import(asStatus="x") == (False, "CImportColumnData.ImportData: An error occurred while importing data")
    assert columns.LastImportSuccessful is False
    assert columns.ColumnData(0).tolist() == [1, 2, 3]


def test_a_status_is_left_alone_on_success(columns):
    assert columns.Import(asStatus="before") == (True, "before")


def test_a_file_without_values(columns, tmp_path):
    (tmp_path / "columns.txt").write_bytes(b"a,b\r\n\r\n")
    assert columns.Import() == (True, "")
    assert columns.ColumnData(0).tolist() == []


def test_settings(columns, tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path))
    columns.SettingsReadFromRegistry()
    assert (columns.HeaderRow, columns.FirstValueRow, columns.Delimiter) == (9, 11, "\t")
    columns.Delimiter = ";"
    columns.SettingsWriteToRegistry()
    other = vorquill21.CImportColumnData()
    other.SettingsReadFromRegistry()
    assert (other.HeaderRow, other.FirstValueRow, other.Delimiter) == (9, 11, ";")


def test_properties_take_what_they_are(columns):
    with pytest.raises(TypeError):
        columns.Delimiter = 5
    with pytest.raises(OverflowError):
        columns.HeaderRow = 2**31
    with pytest.raises(AttributeError):
        columns.ColumnCount = 3
    assert columns.Filepath.endswith("columns.txt")
