"""CFile and COSUtils."""

import pytest

import vorquill21
from vorquill21 import BoundedArray, EOSUtilsSpecialFolders

FILES = vorquill21.CFile()


@pytest.fixture
def no_desktop(monkeypatch):
    monkeypatch.delenv("DISPLAY", raising=False)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)


def test_writing_and_reading(tmp_path):
    path = str(tmp_path / "text.txt")
    assert FILES.FileWriteAsString(path, "zwölf €") is True
    assert (tmp_path / "text.txt").read_bytes() == b"zw\xf6lf \x80\r\n"
    assert FILES.FileReadAsString(path) == (True, "zwölf €")
    assert FILES.FileExists(path)
    assert FILES.CompareFiles(path, path)


def test_a_missing_file_empties_the_text(tmp_path):
    assert FILES.FileReadAsString(str(tmp_path / "none"), asFileString="before") == (False, "")


def test_a_message_tells_of_a_failure(tmp_path, capfd, no_desktop):
    assert FILES.FileWriteAsString(str(tmp_path), "x", abSilent=False) is False
    assert f"An error occurred while writing file: {tmp_path}" in capfd.readouterr().err


def test_folders(tmp_path, raises):
    assert FILES.DirMake(str(tmp_path / "a"))
    assert FILES.DirExists(str(tmp_path / "a"))
    assert not FILES.DirExists(str(tmp_path / "b"))
    FILES.DirMakeNested(str(tmp_path / "c") + "\\d\\e")
    assert (tmp_path / "c" / "d" / "e").is_dir()
    (tmp_path / "file").write_text("x")
    with raises(76):
        FILES.DirMakeNested(str(tmp_path / "file") + "\\d")


def test_listing(tmp_path):
    for name in ("a.txt", "b.txt", "c.dat"):
        (tmp_path / name).write_text("x")
    names, count = FILES.ListFilesMatchingExt(str(tmp_path), "txt")
    assert count == 2
    assert sorted(names) == ["a.txt", "b.txt"]


def test_deliberate_a_list_without_matches_stays_as_it_was(tmp_path):
    assert FILES.ListFilesMatchingExt(str(tmp_path), "txt") == ([], 0)
    assert FILES.ListFilesMatchingExt(str(tmp_path), "txt", asFilesList=["x"]) == (["x"], 0)


def test_a_list_with_other_bounds_stays_as_it_was(tmp_path):
    (tmp_path / "a.txt").write_text("x")
    before = BoundedArray(["x", "y"], 1)
    names, count = FILES.ListFilesMatchingExt(str(tmp_path), "txt", asFilesList=before)
    assert names == before
    assert count == 1


def test_checksum():
    assert FILES.Crc32Make("123456789") == "CBF43926"
    assert FILES.Crc32Make("") == "0"


def test_paths(raises):
    path = "C:\\folder\\name.txt"
    assert FILES.ParseFileDir(path) == "C:\\folder\\"
    assert FILES.ParseFileExt(path) == "txt"
    assert FILES.ParseFileName(path) == "name.txt"
    assert FILES.ParseFileTitle(path) == "name"
    assert FILES.EnsureExtension(path, "dat") == "C:\\folder\\name.dat"
    with raises(9):
        FILES.EnsureExtension("", "dat")


def test_without_a_desktop(no_desktop, tmp_path):
    assert FILES.BrowseForFolder(0, "title", asFolder="before") == "before"
    assert FILES.OpenDoc(str(tmp_path / "none.txt")) == (False, "File not found")


def test_special_folders(tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path / "config"))
    tools = vorquill21.COSUtils()
    folder = EOSUtilsSpecialFolders.eSpecialFolder_APPDATA
    assert tools.GetSpecialFolderPath(folder) == (False, "Folder Does Not Exist")
    assert tools.GetSpecialFolderPath(12345) == (False, "Folder Not Valid on this OS")
    created = tools.GetSpecialFolderPath(folder | EOSUtilsSpecialFolders.eSpecialFolder_FLAG_CREATE)
    assert created == (True, str(tmp_path / "config"))
