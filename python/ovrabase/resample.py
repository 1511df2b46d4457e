# SPDX-License-Identifier: MIT
"""Kernel tables and resizing.

`size` is (width, height) of the result in pixels, `region` (x, y, width, height) of the source.
"""

from __future__ import annotations

import ctypes
from typing import Callable, Optional, Tuple

import numpy

from .arrays import Array, Call, Size, address, channels_of, format_code, kind_of, shape_of
from .library import check, functions
from .native import KERNEL_TABLE_ENTRIES

Region = Tuple[int, int, int, int]


def calc_cubic_spline(a: float) -> Array:
    """The table of the cubic-convolution kernel with the parameter a."""
    table = numpy.empty(KERNEL_TABLE_ENTRIES, numpy.float32)
    check(functions.calc_cubic_spline(a, table.ctypes.data))
    return table


def calc_bspline(b: float) -> Array:
    """The table of the cubic B-spline kernel with the parameter b."""
    table = numpy.empty(KERNEL_TABLE_ENTRIES, numpy.float32)
    check(functions.calc_bspline(b, table.ctypes.data))
    return table


def select_kernel_support(ratio: float) -> tuple[int, float]:
    """Taps and stretch that the resize functions choose for a size ratio."""
    taps, stretch = ctypes.c_int32(), ctypes.c_float()
    check(functions.select_kernel_support(ratio, ctypes.byref(taps), ctypes.byref(stretch)))
    return taps.value, stretch.value


def _table(table: Array) -> Array:
    table = numpy.ascontiguousarray(table, numpy.float32)
    if table.size != KERNEL_TABLE_ENTRIES:
        raise ValueError(f"a kernel table has {KERNEL_TABLE_ENTRIES} entries")
    return table


def _resize(function: Callable[..., int], source: Array, size: Size, arguments: tuple[object, ...],
            model: Optional[int], depth: Optional[int], destination: Optional[Array],
            turns: bool = False) -> Array:
    kind = kind_of(source, model, depth)
    width, height = size
    # Between images of one size rows may be copied with their padding; turns clear it.
    same = turns or source.shape[:2] == (height, width)
    call = Call([source], shape_of(height, width, source), source.dtype, destination, pads=same,
                reads_padding=same)
    check(function(address(call.sources[0]), source.shape[1], source.shape[0],
                   address(call.destination), width, height,
                   format_code(kind, channels_of(source), call.layout), *arguments))
    return call.result()


def resize_image(source: Array, size: Size, *, model: Optional[int] = None,
                 depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Resizes the whole source; what does not fit the proportions of the size is cut off evenly."""
    return _resize(functions.resize_image, source, size, (), model, depth, destination)


def resize_image_roi(source: Array, size: Size, region: Region, *, model: Optional[int] = None,
                     depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Resizes a region of the source."""
    return _resize(functions.resize_image_roi, source, size, region, model, depth, destination)


def resize_image_var(source: Array, size: Size, horizontal_factor: float, vertical_factor: float, *,
                     model: Optional[int] = None, depth: Optional[int] = None,
                     destination: Optional[Array] = None) -> Array:
    """Resizes by explicit factors of at least 0.33."""
    return _resize(functions.resize_image_var, source, size, (horizontal_factor, vertical_factor),
                   model, depth, destination)


def resize_image_roi_var(source: Array, size: Size, region: Region, horizontal_factor: float,
                         vertical_factor: float, *, model: Optional[int] = None,
                         depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Resizes a region of the source by explicit factors of at least 0.33."""
    return _resize(functions.resize_image_roi_var, source, size,
                   (*region, horizontal_factor, vertical_factor), model, depth, destination)


def resize_image_core(source: Array, size: Size, region: Region, kernel_table: Array, stretch: float,
                      taps: int, *, model: Optional[int] = None, depth: Optional[int] = None,
                      destination: Optional[Array] = None) -> Array:
    """Resizes a region with a kernel of the caller's."""
    table = _table(kernel_table)
    return _resize(functions.resize_image_core, source, size,
                   (*region, table.ctypes.data, stretch, taps), model, depth, destination)


def resize_image_core_var(source: Array, size: Size, region: Region, factors: tuple[float, float],
                          kernel_table: Array, stretches: tuple[float, float], taps: tuple[int, int],
                          *, model: Optional[int] = None, depth: Optional[int] = None,
                          destination: Optional[Array] = None) -> Array:
    """The same with factors, stretches and tap counts for the two axes, the horizontal one first."""
    table = _table(kernel_table)
    return _resize(functions.resize_image_core_var, source, size,
                   (*region, *factors, table.ctypes.data, *stretches, *taps), model, depth,
                   destination)


def small_resize_image(source: Array, size: Size, region: Region, kernel_table: Array, *,
                       model: Optional[int] = None, depth: Optional[int] = None,
                       destination: Optional[Array] = None) -> Array:
    """A strong reduction of a region with a kernel of the caller's."""
    table = _table(kernel_table)
    return _resize(functions.small_resize_image, source, size, (*region, table.ctypes.data), model,
                   depth, destination)


def resize_rotate_image_roi(source: Array, size: Size, region: Region, mode: int, *,
                            model: Optional[int] = None, depth: Optional[int] = None,
                            destination: Optional[Array] = None) -> Array:
    """Resizes a region and turns the result, whose size after the turn is `size`."""
    return _resize(functions.resize_rotate_image_roi, source, size, (*region, mode), model, depth,
                   destination, turns=True)


def resize_rotate_image_core(source: Array, size: Size, region: Region, kernel_table: Array,
                             stretch: float, taps: int, mode: int, *, model: Optional[int] = None,
                             depth: Optional[int] = None,
                             destination: Optional[Array] = None) -> Array:
    """The same with a kernel of the caller's."""
    table = _table(kernel_table)
    return _resize(functions.resize_rotate_image_core, source, size,
                   (*region, table.ctypes.data, stretch, taps, mode), model, depth, destination,
                   turns=True)


def small_resize_rotate_image(source: Array, size: Size, region: Region, kernel_table: Array,
                              mode: int, *, model: Optional[int] = None, depth: Optional[int] = None,
                              destination: Optional[Array] = None) -> Array:
    """A strong reduction of a region with a kernel of the caller's, turned."""
    table = _table(kernel_table)
    return _resize(functions.small_resize_rotate_image, source, size,
                   (*region, table.ctypes.data, mode), model, depth, destination, turns=True)
