# SPDX-License-Identifier: MIT
"""Sharpening, smoothing, soft focus and multi-frequency processing."""

from __future__ import annotations

import ctypes
from typing import Callable, NamedTuple, Optional, Sequence, Tuple

import numpy

from .arrays import LAYOUTS, PACKED, Array, Call, Kind, Layout, address, channels_of, format_code
from .arrays import kind_of
from .library import Context, check, functions
from .native import (DEFAULT_DIFFERENCE_POINTS, DEFAULT_LEVEL_POINTS, DIFFERENCE_TABLE_SIZE,
                     LEVEL_TABLE_SIZE, YUSM_MAX_TAPS, ColorModel, MultiFrequencyParams, ResponsePoint,
                     SoftFocusParams)

Curve = Sequence[Tuple[float, float]]


class ResponseTables(NamedTuple):
    """Tables of the masks, of type int16: 1024 and 2048 entries."""

    level: Array
    difference: Array


class Band(NamedTuple):
    """One band of the double mask: the blur that bounds it, and its strength."""

    weights: Sequence[int]
    amount: float
    tables: ResponseTables


def gaussian_weights(radius: float, max_taps: int = YUSM_MAX_TAPS) -> Array:
    """Weights of a Gaussian blur that sum to 128, of type int32."""
    count = ctypes.c_int32()
    weights = numpy.empty(YUSM_MAX_TAPS, numpy.int32)
    check(functions.gaussian_weights(radius, max_taps, ctypes.byref(count), weights.ctypes.data))
    return weights[:count.value].copy()


def _points(curve: Curve) -> ctypes.Array[ResponsePoint]:
    return (ResponsePoint * len(curve))(*[ResponsePoint(x, y) for x, y in curve])


def default_curves() -> tuple[list[tuple[float, float]], list[tuple[float, float]]]:
    """Level and difference curve that suit photographs, as points (x, y)."""
    levels = (ResponsePoint * DEFAULT_LEVEL_POINTS)()
    differences = (ResponsePoint * DEFAULT_DIFFERENCE_POINTS)()
    check(functions.default_curves(levels, differences))
    return [(p.x, p.y) for p in levels], [(p.x, p.y) for p in differences]


def yusm_make_table(levels: Curve, differences: Curve) -> ResponseTables:
    """Response tables from curves. A curve of one point leaves its table at 0."""
    tables = ResponseTables(numpy.zeros(LEVEL_TABLE_SIZE, numpy.int16),
                            numpy.zeros(DIFFERENCE_TABLE_SIZE, numpy.int16))
    grey = format_code(Kind(8, ColorModel.GREY), 1, PACKED)
    check(functions.yusm_make_table(grey, len(levels), _points(levels), len(differences),
                                    _points(differences), tables.level.ctypes.data,
                                    tables.difference.ctypes.data))
    return tables


def _weights(weights: Sequence[int]) -> Array:
    return numpy.ascontiguousarray(weights, numpy.int32)


def _tables(tables: Optional[ResponseTables]) -> ResponseTables:
    level, difference = tables if tables is not None else yusm_make_table(*default_curves())
    level = numpy.ascontiguousarray(level, numpy.int16)
    difference = numpy.ascontiguousarray(difference, numpy.int16)
    if level.size != LEVEL_TABLE_SIZE or difference.size != DIFFERENCE_TABLE_SIZE:
        raise ValueError("the tables have 1024 and 2048 entries")
    return ResponseTables(level, difference)


def _run(function: Callable[..., int], source: Array, kind: Kind, destination: Optional[Array],
         arguments: Callable[[int], tuple[object, ...]], layouts: Sequence[Layout] = LAYOUTS,
         in_place: bool = True) -> Array:
    """A call with images of one format and size; arguments(format) are those behind the format."""
    kind = kind_of(source, kind.model, kind.depth)
    call = Call([source], source.shape, source.dtype, destination, layouts=layouts, in_place=in_place)
    code = format_code(kind, channels_of(source), call.layout)
    check(function(address(call.sources[0]), address(call.destination), source.shape[1],
                   source.shape[0], code, *arguments(code)))
    return call.result()


