# SPDX-License-Identifier: MIT
"""Colour conversion: cubes, tables, polynomials and matrices.

Each family has, as in C, an _init that prepares a conversion, the conversion itself, a _free, and all
in one as _single_step. Images are (height, width, 3); `threads` converts that many bands of rows at
the same time.
"""

from __future__ import annotations

import ctypes
import dataclasses
from typing import Callable, Optional, Sequence

import numpy

from .arrays import PACKED, Array, Call, Kind, address, channels_of, dtype_of, format_code, kind_of
from .bands import run_in_bands
from .library import Context, check, functions
from .native import ChannelPolynomial, ChannelTableSet, ColorMatrix, ColorModel
from .native import ColorCube as NativeCube

RGB8 = Kind(8, ColorModel.RGB)


@dataclasses.dataclass
class ColorCube:
    """A lattice (count0, count1, count2, output channels) of uint16 and its grid positions."""

    grids: Sequence[Array]
    lattice: Array

    def __post_init__(self) -> None:
        self.grids = [numpy.ascontiguousarray(grid, numpy.uint16) for grid in self.grids]
        self.lattice = numpy.ascontiguousarray(self.lattice, numpy.uint16)
        if self.lattice.shape[:3] != tuple(grid.size for grid in self.grids):
            raise ValueError("the lattice has one node for each point of the three grids")

    def native(self) -> NativeCube:
        counts = [grid.size for grid in self.grids]
        addresses = [grid.ctypes.data for grid in self.grids]
        return NativeCube(counts[0], addresses[0], counts[1], addresses[1], counts[2], addresses[2],
                          self.lattice.ctypes.data)


def _output_channels(kind: Kind) -> int:
    return 4 if kind.model == ColorModel.CMYK else 3


def _context(init: Callable[..., int], free: Callable[..., int], data: Callable[[], object],
             in_kind: Kind, out_kind: Kind) -> Context:
    """data() is the argument that _init takes; called for each context that is made."""

    def make(in_format: int, out_format: int, out: object) -> None:
        check(init(in_format, out_format, data(), out))

    context = Context(make, free, in_kind, out_kind)
    try:
        context.handle(format_code(in_kind, 3, PACKED),
                       format_code(out_kind, _output_channels(out_kind), PACKED))
    except BaseException:
        context.close()
        raise
    return context


def _convert(function: Callable[..., int], source: Array, context: Context,
             destination: Optional[Array], threads: int) -> Array:
    in_kind = kind_of(source, context.in_kind.model, context.in_kind.depth)
    out_kind = context.out_kind
    channels = _output_channels(out_kind)
    call = Call([source], source.shape[:2] + (channels,), dtype_of(out_kind.depth), destination)
    in_format = format_code(in_kind, channels_of(source), call.layout)
    out_format = format_code(out_kind, channels, call.layout)
    handle = context.handle(in_format, out_format)
    height, width = source.shape[:2]

    def run(first: int, last: int) -> None:
        check(function(address(call.sources[0][first:last]), address(call.destination[first:last]),
                       width, last - first, in_format, out_format, handle))

    run_in_bands(height, threads, run)
    return call.result()


def conv_color_cube_init(cube: ColorCube, in_kind: Kind = RGB8, out_kind: Kind = RGB8) -> Context:
    """Prepares conversions through a cube."""
    if cube.lattice.ndim != 4 or cube.lattice.shape[3] != _output_channels(out_kind):
        raise ValueError("the nodes of the lattice have one component for each channel of the output")
    return _context(functions.conv_color_cube_init, functions.conv_color_cube_free,
                    lambda: ctypes.byref(cube.native()), in_kind, out_kind)


def conv_color_cube(source: Array, context: Context, *, destination: Optional[Array] = None,
                    threads: int = 1) -> Array:
    """Converts an image through a prepared cube."""
    return _convert(functions.conv_color_cube, source, context, destination, threads)


def conv_color_cube_single_step(source: Array, cube: ColorCube, in_kind: Kind = RGB8,
                                out_kind: Kind = RGB8, *, destination: Optional[Array] = None,
                                threads: int = 1) -> Array:
    """Prepares, converts and releases."""
    with conv_color_cube_init(cube, in_kind, out_kind) as context:
        return conv_color_cube(source, context, destination=destination, threads=threads)


