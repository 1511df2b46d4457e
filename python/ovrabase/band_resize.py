# SPDX-License-Identifier: MIT
"""Resizing of pictures that come in bands of rows."""

from __future__ import annotations

import ctypes
from typing import Optional

import numpy

from .arrays import PACKED, Array, Kind, Size, address, copy_in, dtype_of, empty, format_code, kind_of
from .library import check, functions
from .native import KERNEL_TABLE_ENTRIES
from .resample import Region


class BandResize:
    """One resize in bands, made by band_resize_init or band_resize_core_init.

    push(rows) takes the next rows of the source, from its top, and gives the rows of the result that
    are ready, as many as there are (also none). After the last source row the result is complete, and
    the next row pushed begins another picture. One thread at a time may use it.
    """

    def __init__(self, context: ctypes.c_void_p, kind: Kind, channels: int, source_size: Size,
                 size: Size) -> None:
        self._context = context
        self._kind = kind
        self._channels = channels
        self._source_size = source_size
        self._size = size
        self._taken = 0
        self._written = 0

    def push(self, rows: Array) -> Array:
        """Takes rows (count, width) or (count, width, channels); gives rows of the result."""
        kind_of(rows, self._kind.model, self._kind.depth)
        if rows.shape[1:] != self._tail(self._source_size[0]):
            raise ValueError("the rows have another width or channel count than the source")
        band = copy_in(rows, PACKED) if rows.size else rows
        ready = empty((self._size[1] - self._written, *self._tail(self._size[0])),
                      dtype_of(self._kind.depth))
        taken, written = ctypes.c_int32(), ctypes.c_int32()
        check(functions.band_resize(
            address(band), self._source_size[0], rows.shape[0], address(ready), self._size[0],
            ready.shape[0], format_code(self._kind, self._channels, PACKED), self._taken,
            ctypes.byref(taken), ctypes.byref(written), self._context))
        self._taken += taken.value
        self._written += written.value
        if self._taken == self._source_size[1] and self._written == self._size[1]:
            self._taken = self._written = 0
        return ready[:written.value]

    def _tail(self, width: int) -> tuple[int, ...]:
        return (width,) if self._channels == 1 else (width, self._channels)

    def close(self) -> None:
        """Releases the context, at any point of a picture."""
        functions.band_resize_free(ctypes.byref(self._context))

    def __enter__(self) -> BandResize:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        self.close()


def band_resize_init(source_size: Size, size: Size, kind: Kind, channels: int, *,
                     region: Optional[Region] = None) -> BandResize:
    """A resize from (width, height) to (width, height) with the library's kernel; of the whole source
    unless a region is given."""
    context = ctypes.c_void_p()
    check(functions.band_resize_init(*source_size, *size, format_code(kind, channels, PACKED),
                                     *(region or (0, 0, *source_size)), ctypes.byref(context)))
    return BandResize(context, kind, channels, source_size, size)


def band_resize_core_init(source_size: Size, size: Size, kind: Kind, channels: int,
                          kernel_table: Array, stretch: float, taps: int, *,
                          region: Optional[Region] = None) -> BandResize:
    """The same with a kernel of the caller's."""
    table = numpy.ascontiguousarray(kernel_table, numpy.float32)
    if table.size != KERNEL_TABLE_ENTRIES:
        raise ValueError(f"a kernel table has {KERNEL_TABLE_ENTRIES} entries")
    context = ctypes.c_void_p()
    check(functions.band_resize_core_init(
        *source_size, *size, format_code(kind, channels, PACKED),
        *(region or (0, 0, *source_size)), table.ctypes.data, stretch, taps, ctypes.byref(context)))
    return BandResize(context, kind, channels, source_size, size)
