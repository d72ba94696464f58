"""The legal keys of the model's files. A key that isn't here is an error."""

from dataclasses import dataclass
from typing import Any, Callable

from generator.problems import Place, Problems, nearest


@dataclass(frozen=True)
class Kind:
    """What a key's value has to be."""

    description: str
    accepts: Callable[[Any], bool]


def _is_strings(value: Any) -> bool:
    return isinstance(value, list) and all(isinstance(item, str) for item in value)


TEXT = Kind("a text", lambda value: isinstance(value, str))
TEXTS = Kind("an array of texts", _is_strings)
TEXT_OR_TEXTS = Kind("a text or an array of texts",
                     lambda value: isinstance(value, str) or _is_strings(value))
FLAG = Kind("true or false", lambda value: isinstance(value, bool))
NUMBER = Kind("a number", lambda value: isinstance(value, int) and not isinstance(value, bool))
TABLE = Kind("a table", lambda value: isinstance(value, dict))
TABLES = Kind("an array of tables", lambda value: isinstance(value, list)
              and all(isinstance(item, dict) for item in value))

INTERFACE = {
    "iid": TEXT, "node": TEXT, "extends": TEXT, "class_compliant": FLAG, "external": FLAG,
    "doc": TEXT, "collection": TEXT, "refuses": TEXT, "members": TABLE, "like": TEXT,
    "variant": TEXT,
}

MEMBER = {
    "doc": TEXT, "type": TEXT, "args": TEXTS, "path": TEXT, "get": TEXT, "reply": TEXT,
    "set": TEXT, "order": TEXTS, "access": TEXT, "hook": TEXT, "map": TEXT,
    "refuses": TEXT_OR_TEXTS, "refuses_get": TEXT_OR_TEXTS, "refuses_put": TEXT_OR_TEXTS,
    "connection": FLAG, "collection": TEXT, "simulated": FLAG,
}

ENUM = {"doc": TEXT, "short": TEXT, "platform": FLAG, "values": TABLE, "tables": TABLES}
ENUM_VALUE = {"value": NUMBER, "doc": TEXT}
ENUM_TABLE = {"members": TEXTS, "tokens": TABLE}
ENUM_ORDER = {"order": TEXTS}

FAMILIES = {"supported_instrument_models": TEXTS, "family": TABLES, "refusals": TABLE}
FAMILY = {"name": TEXT, "models": TEXTS}

EXPECTED = {
    "sums": TABLE, "about": TABLE, "families": TABLE, "refusals": TABLE,
    "interfaces": TABLE, "class_enumerations": TABLE, "boolean": TABLES, "enumerations": TABLE,
}
EXPECTED_SUMS = {
    "enumerations": NUMBER, "members": NUMBER, "tables": NUMBER, "member_keys": NUMBER,
    "converters": NUMBER, "families": NUMBER, "models": NUMBER,
}
EXPECTED_ABOUT = {"methods": NUMBER, "refused_by_no_family": NUMBER}
EXPECTED_CLASS = {"tables": NUMBER, "with_tables": TEXTS, "without_tables": TEXTS}
EXPECTED_BOOLEAN = {"false_tokens": TEXTS, "true_tokens": TEXTS, "tables": NUMBER}
EXPECTED_ENUM = {"members": NUMBER, "tables": NUMBER}

CAPABILITIES = {"capability": TABLES}
CAPABILITY = {"class": TEXT, "names": TEXTS}

MESSAGES = {"prefix": TEXT, "ending": TEXT, "message": TABLES}
MESSAGE = {"code": NUMBER, "status": NUMBER, "help_context": NUMBER, "text": TEXT}

METADATA = {
    "driverName": TEXT, "identifier": TEXT, "vendor": TEXT, "description": TEXT, "revision": TEXT,
    "groupCapabilities": TEXTS, "defaultModel": TEXT, "specificationMajorVersion": NUMBER,
    "specificationMinorVersion": NUMBER, "supportsInterchangeCheck": FLAG, "supportsIdQuery": FLAG,
    "supportsReset": FLAG, "supportsSelfTest": FLAG, "supportsErrorQuery": FLAG,
    "selfTestTimeout": NUMBER, "disableTimeout": NUMBER, "resetTimeout": NUMBER,
    "maxCoercionRecords": NUMBER, "progId": TEXT, "helpFile": TEXT,
}


def check(problems: Problems, place: Callable[[str], Place], what: str, table: dict[str, Any],
          legal: dict[str, Kind], required: tuple[str, ...] = ()) -> dict[str, Any]:
    """The entries of `table` that are legal; the others are reported, and so is what is missing.

    `place` gives the place of a key of the table; of the table itself for an unknown one.
    """
    good: dict[str, Any] = {}
    for key, value in table.items():
        if key not in legal:
            problems.add(place(key), f"{what} has no key '{key}'{nearest(key, legal)}")
        elif not legal[key].accepts(value):
            problems.add(place(key), f"'{key}' of {what} has to be {legal[key].description}")
        else:
            good[key] = value
    for key in required:
        if key not in table:
            problems.add(place(""), f"{what} needs the key '{key}'")
    return good
