"""The longest templates of the model, as a C++ source for the benchmark of the format engine."""

import re
from dataclasses import dataclass

from generator import cpp, formats
from generator.records import Model

COUNT = 20

# Kinds of conversions that the benchmark can give values to: the kind there, and the field of the
# floor's argument.
_KINDS = {"integer": ("kInteger", "integer"), "real": ("kReal", "real"),
          "enumeration": ("kEnum", "text"), "text": ("kText", "text")}
# A set behind % holds the separator, which isn't one there.
_SEPARATOR = re.compile(r";(?![^\[]*\])")


class TemplateError(Exception):
    """A template that the benchmark has no values for."""


@dataclass(frozen=True)
class Template:
    """A template of one member: the enumerations' tokens depend on the member."""

    member: str
    text: str


def _longest(candidates: list[Template]) -> list[Template]:
    """The longest ones first, each text once; those of one length by their text."""
    by_text = {one.text: one for one in reversed(candidates)}
    return sorted(by_text.values(), key=lambda one: (-len(one.text), one.text))[:COUNT]


def longest_commands(model: Model) -> list[Template]:
    """Of the command lines that have a conversion."""
    return _longest([Template(entry.key, entry.command.text)
                     for interface in model.interfaces.values() for entry in interface.entries
                     if entry.command is not None and formats.parse_write(entry.command.text)])


def longest_replies(model: Model) -> list[Template]:
    return _longest([Template(entry.key, entry.reply)
                     for interface in model.interfaces.values() for entry in interface.entries
                     if entry.reply])


def _kind(conversion: formats.Conversion, template: Template) -> tuple[str, str]:
    if conversion.kind not in _KINDS or conversion.counts:
        raise TemplateError(f"{template.member}: no value for {conversion} in '{template.text}'")
    return _KINDS[conversion.kind]


def _value(kind: str, enum: str = "", stored: bool = True) -> str:
    return f"{{ValueKind::{kind}, {cpp.literal(enum)}, {cpp.boolean(stored)}}}"


def print_format(template: Template) -> str:
    """The same line for snprintf: what the driver looks up is a text there."""
    text = re.sub(r"%\{[^}]*\}", "%", template.text)
    return text


def _command(number: int, template: Template) -> tuple[str, str]:
    """The printing function and values of a command line, and its row."""
    conversions = formats.parse_write(template.text)
    kinds = [_kind(one, template) for one in conversions]
    if any(kind == "kText" for kind, _ in kinds):
        raise TemplateError(f"{template.member}: no text for '{template.text}'")
    values = ", ".join(_value(kind, one.enum) for (kind, _), one in zip(kinds, conversions))
    arguments = "".join(f", arguments[{i}].{field}" for i, (_, field) in enumerate(kinds))
    parts = (f"int Print{number}(char* text, std::size_t size, const FloorValue* arguments) {{\n"
             f"    return std::snprintf(text, size, {cpp.literal(print_format(template))}"
             f"{arguments});\n}}\n"
             f"constexpr TemplateValue kCommand{number}[] = {{{values}}};\n")
    row = (f"    {{{cpp.literal(template.member)}, {cpp.literal(template.text)}, "
           f"kCommand{number}, Print{number}}},\n")
    return parts, row


def _field(field: str, template: Template) -> str:
    conversions = formats.parse_read(field)
    if not conversions:
        return _value("kReal", stored=False)
    kind, _ = _kind(conversions[0], template)
    return _value(kind, conversions[0].enum)


def _reply(number: int, template: Template) -> tuple[str, str]:
    """The values of a reply, one for each field, and its row."""
    fields = [field for field in _SEPARATOR.split(template.text) if field]
    values = ", ".join(_field(field, template) for field in fields)
    return (f"constexpr TemplateValue kReply{number}[] = {{{values}}};\n",
            f"    {{{cpp.literal(template.member)}, {cpp.literal(template.text)}, "
            f"kReply{number}}},\n")


def source(model: Model) -> str:
    """The C++ source that defines LongestCommands and LongestReplies."""
    commands = [_command(i, one) for i, one in enumerate(longest_commands(model))]
    replies = [_reply(i, one) for i, one in enumerate(longest_replies(model))]
    return ("// Made by tools/bench from model/; do not edit.\n"
            '#include <cstdio>\n\n#include "bench/template_cases.h"\n\n'
            "namespace bench {\nnamespace {\n\n"
            + "".join(parts for parts, _ in commands) + "".join(parts for parts, _ in replies)
            + "\nconstexpr CommandCase kCommands[] = {\n" + "".join(row for _, row in commands)
            + "};\nconstexpr ReplyCase kReplies[] = {\n" + "".join(row for _, row in replies)
            + "};\n\n}  // namespace\n\n"
            "std::span<const CommandCase> LongestCommands() {\n    return kCommands;\n}\n\n"
            "std::span<const ReplyCase> LongestReplies() {\n    return kReplies;\n}\n\n"
            "}  // namespace bench\n")
