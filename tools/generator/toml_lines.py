"""Where the keys of a TOML text stand: the parser of the standard library doesn't tell."""

import re

from generator.problems import Place

_HEADER = re.compile(r"\s*(\[\[?)\s*([^\]]+?)\s*\]\]?\s*(?:#.*)?$")
_KEY_PART = re.compile(r'\s*("(?:[^"\\]|\\.)*"|\'[^\']*\'|[A-Za-z0-9_-]+)\s*')
_STRING = re.compile(r'"""|\'\'\'|"(?:[^"\\]|\\.)*"|\'[^\']*\'|#.*|[\[\]{}]')

Path = tuple[str, ...]


def _split_key(text: str) -> tuple[Path, str]:
    """Splits `a."b".c = rest` into its parts and what follows them."""
    parts: list[str] = []
    position = 0
    while match := _KEY_PART.match(text, position):
        parts.append(match.group(1).strip("\"'"))
        position = match.end()
        if position >= len(text) or text[position] != ".":
            break
        position += 1
    return tuple(parts), text[position:]


class _Nesting:
    """Whether a value goes on in the next line."""

    def __init__(self) -> None:
        self._depth = 0
        self._quote = ""

    def is_open(self) -> bool:
        return self._depth > 0 or self._quote != ""

    def read(self, text: str) -> None:
        position = 0
        while position < len(text):
            if self._quote:
                end = text.find(self._quote, position)
                if end < 0:
                    return
                position = end + len(self._quote)
                self._quote = ""
                continue
            match = _STRING.search(text, position)
            if match is None:
                return
            token = match.group()
            position = match.end()
            if token in ('"""', "'''"):
                self._quote = token
            elif token in "[{":
                self._depth += 1
            elif token in "]}":
                self._depth -= 1


class LineMap:
    """The line of each key of one file, for keys and tables that begin a line."""

    def __init__(self, file: str, text: str) -> None:
        self._file = file
        self._lines: dict[Path, int] = {}
        self._scan(text)

    def place(self, *path: str) -> Place:
        """The place of a key; of the nearest table around it where it has no line of its own."""
        for length in range(len(path), 0, -1):
            line = self._lines.get(path[:length])
            if line is not None:
                return Place(self._file, line)
        return Place(self._file, 1)

    def _scan(self, text: str) -> None:
        table: Path = ()
        counts: dict[Path, int] = {}
        nesting = _Nesting()
        for number, line in enumerate(text.splitlines(), start=1):
            if nesting.is_open():
                nesting.read(line)
                continue
            header = _HEADER.match(line)
            if header:
                table = self._open_table(_split_key(header.group(2))[0],
                                         header.group(1) == "[[", counts)
                self._lines.setdefault(table, number)
                continue
            key, rest = _split_key(line)
            if key and rest.startswith("="):
                for length in range(1, len(key) + 1):
                    self._lines.setdefault(table + key[:length], number)
                nesting.read(rest[1:])

    @staticmethod
    def _open_table(name: Path, is_array: bool, counts: dict[Path, int]) -> Path:
        """The path that a header means: arrays of tables count, and the last one is meant."""
        path: Path = ()
        for part in name[:-1]:
            path += (part,)
            if path in counts:
                path += (str(counts[path] - 1),)
        path += (name[-1],)
        if is_array:
            counts[path] = counts.get(path, 0) + 1
            path += (str(counts[path] - 1),)
        return path
