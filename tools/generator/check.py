"""Proves what can be proved of a resolved model."""

from generator.check_expected import check_expected
from generator.check_interfaces import check_interfaces
from generator.check_tables import check_tables
from generator.check_templates import check_templates
from generator.problems import Problems
from generator.records import Model


def check(model: Model, problems: Problems) -> None:
    """Adds an error for everything that is wrong."""
    check_tables(model, problems)
    check_expected(model, problems)
    check_interfaces(model, problems)
    check_templates(model, problems)
