"""Makes the entry points of one interface from its members, with every default filled in."""

from typing import Any

from generator import schema
from generator.formats import FormatError
from generator.load import File
from generator.problems import Place, Problems, nearest
from generator.records import Entry, Interface, Parameter, Target, Template, ValueType
from generator.templates import make_template, reply_conversion, set_conversion

_PLAIN_TYPES = ("long", "double", "bool", "string")
_ARRAY_TYPES = ("double[]", "long[]")
_DIRECTIONS = ("in", "out", "inout")
_ACCESS = ("r", "w", "rw")
_VARIANT = "<variant>"
_PROPERTY_HOOKS = ("get", "put", "both")
_COLLECTION_ARGS = {"count": [], "item": ["string Name"], "name": ["long Index"]}


class Names:
    """What a type in the model can name."""

    def __init__(self, enums: list[str], interfaces: list[str]) -> None:
        self.enums = set(enums)
        self.interfaces = set(interfaces)

    def find_type(self, text: str) -> ValueType | None:
        if text in _PLAIN_TYPES:
            return ValueType(text)
        if text in _ARRAY_TYPES:
            return ValueType("array", text.removesuffix("[]"))
        if text in self.enums:
            return ValueType("enum", text)
        if text in self.interfaces:
            return ValueType("interface", text)
        return None

    def legal(self) -> list[str]:
        return [*_PLAIN_TYPES, *_ARRAY_TYPES, *self.enums, *self.interfaces]


class Refusals:
    """Which families refuse a member: what it says itself, or what its interface says for all."""

    def __init__(self, lists: dict[str, tuple[str, ...]], default: str, interface: str,
                 place: Place, problems: Problems) -> None:
        self._lists = lists
        self._problems = problems
        self._default, self._default_list = (
            self._named(default, interface, place) if default else ((), ""))

    def find(self, said: str | list[str] | None, title: str,
             place: Place) -> tuple[tuple[str, ...], str]:
        """The families, and the name of the list that they stand in where there is one."""
        if said is None:
            return self._default, self._default_list
        return self._named(said, title, place) if isinstance(said, str) else (tuple(said), "")

    def _named(self, name: str, title: str, place: Place) -> tuple[tuple[str, ...], str]:
        if name in self._lists:
            return self._lists[name], name
        self._problems.add(place, f"{title}: there is no refusal list '{name}'"
                           f"{nearest(name, self._lists)}")
        return (), ""


class MemberResolver:
    """Resolves the members of one interface."""

    def __init__(self, interface: Interface, collection: str, class_compliant: bool, file: File,
                 names: Names, refusals: Refusals, problems: Problems) -> None:
        self._interface = interface
        self._collection = collection
        self._class_compliant = class_compliant
        self._file = file
        self._names = names
        self._refusals = refusals
        self._problems = problems

    def resolve(self, name: str, table: dict[str, Any]) -> list[Entry]:
        """The entries of one member; fewer where it has errors."""
        path = (self._interface.origin, "members", name)
        return _Member(self, name, path, table).entries()


