"""The interpreter goes on while the library works, and objects are used by several threads."""

import sys
import threading
import time

import numpy
import pytest

import vorquill21

PATIENCE = 60  # seconds until another thread must have had its turn


@pytest.fixture
def switching_only_when_let():
    """Threads take turns only where one of them lets the others."""
    before = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    yield
    sys.setswitchinterval(before)


def lets_others(call, seconds=PATIENCE):
    """Whether another thread that waits for its turn gets it while `call` runs, again and again."""
    go, turns = threading.Event(), []

    def wait_for_turn():
        go.wait()
        turns.append(1)

    waiting = threading.Thread(target=wait_for_turn)
    waiting.start()
    go.set()
    end = time.monotonic() + seconds
    while not turns and time.monotonic() < end:
        call()
    had_turn = bool(turns)
    waiting.join()
    return had_turn


def long_calls(folder):
    numbers = numpy.random.default_rng(1).random(200_000)
    few = numbers[:2000]
    matrix = vorquill21.BoundedArray(numbers[:10_000].reshape(100, 100), 1)
    statistics, interpolate = vorquill21.CStatistics(), vorquill21.CInterpolate()
    utils, files, strings = vorquill21.CMathUtils(), vorquill21.CFile(), vorquill21.CString()
    text = "some words and more of them " * 5000
    path = str(folder / "text.txt")
    files.FileWriteAsString(path, text)
    stream, log, columns = vorquill21.CFileStream(), vorquill21.CLog(), vorquill21.CImportColumnData()
    stream.AddField("A", text)
    document = str(folder / "document.txt")
    log.Initialise(str(folder / "log.txt"), 1000, False, False, "")
    (folder / "columns.txt").write_text("a,b\n" + "1.5,2.5\n" * 5000)
    columns.Filepath, columns.Delimiter, columns.HeaderRow = str(folder / "columns.txt"), ",", 1
    return {
        "statistics": lambda: statistics.StandardDeviation(numbers),
        "extremes": lambda: statistics.Maximum(numbers),
        "fit": lambda: interpolate.OneDPolynomialFit(few, few, 3),
        "surface": lambda: interpolate.TwoDPolynomialFit(few, few[::-1], few, 2),
        "comparison": lambda: utils.ArraysAreEqual(few, few, 1),
        "product": lambda: vorquill21.CGeometry().MatrixMultiply(matrix, matrix),
        "reading": lambda: files.FileReadAsString(path),
        "writing": lambda: files.FileWriteAsString(path, text),
        "comparing files": lambda: files.CompareFiles(path, path),
        "splitting": lambda: strings.SplitMulti(text),
        "document written": lambda: stream.FileWrite(document),
        "document read": lambda: vorquill21.CFileStream().FileRead(document),
        "log": lambda: log.AddEntry("entry", 1),
        "log's text": lambda: log.Text,
        "import": lambda: columns.Import(),
        "self-tests": lambda: vorquill21.Main().Initialise([1]),
    }


NAMES = ["statistics", "extremes", "fit", "surface", "comparison", "product", "reading", "writing", "comparing files",
         "splitting", "document written", "document read", "log", "log's text", "import", "self-tests"]


@pytest.mark.parametrize("name", NAMES)
def test_long_calls_let_other_threads_run(name, tmp_path, switching_only_when_let):
    calls = long_calls(tmp_path)
    assert list(calls) == NAMES
    assert lets_others(calls[name])


def test_quick_calls_keep_their_turn(switching_only_when_let):
    """And so this way of looking finds calls that do not let others run."""
    trigonometry = vorquill21.CTrigonometry()
    assert not lets_others(lambda: trigonometry.ArcTan2(1, 2), seconds=2)


def in_threads(count, work):
    """Runs work(0), work(1), ... side by side and raises what one of them raised."""
    raised = []

    def run(number):
        try:
            work(number)
        except BaseException as error:  # shown below
            raised.append(error)

    threads = [threading.Thread(target=run, args=(number,)) for number in range(count)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(60)
        assert not thread.is_alive()
    if raised:
        raise raised[0]


def test_several_threads_share_a_document(stream, tmp_path):
    path = str(tmp_path / "document.txt")

    def work(number):
        for i in range(200):
            stream.AddField(f"FIELD {number}", [number, i])
            assert stream.GetFieldNumber(f"FIELD {number}").tolist() == [number, i]
            if i % 50 == 0:
                stream.FileWrite(path)
                stream.GetContents()

    in_threads(6, work)
    for number in range(6):
        assert stream.GetFieldNumber(f"FIELD {number}").tolist() == [number, 199]


def test_several_threads_share_a_log(log):
    seen = []

    def handler(message, action):
        seen.append((message, threading.get_ident()))
        time.sleep(0)

    log.EntryLogged.Connect(handler)
    identities = {}

    def work(number):
        identities[number] = threading.get_ident()
        for i in range(50):
            log.AddEntry(f"{number} {i}", 1)
            log.EntryLogged.Disconnect(log.EntryLogged.Connect(lambda message, action: None))

    in_threads(6, work)
    assert sorted(message for message, _ in seen) == sorted(f"{number} {i}" for number in range(6) for i in range(50))
    assert all(identities[int(message.split()[0])] == thread for message, thread in seen)
    assert sorted(log.Text.split("\r\n")) == sorted(message for message, _ in seen)


def test_a_handler_may_use_the_log_while_others_wait_for_it(log):
    log.EntryLogged.Connect(lambda message, action: message.startswith("again") or log.AddEntry("again " + message, 1))
    in_threads(4, lambda number: [log.AddEntry(f"{number}", 1) for _ in range(25)])
    assert len(log.Text.split("\r\n")) == 200


def test_several_threads_share_an_import(tmp_path):
    path = tmp_path / "columns.txt"
    path.write_text("a,b\n" + "1.5,2.5\n" * 1000)
    columns = vorquill21.CImportColumnData()
    columns.Filepath, columns.Delimiter, columns.HeaderRow = str(path), ",", 1
    columns.Import()

    def work(number):
        for _ in range(50):
            assert columns.Import() == (True, "")
            assert columns.ColumnData(1).tolist() == [2.5] * 1000
            assert columns.DataRowCount == 1000

    in_threads(4, work)


def test_overrides_are_called_on_the_thread_that_asks():
    class Derived(vorquill21.CMathUtils):
        def ArrayLocate(self, arXVals, arX):
            located.append(threading.get_ident())
            return super().ArrayLocate(arXVals, arX)

    located, asked = [], []
    interpolate = vorquill21.CInterpolate()
    interpolate.moUtils = Derived()

    def work(number):
        for _ in range(50):
            asked.append(threading.get_ident())
            assert interpolate.OneDLinearInterpolate(0, [0, 1], [0, number], 0.5) == number / 2

    in_threads(4, work)
    assert sorted(located) == sorted(asked)
