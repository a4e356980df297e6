"""A reader and a writer of data files, made from docs/data-file-format.md alone."""

import math
import re

NUMBER = re.compile(r"[ \t\r\n]*([+-]?(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[EeDd][+-]?[0-9]+)?)[ \t\r\n]*")
UNUSED = (0x81, 0x8D, 0x8F, 0x90, 0x9D)
CHARACTERS = [chr(byte) if byte in UNUSED else bytes([byte]).decode("cp1252") for byte in range(256)]
BYTES = {character: byte for byte, character in enumerate(CHARACTERS)}


class DataFile:
    """What a file holds. Errors of the format are ValueError."""

    def __init__(self, content: bytes):
        if not content:
            raise ValueError("empty file")
        self.text = "".join(CHARACTERS[byte] for byte in content[:-1])

    def _field(self, name: str):
        at = self.text.find(f"[{name}]")
        if at < 0:
            return None
        begin = at + len(name) + 2
        end = self.text.find("[", begin + 1)
        field = self.text[begin:] if end < 0 else self.text[begin:end]
        return field.lstrip("\t").rstrip("\r\n\t ")

    def has(self, name: str) -> bool:
        return self._field(name) is not None

    def texts(self, name: str) -> list:
        field = self._field(name)
        return field.split("\t") if field else []

    def separator(self) -> str:
        values = self.texts("DEC SEP") or ["."]
        if len(values) > 1:
            raise ValueError("several separators")
        return values[0]

    def _number(self, text: str) -> float:
        match = NUMBER.fullmatch(text.replace(self.separator(), "."))
        value = float(re.sub("[Dd]", "E", match[1])) if match else 0.0
        return value if math.isfinite(value) else 0.0

    def numbers(self, name: str) -> list:
        return [self._number(text) for text in self.texts(name)]

    def table(self, name: str):
        field = self._field(name)
        if field is None:
            return None
        rows = [row.split("\t") for row in field.split("\r")[1:]]
        if not rows:
            raise ValueError("no row")
        while rows[0] and not rows[0][-1]:
            rows[0].pop()
        columns = len(rows[0])
        if columns == 0 or any(len(row) < columns or row == [""] for row in rows):
            raise ValueError("a row is too short")
        return [[self._number(cell) for cell in row[:columns]] for row in rows]

    def version(self) -> str:
        for name in ("FILEVERSION", "FILE VERSION"):
            value = "\t".join(self.texts(name)).strip(" ")
            if value:
                return value
        return ""

    def version_parts(self) -> tuple:
        """Type and number of the version, nothing for one word."""
        values = self.texts("FILEVERSION") or [""]
        if len(values) > 1:
            raise ValueError("several versions")
        words = values[0].split(" ")
        return (words[0], self._number(words[-1].replace(".", self.separator()))) if len(words) > 1 else None

    def has_version(self, accepted: list) -> bool:
        version = self.version()
        return bool(version) and f"{version} ".upper() in "".join(f"{other.strip(' ')} " for other in accepted).upper()


def number_text(value: float, separator: str = ".") -> str:
    text = f"{value:.15g}".upper()
    return "0" if text == "-0" else text.replace(".", separator)


def cell_text(value: float, separator: str) -> str:
    return "0" if abs(value) <= 2.0**-150 else number_text(value, separator)


class Writer:
    """Collects the records of a file."""

    def __init__(self, version: str, separator: str = "."):
        self.separator = separator
        self.records = [f"[DEC SEP]\t{separator}\r\n", f"[FILEVERSION]\t{version}\r\n"]

    def field(self, name: str, *values) -> None:
        texts = [number_text(value, self.separator) if isinstance(value, float) else str(value) for value in values]
        self.records.append(f"[{name}]" + "".join(f"\t{text}" for text in texts) + "\r\n")

    def table(self, name: str, rows: list) -> None:
        lines = ["\t".join(cell_text(cell, self.separator) for cell in row) for row in rows]
        self.records.append(f"[{name}]\t\r\n" + "\r\n".join(lines) + "\r\n")

    def content(self) -> bytes:
        text = "".join(self.records) + "\r\n"
        return bytes(BYTES.get(character, ord("?")) for character in text)
