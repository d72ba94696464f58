"""The generated files: their list, and writing them."""

from pathlib import Path

from generator import cpp
from generator.emit_faces import face_files
from generator.emit_members import member_files
from generator.emit_objects import object_files
from generator.emit_public import public_files
from generator.emit_tables import table_files
from generator.emit_test_properties import test_property_files
from generator.records import Model


def all_files(model: Model) -> dict[str, str]:
    """Every file below the output folder, with its text."""
    return {**public_files(model), **member_files(model), **face_files(model),
            **object_files(model), **table_files(model), **test_property_files(model)}


def groups(paths: list[str]) -> dict[str, list[str]]:
    """The files by what compiles them: "headers", or the sources of a room."""
    found: dict[str, list[str]] = {
        "headers": [], "tables": [], "core": [], "faces": [], "objects": [], "tests": []}
    for path in sorted(paths):
        group = "headers" if path.endswith(".h") else path.split("/")[0]
        found[group].append(path)
    return found


def write(folder: Path, files: dict[str, str]) -> list[str]:
    """Writes what differs, removes generated files that are no longer made.

    Returns the paths that changed. An unchanged file keeps its time, so that nothing that includes
    it is built again.
    """
    changed = []
    for path, text in files.items():
        target = folder / path
        data = text.encode("ascii")
        if target.exists() and target.read_bytes() == data:
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(data)
        changed.append(path)
    return changed + _remove_old(folder, files)


def _remove_old(folder: Path, files: dict[str, str]) -> list[str]:
    removed = []
    for target in sorted([*folder.rglob("*.h"), *folder.rglob("*.cpp")]):
        path = target.relative_to(folder).as_posix()
        if path not in files and target.read_bytes().startswith(cpp.MARK.encode()):
            target.unlink()
            removed.append(path)
    return removed
