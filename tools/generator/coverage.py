"""What the model holds, in numbers."""

from collections import Counter

from generator.records import Model


def coverage(model: Model) -> list[str]:
    """One line for each number: a name, and the number behind it."""
    interfaces = [i for i in model.interfaces.values() if not i.external]
    entries = [entry for interface in interfaces for entry in interface.entries]
    lines = [
        f"interfaces {len(interfaces)}",
        f"external interfaces {len(model.interfaces) - len(interfaces)}",
        f"members {len({entry.key for entry in entries})}",
        f"entries {len(entries)}",
        f"hooks {sum(entry.has_hook for entry in entries)}",
        f"enumerations {len(model.enums)}",
        f"enumeration values {sum(len(enum.values) for enum in model.enums)}",
        f"tables {sum(len(enum.tables) for enum in model.enums)}",
        f"member keys {sum(len(table.members) for enum in model.enums for table in enum.tables)}",
    ]
    lines += [f"member keys of {enum.name} {sum(len(table.members) for table in enum.tables)}"
              for enum in model.enums]
    lines += [
        f"families {len(model.families)}",
        f"models {sum(len(family.models) for family in model.families)}",
        f"repeated capabilities {len(model.capabilities)}",
        f"instances {sum(len(capability.names) for capability in model.capabilities)}",
        f"messages {len(model.messages)}",
    ]
    refused = Counter(entry.refused_list or ", ".join(entry.refused)
                      for entry in entries if entry.refused)
    lines += [f"entries refused by {name} {refused[name]}" for name in model.refusals]
    lines += [f"entries refused by {name} {count}" for name, count in sorted(refused.items())
              if name not in model.refusals]
    return lines