class _Member:
    """One member while it is resolved."""

    def __init__(self, owner: MemberResolver, name: str, path: tuple[str, ...],
                 table: dict[str, Any]) -> None:
        self._owner = owner
        self._name = name
        self._path = path
        self._title = f"{owner._interface.name}.{name}"
        self._keys = owner._file.check(owner._problems, self._title, path, table, schema.MEMBER)
        for key in ("path", "get", "set"):
            if key in self._keys:
                self._keys[key] = self._with_variant(self._keys[key], key)

    def entries(self) -> list[Entry]:
        if "doc" not in self._keys:
            self._error("", f"{self._title} needs the key 'doc'")
        if "collection" in self._keys:
            return self._collection()
        if "type" in self._keys:
            value = self._type(self._keys["type"], "type")
            if value is None:
                return []
            if "args" in self._keys:
                return self._indexed_property(value)
            return self._reference(value) if value.kind == "interface" else self._property(value)
        if "args" in self._keys or "hook" in self._keys or "set" in self._keys:
            return self._method()
        self._error("", f"{self._title} needs 'type' as a property, or 'args', 'set' or 'hook' as"
                    " a method")
        return []

    # Pieces.

    def _error(self, key: str, message: str) -> None:
        self._owner._problems.add(self._place(key), message)

    def _place(self, key: str = "") -> Place:
        return self._owner._file.place(*self._path, key)

    def _with_variant(self, text: str, key: str) -> str:
        variant = self._owner._interface.variant
        if _VARIANT in text and not variant:
            self._error(key, f"{self._title}: '{_VARIANT}' needs the key 'variant' of"
                        f" {self._owner._interface.name}")
        return text.replace(_VARIANT, variant)

    def _type(self, text: str, key: str) -> ValueType | None:
        found = self._owner._names.find_type(text)
        if found is None:
            self._error(key, f"{self._title}: there is no type '{text}'"
                        f"{nearest(text, self._owner._names.legal())}")
        return found

    def _forbid(self, what: str, *keys: str) -> None:
        for key in keys:
            if key in self._keys:
                self._error(key, f"{self._title}: {what} has no '{key}'")

    def _choice(self, key: str, legal: tuple[str, ...], default: str) -> str:
        word = self._keys.get(key, default)
        if word in legal or word == default:
            return word
        self._error(key, f"{self._title}: '{key}' can't be '{word}'{nearest(word, legal)}")
        return default

    def _template(self, text: str | None, key: str) -> Template | None:
        if text is None:
            return None
        try:
            return make_template(text)
        except FormatError as error:
            self._error(key, f"{self._title}: '{text}': {error}")
            return None

    def _entry(self, name: str, shape: str, parameters: list[Parameter]) -> Entry:
        # A getter and a setter may differ.
        key = f"refuses_{shape}" if f"refuses_{shape}" in self._keys else "refuses"
        families, refused_list = self._owner._refusals.find(self._keys.get(key), self._title,
                                                            self._place(key))
        is_value = shape in ("get", "put")
        if "simulated" in self._keys and not is_value:
            self._error("simulated", f"{self._title}: only a property with a value of its own can"
                        " be simulated")
        return Entry(
            interface=self._owner._interface.name, member=self._name, name=name, shape=shape,
            doc=self._keys.get("doc", ""), place=self._place(), parameters=parameters,
            refused=families, refused_list=refused_list,
            variant=self._owner._interface.variant,
            hook_interface=self._owner._interface.origin,
            needs_connection=self._keys.get("connection", True),
            simulated=is_value and self._keys.get("simulated", self._owner._class_compliant))

    # Shapes.

    def _collection(self) -> list[Entry]:
        role = self._keys["collection"]
        if role not in _COLLECTION_ARGS:
            self._error("collection", f"{self._title}: a collection has no '{role}'"
                        f"{nearest(role, _COLLECTION_ARGS)}")
            return []
        if not self._owner._collection:
            self._error("collection", f"{self._title}: {self._owner._interface.name} is no collection: it needs"
                        " the key 'collection' with the class of its instances")
            return []
        self._forbid("a collection's member", "path", "get", "reply", "set", "order", "access",
                     "hook", "map", "refuses_get", "refuses_put")
        value = self._type(self._keys.get("type", ""), "type")
        expected = {"count": "long", "item": "interface", "name": "string"}[role]
        if value is None:
            return []
        if value.kind != expected:
            self._error("type", f"{self._title}: '{role}' of a collection gives"
                        f" {'an interface' if expected == 'interface' else expected}")
        if self._keys.get("args", []) != _COLLECTION_ARGS[role]:
            self._error("args", f"{self._title}: '{role}' of a collection takes"
                        f" {_COLLECTION_ARGS[role]}")
            return []
        parameters = self._arguments()
        entry = self._entry(f"get_{self._name}", role,
                            [*parameters, Parameter("out", value, "val")])
        entry.collection = self._owner._collection
        return [entry]

    def _reference(self, value: ValueType) -> list[Entry]:
        self._forbid("a reference to an interface", "path", "get", "reply", "set", "order",
                     "access", "hook", "map", "refuses_get", "refuses_put")
        return [self._entry(f"get_{self._name}", "reference", [Parameter("out", value, "val")])]

    def _property(self, value: ValueType) -> list[Entry]:
        self._forbid("a property", "order")
        hook = self._choice("hook", _PROPERTY_HOOKS, "")
        access = self._choice("access", _ACCESS, self._default_access(hook))
        if not access:
            self._error("", f"{self._title} can be neither read nor written: it needs 'path',"
                        " 'get', 'set', 'map' or 'hook'")
        self._check_keys_against_access(access, hook)
        entries = []
        if "r" in access:
            entries.append(self._getter(value, hook in ("get", "both")))
        if "w" in access:
            entries.append(self._setter(value, hook in ("put", "both")))
        return [entry for entry in entries if entry is not None]

    def _indexed_property(self, value: ValueType) -> list[Entry]:
        """A property of which there are several: its entries take what tells them apart, and are
        called as methods are."""
        self._forbid("a property with 'args'", "map", "simulated", "order")
        if value.kind == "interface":
            self._error("args", f"{self._title}: a reference to an interface has no 'args'")
            return []
        if not self._keys["args"]:
            self._error("args", f"{self._title}: a property without 'args' leaves them out")
            return []
        index = self._arguments()
        if any(parameter.direction != "in" for parameter in index):
            self._error("args", f"{self._title}: the 'args' of a property are what tells its values"
                        " apart, and nothing comes out of them")
            return []
        entries = self._property(value)
        for entry in entries:
            entry.simulated = False
            entry.shape = "method"
            entry.parameters = [*index, *entry.parameters]
            entry.order = [parameter.name for parameter in entry.parameters]
        return entries

    def _default_access(self, hook: str) -> str:
        if "path" in self._keys or "map" in self._keys:
            return "rw"
        read = "r" if "get" in self._keys or hook in ("get", "both") else ""
        write = "w" if "set" in self._keys or hook in ("put", "both") else ""
        return read + write

    def _check_keys_against_access(self, access: str, hook: str) -> None:
        if access == "r":
            self._forbid("a property that is only read", "set", "refuses_put")
        if access == "w":
            self._forbid("a property that is only written", "get", "reply", "refuses_get")
        if access and hook == "both" and access != "rw" or access and hook in ("get", "put") and (
                {"get": "r", "put": "w"}[hook] not in access):
            self._error("hook", f"{self._title}: a property with the access '{access}' has no"
                        f" hook '{hook}'")
        if "map" in self._keys:
            self._forbid("a mapped property", "path", "get", "reply", "set")
        if "reply" in self._keys and "get" not in self._keys and "path" not in self._keys:
            self._error("reply", f"{self._title}: 'reply' needs a query: 'get' or 'path'")

    def _getter(self, value: ValueType, has_hook: bool) -> Entry:
        entry = self._entry(f"get_{self._name}", "get", [Parameter("out", value, "val")])
        query = self._keys.get("get")
        if query is None and "path" in self._keys:
            query = self._keys["path"] + "?"
        entry.is_query = query is not None
        entry.command = self._template(query, "get" if "get" in self._keys else "path")
        if query is not None:
            entry.reply = self._keys.get("reply", reply_conversion(value))
        self._finish(entry, query, has_hook, "read")
        return entry

    def _setter(self, value: ValueType, has_hook: bool) -> Entry:
        entry = self._entry(f"put_{self._name}", "put", [Parameter("in", value, "val")])
        line = self._keys.get("set")
        if line is None and "path" in self._keys:
            line = f"{self._keys['path']} {set_conversion(value)}"
        entry.command = self._template(line, "set" if "set" in self._keys else "path")
        self._finish(entry, line, has_hook, "written")
        return entry

    def _finish(self, entry: Entry, template: str | None, has_hook: bool, how: str) -> None:
        entry.has_hook = has_hook
        target = self._keys.get("map")
        if target is not None and not has_hook:
            interface, _, member = target.rpartition(".")
            entry.mapped = Target(interface, member)
        if template is None and entry.mapped is None and not has_hook:
            self._error("access", f"{self._title} has nothing by which it is {how}")

    def _method(self) -> list[Entry]:
        self._forbid("a method", "path", "map", "access", "refuses_get", "refuses_put")
        hook = self._choice("hook", ("call",), "")
        entry = self._entry(self._name, "method", self._arguments())
        entry.has_hook = hook == "call"
        if "get" in self._keys and "set" in self._keys:
            self._error("set", f"{self._title}: a method has 'get' or 'set', not both")
        if "reply" in self._keys and "get" not in self._keys:
            self._error("reply", f"{self._title}: 'reply' needs the query 'get'")
        if "get" in self._keys and "reply" not in self._keys and not entry.has_hook:
            self._error("get", f"{self._title}: a query needs 'reply'")
        key = "get" if "get" in self._keys else "set"
        if key not in self._keys and not entry.has_hook:
            self._error("", f"{self._title} does nothing: it needs 'set', 'get' or 'hook'")
        entry.is_query = "get" in self._keys
        entry.command = self._template(self._keys.get(key), key)
        entry.reply = self._keys.get("reply") if entry.is_query else None
        entry.order = self._order(entry)
        return [entry]

    def _order(self, entry: Entry) -> list[str]:
        names = [parameter.name for parameter in entry.parameters]
        if "order" not in self._keys:
            return names
        order: list[str] = self._keys["order"]
        for name in order:
            if name not in names:
                self._error("order", f"{self._title} has no parameter '{name}'"
                            f"{nearest(name, names)}")
            elif order.count(name) > 1 and entry.parameter(name).direction != "in":
                # A value may be written more than once; it is read into one place.
                self._error("order", f"{self._title}: 'order' names '{name}' twice")
        for name in names:
            if name not in order and not entry.has_hook:
                self._error("order", f"{self._title}: 'order' leaves out '{name}'")
        return [name for name in order if name in names]

    def _arguments(self) -> list[Parameter]:
        found: list[Parameter] = []
        for text in self._keys.get("args", []):
            words = text.split()
            direction = words.pop(0) if words and words[0] in _DIRECTIONS else "in"
            if len(words) != 2 or not words[1].isidentifier():
                self._error("args", f"{self._title}: '{text}' is no 'type Name', 'out type Name' or"
                            " 'inout type Name'")
                continue
            value = self._type(words[0], "args")
            if value is None:
                continue
            if words[1] in (parameter.name for parameter in found):
                self._error("args", f"{self._title} has two parameters '{words[1]}'")
            found.append(Parameter(direction, value, words[1]))
        return found


