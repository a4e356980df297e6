#!/usr/bin/env python3
"""What transcripts cannot show: hostile files, closed pipes, terminals, full disks, images, shells, manual pages."""

import json
import os
import pathlib
import pty
import random
import re
import select
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree
import zlib

TOOL = pathlib.Path()
SOURCE = pathlib.Path()
PAGES = pathlib.Path()

# Every command that reads a file, with the file's name as {}.
READERS = [
    ["info", "{}"], ["ls", "{}"], ["get", "{}", "A"], ["set", "{}", "A", "1"], ["set", "{}", "A", "--remove"],
    ["table", "show", "{}", "A"], ["table", "export", "{}", "A"], ["diff", "{}", "tyre.txt"], ["diff", "tyre.txt", "{}"],
    ["lint", "{}"], ["import", "{}"], ["sniff", "{}"], ["stats", "{}"], ["interp", "{}", "-x", "0", "-y", "1", "2"],
    ["fit", "{}", "-x", "0", "-y", "1"], ["plot", "curves", "{}", "-x", "0", "-y", "1"],
    ["plot", "fit", "{}", "-x", "0", "-y", "1"], ["plot", "table", "{}", "A"], ["log", "show", "{}"],
    ["log", "follow", "{}", "--for", "0.01"], ["crc32", "{}"], ["table", "import", "tyre.txt", "A", "{}"],
]


def is_sanitized() -> bool:
    """Whether the program was built with the address sanitizer, which takes memory of its own."""
    return b"__asan_init" in TOOL.read_bytes()


class Scratch(unittest.TestCase):
    """Each test has a folder with the sample files."""

    def setUp(self) -> None:
        self.temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self.temporary.cleanup)
        self.folder = pathlib.Path(self.temporary.name)
        self.folder.chmod(0o755)
        self.environment = {**os.environ, "LC_ALL": "C", "TZ": "UTC", "TERM": "xterm", "HOME": self.temporary.name}
        self.environment.pop("NO_COLOR", None)
        self.run_tool("sample")

    def run_tool(self, *arguments: str, **options) -> subprocess.CompletedProcess:
        options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, **options}
        if "input" in options:
            del options["stdin"]
        return subprocess.run([TOOL, *arguments], cwd=self.folder, env=self.environment, stderr=subprocess.PIPE, timeout=200,
                              check=False, **options)

    def write(self, name: str, content: bytes) -> pathlib.Path:
        path = self.folder / name
        path.write_bytes(content)
        return path


