#!/usr/bin/env python3
"""Runs the commands of transcripts and compares what they print.

A transcript is a text file. A line that begins with "$ " is a command for the shell, which finds the program under
the name vorquill21; the lines that follow are what it prints, on both streams. "[exit N]" closes an output when N is
not 0. Lines before the first command are for the reader. In a page of Markdown only blocks marked "console" count.

Each transcript runs in a folder of its own that holds the sample files. With --write the outputs are renewed.
"""

import argparse
import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PROMPT = "$ "


def environment(tool: pathlib.Path, home: pathlib.Path) -> dict[str, str]:
    kept = {name: value for name, value in os.environ.items() if name.startswith(("LSAN_", "ASAN_", "UBSAN_"))}
    return {**kept, "PATH": f"{tool.parent}:/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C", "TZ": "UTC", "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / "config")}


def run(command: str, folder: pathlib.Path, env: dict[str, str]) -> str:
    done = subprocess.run(["bash", "-c", command], cwd=folder, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=120, check=False)
    output = done.stdout.decode("utf-8", "replace")
    if output and not output.endswith("\n"):
        output += "\n"
    return output + (f"[exit {done.returncode}]\n" if done.returncode else "")


def renewed(text: str, folder: pathlib.Path, env: dict[str, str]) -> tuple[str, int]:
    """The transcript with outputs as they are now, and the number of its commands."""
    lines = []
    commands = 0
    for line in text.splitlines(keepends=True):
        if line.startswith(PROMPT):
            commands += 1
            lines.append(line)
            lines.append(run(line[len(PROMPT):].rstrip("\n"), folder, env))
        elif commands == 0:
            lines.append(line)
    return "".join(lines), commands


def renewed_page(text: str, folder: pathlib.Path, env: dict[str, str]) -> tuple[str, int]:
    count = 0

    def block(match: re.Match[str]) -> str:
        nonlocal count
        inner, commands = renewed(match.group(2), folder, env)
        count += commands
        return match.group(1) + inner + match.group(3)

    return re.sub(r"(^```console\n)(.*?)(^```$)", block, text, flags=re.MULTILINE | re.DOTALL), count


def check(path: pathlib.Path, tool: pathlib.Path, samples: list[pathlib.Path], write: bool) -> bool:
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch) / "work"
        folder.mkdir()
        for sample in samples:
            shutil.copy(sample, folder / ("tyre.txt" if sample.name == "3d ref.txt" else sample.name))
        expected = path.read_text(encoding="utf-8")
        renew = renewed_page if path.suffix == ".md" else renewed
        actual, commands = renew(expected, folder, environment(tool, pathlib.Path(scratch)))
    if commands == 0:
        print(f"{path.name} holds no command")
        return False
    if actual == expected:
        print(f"{path.name}: {commands} commands print what they should")
        return True
    if write:
        path.write_text(actual, encoding="utf-8")
        print(f"{path.name}: renewed")
        return True
    sys.stdout.writelines(difflib.unified_diff(expected.splitlines(keepends=True), actual.splitlines(keepends=True),
                                               f"{path.name} expected", "actual"))
    return False


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tool", type=pathlib.Path, required=True)
    parser.add_argument("--source", type=pathlib.Path, required=True, help="the project's folder")
    parser.add_argument("--write", action="store_true", help="renew the outputs")
    parser.add_argument("transcripts", nargs="+", type=pathlib.Path)
    arguments = parser.parse_args()
    samples = [*sorted((arguments.source / "examples/data").glob("*.txt")),
               arguments.source / "vorquill21/filestream/data/3d ref.txt"]
    held = [check(path, arguments.tool.resolve(), samples, arguments.write) for path in arguments.transcripts]
    return 0 if all(held) else 1


if __name__ == "__main__":
    sys.exit(main())
