"""Python gets the bits that C++ gets."""

import json
import os
import subprocess

import numpy
import pytest

import vorquill21
from conftest import bits


def shown(result):
    """A result of Python's as the C++ program shows it."""
    if isinstance(result, float):
        return bits(result)
    if isinstance(result, numpy.ndarray | vorquill21.BoundedArray):
        return [bits(float(element)) for element in numpy.asarray(result).ravel()]
    return result


def argument(told):
    if isinstance(told, str):
        return numpy.frombuffer(bytes.fromhex(told), ">f8").astype(float)[0].item()
    if isinstance(told, list):
        return numpy.array([argument(element) for element in told])
    return told


def cases():
    environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}  # it is no interpreter
    printed = subprocess.run([os.environ["VORQUILL21_CASES"]], check=True, capture_output=True, text=True, env=environment).stdout
    by_member = {}
    for line in printed.splitlines():
        class_name, member, arguments, results = json.loads(line)
        by_member.setdefault((class_name, member), []).append((arguments, results))
    return by_member


CASES = cases()


@pytest.mark.parametrize("class_name, member", CASES)
def test_same_bits_as_in_cpp(class_name, member):
    called = getattr(getattr(vorquill21, class_name)(), member)
    for arguments, results in CASES[class_name, member]:
        returned = called(*map(argument, arguments))
        returned = returned if isinstance(returned, tuple) else (returned,)
        assert [shown(result) for result in returned] == results


def test_the_cases_are_many():
    assert len(CASES) == 33
    assert all(len(cases_of_member) >= 40 for cases_of_member in CASES.values())
