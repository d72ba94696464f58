"""The resolved model: complete records, with every default filled in. Emitters read these only."""

from dataclasses import dataclass, field

from generator.problems import Place

# What a template may have for the instance of a repeated capability, and what it becomes.
SELECTORS = {"<number>": "%d", "<index>": "%d", "<name>": "%s"}


@dataclass(frozen=True)
class ValueType:
    """The type of a property or a parameter."""

    kind: str  # "long", "double", "bool", "string", "enum", "interface" or "array"
    name: str = ""  # of the enumeration or interface; of an array's elements

    def __str__(self) -> str:
        if self.kind == "array":
            return f"{self.name}[]"
        return self.name or self.kind


@dataclass(frozen=True)
class Parameter:
    """One argument of an entry."""

    direction: str  # "in", "out" or "inout"
    type: ValueType
    name: str


@dataclass(frozen=True)
class Template:
    """A template as the format engine gets it."""

    text: str
    # For each conversion in order: "number", "index" or "name" for the instance, "" for a value.
    selectors: tuple[str, ...] = ()

    @property
    def selector(self) -> str:
        """The selector at the front, or ""."""
        return self.selectors[0] if self.selectors else ""


@dataclass(frozen=True)
class Target:
    """Another interface's member that an entry hands on to."""

    interface: str
    member: str


@dataclass
class Entry:
    """One entry point of an interface."""

    interface: str  # the interface that declares it
    member: str  # "Mode"
    name: str  # "get_Mode"
    shape: str  # "get", "put", "reference", "count", "item", "name" or "method"
    doc: str
    place: Place
    parameters: list[Parameter]
    command: Template | None = None
    reply: str | None = None
    is_query: bool = False
    has_hook: bool = False
    mapped: Target | None = None
    # For a method: the names of its parameters in the order of the template's conversions.
    order: list[str] = field(default_factory=list)
    refused: tuple[str, ...] = ()
    refused_list: str = ""  # the name of the list, where the model gives one
    needs_connection: bool = True
    simulated: bool = False
    collection: str = ""  # the class name of the instances
    variant: str = ""  # of its interface
    hook_interface: str = ""  # whose hooks are its own too

    @property
    def key(self) -> str:
        """The member key of enum tables and of simulated values: one for a getter and its setter."""
        name = self.name[4:] if self.name.startswith(("get_", "put_")) else self.name
        return f"{self.interface}.{name}"

    @property
    def value(self) -> ValueType:
        """The type of a property."""
        return self.parameters[-1].type

    def inputs(self) -> list[str]:
        """The names of the parameters that go into a method's template, in its order."""
        return [name for name in self.order if self.parameter(name).direction == "in"]

    def targets(self) -> list[str]:
        """The names of the parameters that a method's reply goes to, in its order."""
        return [name for name in self.order if self.parameter(name).direction != "in"]

    def parameter(self, name: str) -> Parameter:
        return next(p for p in self.parameters if p.name == name)


@dataclass
class Interface:
    name: str
    iid: str
    node: str
    doc: str
    place: Place
    file: str
    extends: str = ""
    external: bool = False
    # What stands for <variant> in the templates: it tells interfaces that are alike apart.
    variant: str = ""
    like: str = ""  # the interface that it has members and hooks from
    entries: list[Entry] = field(default_factory=list)  # its own, without those of its bases

    def members(self) -> list[str]:
        """Its members in their order, each once: a property with getter and setter is one."""
        return list(dict.fromkeys(entry.member for entry in self.entries))

    @property
    def origin(self) -> str:
        """The interface whose members and hooks it has: itself, or the one that it is like."""
        return self.like or self.name


@dataclass
class EnumTable:
    members: list[str]
    rows: list[tuple[int, list[str]]]
    place: Place


@dataclass
class EnumValue:
    name: str
    value: int
    doc: str
    place: Place


@dataclass
class Enum:
    name: str
    short: str
    doc: str
    place: Place
    file: str
    values: list[EnumValue]
    tables: list[EnumTable]
    platform: bool = False  # a type of the platform, which gets no header

    def table_count(self) -> int:
        """The tables, counted once for each member that has one."""
        return sum(len(table.members) for table in self.tables)

    def names(self) -> list[str]:
        """The words that a format may name it by."""
        if self.platform:
            return [self.name]
        bare = self.name.removesuffix("Enum")
        return [self.short, self.name, bare, f"{self.short}Enum"]


@dataclass
class Family:
    name: str
    models: list[str]
    place: Place


@dataclass
class ExpectedNumber:
    """A number that the finished model comes to."""

    number: int
    place: Place


@dataclass
class ExpectedEnum:
    """What one enumeration comes to; a table is counted once for each member."""

    members: int
    tables: int
    place: Place


@dataclass
class BooleanWords:
    """The tokens of a boolean table, and how many members have such a one."""

    false_tokens: list[str]
    true_tokens: list[str]
    tables: int
    place: Place


@dataclass
class Expected:
    """What the finished model comes to."""

    place: Place
    sums: dict[str, ExpectedNumber]
    about: dict[str, ExpectedNumber]
    families: dict[str, ExpectedNumber]  # models of each
    refusals: dict[str, ExpectedNumber]  # entries of each list
    interfaces: dict[str, ExpectedNumber]  # members of each that is complete
    enums: dict[str, ExpectedEnum]
    booleans: list[BooleanWords]
    class_place: Place
    class_tables: int  # of all enumerations of the class together
    class_with_tables: list[str]
    class_without_tables: list[str]

    def class_enums(self) -> list[str]:
        return self.class_with_tables + self.class_without_tables


@dataclass
class Capability:
    class_name: str
    names: list[str]
    place: Place


@dataclass
class Message:
    code: int
    status: int
    help_context: int
    text: str
    place: Place


@dataclass
class Model:
    interfaces: dict[str, Interface]
    enums: list[Enum]
    families: list[Family]
    supported_models: list[str]
    refusals: dict[str, tuple[str, ...]]
    refusal_places: dict[str, Place]
    capabilities: list[Capability]
    messages: list[Message]
    metadata: dict[str, str | int | bool]
    expected: Expected
    files: list[str]

    def chain(self, interface: Interface) -> list[Interface]:
        """The interface's bases, the root first, and itself at the end.

        A base that is missing or comes back to itself ends the chain; the checks report it.
        """
        found = [interface]
        while base := self.interfaces.get(found[0].extends):
            if base in found:
                break
            found.insert(0, base)
        return found

    def all_entries(self, interface: Interface) -> list[Entry]:
        """Its entries with those of its bases, in the order of the slots."""
        return [entry for part in self.chain(interface) for entry in part.entries]

    def nodes(self) -> list[str]:
        """The nodes that have interfaces: the root and classes of repeated capabilities."""
        found: list[str] = []
        for interface in self.interfaces.values():
            if not interface.external and interface.node not in found:
                found.append(interface.node)
        return found

    def node_interfaces(self, node: str) -> list[Interface]:
        return [i for i in self.interfaces.values() if i.node == node and not i.external]

    def find_enum(self, word: str) -> Enum | None:
        """The enumeration that a format means by a word; the first one wins."""
        lowered = word.lower()
        for enum in self.enums:
            if lowered in (name.lower() for name in enum.names()):
                return enum
        return None
