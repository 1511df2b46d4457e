# SPDX-License-Identifier: MIT
"""Turns, mirrors and larger canvases."""

from __future__ import annotations

from typing import Optional, Sequence, Union

import numpy

from .arrays import Array, Call, Size, address, channels_of, format_code, kind_of, shape_of
from .library import check, functions


def rotate_image(source: Array, mode: int, *, model: Optional[int] = None,
                 depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Turns or mirrors an image; the mode is a Rotation."""
    kind = kind_of(source, model, depth)
    height, width = source.shape[:2]
    turned = (width, height) if mode % 2 else (height, width)
    call = Call([source], shape_of(*turned, source), source.dtype, destination, pads=True)
    check(functions.rotate_image(address(call.sources[0]), address(call.destination), width, height,
                                 format_code(kind, channels_of(source), call.layout), mode))
    return call.result()


def _colour(fill: Union[int, Sequence[int]], channels: int) -> Array:
    return numpy.ascontiguousarray(numpy.broadcast_to(fill, (channels,)), numpy.uint16)


def extrapolate_image(source: Array, width: int, height: int, offset_x: int, offset_y: int,
                      fill: Union[int, Sequence[int]], *, model: Optional[int] = None,
                      depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Places an image on a canvas of width x height, offset_x columns from the left and offset_y rows
    from the top, and fills the rest: with one value, or one a channel."""
    kind = kind_of(source, model, depth)
    channels = channels_of(source)
    values = _colour(fill, channels)
    call = Call([source], shape_of(height, width, source), source.dtype, destination, pads=True)
    check(functions.extrapolate_image(
        address(call.sources[0]), source.shape[1], source.shape[0], address(call.destination), width,
        height, format_code(kind, channels, call.layout), offset_x, offset_y, values.ctypes.data))
    return call.result()


def free_trimming(source: Array, size: Size, x: int, y: int, angle: int,
                  fill: Union[None, int, Sequence[int]] = None, *, model: Optional[int] = None,
                  depth: Optional[int] = None, destination: Optional[Array] = None) -> Array:
    """Turns by `angle` tenths of a degree counter-clockwise and cuts a rectangle out, whose upper left
    pixel before the turn is (x, y). Around the picture its edges are repeated, or a colour fills."""
    kind = kind_of(source, model, depth)
    channels = channels_of(source)
    width, height = size
    values = None if fill is None else _colour(fill, channels)
    call = Call([source], shape_of(height, width, source), source.dtype, destination, pads=True)
    check(functions.free_trimming(
        address(call.sources[0]), source.shape[1], source.shape[0], address(call.destination), width,
        height, format_code(kind, channels, call.layout), x, y, angle,
        None if values is None else values.ctypes.data))
    return call.result()
