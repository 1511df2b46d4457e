# SPDX-License-Identifier: MIT
"""Writes the signatures for Python's ctypes."""

from binding_writers.names import snake_case, without_common_prefix

_SCALARS = {
    "u8": "c_uint8", "i16": "c_int16", "u16": "c_uint16", "i32": "c_int32", "u32": "c_uint32",
    "i64": "c_int64", "u64": "c_uint64", "uptr": "c_size_t", "size": "c_size_t",
    "f32": "c_float", "f64": "c_double",
}

_HEAD = '''# SPDX-License-Identifier: MIT
# Written by scripts/generate-bindings from the headers; not to be edited.
"""The functions of the library as they stand in its headers, under names in snake case.

Arguments are what ctypes takes: numbers, and pointers as ctypes objects, addresses or None. The
headers say what each function does and answers.
"""

import ctypes
import enum
'''


def _type(interface, type_):
    if type_.name == "char":
        text = "ctypes.c_char_p"
        return text
    if type_.pointers:
        # Addresses of any kind: arrays, byref(...), integers, None.
        return "ctypes.c_void_p"
    if type_.kind == "record":
        text = type_.name.removeprefix("Ovra")
    else:
        name = interface.aliases.get(type_.name, type_.name)
        text = "None" if name == "void" else f"ctypes.{_SCALARS[name]}"
    for extent in reversed(type_.extents):
        text = f"{text} * {extent}" if "*" not in text else f"({text}) * {extent}"
    return text


def _field_type(interface, type_):
    if not (type_.pointers and type_.extents):
        return _type(interface, type_)
    return "ctypes.c_void_p" + "".join(f" * {extent}" for extent in type_.extents)


def _enumeration(enumeration):
    names = [name for name, _ in enumeration.values]
    if not enumeration.name:
        return "\n" + "".join(f"{name.removeprefix('OVRA_')} = {value}\n" for name, value in enumeration.values)
    lines = [f"\n\nclass {enumeration.name.removeprefix('Ovra')}(enum.IntEnum):"]
    for short, (_, value) in zip(without_common_prefix(names), enumeration.values):
        lines.append(f"    {short} = {value}")
    return "\n".join(lines) + "\n"


def _record(interface, record):
    pack = f"    _pack_ = {record.alignment}\n" if record.packed else ""
    fields = "".join(f'        ("{f.name}", {_field_type(interface, f.type)}),\n' for f in record.fields)
    return (f"\n\nclass {record.name.removeprefix('Ovra')}(ctypes.Structure):\n{pack}"
            f"    _fields_ = [\n{fields}    ]\n")


def _function(interface, function):
    arguments = "".join(f"\n            {_type(interface, p.type)},  # {p.name}" for p in function.parameters)
    arguments = f"[{arguments}\n        ]" if arguments else "[]"
    return (f"        self.{snake_case(function.name)} = library.{function.name}\n"
            f"        self.{snake_case(function.name)}.restype = {_type(interface, function.result)}\n"
            f"        self.{snake_case(function.name)}.argtypes = {arguments}\n")


def write(interface):
    parts = [_HEAD]
    parts += [_enumeration(e) for e in interface.enumerations]
    parts += [_record(interface, r) for r in interface.records]
    parts.append('\n\nclass Functions:\n    """All functions of a loaded library."""\n\n'
                 "    def __init__(self, library: ctypes.CDLL) -> None:\n")
    parts += [_function(interface, f) for f in interface.functions]
    return "".join(parts)