def yusm_init(kind: Kind, channels: int, weights: Sequence[int], amount: float,
              tables: Optional[ResponseTables] = None) -> Context:
    """A context of the luminance unsharp mask for images of this kind and channel count."""
    taps, response = _weights(weights), _tables(tables)

    def make(code: int, out: object) -> None:
        check(functions.yusm_init(code, taps.size, taps.ctypes.data, amount, response.level.ctypes.data,
                                  response.difference.ctypes.data, out))

    context = Context(make, functions.yusm_free, kind, kind)
    context.handle(format_code(kind, channels, PACKED))
    return context


def yusm(source: Array, context: Context, *, destination: Optional[Array] = None) -> Array:
    """The luminance unsharp mask with a context. The destination may be the source."""
    return _run(functions.yusm, source, context.in_kind, destination,
                lambda code: (context.handle(code),))


def yusm_free(context: Context) -> None:
    """Releases a context at once."""
    context.close()


def yusm_single_step(source: Array, weights: Sequence[int], amount: float,
                     tables: Optional[ResponseTables] = None, *, model: Optional[int] = None,
                     depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """The luminance unsharp mask; without tables those of the default curves."""
    taps, response = _weights(weights), _tables(tables)
    arguments = (taps.size, taps.ctypes.data, amount, response.level.ctypes.data,
                 response.difference.ctypes.data)
    return _run(functions.yusm_single_step, source, kind_of(source, model, depth), destination,
                lambda code: arguments)


def _band_arguments(coarse: Band, fine: Band) -> tuple[tuple[object, ...], object]:
    """The arguments of two bands, and what must stay alive while they are used."""
    taps = [_weights(band.weights) for band in (coarse, fine)]
    tables = [_tables(band.tables) for band in (coarse, fine)]
    arguments: list[object] = []
    for t in taps:
        arguments += [t.size, t.ctypes.data]
    for band, response in zip((coarse, fine), tables):
        arguments += [band.amount, response.level.ctypes.data, response.difference.ctypes.data]
    return tuple(arguments), (taps, tables)


def yusm_double_init(coarse: Band, fine: Band, model: int = ColorModel.RGB) -> Context:
    """A context of the double unsharp mask."""
    arguments, alive = _band_arguments(coarse, fine)

    def make(code: int, out: object, _alive: object = alive) -> None:
        check(functions.yusm_double_init(code, *arguments, out))

    kind = Kind(8, model)
    context = Context(make, functions.yusm_double_free, kind, kind)
    context.handle(format_code(kind, 3, PACKED))
    return context


def yusm_double(source: Array, context: Context, *, destination: Optional[Array] = None) -> Array:
    """The double unsharp mask with a context. The destination may be the source."""
    return _run(functions.yusm_double, source, context.in_kind, destination,
                lambda code: (context.handle(code),), (PACKED,))


def yusm_double_free(context: Context) -> None:
    """Releases a context at once."""
    context.close()


def yusm_double_single_step(source: Array, coarse: Band, fine: Band, *, model: Optional[int] = None,
                            destination: Optional[Array] = None) -> Array:
    """The double unsharp mask in one call."""
    arguments, _alive = _band_arguments(coarse, fine)
    return _run(functions.yusm_double_single_step, source, kind_of(source, model), destination,
                lambda code: arguments, (PACKED,))


def efilter_image(source: Array, *, model: Optional[int] = None,
                  destination: Optional[Array] = None) -> Array:
    """Edge-preserving smoothing."""
    return _run(functions.efilter_image, source, kind_of(source, model), destination,
                lambda code: (), (PACKED,), in_place=False)


def soft_focus(source: Array, radius: int, mix: float, *, decay_base: float = 0.1,
               decay_exponent: int = 1, destination: Optional[Array] = None) -> Array:
    """Soft focus of an image (height, width, 3) of uint8. The destination may be the source."""
    if kind_of(source).depth != 8 or channels_of(source) != 3:
        raise ValueError("soft focus takes three channels of 8 bits")
    params = SoftFocusParams(radius=radius, decay_exponent=decay_exponent, decay_base=decay_base,
                             mix=mix)
    call = Call([source], source.shape, source.dtype, destination, layouts=(PACKED,), in_place=True)
    check(functions.soft_focus(address(call.sources[0]), address(call.destination), source.shape[1],
                               source.shape[0], ctypes.byref(params)))
    return call.result()


def multi_frequency(source: Array, params: MultiFrequencyParams, *, model: Optional[int] = None,
                    depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Multi-frequency processing. The destination may be the source."""
    return _run(functions.multi_frequency, source, kind_of(source, model, depth), destination,
                lambda code: (ctypes.byref(params),))
