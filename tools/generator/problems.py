"""Errors of the model: collected, and shown all at once."""

import difflib
from dataclasses import dataclass
from typing import Iterable


@dataclass(frozen=True, order=True)
class Place:
    """A line of a model file, counted from 1."""

    file: str
    line: int

    def __str__(self) -> str:
        return f"{self.file}:{self.line}"


class ModelError(Exception):
    """Ends a run; the problems are already collected."""


class Problems:
    """The errors found so far."""

    def __init__(self) -> None:
        self._found: list[tuple[Place, str]] = []

    def add(self, place: Place, message: str) -> None:
        self._found.append((place, message))

    def __len__(self) -> int:
        return len(self._found)

    def lines(self) -> list[str]:
        """One text for each error, in the order of files and lines, without repeats."""
        return [f"{place}: {message}" for place, message in sorted(set(self._found))]

    def stop_if_any(self) -> None:
        if self._found:
            raise ModelError


def nearest(word: str, legal: Iterable[str]) -> str:
    """The part of an error that names the legal word closest to a wrong one."""
    close = difflib.get_close_matches(word, list(legal), n=1, cutoff=0.0)
    return f"; did you mean '{close[0]}'?" if close else ""
