# SPDX-License-Identifier: MIT
"""Writes an import unit for Pascal."""

_SCALARS = {
    "u8": "Byte", "i16": "SmallInt", "u16": "Word", "i32": "LongInt", "u32": "LongWord",
    "i64": "Int64", "u64": "QWord", "uptr": "PtrUInt", "size": "PtrUInt", "f32": "Single",
    "f64": "Double",
}
_POINTERS = {
    "u8": "PByte", "i16": "PSmallInt", "u16": "PWord", "i32": "PLongInt", "u32": "PLongWord",
    "uptr": "PPtrUInt", "size": "PPtrUInt", "f32": "PSingle", "f64": "PDouble", "void": "Pointer",
    "char": "PAnsiChar",
}
_KEYWORDS = {"in", "out", "type", "record", "end", "file", "set", "unit", "mod", "string"}
_LINE = 100

_HEAD = """{ SPDX-License-Identifier: MIT }
{ Written by scripts/generate-bindings from the headers; not to be edited. }
{ The functions of the library as they stand in its headers, which say what each does and answers. }
unit OvraBase;

{$ifdef FPC}
{$mode objfpc}
{$endif}

interface

const
{$ifdef MSWINDOWS}
  OvraLibrary = 'OvraBase.dll';
{$else}
  OvraLibrary = 'libOvraBase.so.0';
{$endif}

"""

_CONVENTION = "{$ifdef MSWINDOWS}stdcall{$else}cdecl{$endif}"


def _name(name):
    return name + "_" if name.lower() in _KEYWORDS else name


def _own(name):
    return "T" + name


def _type(type_):
    if type_.kind == "scalar":
        if not type_.pointers:
            return _SCALARS[type_.name]
        return "P" * (type_.pointers - 1) + _POINTERS[type_.name]
    return "P" * type_.pointers + type_.name if type_.pointers else _own(type_.name)


def _array(type_):
    text = _type(type_)
    for extent in reversed(type_.extents):
        text = f"array[0..{extent - 1}] of {text}"
    return text


def _record(record):
    fields = "".join(f"    {_name(f.name)}: {_array(f.type)};\n" for f in record.fields)
    pack = "{$packrecords %s}\n" % (record.alignment if record.packed else "C")
    return (f"{pack}  {_own(record.name)} = record\n{fields}  end;\n"
            f"  P{record.name} = ^{_own(record.name)};\n\n")


def _wrapped(first, pieces, last):
    lines, line = [], first
    for i, piece in enumerate(pieces):
        piece += "; " if i + 1 < len(pieces) else ""
        if len(line) + len(piece) > _LINE:
            lines.append(line.rstrip())
            line = "  "
        line += piece
    if len(line) + len(last) > _LINE:
        lines.append(line.rstrip())
        line = "  "
    lines.append(line + last)
    return "\n".join(lines)


def _function(function):
    parameters = [f"{_name(p.name)}: {_type(p.type)}" for p in function.parameters]
    nothing = function.result.name == "void" and not function.result.pointers
    word = "procedure" if nothing else "function"
    opening, closing = ("(", ")") if parameters else ("", "")
    result = "" if nothing else f": {_type(function.result)}"
    head = f"{word} {function.name}{opening}"
    return _wrapped(head, parameters, f"{closing}{result};") + f"\n  {_CONVENTION}; external OvraLibrary;\n\n"


def write(interface):
    parts = [_HEAD]
    for enumeration in interface.enumerations:
        if enumeration.name:
            parts.append(f"  {{ {enumeration.name} }}\n")
        parts += [f"  {name} = {value};\n" for name, value in enumeration.values]
        parts.append("\n")
    parts.append("type\n")
    for name, scalar in interface.aliases.items():
        parts.append(f"  {_own(name)} = {_SCALARS[scalar]};\n  P{name} = ^{_own(name)};\n")
    for name in interface.opaques:
        parts.append(f"  {_own(name)} = record end;\n  P{name} = ^{_own(name)};\n  PP{name} = ^P{name};\n")
    parts.append("\n")
    parts += [_record(r) for r in interface.records]
    parts += [_function(f) for f in interface.functions]
    parts.append("implementation\n\nend.\n")
    return "".join(parts)