class HostileFiles(Scratch):
    def read_everywhere(self, name: str) -> None:
        """Every command ends by itself with a code of its own, a reason where it fails, and whole JSON otherwise."""
        before = (self.folder / name).read_bytes()
        for reader in READERS:
            with self.subTest(command=reader):
                done = self.run_tool("--json", *[word.format(name) for word in reader])
                self.assertIn(done.returncode, {0, 1, 2, 4}, done.stderr)
                if done.returncode in {2, 4}:
                    self.assertRegex(done.stderr, rb"^vorquill21: .+\n$")
                    self.assertEqual(done.stdout, b"")
                elif done.stdout and reader[:2] not in (["table", "export"], ["log", "follow"]):
                    json.loads(done.stdout)
                if done.returncode != 0 or reader[0] != "set":
                    self.assertEqual((self.folder / name).read_bytes(), before)
                (self.folder / name).write_bytes(before)

    def test_empty_files(self) -> None:
        self.write("empty", b"")
        self.read_everywhere("empty")

    def test_files_of_one_byte(self) -> None:
        for byte in (b"[", b"]", b"\n", b"\r", b"\0", b"1", b"\xff"):
            self.write("byte", byte)
            self.read_everywhere("byte")

    def test_binary_files(self) -> None:
        self.write("binary", random.Random(1).randbytes(100_000))
        self.read_everywhere("binary")
        self.write("binary", bytes(range(256)) * 10)
        self.read_everywhere("binary")

    def test_files_full_of_brackets_and_tabs(self) -> None:
        source = random.Random(2)
        for _ in range(3):
            self.write("brackets", "".join(source.choice("[]\t\r\nA1,.") for _ in range(3000)).encode())
            self.read_everywhere("brackets")

    def test_a_line_of_five_megabytes(self) -> None:
        self.write("long", b"[A]\t" + b"1234567 " * 600_000)
        self.read_everywhere("long")

    def test_the_report_and_the_importer_see_the_same_rows(self) -> None:
        source = random.Random(3)
        for seed in range(60):
            delimiter = source.choice(["\t", ",", ";", " ", "::"])
            end = source.choice(["\n", "\r\n", "\r"])
            fields = ["1", "-2.5", "x", "", "3:4", "1E3kg", " 7", delimiter, "12"]
            lines = [delimiter.join(source.choice(fields) for _ in range(source.choice([3, 3, 3, 3, 3, 3, 4, 5])))
                     for _ in range(source.randrange(40))]
            self.write("columns.txt", end.join([delimiter.join("abc"), *lines]).encode() + (b"" if seed % 2 else end.encode()))
            done = self.run_tool("import", "columns.txt", "--json", "-d", delimiter, "--header-row", "1")
            self.assertEqual(done.returncode, 0, done.stderr)
            report = json.loads(done.stdout)
            stop = report["stopped_line"] or report["lines"] + 1
            self.assertEqual(report["rows"], max(0, stop - report["first_value_row"]), (seed, delimiter, lines))

    def test_files_of_very_many_fields_and_pages(self) -> None:
        fields = "".join(f"[FIELD {i}]\t{i}\r\n" for i in range(50_000))
        pages = "".join(f"[TABLE PAGE {i}]\t\r\n1\t2\r\n" for i in range(1, 5_001))
        self.write("many.txt", (fields + pages + "\r\n").encode())
        started = time.monotonic()
        self.assertEqual(len(json.loads(self.run_tool("ls", "many.txt", "--json").stdout)["fields"]), 50_001)
        self.assertEqual(self.run_tool("lint", "many.txt").returncode, 0)
        self.assertEqual(self.run_tool("diff", "many.txt", "many.txt").returncode, 0)
        self.assertEqual(self.run_tool("set", "many.txt", "FIELD 7", "8").returncode, 0)
        self.assertLess(time.monotonic() - started, 60, "nothing takes the square of the number of fields")

    def test_files_cannot_command_the_terminal(self) -> None:
        self.write("escape.txt", b"[\x1b[31mNAME]\t\x1b]0;title\x07\r\n[A\x1b]\t\x1bc\r\n\r\n")
        for command in (["ls"], ["lint"], ["log", "show"], ["import", "-d", "tab", "--header-row", "1"]):
            done = self.run_tool(*command, "escape.txt")
            self.assertNotIn(b"\x1b", done.stdout + done.stderr)
            self.assertNotIn(b"\x07", done.stdout + done.stderr)

    def test_the_report_on_a_file_holds_little_memory(self) -> None:
        """Reading stops at the blank line, so no values are kept, and the rest of the file passes by."""
        with open(self.folder / "long.csv", "wb") as file:
            file.write(b"a,b\n1,2\n\n")
            for _ in range(100):
                file.write(b"123.25,-17.5\n" * 60_000)
        script = (f"import resource, subprocess, sys; done = subprocess.run({[str(TOOL), 'import', '--json', '-d', 'comma', '--header-row', '1', '--first-row', '2', 'long.csv']!r}); "
                  "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, file=sys.stderr); sys.exit(done.returncode)")
        done = subprocess.run([sys.executable, "-c", script], cwd=self.folder, env=self.environment, capture_output=True, check=True)
        self.assertEqual(json.loads(done.stdout)["unread_lines"], 6_000_000)
        if not is_sanitized():
            self.assertLess(int(done.stderr), 60_000, "kilobytes")


