#!/usr/bin/env python3
"""Prints a header as the reference shows it.

In the headers a comment belongs to all declarations below it, up to the next blank line. The reference wants one for each:
those behind the first get the words "As the one above." What the compiler makes, or must not make, is left out unless it
has a comment of its own. The namespace is left out, which every name is in. Literals lose their prefix, which the site's
reader of C++ does not know, and paragraphs of comments their line ends, which would break quoted texts.
"""

import pathlib
import re
import sys

PREFIX = re.compile(r'\bu(?=["\'])')
WITHOUT_WORDS = re.compile(
    r"(?:namespace vorquill21 \{|\}  // namespace vorquill21|.*\) (?:noexcept )?= (?:default|delete);|(?:virtual )?~.*;)"
    r"(?: *//.*)?$")


def indentation(line: str) -> int:
    return len(line) - len(line.lstrip())


def is_prose(line: str) -> bool:
    """Whether it is a line of a paragraph in a comment, and not of a table or an example."""
    text = line.strip()
    return text.startswith("/// ") and not text.startswith(("///     ", "/// |"))


def with_whole_paragraphs(lines: list) -> list:
    joined = []
    for line in lines:
        goes_on = joined and is_prose(joined[-1]) and is_prose(line) and not line.strip().startswith("/// - ")
        if goes_on:
            joined[-1] += " " + line.strip().removeprefix("///").strip()
        else:
            joined.append(line)
    return joined


def shown(block: list) -> list:
    """The lines of a block without blank lines."""
    lines = []
    for number, line in enumerate(block):
        before = block[number - 1].strip() if number > 0 else ""
        if WITHOUT_WORDS.match(line.strip()) and not before.startswith("///"):
            if before.startswith("template"):
                lines.pop()
            continue
        lines.append(line if line.strip().startswith("//") else PREFIX.sub("", line))
    lines = with_whole_paragraphs(lines)
    if not lines or not lines[0].strip().startswith("///"):
        return lines
    first = next((number for number, line in enumerate(lines) if not line.strip().startswith("//")), len(lines))
    carried = lines[:first + 1]
    for before, line in zip(lines[first:], lines[first + 1:]):
        begins = indentation(line) == indentation(lines[first]) and line.strip()[0] not in "}/"
        if begins and before.split("//")[0].rstrip().endswith((";", "}")):
            carried.append(" " * indentation(line) + "/// As the one above.")
        carried.append(line)
    return carried


text = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")
print("\n\n".join("\n".join(shown(block.splitlines())) for block in re.split(r"\n(?: *\n)+", text)))
