"""What the tests of the Python module share."""

import os
import pathlib
import struct

import pytest

import vorquill21

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SANITIZED = "asan" in os.environ.get("LD_PRELOAD", "")

# What measures memory is for the allocators that are used in earnest: the sanitizer keeps what was freed for a while, and
# reserves address space for what it knows about memory.
measures_memory = pytest.mark.skipif(SANITIZED, reason="the sanitizer's memory would be measured")


def bits(value: float) -> str:
    """The bits of a double in hexadecimal."""
    return struct.pack(">d", value).hex()


@pytest.fixture
def main():
    return vorquill21.Main()


@pytest.fixture
def stream():
    document = vorquill21.CFileStream()
    document.Initialise("TEST 1", [])
    return document


@pytest.fixture
def log(tmp_path):
    made = vorquill21.CLog()
    made.Initialise(str(tmp_path / "test.log"), 100000, True, False, "Title")
    return made


@pytest.fixture
def raises():
    """raises(number) as pytest.raises, for an error of the library."""

    class Raised:
        def __init__(self, number):
            self.number = number

        def __enter__(self):
            self.context = pytest.raises(vorquill21.LibraryError)
            self.info = self.context.__enter__()
            return self.info

        def __exit__(self, *details):
            handled = self.context.__exit__(*details)
            assert self.info.value.number == self.number
            return handled

    return Raised
