"""Entry point for `python3 tools/bench`."""

import sys
from pathlib import Path

if not __package__:
    sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from bench.cli import main

sys.exit(main(sys.argv[1:]))
