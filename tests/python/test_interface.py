"""The module has what the page of the interface promises, under the same names."""

import ast
import enum
import inspect
import re

import pytest

import vorquill21
from conftest import SOURCE

PAGE = (SOURCE / "docs" / "interface.md").read_text(encoding="utf-8")
SECTION = re.compile(r"^## (\w+)\n((?:(?!## ).*\n?)*)", re.MULTILINE)
MEMBER = re.compile(r"^\| `(\w+)` \| (method|property get|property let|event|object variable) \|(.*?)\| (.*?) \|$", re.MULTILINE)
ENUMERATOR = re.compile(r"^\| `(\w+)` \| `(\w+)` \| (-?\d+) \|$", re.MULTILINE)
PARAMETER = re.compile(r"(?P<names>`\w+`(?:, `\w+`)*) [^,=]+?(?P<out>, out)?(?:, by reference)?"
                       r"(?:(?P<optional>, optional)|, = (?P<default>`[^`]*`|[^,`]+))?")
CPP_ONLY = {"MessageStyle", "CompareMethod"}
TAKES_PARAMETERS = {"ColumnData", "ColumnHeaderData"}  # properties that are methods in Python
NOT_TOLD = object()


def members():
    """Class, member, kind, parameters and result of each row."""
    return [(section, *row) for section, body in SECTION.findall(PAGE) for row in MEMBER.findall(body)]


def parameters(cell):
    """Names and defaults: those that are passed, and the results by reference."""
    inputs, results = {}, []
    for entry in filter(None, cell.strip().split("; ")):
        found = PARAMETER.fullmatch(entry)
        assert found, entry
        for name in re.findall(r"`(\w+)`", found["names"]):
            if found["out"]:
                results.append(name)
            elif found["default"]:
                inputs[name] = ast.literal_eval(found["default"].strip("`"))
            else:
                inputs[name] = NOT_TOLD if found["optional"] else inspect.Parameter.empty
    return inputs, results


def test_the_page_has_131_members_of_12_classes():
    assert len(members()) == 131
    assert len({row[0] for row in members()}) == 12


@pytest.mark.parametrize("name", sorted({row[0] for row in members()}))
def test_classes_have_the_members_in_their_order_and_no_others(name):
    told = list(dict.fromkeys(row[1] for row in members() if row[0] == name))
    had = [member for member in vars(getattr(vorquill21, name)) if not member.startswith("_")]
    assert had == told


@pytest.mark.parametrize("class_name, name, kind, cell, result",
                         [row for row in members() if row[2] == "method" or row[1] in TAKES_PARAMETERS])
def test_methods_have_the_parameters_of_the_interface(class_name, name, kind, cell, result):
    method = getattr(getattr(vorquill21, class_name), name)
    signature = inspect.signature(method)
    inputs, results = parameters(cell)
    passed = {p.name: p.default for p in signature.parameters.values() if p.kind == p.POSITIONAL_OR_KEYWORD}
    assert list(passed) == ["self", *inputs]
    assert [p.name for p in signature.parameters.values() if p.kind == p.KEYWORD_ONLY] == results
    for parameter, default in inputs.items():
        if default is NOT_TOLD:
            assert passed[parameter] in (..., "")
        else:
            assert passed[parameter] == default


@pytest.mark.parametrize("class_name, name, kind, cell, result", [row for row in members() if row[2] == "method"])
def test_descriptions_tell_what_is_returned_by_reference(class_name, name, kind, cell, result):
    description = inspect.getdoc(getattr(getattr(vorquill21, class_name), name))
    results = parameters(cell)[1]
    returned = (["the result"] if result != "none" else []) + results
    if results:
        told = f"({', '.join(returned)})" if len(returned) > 1 else returned[0]
        assert description.endswith(f"Returns {told}.")
    assert len(description.splitlines()[0]) > 10 or name.startswith("Lib")


@pytest.mark.parametrize("class_name, name", [row[:2] for row in members()
                                              if row[2].startswith("property") and row[1] not in TAKES_PARAMETERS])
def test_properties_are_written_when_the_interface_lets_them(class_name, name):
    found = inspect.getattr_static(getattr(vorquill21, class_name), name)
    assert isinstance(found, property)
    assert found.__doc__
    may_be_written = (class_name, name, "property let") in [row[:3] for row in members()]
    assert (found.fset is not None) == may_be_written


@pytest.mark.parametrize("name", sorted({row[0] for row in ENUMERATOR.findall(PAGE)} - CPP_ONLY))
def test_enumerations_have_their_members_and_values(name):
    told = {member: int(value) for enumeration, member, value in ENUMERATOR.findall(PAGE) if enumeration == name}
    enumeration = getattr(vorquill21, name)
    assert issubclass(enumeration, enum.IntEnum | enum.IntFlag)
    assert {member: int(value) for member, value in enumeration.__members__.items()} == told


def test_all_names_are_exported_and_live_in_the_package():
    for name in vorquill21.__all__:
        exported = getattr(vorquill21, name)
        if inspect.isclass(exported):
            assert exported.__module__ == "vorquill21"
    assert {row[0] for row in members()} <= set(vorquill21.__all__)


def test_every_member_is_used_by_a_test():
    used = set()
    for source in (SOURCE / "tests" / "python").glob("test_*.py"):
        tree = ast.parse(source.read_text(encoding="utf-8"))
        used |= {node.attr for node in ast.walk(tree) if isinstance(node, ast.Attribute)}
    assert {row[1] for row in members()} - used == set()
