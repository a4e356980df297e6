#!/usr/bin/env python3
"""The members of results that the page of the command line names are those that the transcripts show, no more, no less."""

import json
import pathlib
import re
import shlex
import sys


def documented(page: str) -> dict[str, set[str]]:
    """The members that the section of each command names in its tables; kinds of findings stand elsewhere."""
    sections: dict[str, set[str]] = {}
    drawing: set[str] = set()
    for heading, body in re.findall(r"^##+ ([^\n]+)\n(.*?)(?=^##|\Z)", page, re.MULTILINE | re.DOTALL):
        table = re.search(r"^\| member \| meaning \|\n\|---\|---\|\n((?:\|.*\n)*)", body, re.MULTILINE)
        names = set()
        for row in table.group(1).splitlines() if table else []:
            names |= set(re.findall(r"`([a-z0-9_.\[\]]+)`", row.split("|")[1]))
        if heading == "Drawings":
            drawing = names
        elif heading.islower():
            sections[heading] = names or drawing
    return sections


def members(value: object, path: str = "") -> set[str]:
    """The names of all values, with [] for the elements of arrays, [?] for those that an empty array lacks."""
    if path == "findings":
        return {"findings[]"}
    if isinstance(value, dict):
        return {name for key, member in value.items() for name in members(member, f"{path}.{key}" if path else key)}
    if isinstance(value, list) and value:
        return {name for element in value for name in members(element, path + "[]")}
    return {path + "[?]" if isinstance(value, list) else path}


def shown(transcript: str, commands: set[str]) -> list[tuple[str, set[str]]]:
    """Each command that a transcript runs for JSON, and the members of what it prints."""
    found = []
    for block in re.split(r"^\$ ", transcript, flags=re.MULTILINE)[1:]:
        line, _, output = block.partition("\n")
        match = re.search(r"vorquill21 (?:--json )?([a-z0-9]+(?: [a-z]+)?)[^|;&]*$", line)
        if match is None or "--json" not in shlex.split(line[match.start():]):
            continue
        words = match.group(1)
        command = words if words in commands else words.split()[0]
        output = re.sub(r"^\[exit \d+\]\n", "", output, flags=re.MULTILINE)
        try:
            values = [json.loads(output)]
        except json.JSONDecodeError:
            values = [json.loads(entry) for entry in output.splitlines()] if command == "log follow" else []
        found += [(command, members(value)) for value in values]
    return found


def main() -> int:
    page = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")
    named = documented(page)
    seen: dict[str, set[str]] = {command: set() for command in named}
    for transcript in sys.argv[2:]:
        for command, names in shown(pathlib.Path(transcript).read_text(encoding="utf-8"), set(named)):
            seen.setdefault(command, set()).update(names)
    faults = []
    for command in sorted(set(named) | set(seen)):
        real = {name for name in seen[command] if not name.endswith("[?]")}
        for array in {name.removesuffix("[?]") + "[]" for name in seen[command] - real}:
            if not any(name.startswith(array) for name in real):
                real.add(array)
        for name in sorted(real - named.get(command, set())):
            faults.append(f"{command}: the member {name} is not on the page")
        for name in sorted(named.get(command, set()) - real):
            faults.append(f"{command}: no transcript shows the member {name} that is on the page")
    print("\n".join(faults) if faults else f"the members of {len(named)} commands are as the page says")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
