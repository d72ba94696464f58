"""What the measurements were made on, in words that name no product."""

import os
import platform
import subprocess
from pathlib import Path


def _has_avx2() -> bool:
    try:
        return " avx2 " in Path("/proc/cpuinfo").read_text(encoding="utf-8")
    except OSError:
        return False


def _memory_gib() -> int:
    return round(os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30)


def compiler(command: str = "c++") -> str:
    """The compiler's own first line without the words behind its number."""
    done = subprocess.run([command, "-dumpfullversion"], capture_output=True, text=True, check=False)
    return f"{command} {done.stdout.strip()}" if done.returncode == 0 else command


def description() -> str:
    vector = " with AVX2" if _has_avx2() else ""
    return (f"{platform.machine()}{vector}, {os.cpu_count()} cores, {_memory_gib()} GiB, "
            f"{platform.system()} {platform.release().split('-')[0]}, {compiler()}")
