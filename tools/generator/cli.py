"""The command line of the generator."""

import argparse
import sys
from pathlib import Path

from generator import output
from generator.check import check
from generator.coverage import coverage
from generator.load import load
from generator.problems import ModelError, Problems
from generator.records import Model
from generator.resolve import resolve

_MODEL = Path(__file__).resolve().parents[2] / "model"


def _arguments() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="generator", description="Makes the driver's generated sources from its model.")
    parser.add_argument("--model", type=Path, default=_MODEL, help="the folder of the model")
    parser.add_argument("--version", default="0.0.0", help="the version of the driver, as 3.9.0")
    mode = parser.add_mutually_exclusive_group(required=True)
    mode.add_argument("--output", type=Path, help="the folder to write to")
    mode.add_argument("--check", action="store_true", help="validate the model only")
    mode.add_argument("--coverage", action="store_true", help="print what the model holds")
    mode.add_argument("--list", action="store_true",
                      help="print the files that would be made, as 'group path'")
    return parser


def read_model(folder: Path, version: str, problems: Problems) -> Model:
    """The checked model; raises ModelError with everything in `problems`."""
    raw = load(folder, problems)
    problems.stop_if_any()
    model = resolve(raw, version, problems)
    check(model, problems)
    problems.stop_if_any()
    return model


def main(arguments: list[str]) -> int:
    options = _arguments().parse_args(arguments)
    problems = Problems()
    try:
        model = read_model(options.model, options.version, problems)
    except ModelError:
        for line in problems.lines():
            print(line, file=sys.stderr)
        return 1
    if options.coverage:
        print("\n".join(coverage(model)))
    elif options.list:
        for group, paths in output.groups(list(output.all_files(model))).items():
            for path in paths:
                print(group, path)
    elif options.output:
        output.write(options.output, output.all_files(model))
    return 0
