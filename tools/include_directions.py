#!/usr/bin/env python3
"""Proves that includes point down between the rooms, and that platform code stays where it belongs.

    tools/include_directions.py [--root FOLDER] [--generated FOLDER]

Prints one line for each wrong include or platform test, as file:line: reason, and ends with 1 if
there was any. --generated checks the sources that the generator made as well.
"""

import argparse
import re
import sys
from pathlib import Path, PurePosixPath
from typing import Iterator, NamedTuple

# A room is the longest of these beginnings that an include path has. Headers below include/ and
# platform/include/ are named without these folders, as the code that includes them names them.
ROOMS = (
    "kestrion/platform",
    "kestrion",
    "platform",
    "io",
    "tables",
    "store",
    "core",
    "scope",
    "groups",
    "hosting",
    "c_api",
    "cli",
    "examples",
    "visa",
    "virtual",
    "generated/members",
    "generated/hooks",
    "generated/faces",
    "generated/objects",
    "generated/tables",
    "generated/core",
    "generated/tests",
    "bench",
    "tests",
)

PUBLIC = ("kestrion", "kestrion/platform")
LOWER = ("io", "tables", "store", "platform", *PUBLIC)
HAND_WRITTEN_BODIES = ("core", *LOWER, "generated/members", "generated/hooks")

# What a room may include beside itself: rooms, or single headers where the door is narrower.
MAY_INCLUDE = {
    "kestrion/platform": (),
    "kestrion": ("kestrion/platform",),
    "platform": ("kestrion/platform",),
    "io": ("platform", "kestrion/platform"),
    "tables": ("platform", "kestrion/platform"),
    "store": ("platform", "kestrion/platform"),
    "core": HAND_WRITTEN_BODIES,
    "scope": HAND_WRITTEN_BODIES,
    "groups": HAND_WRITTEN_BODIES,
    # The bundled VISA library is handed to the driver as a table of functions.
    "hosting": ("scope", "groups", *HAND_WRITTEN_BODIES, "generated/faces", "generated/objects",
                "visa/functions.h"),
    "c_api": ("hosting", *PUBLIC),
    "cli": PUBLIC,
    "examples": PUBLIC,
    # Neither the VISA library nor the instrument knows anything of the driver.
    "visa": ("virtual/device_link.h",),
    "virtual": (),
    "generated/members": ("core", *LOWER),
    "generated/hooks": ("core", *LOWER),
    "generated/faces": ("core", *LOWER, "generated/members", "generated/hooks"),
    "generated/objects": ("core", *LOWER, "generated/faces"),
    "generated/tables": ("tables", "platform", *PUBLIC),
    "generated/core": HAND_WRITTEN_BODIES,
    # The tables for tests see what a program sees, and how tests/system calls it.
    "generated/tests": (*PUBLIC, "tests/system/property.h", "tests/system/property_call.h"),
    # Counters and a canned library that the tests have as well.
    "bench": (*ROOMS, "tests/core/quiet_visa.h", "tests/platform/allocation_count.h"),
}

# The tests of a room may include what the room may, everything below that, the tests of those
# rooms, and what stands here.
TESTS_MAY_ALSO_INCLUDE = {
    # A driver object over a scripted VISA library, for the tests of the upper rooms.
    "support": ("hosting", "tests/io"),
    "core": ("tests/support",),
    "scope": ("tests/support",),
    "groups": ("tests/support",),
    "hosting": ("tests/support", "visa"),
    "c_api": ("tests/support",),
    "cli": (),
    # The links to the virtual instrument are tested with the instrument behind them.
    "visa": ("virtual",),
    "system": ROOMS,
    "fuzz": ROOMS,
}

# Headers that the tests of every room may include: they stand on nothing of the project.
FOR_ALL_TESTS = ("tests/support/temporary_folder.h",)

FOLDERS_THAT_ARE_NAMED_WITHOUT = ("platform/include", "generated/include", "include")
# Folders at the top that begin so hold nothing of the project.
FOLDERS_LEFT_OUT = (".", "build")
SOURCE_SUFFIXES = (".h", ".hpp", ".c", ".cpp", ".inc")

PLATFORM_MACRO = re.compile(
    r"\b(_WIN32|_WIN64|WIN32|_MSC_VER|__MINGW32__|__CYGWIN__|__linux__|__linux|linux|"
    r"__gnu_linux__|__unix__|__unix|unix|__APPLE__|__FreeBSD__|__ANDROID__|_POSIX_VERSION)\b")
# Rooms keep the code of one system in a folder that has the system's name.
SYSTEM_FOLDERS = ("linux", "windows")
SYSTEM_HEADER = re.compile(
    r"^(sys|netinet|arpa|net|linux)/|"
    r"^(unistd|netdb|poll|dlfcn|fcntl|termios|pthread|spawn|semaphore|windows|winsock2|ws2tcpip)"
    r"\.h$")

INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')
CONDITION = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b(.*)")
COMMENT_OR_LITERAL = re.compile(
    r'//(?:\\\n|[^\n])*'
    r'|/\*.*?\*/'
    r'|R"(?P<mark>[^\s()\\]{0,16})\(.*?\)(?P=mark)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9A-Za-z])'(?:\\.|[^'\\\n])*'",
    re.DOTALL)


class Include(NamedTuple):
    line: int
    quoted: bool
    path: str


def without_comments(text: str) -> str:
    """The text with comments and raw texts blanked out, line for line."""
    def blank(match: re.Match[str]) -> str:
        found = match.group()
        if found.startswith(("//", "/*", "R")):
            return " " + "\n" * found.count("\n")
        return found
    return COMMENT_OR_LITERAL.sub(blank, text)


def lines_of(text: str) -> Iterator[tuple[int, str]]:
    """The lines without comments, each with its number; a continued line comes as one."""
    start, joined = 0, ""
    for number, line in enumerate(without_comments(text).split("\n"), 1):
        start = start or number
        if line.endswith("\\"):
            joined += line[:-1] + " "
            continue
        yield start, joined + line
        start, joined = 0, ""
    if start:
        yield start, joined


def includes_of(text: str) -> Iterator[Include]:
    for number, line in lines_of(text):
        match = INCLUDE.match(line)
        if match:
            yield Include(number, match.group(1) == '"', match.group(2))


def as_included(path: str) -> str:
    """The name by which code includes the file that stands at `path` in the tree."""
    for folder in FOLDERS_THAT_ARE_NAMED_WITHOUT:
        if path.startswith(folder + "/"):
            return path[len(folder) + 1:]
    return path


def room_of(path: str) -> str | None:
    """The room of an include path; "tests/<room>" for tests; None if there is none."""
    matching = [room for room in ROOMS if path.startswith(room + "/")]
    if not matching:
        return None
    room = max(matching, key=len)
    if room == "tests":
        return "/".join(PurePosixPath(path).parts[:2])
    return room


def neighbours(room: str) -> tuple[str, ...]:
    if room.startswith("tests/"):
        tested = room.removeprefix("tests/")
        return (tested, *TESTS_MAY_ALSO_INCLUDE.get(tested, ()))
    return MAY_INCLUDE.get(room, ())


def everything_below(room: str) -> set[str]:
    """The room with everything that it may include, directly or through others."""
    reached: set[str] = set()
    waiting = [room]
    while waiting:
        current = waiting.pop()
        if current not in reached:
            reached.add(current)
            waiting += neighbours(current)
    return reached


def allowed_for(room: str) -> set[str]:
    if room.startswith("tests/"):
        below = everything_below(room)
        return below | {f"tests/{other}" for other in below} | set(FOR_ALL_TESTS)
    return {room, *neighbours(room)}


def wrong_include(source_room: str, include: Include) -> str | None:
    """What is wrong with an include, or None."""
    target = room_of(include.path)
    if target is None:
        if include.quoted:
            return f'"{include.path}" is not named from the top of the tree'
        return None
    allowed = allowed_for(source_room)
    if target in allowed or include.path in allowed:
        return None
    doors = sorted(entry for entry in allowed - set(ROOMS) if room_of(entry) == target)
    hint = f' but by {", ".join(doors)}' if doors else ""
    return f'room {source_room} must not include {target}{hint}: "{include.path}"'


def wrong_system_header(path: str, include: Include) -> str | None:
    if include.quoted or not SYSTEM_HEADER.search(include.path):
        return None
    folders = PurePosixPath(path).parts[:-1]
    if folders[0] == "tests" or any(folder in SYSTEM_FOLDERS for folder in folders):
        return None
    return f"<{include.path}> belongs in a folder linux/ or windows/ of the room"


def platform_tests(path: str, text: str) -> Iterator[tuple[int, str]]:
    if path.startswith("platform/"):
        return
    for number, line in lines_of(text):
        condition = CONDITION.match(line)
        macro = PLATFORM_MACRO.search(condition.group(1)) if condition else None
        if macro:
            yield number, f"{macro.group()} must not be tested outside platform/"


def check_text(path: str, text: str) -> list[tuple[int, str]]:
    """The faults of one file, which stands at `path` in the tree, each with its line."""
    room = room_of(as_included(path))
    if room is None or (not room.startswith("tests/") and room not in MAY_INCLUDE):
        return [(1, "this folder has no rule in tools/include_directions.py")]
    faults = list(platform_tests(path, text))
    for include in includes_of(text):
        reasons = (wrong_include(room, include), wrong_system_header(path, include))
        faults += [(include.line, reason) for reason in reasons if reason]
    return sorted(faults)


def sources_below(folder: Path) -> Iterator[tuple[str, Path]]:
    """Every source file, with its path from `folder`."""
    for path in sorted(folder.rglob("*")):
        name = path.relative_to(folder).as_posix()
        if not name.startswith(FOLDERS_LEFT_OUT) and path.suffix in SOURCE_SUFFIXES:
            yield name, path


def main(arguments: list[str]) -> int:
    parser = argparse.ArgumentParser(description="Checks the include directions of the rooms.")
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parent.parent,
                        help="the top of the tree")
    parser.add_argument("--generated", type=Path,
                        help="the folder of the generated sources in a build folder")
    options = parser.parse_args(arguments)

    files = list(sources_below(options.root))
    if options.generated:
        if not options.generated.is_dir():
            print(f"{options.generated} is not there: build the project first.", file=sys.stderr)
            return 2
        files += [(f"generated/{name}", path) for name, path in sources_below(options.generated)]
    if not files:
        print(f"No source files below {options.root}.", file=sys.stderr)
        return 2

    faults = 0
    for name, path in files:
        for line, reason in check_text(name, path.read_text(encoding="utf-8")):
            print(f"{name}:{line}: {reason}")
            faults += 1
    print(f"{len(files)} files, {faults} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
