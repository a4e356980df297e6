"""Main."""

import gc
import pathlib
import shutil

import pytest

import vorquill21

ACCESSORS = {
    "LibFile": vorquill21.CFile,
    "LibGeometry": vorquill21.CGeometry,
    "LibInterpolate": vorquill21.CInterpolate,
    "LibMathUtils": vorquill21.CMathUtils,
    "LibStatistics": vorquill21.CStatistics,
    "LibTrigonometry": vorquill21.CTrigonometry,
    "LibString": vorquill21.CString,
    "LibLog": vorquill21.CLog,
    "LibFilestream": vorquill21.CFileStream,
    "LibOSUtils": vorquill21.COSUtils,
}


@pytest.mark.parametrize("accessor", ACCESSORS)
def test_accessors_give_the_same_object_each_time(main, accessor):
    made = getattr(main, accessor)()
    assert type(made) is ACCESSORS[accessor]
    assert getattr(main, accessor)() is made


def test_accessors_by_name(main):
    """As hosts write them."""
    assert main.LibFile().Crc32Make("") == "0"
    assert main.LibGeometry().VectorMagnitude3d(3, 4, 0) == 5
    assert main.LibInterpolate().OneDPolynomialInterpolate(2, [0, 1, 2]) == 5
    assert main.LibMathUtils().DWordMake(0, 1) == 1
    assert main.LibStatistics().RMS([2]) == 2
    assert main.LibTrigonometry().ArcCos(2) == 0
    assert main.LibString().SplitMulti("a b") == ["a", "b"]
    assert main.LibOSUtils().GetSpecialFolderPath(-1)[0] is False


def test_state_is_kept_while_python_holds_no_object(main):
    main.LibFilestream().AddField("A", "x")
    main.LibLog().Initialise("path", 1, False, False, "")
    gc.collect()
    assert main.LibFilestream().GetFieldString("A") == "x"
    assert main.LibLog().Filepath == "path"


def test_handlers_stay_connected_while_python_holds_no_log(main, tmp_path):
    seen = []
    main.LibLog().Initialise(str(tmp_path / "x.log"), 1000, True, False, "")
    main.LibLog().EntryLogged.Connect(lambda message, action: seen.append(message))
    gc.collect()
    main.LibLog().AddEntry("one", 1)
    assert seen == ["one"]


def test_objects_outlive_main():
    stream = vorquill21.Main().LibFilestream()
    gc.collect()
    stream.AddField("A", "x")
    assert stream.GetFieldString("A") == "x"


def test_two_mains_have_objects_of_their_own(main):
    assert vorquill21.Main().LibLog() is not main.LibLog()


def test_the_self_tests_pass(main, capfd, monkeypatch):
    monkeypatch.delenv("DISPLAY", raising=False)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)
    assert main.Initialise([2]) is None
    assert capfd.readouterr().err == "Vorquill21: All self tests passed\n"


def test_another_folder_may_be_named_for_the_self_tests(main, capfd, monkeypatch, tmp_path):
    monkeypatch.delenv("DISPLAY", raising=False)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)
    monkeypatch.setenv("VORQUILL21_LIBRARY_FOLDER", str(tmp_path))
    main.Initialise([2])
    assert capfd.readouterr().err == "Self Tests in Kestrovan: Failed the following tests: SelfTest_3dTable \n"

    reference = pathlib.Path(vorquill21.__file__).parent / "self test" / "3d ref.txt"
    shutil.copy(reference, tmp_path / "self test")
    main.Initialise([2])
    assert capfd.readouterr().err == "Vorquill21: All self tests passed\n"
    assert sorted(file.name for file in tmp_path.rglob("*")) == ["3d ref.txt", "3d try.txt", "self test"]


def test_self_tests_that_cannot_run_are_reported(main, capfd, monkeypatch, tmp_path):
    monkeypatch.delenv("DISPLAY", raising=False)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)
    monkeypatch.setenv("VORQUILL21_LIBRARY_FOLDER", str(tmp_path / "missing"))
    main.Initialise([1])
    assert capfd.readouterr().err == ""
    main.Initialise([2])
    assert capfd.readouterr().err == (
        "Self Tests in Kestrovan: Failed the following tests: ListFilesMathchingType  SelfTest_DirMake SelfTest_Main "
        "SelfTest_ReadWrite SelfTest_IsCompatibleVersion SelfTest_3dTable \n")


def test_nothing_happens_unless_it_is_asked_for(main, raises):
    assert main.Initialise([]) is None
    assert main.Initialise([0]) is None
    assert main.Initialise([vorquill21.Missing]) is None
    with raises(13):
        main.Initialise(["x"])
    with raises(9):
        main.Initialise(vorquill21.BoundedArray())
