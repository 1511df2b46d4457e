# SPDX-License-Identifier: MIT
"""The interface of the library, read from its headers: the one description that all bindings come from."""

import dataclasses
import pathlib

from clang import cindex

Kind = cindex.CursorKind
Types = cindex.TypeKind

# Names of the scalar types as the writers know them, by the type's name in C.
_SCALARS = {
    "uint8_t": "u8", "int16_t": "i16", "uint16_t": "u16", "int32_t": "i32", "uint32_t": "u32",
    "int64_t": "i64", "uint64_t": "u64", "uintptr_t": "uptr", "size_t": "size",
    "float": "f32", "double": "f64", "char": "char", "void": "void",
}


@dataclasses.dataclass(frozen=True)
class Type:
    """A scalar (by one of the names above, or of a typedef), a record or an opaque record, with
    stars of indirection and, in fields, array extents."""

    name: str
    kind: str  # "scalar", "alias", "record" or "opaque"
    pointers: int = 0
    const: bool = False  # what the innermost pointer points to may not be written
    extents: tuple = ()


@dataclasses.dataclass(frozen=True)
class Variable:
    name: str
    type: Type


@dataclasses.dataclass(frozen=True)
class Function:
    name: str
    result: Type
    parameters: tuple


@dataclasses.dataclass(frozen=True)
class Record:
    name: str
    fields: tuple
    alignment: int
    packed: bool  # closer than the fields' own alignments ask for


@dataclasses.dataclass(frozen=True)
class Enumeration:
    name: str  # empty where the header gives none
    values: tuple  # of (name, number)


@dataclasses.dataclass
class Interface:
    aliases: dict = dataclasses.field(default_factory=dict)  # name -> scalar
    enumerations: list = dataclasses.field(default_factory=list)
    opaques: list = dataclasses.field(default_factory=list)
    records: list = dataclasses.field(default_factory=list)
    functions: list = dataclasses.field(default_factory=list)


class InterfaceError(Exception):
    """The headers hold something that the bindings cannot say."""


class _Reader:
    def __init__(self):
        self.interface = Interface()

    def type_of(self, c_type):
        extents = []
        while c_type.kind == Types.CONSTANTARRAY:
            extents.append(c_type.element_count)
            c_type = c_type.element_type
        pointers = 0
        while c_type.kind == Types.POINTER:
            pointers += 1
            c_type = c_type.get_pointee()
        name = c_type.spelling.removeprefix("const ").removeprefix("struct ")
        return Type(name=_SCALARS.get(name, name), kind=self._kind_of(name), pointers=pointers,
                    const=c_type.is_const_qualified(), extents=tuple(extents))

    def _kind_of(self, name):
        if name in _SCALARS:
            return "scalar"
        if name in self.interface.aliases:
            return "alias"
        if name in self.interface.opaques:
            return "opaque"
        if any(record.name == name for record in self.interface.records):
            return "record"
        raise InterfaceError(f"unknown type {name}")

    def read(self, cursor):
        if cursor.kind == Kind.TYPEDEF_DECL:
            self._read_typedef(cursor)
        elif cursor.kind == Kind.ENUM_DECL:
            self._read_enumeration(cursor)
        elif cursor.kind == Kind.FUNCTION_DECL and cursor.storage_class != cindex.StorageClass.STATIC:
            parameters = tuple(Variable(p.spelling, self.type_of(p.type)) for p in cursor.get_arguments())
            self.interface.functions.append(
                Function(cursor.spelling, self.type_of(cursor.result_type), parameters))

    def _read_typedef(self, cursor):
        target = cursor.underlying_typedef_type
        declaration = target.get_declaration()
        if target.spelling in _SCALARS:
            self.interface.aliases[cursor.spelling] = _SCALARS[target.spelling]
        elif declaration.kind == Kind.STRUCT_DECL:
            self._read_record(cursor.spelling, declaration)
        elif declaration.kind != Kind.ENUM_DECL:
            raise InterfaceError(f"cannot say the type {cursor.spelling}")

    def _read_record(self, name, declaration):
        definition = declaration.get_definition()
        if definition is None:
            self.interface.opaques.append(name)
            return
        fields = tuple(Variable(f.spelling, self.type_of(f.type)) for f in definition.type.get_fields())
        alignment = definition.type.get_align()
        natural = max(f.type.get_align() for f in definition.type.get_fields())
        self.interface.records.append(Record(name, fields, alignment, alignment < natural))

    def _read_enumeration(self, cursor):
        values = tuple((v.spelling, v.enum_value) for v in cursor.get_children())
        name = "" if cursor.is_anonymous() or "(" in cursor.spelling else cursor.spelling
        self.interface.enumerations.append(Enumeration(name, values))


def read_interface(include):
    """Reads ovra/ovra.h in this folder of headers."""
    include = pathlib.Path(include)
    index = cindex.Index.create()
    arguments = ["-x", "c", "-std=c99", "-m64", f"-I{include}"]
    unit = index.parse(str(include / "ovra" / "ovra.h"), args=arguments)
    errors = [str(d) for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        raise InterfaceError("\n".join(errors))
    reader = _Reader()
    for cursor in unit.cursor.get_children():
        if cursor.location.file and cursor.location.file.name.startswith(str(include)):
            reader.read(cursor)
    reader.interface.functions.sort(key=lambda function: function.name)
    return reader.interface