class Streams(Scratch):
    def test_a_reader_that_has_seen_enough_is_no_failure(self) -> None:
        rows = "".join(f"{i},{i * i}\n" for i in range(100_000))
        self.assertEqual(self.run_tool("table", "import", "tyre.txt", "BIG", "-", input=rows.encode()).returncode, 0)
        for command in (["table", "export"], ["table", "show"], ["table", "show", "--json"]):
            with subprocess.Popen([TOOL, *command, "tyre.txt", "BIG"], cwd=self.folder, env=self.environment,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
                self.assertTrue(process.stdout.readline())
                process.stdout.close()
                self.assertEqual(process.stderr.read(), b"")
            self.assertEqual(process.returncode, 0)

    def test_following_ends_when_nobody_listens(self) -> None:
        log = self.write("a.log", b"one\r\n")
        with subprocess.Popen([TOOL, "log", "follow", "a.log"], cwd=self.folder, env=self.environment,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            self.assertEqual(process.stdout.readline(), b"one\n")
            process.stdout.close()
            with log.open("ab") as file:
                file.write(b"two\r\n")
            self.assertEqual(process.wait(10), 0)

    def test_output_that_cannot_be_written(self) -> None:
        for command in (["ls", "tyre.txt"], ["--help"], ["table", "export", "tyre.txt", "SHAPE FACTOR DATA"],
                        ["completion", "bash"], ["log", "show", "tyre.txt"], ["set", "-", "A", "1"]):
            with open("/dev/full", "wb") as full, open(self.folder / "tyre.txt", "rb") as file:
                done = self.run_tool(*command, stdout=full, stdin=file)
            self.assertEqual(done.returncode, 3, command)
            self.assertIn(b"No space left on device", done.stderr)


class Disks(Scratch):
    def test_a_full_disk_leaves_the_file_as_it_was(self) -> None:
        script = r"""
            set -e
            mount -t tmpfs -o size=64k none "$1"
            cd "$1"
            "$2" sample >/dev/null
            head -c 1000000 /dev/zero >filler 2>/dev/null || true
            cksum tyre.txt
            yes 12345,67890 | head -n 2000 | "$2" table import tyre.txt BIG - || echo "code $?"
            "$2" set tyre.txt LONG "$(head -c 20000 /dev/zero | tr '\0' x)" || echo "code $?"
            "$2" plot table tyre.txt "LATERAL FORCE DATA" -o forces.png || echo "code $?"
            "$2" table export tyre.txt "LATERAL FORCE DATA" -o forces.csv || echo "code $?"
            "$2" import faulty-columns.txt -o values.csv || echo "code $?"
            "$2" set new.txt A 1 --create "NEW 1.0" || echo "code $?"
            cksum tyre.txt
            ls
        """
        mount = self.folder / "disk"
        mount.mkdir()
        allowed = subprocess.run(["unshare", "-rm", "mount", "-t", "tmpfs", "none", mount], capture_output=True, check=False)
        if allowed.returncode != 0:
            self.skipTest("no file system may be mounted here: " + allowed.stderr.decode().strip())
        done = subprocess.run(["unshare", "-rm", "bash", "-c", script, "bash", mount, TOOL], env=self.environment,
                              capture_output=True, text=True, check=True)
        lines = done.stdout.splitlines()
        self.assertEqual(lines[1:7], ["code 3"] * 6, done.stderr)
        self.assertEqual(lines[0], lines[7])
        self.assertEqual(lines[8:], ["faulty-columns.txt", "filler", "load-cell-calibration.txt", "tyre.txt"])
        self.assertEqual(done.stderr.count("Disk full (error 61)"), 6, done.stderr)

    def test_what_may_not_be_written_stays(self) -> None:
        if os.geteuid() == 0 and shutil.which("setpriv") is None:
            self.skipTest("root may write everywhere, and setpriv is missing")
        unprivileged = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else []
        for path in self.folder.iterdir():
            path.chmod(0o444)
        (self.folder / "closed").mkdir(mode=0)
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        before = (self.folder / "tyre.txt").read_bytes()
        reachable = subprocess.run([*unprivileged, TOOL, "info", self.folder / "tyre.txt"], capture_output=True, check=False)
        if reachable.returncode != 0:
            self.skipTest("another user cannot reach the program or the folder")
        for command in (["set", "tyre.txt", "A", "1"], ["set", "new.txt", "A", "1", "--create", "V 1"],
                        ["table", "import", "tyre.txt", "A", "-"], ["table", "export", "tyre.txt", "SHAPE FACTOR DATA", "-o", "new.csv"],
                        ["import", "faulty-columns.txt", "-o", "new.csv"], ["sample", "--force"], ["sample", "below"],
                        ["sample", "closed"], ["set", "closed/new.txt", "A", "1", "--create", "V 1"],
                        ["plot", "table", "tyre.txt", "SHAPE FACTOR DATA", "-o", "new.svg"]):
            done = subprocess.run([*unprivileged, TOOL, *command], cwd=self.folder, env=self.environment, input=b"1,2\n",
                                  capture_output=True, check=False)
            self.assertEqual(done.returncode, 3, (command, done.stderr))
            self.assertRegex(done.stderr, rb"^vorquill21: cannot .+\n$")
        self.assertEqual((self.folder / "tyre.txt").read_bytes(), before)
        self.assertEqual(len(list(self.folder.iterdir())), 4)


class Terminals(Scratch):
    def on_terminal(self, command: list[str], seconds: float = 0, **environment: str) -> tuple[bytes, bytes]:
        """What the command writes to the terminals that are its standard output and its standard error."""
        pairs = [pty.openpty(), pty.openpty()]
        with subprocess.Popen([TOOL, *command], cwd=self.folder, env={**self.environment, **environment}, stdin=subprocess.PIPE,
                              stdout=pairs[0][1], stderr=pairs[1][1]) as process:
            for _, inner in pairs:
                os.close(inner)
            written = [b"", b""]
            end = time.monotonic() + seconds
            open_streams = {pairs[0][0]: 0, pairs[1][0]: 1}
            while open_streams:
                if process.stdin is not None and not process.stdin.closed and time.monotonic() >= end:
                    process.stdin.close()
                for stream in select.select(list(open_streams), [], [], 0.05)[0]:
                    try:
                        block = os.read(stream, 65536)
                    except OSError:
                        block = b""
                    if block:
                        written[open_streams[stream]] += block
                    else:
                        del open_streams[stream]
        for outer, _ in pairs:
            os.close(outer)
        return written[0], written[1]

    def test_progress_is_told_after_half_a_second_and_wiped_away(self) -> None:
        output, errors = self.on_terminal(["crc32", "-"], seconds=1.0)
        self.assertIn(b"00000000", output)
        self.assertRegex(errors, rb"^(\r\x1b\[Kcrc32: \d+ s)+\r\x1b\[K$")

    def test_progress_is_gone_before_data_are_written(self) -> None:
        self.write("columns.csv", b"a,b\n1,2\n3,4\n")
        script = "(cat columns.csv; sleep 1) | exec \"$0\" import - -o -"
        outer, inner = pty.openpty()
        with subprocess.Popen(["bash", "-c", script, TOOL], cwd=self.folder, env=self.environment, stdout=inner, stderr=inner) as process:
            os.close(inner)
            written = b""
            try:
                while block := os.read(outer, 65536):
                    written += block
            except OSError:
                pass  # the terminal is closed
        os.close(outer)
        self.assertEqual(process.returncode, 0)
        self.assertRegex(written, rb"^(\r\x1b\[Kimport: \d+ s)+\r\x1b\[Ka,b\r\n1,2\r\n3,4\r\n$")

    def test_quick_runs_tell_no_progress(self) -> None:
        for _ in range(10):
            started = time.monotonic()
            errors = self.on_terminal(["ls", "tyre.txt"])[1]
            if time.monotonic() - started < 0.4:
                return self.assertEqual(errors, b"")
        self.skipTest("the machine is too busy for a quick run")

    def test_a_log_that_is_searched_for_long_tells_progress_and_one_that_is_followed_does_not(self) -> None:
        self.assertRegex(self.on_terminal(["log", "show", "-", "--text", "x"], seconds=1.0)[1], rb"^(\r\x1b\[Klog: \d+ s)+\r\x1b\[K$")
        self.write("a.log", b"one\r\n")
        self.assertEqual(self.on_terminal(["log", "follow", "a.log", "--for", "1"]), (b"one\r\n", b""))

    def test_no_progress_without_a_terminal(self) -> None:
        with subprocess.Popen([TOOL, "crc32", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            time.sleep(0.8)
            self.assertEqual(process.communicate()[1], b"")

    def test_colours_are_for_terminals_that_want_them(self) -> None:
        self.write("faulty.txt", b"[A]\t[B]\r\n")
        self.assertIn(b"\x1b[33m", self.on_terminal(["lint", "faulty.txt"])[0])
        self.assertIn(b"\x1b[31m", self.on_terminal(["lint", "missing.txt"])[1])
        self.assertIn(b"\x1b[38;5;", self.on_terminal(["plot", "table", "tyre.txt", "SHAPE FACTOR DATA"])[0])
        for refusal in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
            for command in (["lint", "faulty.txt"], ["lint", "missing.txt"], ["plot", "table", "tyre.txt", "SHAPE FACTOR DATA"]):
                self.assertNotIn(b"\x1b[3", b"".join(self.on_terminal(command, **refusal)))
        self.assertNotIn(b"\x1b", self.run_tool("lint", "faulty.txt").stdout)


def pixels_of(png: bytes) -> tuple[int, int, list[bytes]]:
    """Width, height and the pixels of a PNG of 8-bit colours without interlacing."""
    assert png.startswith(b"\x89PNG\r\n\x1a\n")
    data, position = b"", 8
    header = b""
    while position < len(png):
        length, kind = struct.unpack(">I4s", png[position:position + 8])
        body = png[position + 8:position + 8 + length]
        assert struct.unpack(">I", png[position + 8 + length:position + 12 + length])[0] == zlib.crc32(kind + body)
        header = body if kind == b"IHDR" else header
        data += body if kind == b"IDAT" else b""
        position += 12 + length
    width, height, depth, colours = struct.unpack(">IIBB", header[:10])
    assert depth == 8 and colours in (2, 6)
    size = 3 if colours == 2 else 4
    raw = zlib.decompress(data)
    stride = width * size
    last = bytearray(stride)
    pixels = []
    for row in range(height):
        start = row * (stride + 1)
        kind, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            left = line[i - size] if i >= size else 0
            above, corner = last[i], last[i - size] if i >= size else 0
            if kind == 1:
                line[i] = (line[i] + left) & 255
            elif kind == 2:
                line[i] = (line[i] + above) & 255
            elif kind == 3:
                line[i] = (line[i] + (left + above) // 2) & 255
            elif kind == 4:
                nearest = min((abs(above - corner), 0, left), (abs(left - corner), 1, above),
                              (abs(left + above - 2 * corner), 2, corner))
                line[i] = (line[i] + nearest[2]) & 255
        pixels += [bytes(line[i:i + 3]) for i in range(0, stride, size)]
        last = line
    return width, height, pixels


class Images(Scratch):
    BLUE = (0x00, 0x73, 0xB3)
    ORANGE = (0xD6, 0x5E, 0x00)

    def count_like(self, pixels: list[bytes], colour: tuple[int, int, int]) -> int:
        return sum(all(abs(part - wanted) <= 3 for part, wanted in zip(pixel, colour)) for pixel in pixels)

    def test_a_png_shows_a_line_of_each_colour_in_each_panel(self) -> None:
        self.assertEqual(self.run_tool("plot", "table", "tyre.txt", "LATERAL FORCE DATA", "--width", "600", "--height", "300",
                                       "-o", "f.png").returncode, 0)
        width, height, pixels = pixels_of((self.folder / "f.png").read_bytes())
        self.assertEqual((width, height), (600, 300))
        for colour in (self.BLUE, self.ORANGE):
            columns = {i % width for i, pixel in enumerate(pixels)
                       if all(abs(part - wanted) <= 3 for part, wanted in zip(pixel, colour))}
            for panel in range(3):
                left = 70 + panel * 130
                self.assertGreater(len([column for column in columns if left <= column < left + 120]), 20)
        self.assertGreater(self.count_like(pixels, (255, 255, 255)), width * height // 2)

    def test_a_map_shows_both_ends_of_its_colours(self) -> None:
        self.run_tool("plot", "table", "tyre.txt", "LATERAL FORCE DATA", "--as", "map", "--width", "600", "--height", "300", "-o", "m.png")
        _, _, pixels = pixels_of((self.folder / "m.png").read_bytes())
        self.assertGreater(self.count_like(pixels, (252, 232, 36)), 50)
        self.assertGreater(self.count_like(pixels, (69, 0, 84)), 50)

    def test_an_svg_holds_what_was_drawn(self) -> None:
        done = self.run_tool("plot", "fit", "load-cell-calibration.txt", "-x", "Load", "-y", "Deflection", "-n", "2", "-o", "-", "--format", "svg")
        document = xml.etree.ElementTree.fromstring(done.stdout)
        self.assertEqual(document.attrib["width"].removesuffix("pt"), "960")
        text = done.stdout.decode()
        points = re.findall(r'<path [^>]*fill:rgb\(0%,45[^>]*', text)
        curve = re.findall(r'<path [^>]*stroke:rgb\(84[^>]*', text)
        self.assertEqual(len(points), 41, "forty points and one in the legend")
        self.assertEqual(len(curve), 2, "the curve and its line in the legend")

    def test_values_that_are_not_finite_interrupt_a_line(self) -> None:
        self.write("gap.csv", b"x,y\n1,1\n2,2\n3,3\n")
        self.assertEqual(self.run_tool("plot", "curves", "gap.csv", "-x", "x", "-y", "y", "-o", "gap.svg").returncode, 0)

    def test_texts_may_hold_anything(self) -> None:
        for title in ("<&\"'>", "\n\t", "日本語", b"\xff\xfe".decode("utf-8", "surrogateescape"), "x" * 5000):
            done = self.run_tool("plot", "table", "tyre.txt", "SHAPE FACTOR DATA", "--title", title, "-o", "t.svg")
            self.assertIn(done.returncode, {0, 4}, done.stderr)
            if done.returncode == 0:
                xml.etree.ElementTree.parse(self.folder / "t.svg")


class Shells(Scratch):
    def complete_in_bash(self, *words: str) -> set[str]:
        script = (f"source '{PAGES}/vorquill21.bash'; COMP_WORDS=(vorquill21 \"$@\"); COMP_CWORD=$#; _vorquill21; "
                  "printf '%s\\n' \"${COMPREPLY[@]}\"")
        done = subprocess.run(["bash", "-uc", script, "bash", *words], env=self.environment, capture_output=True, text=True, check=True)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.split())

    def test_bash_completes_commands_options_and_choices(self) -> None:
        self.assertLessEqual({"info", "table", "plot", "completion"}, self.complete_in_bash(""))
        self.assertNotIn("manual", self.complete_in_bash("m"))
        self.assertEqual(self.complete_in_bash("table", ""), {"show", "export", "import"})
        self.assertEqual(self.complete_in_bash("table", "show", "--p"), {"--page"})
        self.assertEqual(self.complete_in_bash("plot", "table", "tyre.txt", "X", "--as", ""), {"curves", "map"})
        self.assertEqual(self.complete_in_bash("completion", "z"), {"zsh"})
        self.assertIn("--strict", self.complete_in_bash("import", "--"))
        self.assertIn("--decimal-comma", self.complete_in_bash("--json", "table", "import", "a", "b", "--d"))
        self.assertEqual(self.complete_in_bash("log", "show", "a.log", "--kind", "wa"), {"warning"})

    def test_zsh_takes_the_script(self) -> None:
        if shutil.which("zsh") is None:
            self.skipTest("zsh is not installed")
        script = (f"fpath=('{PAGES}' $fpath); autoload -Uz compinit; compinit -u -D; whence -w _vorquill21; "
                  f"print ${{_comps[vorquill21]}}; source '{PAGES}/_vorquill21'; whence -w _vorquill21_plot_table")
        done = subprocess.run(["zsh", "-fc", script], env=self.environment, capture_output=True, text=True, check=True)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.stdout.split("\n")[:3], ["_vorquill21: function", "_vorquill21", "_vorquill21_plot_table: function"])

    def test_fish_completes_commands_and_choices(self) -> None:
        if shutil.which("fish") is None:
            self.skipTest("fish is not installed")

        def complete(line: str) -> set[str]:
            script = f"source '{PAGES}/vorquill21.fish'; complete -C '{line}'"
            done = subprocess.run(["fish", "--no-config", "-c", script], cwd=self.folder, env=self.environment,
                                  capture_output=True, text=True, check=True)
            self.assertEqual(done.stderr, "")
            return {entry.split("\t")[0] for entry in done.stdout.splitlines()}

        self.assertLessEqual({"info", "table", "plot"}, complete("vorquill21 "))
        self.assertEqual(complete("vorquill21 table "), {"show", "export", "import"})
        self.assertEqual(complete("vorquill21 plot "), {"curves", "fit", "table"})
        self.assertNotIn("show", complete("vorquill21 plot table "))
        self.assertIn("--decimal-comma", complete("vorquill21 --json table import --"))
        self.assertNotIn("--decimal-comma", complete("vorquill21 import --"))
        self.assertEqual(complete("vorquill21 plot table a b --as "), {"curves", "map"})
        self.assertEqual(complete("vorquill21 completion z"), {"zsh"})

    def test_manual_pages_are_well_formed_and_tell_of_every_command(self) -> None:
        names = {path.name for path in (PAGES / "man").iterdir()}
        commands = re.findall(r"^  ([a-z0-9]+) {2,}", self.run_tool("--help").stdout.decode().split("Subcommands:")[1], re.MULTILINE)
        self.assertEqual(names, {"vorquill21.1", *(f"vorquill21-{command}.1" for command in commands)})
        if shutil.which("man") is None:
            self.skipTest("man is not installed")
        for page in sorted((PAGES / "man").iterdir()):
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", page], env={**self.environment, "MANWIDTH": "120"},
                                  capture_output=True, text=True, check=True)
            self.assertEqual(done.stderr, "", page.name)
            self.assertIn("Example:" if page.name != "vorquill21.1" else "Exit codes:", done.stdout)


class Help(Scratch):
    def setUp(self) -> None:
        super().setUp()
        self.write("session.log", b"started\r\n* Warning: sensor\r\n")
        self.write("stiffness.csv", b"1,2\n3,4\n")
        self.environment["PATH"] = f"{TOOL.parent}:{os.environ['PATH']}"

    def commands(self, *path: str) -> list[list[str]]:
        text = self.run_tool(*path, "--help").stdout.decode()
        below = re.findall(r"^  ([a-z0-9]+) {2,}", text.split("Subcommands:")[1], re.MULTILINE) if "Subcommands:" in text else []
        found = [] if below else [list(path)]
        for name in below:
            found += self.commands(*path, name)
        return found

    def run_example(self, command: list[str], **options) -> None:
        """Runs the example in the help of a command, which must be one of that command, and end well."""
        text = self.run_tool(*command, "--help").stdout.decode()
        example = re.search(r"Example:\n  (vorquill21 .+)$", text).group(1)
        self.assertTrue(example.startswith("vorquill21 " + " ".join(command)), example)
        if command == ["log", "follow"]:
            example += " --for 0.1"
        done = subprocess.run(["bash", "-c", example], cwd=self.folder, stderr=subprocess.PIPE, check=False, text=True,
                              env=self.environment, **options)
        self.assertEqual(done.returncode, 1 if "--strict" in example else 0, done.stderr)
        self.assertEqual(done.stderr, "")

    def test_every_help_shows_an_example_that_works(self) -> None:
        commands = self.commands()
        self.assertGreater(len(commands), 20)
        for command in commands:
            with self.subTest(command=command):
                self.run_example(command, stdout=subprocess.PIPE)

    def test_no_command_fails_because_nobody_reads_its_output(self) -> None:
        for command in self.commands():
            with self.subTest(command=command):
                reader, writer = os.pipe()
                os.close(reader)
                try:
                    self.run_example(command, stdout=writer)
                finally:
                    os.close(writer)


class Sources(unittest.TestCase):
    def test_the_program_is_built_on_the_public_header_alone(self) -> None:
        sources = [path for pattern in ("*.cpp", "*.hpp") for path in (SOURCE / "tools").rglob(pattern)]
        self.assertGreater(len(sources), 40)
        for path in sources:
            headers = set(re.findall(r'#include "(vorquill21/[^"]+)"', path.read_text()))
            self.assertLessEqual(headers, {"vorquill21/vorquill21.hpp"}, path)


class Result(unittest.TextTestResult):
    """Says why a test did not run in the words of the other tests."""

    def addSkip(self, test: unittest.TestCase, reason: str) -> None:
        super().addSkip(test, reason)
        print(f"{pathlib.Path(__file__).name}:0: Skipped\n{reason}\n[  SKIPPED ] {test.id().removeprefix('__main__.')} (0 ms)")


if __name__ == "__main__":
    TOOL, SOURCE, PAGES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]], testRunner=unittest.TextTestRunner(resultclass=Result))
