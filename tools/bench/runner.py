"""Builds and runs the programs of bench/."""

import os
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from bench.counts import read_callgrind
from bench.results import read_number, read_rounds
from bench.subjects import Found

TREE = Path(__file__).resolve().parents[2]
PRESET = "bench"
BUILD = TREE / "build" / PRESET
CLEAN = TREE / "build" / "bench-clean"


class RunError(Exception):
    """A program that failed, in words for the person who ran the benchmarks."""


class Runner:
    """Runs commands one after the other, and says on the error stream what it is at."""

    def __init__(self, rounds: int, least_time: float, wrap: str) -> None:
        self._rounds = rounds
        self._least_time = least_time
        self._wrap = shlex.split(wrap)
        # The bundled library whatever the system has, and no configuration store.
        self._environment = {**os.environ, "KESTRION_VISA_LIBRARY": "bundled",
                             "IVI_CONFIGURATION_STORE": ""}

    def build(self) -> None:
        self._run("building", [str(TREE / "scripts" / "build"), PRESET], quiet=True)

    def benchmark(self, program: str, pattern: str = "", rounds: int | None = None,
                  share: float = 1.0) -> Found:
        """The samples of the benchmarks whose names have the pattern. `share` is what part of the
        usual time each one takes: less for a program with many."""
        with tempfile.TemporaryDirectory() as folder:
            output = Path(folder) / "report.json"
            command = [str(BUILD / "bench" / program), f"--rounds={rounds or self._rounds}",
                       f"--output={output}",
                       f"--benchmark_min_time={self._least_time * share}"]
            if pattern:
                command.append(f"--benchmark_filter={pattern}")
            self._run(f"{program} {pattern}".strip(), [*self._wrap, *command])
            return read_rounds(output.read_text(encoding="utf-8"))

    def number(self, key: str, program: str, *arguments: str) -> float:
        """What a program prints as {"key": NUMBER}."""
        command = [*self._wrap, str(BUILD / "bench" / program), *arguments]
        return read_number(self._run(" ".join([program, *arguments]), command), key)

    def instructions(self, member: str) -> int:
        """The instructions of one call of a member."""
        if shutil.which("valgrind") is None:
            raise RunError("valgrind is missing; scripts/setup bench installs it")
        with tempfile.TemporaryDirectory() as folder:
            output = Path(folder) / "callgrind.out"
            self._run(f"callgrind {member}", [
                "valgrind", "--tool=callgrind", f"--callgrind-out-file={output}",
                "--toggle-collect=bench::MeasuredCall*",
                str(BUILD / "bench" / "bench_instructions"), member], quiet=True)
            return read_callgrind(output.read_text(encoding="utf-8"))

    def stripped_library_size(self) -> int:
        with tempfile.TemporaryDirectory() as folder:
            stripped = Path(folder) / "library.so"
            self._run("strip", ["strip", "-o", str(stripped),
                                str(BUILD / "hosting" / "libkestrion.so")])
            return stripped.stat().st_size

    def clean_build(self) -> tuple[float, float]:
        """Builds the whole tree anew without the compiler cache: the seconds by the clock, and those
        of all processors together."""
        shutil.rmtree(CLEAN, ignore_errors=True)
        environment = {"CCACHE_DISABLE": "1"}
        used, clock = _processor_seconds(), time.monotonic()
        try:
            self._run("configuring a clean tree",
                      ["cmake", "--preset", "release", "-S", str(TREE), "-B", str(CLEAN)],
                      environment, quiet=True)
            self._run("building a clean tree",
                      ["cmake", "--build", str(CLEAN), "--parallel", str(os.cpu_count())],
                      environment, quiet=True)
        finally:
            shutil.rmtree(CLEAN, ignore_errors=True)
        return time.monotonic() - clock, _processor_seconds() - used

    def _run(self, what: str, command: list[str], environment: dict[str, str] | None = None,
             quiet: bool = False) -> str:
        """The output of a command; `quiet` ones show their errors only when they fail."""
        print(f"bench: {what} ...", end="", file=sys.stderr, flush=True)
        start = time.monotonic()
        done = subprocess.run(command, cwd=TREE, text=True, check=False, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE if quiet else None,
                              env={**self._environment, **(environment or {})})
        print(f" {time.monotonic() - start:.0f} s", file=sys.stderr)
        if done.returncode != 0:
            said = (done.stdout[-3000:] + (done.stderr or "")[-3000:]) if quiet else ""
            raise RunError(f"{what} ended with {done.returncode}\n{said}".rstrip())
        return done.stdout


def _processor_seconds() -> float:
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime
