"""Writes the source of the longest templates: python3 tools/bench/make_templates.py OUTPUT"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from bench.templates import TemplateError, source
from generator.cli import read_model
from generator.problems import Problems

MODEL = Path(__file__).resolve().parents[2] / "model"

try:
    Path(sys.argv[1]).write_text(source(read_model(MODEL, "0.0.0", Problems())), encoding="utf-8")
except TemplateError as error:
    sys.exit(f"bench: {error}")
