"""CLog and its event."""

import gc
import sys
import weakref

import pytest

import vorquill21
from vorquill21 import ELogAction, LibraryError


def lines_of(log):
    return log.Text.split("\r\n")


def test_a_log_that_was_not_initialised_raises(raises):
    log = vorquill21.CLog()
    for call in (log.StartLogging, log.StopLogging, log.View, lambda: log.AddEntry("x", 1)):
        with raises(1000) as info:
            call()
        assert str(info.value) == "Log not initialised"
    assert log.Filepath == ""


def test_a_period(log):
    log.StartLogging()
    log.AddEntry("normal\tentry", ELogAction.logNormal)
    log.AddEntry("exact\tentry", ELogAction.logExact)
    log.AddEntry("diagnostic", ELogAction.logDiagnostic)
    log.AddEntry("nothing", 99)
    log.StopLogging()
    lines = lines_of(log)
    assert lines[1] == "Title"
    assert lines[4:7] == ["normal entry", "exact\tentry", "diagnostic"]
    assert lines[-2].startswith("Log stopped. Time from log start = ")
    assert log.Filepath.endswith("test.log")
    assert log.LogDiagnostics is True
    assert log.LogContainsExceptions is False


def test_the_title_may_be_any_value(log, tmp_path, raises):
    log.Initialise(str(tmp_path / "number.log"), 1000, False, False, 2.5)
    log.StartLogging()
    assert lines_of(log)[1] == "2.5"
    with raises(13):
        log.Initialise("x", 1000, False, False, [1])


def test_viewing_does_not_ask_what_came_of_it(log, monkeypatch):
    monkeypatch.delenv("DISPLAY", raising=False)
    monkeypatch.delenv("WAYLAND_DISPLAY", raising=False)
    assert log.View() is True


@pytest.mark.parametrize("error, told", [
    (LibraryError(53, "Mine", "File not found"), "53 File not found"),
    (MemoryError(), "7 Out of memory"),
    (ValueError("zwölf"), "-2147467259 zwölf"),
])
def test_a_warning_tells_of_the_error_that_is_handled(log, error, told):
    try:
        raise error
    except Exception:
        log.AddEntry("entry", ELogAction.logExceptionError)
    assert lines_of(log) == [f"* Warning: entry Error: {told}"]
    assert log.LogContainsExceptions is True


def test_the_callers_error_is_still_its_own_afterwards(log, monkeypatch):
    monkeypatch.setattr("sys.unraisablehook", lambda raised: None)
    log.EntryLogged.Connect(lambda message, action: 1 / 0)
    with pytest.raises(KeyError, match="own") as info:
        try:
            raise KeyError("own")
        except KeyError as error:
            for action in (ELogAction.logNormal, ELogAction.logException, ELogAction.logExceptionError):
                log.AddEntry("entry", action)
            assert sys.exc_info()[1] is error
            raise
    assert info.value.__context__ is None


def test_a_warning_without_an_error(log):
    log.AddEntry("entry", ELogAction.logExceptionError)
    log.AddEntry("entry", ELogAction.logException)
    assert lines_of(log) == ["* Warning: entry Error: 0 ", "* Warning: entry"]


class TestEvent:
    def test_handlers_get_the_line_and_the_action(self, log):
        seen = []
        log.EntryLogged.Connect(lambda asMessage, aeLogAction: seen.append((asMessage, aeLogAction)))
        log.AddEntry("a\tb", ELogAction.logException)
        assert seen == [("* Warning: a b", ELogAction.logException)]
        assert isinstance(seen[0][1], ELogAction)

    def test_a_handler_is_forgotten(self, log):
        seen = []
        connection = log.EntryLogged.Connect(lambda message, action: seen.append(message))
        log.AddEntry("one", 1)
        log.EntryLogged.Disconnect(connection)
        log.EntryLogged.Disconnect(connection)
        log.AddEntry("two", 1)
        assert connection > 0
        assert seen == ["one"]

    def test_what_a_handler_raises_is_ignored_and_shown(self, log, monkeypatch):
        shown, seen = [], []
        monkeypatch.setattr("sys.unraisablehook", lambda raised: shown.append(raised.exc_value))
        log.EntryLogged.Connect(lambda message, action: 1 / 0)
        log.EntryLogged.Connect(lambda message, action: seen.append(message))
        log.AddEntry("one", 1)
        assert [type(error) for error in shown] == [ZeroDivisionError]
        assert seen == ["one"]

    def test_a_handler_may_add_entries_up_to_100_levels(self, log):
        seen = []

        def again(message, action):
            seen.append(message)
            log.AddEntry("again", 1)

        connection = log.EntryLogged.Connect(again)
        log.AddEntry("first", 1)
        log.EntryLogged.Disconnect(connection)
        assert seen == ["first"] + 99 * ["again"]

    def test_a_handler_may_disconnect_itself(self, log):
        seen = []

        def once(message, action):
            seen.append(message)
            log.EntryLogged.Disconnect(connection)

        connection = log.EntryLogged.Connect(once)
        log.AddEntry("one", 1)
        log.AddEntry("two", 1)
        assert seen == ["one"]

    def test_a_handler_may_let_go_of_the_log(self, tmp_path):
        holder = {"log": vorquill21.CLog()}
        holder["log"].Initialise(str(tmp_path / "x.log"), 1000, True, False, "")
        holder["log"].EntryLogged.Connect(lambda message, action: holder.clear())
        holder["log"].AddEntry("one", 1)
        assert not holder

    def test_the_event_keeps_the_log_alive(self, tmp_path):
        log = vorquill21.CLog()
        log.Initialise(str(tmp_path / "x.log"), 1000, True, False, "")
        event = log.EntryLogged
        del log
        gc.collect()
        assert event.Connect(print) == 1

    def test_handlers_go_with_the_log_or_the_connection(self, tmp_path):
        def handler_of(log):
            def handler(message, action):
                pass

            return log.EntryLogged.Connect(handler), weakref.ref(handler)

        log = vorquill21.CLog()
        connection, disconnected = handler_of(log)
        _, connected = handler_of(log)
        log.EntryLogged.Disconnect(connection)
        assert disconnected() is None
        assert connected() is not None
        del log
        assert connected() is None

    def test_only_callables_are_connected(self, log):
        with pytest.raises(TypeError):
            log.EntryLogged.Connect(5)

    def test_nobody_makes_an_event(self):
        with pytest.raises(TypeError):
            vorquill21.LogEvent()
