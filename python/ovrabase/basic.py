# SPDX-License-Identifier: MIT
"""Composition, and the rows of device-independent bitmaps."""

from __future__ import annotations

from typing import Optional

import numpy

from .arrays import PACKED, Array, Layout, address, channels_of, copy_in, empty, format_code
from .arrays import kind_of, layouts_of
from .bands import run_in_bands
from .library import check, functions
from .native import BlendMode


def _writable_form(destination: Array) -> tuple[Array, Layout]:
    """The destination, or a copy of it that the library can describe, and its layout."""
    if not destination.flags.writeable:
        raise ValueError("the destination cannot be written")
    kind_of(destination)
    work = destination if layouts_of(destination) else copy_in(destination, PACKED)
    return work, layouts_of(work)[0]


def _beside(source: Array, work: Array, layout: Layout) -> Array:
    """The source in this layout, in memory of its own."""
    return copy_in(source.copy() if numpy.may_share_memory(source, work) else source, layout)


def composite_image(destination: Array, source: Array, x: int, y: int,
                    blend_mode: int = BlendMode.SOURCE, *,
                    model: Optional[int] = None) -> Array:
    """Places the source into the destination at (x, y) of the picture, blended by its last channel
    where it has one channel more. The destination changes in place and is returned. The model is
    that of the destination; the source's is told from its channels."""
    work, layout = _writable_form(destination)
    source = _beside(source, work, layout)
    check(functions.composite_image(
        address(work), work.shape[1], work.shape[0],
        format_code(kind_of(work, model), channels_of(work), layout), address(source),
        source.shape[1], source.shape[0],
        format_code(kind_of(source), channels_of(source), layout), x, y, blend_mode))
    if work is not destination:
        destination[...] = work
    return destination


def composite_image_with_mask_blending(destination: Array, source: Array, mask: Array, x: int, y: int,
                                       blend_mode: int = BlendMode.SOURCE, *,
                                       model: Optional[int] = None) -> Array:
    """Blends the source into the destination at (x, y) by a mask with one weight for every sample of
    the source. The destination changes in place and is returned."""
    if mask.shape != source.shape or channels_of(source) != channels_of(destination):
        raise ValueError("source and mask must have one shape, and the destination's channels")
    if not destination.dtype == source.dtype == mask.dtype:
        raise ValueError("source, mask and destination must have one type")
    work, layout = _writable_form(destination)
    source, mask = _beside(source, work, layout), _beside(mask, work, layout)
    check(functions.composite_image_with_mask_blending(
        address(work), work.shape[1], work.shape[0], address(source), address(mask),
        source.shape[1], source.shape[0],
        format_code(kind_of(work, model), channels_of(work), layout), x, y, blend_mode))
    if work is not destination:
        destination[...] = work
    return destination


def dib2raw(dib: Array, width: int, height: int, *, threads: int = 1) -> Array:
    """The picture in a bitmap's rows (blue, green, red; bottom row first; padded to 4 bytes), which
    are the bytes of `dib`, as (height, width, 3) of red, green, blue."""
    stride = (3 * width + 3) // 4 * 4
    rows = numpy.ascontiguousarray(dib, numpy.uint8).reshape(-1)
    if width < 0 or height < 0 or rows.size < stride * height:
        raise ValueError("the bitmap is shorter than its sizes say")
    raw = empty((height, width, 3), numpy.uint8)

    def run(first: int, last: int) -> None:
        # The band's rows stand in the reverse order, counted from the bitmap's end.
        functions.dib2raw(rows[stride * (height - last):].ctypes.data, address(raw[first:last]), width,
                          last - first)

    run_in_bands(height, threads, run)
    return raw


def raw2dib(image: Array, *, threads: int = 1) -> Array:
    """The rows of a bitmap, as (height, bytes of a row), of a picture (height, width, 3)."""
    if kind_of(image).depth != 8 or channels_of(image) != 3:
        raise ValueError("bitmaps have three channels of 8 bits")
    raw = copy_in(image, PACKED)
    height, width = raw.shape[:2]
    dib = numpy.empty((height, (3 * width + 3) // 4 * 4), numpy.uint8)

    def run(first: int, last: int) -> None:
        functions.raw2dib(address(raw[first:last]), address(dib[height - last:height - first]), width,
                          last - first)

    run_in_bands(height, threads, run)
    return dib