def cascade_3d(first: ColorCube, second: ColorCube) -> None:
    """Makes `first` do what both did in sequence, in place."""
    if first.lattice.shape[3:] != (3,) or second.lattice.shape[3:] != (3,):
        raise ValueError("the nodes of both lattices have three components")
    check(functions.cascade_3d(ctypes.byref(first.native()), ctypes.byref(second.native())))


def conv_color_1d_tbl_init(tables: Sequence[Array], in_kind: Kind = RGB8,
                           out_kind: Kind = RGB8) -> Context:
    """Prepares conversions by three tables, of red, green and blue, with 2^depth output values."""
    entries = [numpy.ascontiguousarray(table, numpy.uint16) for table in tables]
    if len(entries) != 3 or any(table.size != 1 << in_kind.depth for table in entries):
        raise ValueError("three tables with an entry for each input value are needed")

    def data() -> object:
        addresses = (ctypes.c_void_p * 3)(*[table.ctypes.data for table in entries])
        return ctypes.byref(ChannelTableSet(addresses))

    return _context(functions.conv_color_1d_tbl_init, functions.conv_color_1d_tbl_free, data, in_kind,
                    out_kind)


def conv_color_1d_tbl(source: Array, context: Context, *, destination: Optional[Array] = None,
                      threads: int = 1) -> Array:
    """Converts an image by prepared tables."""
    return _convert(functions.conv_color_1d_tbl, source, context, destination, threads)


def conv_color_1d_tbl_single_step(source: Array, tables: Sequence[Array], in_kind: Kind = RGB8,
                                  out_kind: Kind = RGB8, *, destination: Optional[Array] = None,
                                  threads: int = 1) -> Array:
    """Prepares, converts and releases."""
    with conv_color_1d_tbl_init(tables, in_kind, out_kind) as context:
        return conv_color_1d_tbl(source, context, destination=destination, threads=threads)


def conv_color_coef_init(coefficients: Sequence[Sequence[float]], in_kind: Kind = RGB8,
                         out_kind: Kind = RGB8) -> Context:
    """Prepares conversions by three polynomials (c0, c1, c2), of red, green and blue."""
    polynomials = (ChannelPolynomial * 3)(*[ChannelPolynomial(*c) for c in coefficients])
    return _context(functions.conv_color_coef_init, functions.conv_color_coef_free,
                    lambda: polynomials, in_kind, out_kind)


def conv_color_coef(source: Array, context: Context, *, destination: Optional[Array] = None,
                    threads: int = 1) -> Array:
    """Converts an image by prepared polynomials."""
    return _convert(functions.conv_color_coef, source, context, destination, threads)


def conv_color_coef_single_step(source: Array, coefficients: Sequence[Sequence[float]],
                                in_kind: Kind = RGB8, out_kind: Kind = RGB8, *,
                                destination: Optional[Array] = None, threads: int = 1) -> Array:
    """Prepares, converts and releases."""
    with conv_color_coef_init(coefficients, in_kind, out_kind) as context:
        return conv_color_coef(source, context, destination=destination, threads=threads)


def conv_color_mtx_init(rows: Array, in_kind: Kind = RGB8, out_kind: Kind = RGB8) -> Context:
    """Prepares conversions by a matrix of three rows and up to ten terms; missing ones are 0."""
    weights = numpy.zeros((3, 10), numpy.float64)
    given = numpy.asarray(rows, numpy.float64)
    weights[:, :given.shape[1]] = given
    matrix = ColorMatrix()
    ctypes.memmove(matrix.rows, weights.ctypes.data, weights.nbytes)
    return _context(functions.conv_color_mtx_init, functions.conv_color_mtx_free,
                    lambda: ctypes.byref(matrix), in_kind, out_kind)


def conv_color_mtx(source: Array, context: Context, *, destination: Optional[Array] = None,
                   threads: int = 1) -> Array:
    """Converts an image by a prepared matrix."""
    return _convert(functions.conv_color_mtx, source, context, destination, threads)


def conv_color_mtx_single_step(source: Array, rows: Array, in_kind: Kind = RGB8,
                               out_kind: Kind = RGB8, *, destination: Optional[Array] = None,
                               threads: int = 1) -> Array:
    """Prepares, converts and releases."""
    with conv_color_mtx_init(rows, in_kind, out_kind) as context:
        return conv_color_mtx(source, context, destination=destination, threads=threads)


def _free(context: Context) -> None:
    """Releases a prepared conversion at once."""
    context.close()


conv_color_cube_free = conv_color_1d_tbl_free = conv_color_coef_free = conv_color_mtx_free = _free
