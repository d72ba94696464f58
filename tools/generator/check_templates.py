"""Proves the conversions of templates against the types of their arguments."""

from generator.formats import Conversion, FormatError, parse_read, parse_write
from generator.problems import Problems, nearest
from generator.records import Entry, Model, ValueType
from generator.templates import require_bytes


def check_templates(model: Model, problems: Problems) -> None:
    for interface in model.interfaces.values():
        for entry in interface.entries:
            _EntryCheck(model, entry, interface.node, problems).run()


class _EntryCheck:
    """The templates of one entry."""

    def __init__(self, model: Model, entry: Entry, node: str, problems: Problems) -> None:
        self._model = model
        self._entry = entry
        self._node = node
        self._problems = problems

    def run(self) -> None:
        if self._entry.command is not None:
            self._check_command()
        if self._entry.reply is not None:
            self._check_reply(self._entry.reply)

    def _error(self, message: str) -> None:
        self._problems.add(self._entry.place, f"{self._entry.interface}.{self._entry.name}:"
                           f" {message}")

    def _types(self, names: list[str]) -> list[ValueType]:
        return [self._entry.parameter(name).type for name in names]

    def _check_command(self) -> None:
        command = self._entry.command
        assert command is not None
        selectors = [selector for selector in command.selectors if selector]
        if selectors and self._node == "root":
            self._error(f"<{selectors[0]}> in '{command.text}' needs a repeated capability")
        if self._entry.shape != "method" and any(command.selectors[1:]):
            self._error(f"'{command.text}': a property has one selector, before its value")
        conversions = [conversion for conversion, selector
                       in zip(_by_argument(parse_write(command.text)), command.selectors)
                       if not selector]
        if self._entry.shape == "get":
            inputs: list[ValueType] = []
        elif self._entry.shape == "put":
            inputs = [self._entry.value]
        else:
            inputs = self._types(self._entry.inputs())
        self._match(command.text, conversions, inputs, "writes", write_mismatch)

    def _check_reply(self, reply: str) -> None:
        try:
            require_bytes(reply)
            conversions = _by_argument(parse_read(reply))
        except FormatError as error:
            self._error(f"'{reply}': {error}")
            return
        if self._entry.has_hook:
            # The hook says where the values go; only the enumerations can be proved here.
            for conversion in conversions:
                self._enum_mismatch(conversion, reply)
            return
        if self._entry.shape == "get":
            targets = [self._entry.value]
        else:
            targets = self._types(self._entry.targets())
        self._match(reply, conversions, targets, "reads", read_mismatch)

    def _match(self, text: str, conversions: list[Conversion | None], types: list[ValueType],
               verb: str, mismatch) -> None:
        if len(conversions) != len(types):
            self._error(f"'{text}' {verb} {len(conversions)} values, and there are {len(types)}")
            return
        for conversion, value in zip(conversions, types):
            if conversion is None:
                if value.kind != "long":
                    self._error(f"'{text}': a count can't be {value}")
            elif self._enum_mismatch(conversion, text):
                continue
            elif message := mismatch(conversion, value) or self._wrong_enum(conversion, value):
                self._error(f"'{conversion}' in '{text}' {verb} {message}")

    def _enum_mismatch(self, conversion: Conversion | None, text: str) -> bool:
        """Whether a conversion names an enumeration that has no tokens for this member."""
        if conversion is None or not conversion.enum:
            return False
        enum = self._model.find_enum(conversion.enum)
        if enum is None:
            names = [name for known in self._model.enums for name in known.names()]
            self._error(f"'{text}': there is no enumeration '{conversion.enum}'"
                        f"{nearest(conversion.enum, names)}")
            return True
        key = self._entry.key.lower()
        if not any(key == member.lower() for table in enum.tables for member in table.members):
            self._error(f"'{text}': {enum.name} has no table for {self._entry.key}")
            return True
        return False

    def _wrong_enum(self, conversion: Conversion, value: ValueType) -> str:
        if not conversion.enum:
            return ""
        enum = self._model.find_enum(conversion.enum)
        expected = "VARIANT_BOOL" if value.kind == "bool" else value.name
        assert enum is not None
        return "" if enum.name == expected else f"{enum.name}, not {value}"


def _by_argument(conversions: list[Conversion]) -> list[Conversion | None]:
    """One item for each argument: None for a count, the conversion for its value."""
    found: list[Conversion | None] = []
    for conversion in conversions:
        found += [None] * conversion.counts + [conversion]
    return found


def _common_mismatch(conversion: Conversion, value: ValueType) -> str | None:
    """What is wrong in either direction; "" where nothing is; None where it depends."""
    if conversion.kind.startswith("enumeration"):
        if conversion.kind == "enumeration" and value.kind in ("enum", "bool"):
            return ""
        return f"an enumeration, not {value}"
    if value.kind in ("enum", "bool"):
        return f"no enumeration, and {value} is one"
    if conversion.kind == "text":
        if value.kind != "string":
            return f"a text, not {value}"
        return "" if conversion.text_kind == "B" else "a text that isn't counted: it needs $B"
    if value.kind == "string":
        return "no text"
    if value.kind == "array":
        return _array_mismatch(conversion, value)
    return None


def _array_mismatch(conversion: Conversion, value: ValueType) -> str:
    if not conversion.is_variant_array:
        return f"no self-describing array, and {value} is one"
    kinds = {"double": "real array", "long": "integer array"}
    return "" if conversion.kind in (kinds[value.name], "block") else f"no {value}"


def _integer_mismatch(conversion: Conversion, value: ValueType) -> str:
    if value.kind != "long":
        return f"an integer, not {value}"
    return "" if conversion.length in ("", "l") else "an integer that hasn't 32 bits"


def write_mismatch(conversion: Conversion, value: ValueType) -> str:
    """What is wrong with a conversion that writes a value of the type; "" where nothing is."""
    common = _common_mismatch(conversion, value)
    if common is not None:
        return common
    if conversion.kind == "integer":
        return _integer_mismatch(conversion, value)
    if conversion.kind == "real":
        return "" if value.kind == "double" else f"a real number, not {value}"
    return f"{conversion.kind}, not {value}"


def read_mismatch(conversion: Conversion, value: ValueType) -> str:
    """What is wrong with a conversion that reads a value of the type; "" where nothing is."""
    common = _common_mismatch(conversion, value)
    if common is not None:
        return common
    if conversion.kind == "integer":
        return _integer_mismatch(conversion, value)
    if conversion.kind == "real":
        if value.kind != "double":
            return f"a real number, not {value}"
        return "" if conversion.length in ("l", "L") else "single precision: it needs l"
    return f"{conversion.kind}, not {value}"
