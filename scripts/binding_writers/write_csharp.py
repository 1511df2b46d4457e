# SPDX-License-Identifier: MIT
"""Writes the signatures for C# (P/Invoke)."""

from binding_writers.names import camel_case

_SCALARS = {
    "u8": "byte", "i16": "short", "u16": "ushort", "i32": "int", "u32": "uint", "i64": "long",
    "u64": "ulong", "uptr": "UIntPtr", "size": "UIntPtr", "f32": "float", "f64": "double",
    "void": "void",
}

# Records that functions take several of; of the others they take one.
_ELEMENT_RECORDS = {"OvraResponsePoint", "OvraChannelPolynomial"}
# Single numbers that functions write; other pointers to numbers are arrays.
_SINGLE_RESULTS = {"format", "stride", "taps", "stretch", "tap_count", "handle_out",
                   "rows_taken", "rows_written"}
_KEYWORDS = {"in", "out", "ref", "params", "object", "string", "base", "fixed"}

_HEAD = """// SPDX-License-Identifier: MIT
// Written by scripts/generate-bindings from the headers; not to be edited.
using System;
using System.Runtime.InteropServices;

namespace OvraBase
{
"""

_CLASS_HEAD = """    /// <summary>The functions of the library as they stand in its headers, which say what each
    /// does and answers. Images are arrays of bytes, or addresses for all other memory.</summary>
    public static class Native
    {
        private const string Library = "OvraBase";

"""


def _name(name):
    name = camel_case(name)
    return "@" + name if name in _KEYWORDS else name


def _scalar(interface, type_):
    if type_.kind == "record":
        return type_.name
    return _SCALARS[interface.aliases.get(type_.name, type_.name)]


def _pointer(interface, variable, addresses):
    type_ = variable.type
    if type_.pointers == 2:
        return "ref IntPtr"
    if type_.kind == "opaque" or type_.name == "void":
        return "IntPtr"
    if type_.kind == "record":
        return f"[In, Out] {type_.name}[]" if type_.name in _ELEMENT_RECORDS else f"ref {type_.name}"
    if type_.name == "u8":
        return "IntPtr" if addresses else "byte[]"
    if not type_.const and variable.name in _SINGLE_RESULTS:
        return f"out {_scalar(interface, type_)}"
    if type_.name == "uptr":
        return f"ref {_scalar(interface, type_)}"
    return f"{_scalar(interface, type_)}[]"


def _parameter(interface, variable, addresses):
    if variable.type.pointers:
        text = _pointer(interface, variable, addresses)
    else:
        text = _scalar(interface, variable.type)
    return f"{text} {_name(variable.name)}"


def _declaration(interface, function, addresses=False):
    result = "IntPtr" if function.result.pointers else _scalar(interface, function.result)
    parameters = ", ".join(_parameter(interface, p, addresses) for p in function.parameters)
    return (f"        [DllImport(Library)]\n"
            f"        public static extern {result} {function.name}({parameters});\n")


def _function(interface, function):
    texts = [_declaration(interface, function)]
    if any(p.type.pointers == 1 and p.type.name == "u8" for p in function.parameters):
        texts.append(_declaration(interface, function, addresses=True))
    return "\n".join(texts)


def _field(interface, variable):
    type_ = variable.type
    if type_.pointers:
        count = type_.extents[0] if type_.extents else 1
        names = [variable.name + str(i) for i in range(count)] if type_.extents else [variable.name]
        return "".join(f"        public IntPtr {name};\n" for name in names)
    if not type_.extents:
        return f"        public {_scalar(interface, type_)} {_name(variable.name)};\n"
    count = 1
    for extent in type_.extents:
        count *= extent
    return (f"        [MarshalAs(UnmanagedType.ByValArray, SizeConst = {count})]\n"
            f"        public {_scalar(interface, type_)}[] {_name(variable.name)};\n")


def _record(interface, record):
    fields = "".join(_field(interface, f) for f in record.fields)
    return (f"    [StructLayout(LayoutKind.Sequential, Pack = {record.alignment})]\n"
            f"    public struct {record.name}\n    {{\n{fields}    }}\n\n")


def _enumeration(enumeration):
    values = "".join(f"        {name} = {value},\n" for name, value in enumeration.values)
    return f"    public enum {enumeration.name}\n    {{\n{values}    }}\n\n"


def write(interface):
    named = [e for e in interface.enumerations if e.name]
    constants = [value for e in interface.enumerations if not e.name for value in e.values]
    parts = [_HEAD]
    parts += [_enumeration(e) for e in named]
    parts += [_record(interface, r) for r in interface.records]
    parts.append(_CLASS_HEAD)
    parts += [f"        public const int {name} = {value};\n" for name, value in constants]
    parts.append("\n")
    parts.append("\n".join(_function(interface, f) for f in interface.functions))
    parts.append("    }\n}\n")
    return "".join(parts)
