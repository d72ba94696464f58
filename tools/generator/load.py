"""Reads the model's files and holds them against the schema."""

import re
import tomllib
from dataclasses import dataclass
from pathlib import Path
from typing import Any

from generator import schema
from generator.problems import Place, Problems
from generator.toml_lines import LineMap

# The files that stand beside the folders, by what they hold.
SINGLE_FILES = ("metadata.toml", "messages.toml", "families.toml", "repeated_capabilities.toml",
                "enum_order.toml", "expected.toml")
ENUM_FOLDER = "enums"


@dataclass
class File:
    """One file of the model, parsed."""

    name: str  # with its folder, as errors show it
    data: dict[str, Any]
    lines: LineMap

    def place(self, *path: str) -> Place:
        return self.lines.place(*path)

    def check(self, problems: Problems, what: str, path: tuple[str, ...], table: dict[str, Any],
              legal: dict[str, schema.Kind], required: tuple[str, ...] = ()) -> dict[str, Any]:
        """As schema.check, for the table at `path`."""
        return schema.check(problems, lambda key: self.place(*path, key), what, table, legal,
                            required)


@dataclass
class RawModel:
    """The parsed files by what they hold."""

    single: dict[str, File]
    enums: list[File]
    interfaces: list[File]

    def files(self) -> list[File]:
        return [*self.single.values(), *self.enums, *self.interfaces]


def find_files(root: Path) -> list[Path]:
    """Every file of the model, in an order that is the same everywhere."""
    return sorted(root.rglob("*.toml"), key=lambda path: path.relative_to(root).parts)


def _read(path: Path, name: str, problems: Problems) -> File | None:
    text = path.read_text(encoding="utf-8")
    try:
        data = tomllib.loads(text)
    except tomllib.TOMLDecodeError as error:
        line = re.search(r"at line (\d+)", str(error))
        where = int(line.group(1)) if line else len(text.splitlines()) or 1
        message = re.sub(r"\s*\(at .*\)$", "", str(error))
        problems.add(Place(name, where), f"not a TOML text: {message}")
        return None
    return File(name, data, LineMap(name, text))


def load(root: Path, problems: Problems) -> RawModel:
    """Reads the folder of the model. Names in errors begin with the folder's own name."""
    raw = RawModel({}, [], [])
    for path in find_files(root):
        relative = path.relative_to(root)
        file = _read(path, f"{root.name}/{relative.as_posix()}", problems)
        if file is None:
            continue
        if len(relative.parts) > 1:
            (raw.enums if relative.parts[0] == ENUM_FOLDER else raw.interfaces).append(file)
        elif relative.name in SINGLE_FILES:
            raw.single[relative.name] = file
        else:
            problems.add(Place(file.name, 1), "an interface has to stand in a folder of its group;"
                         f" the files beside the folders are {', '.join(SINGLE_FILES)}")
    for name in SINGLE_FILES:
        if name not in raw.single and not (root / name).exists():
            problems.add(Place(f"{root.name}/{name}", 1), "the file is missing")
    return raw
