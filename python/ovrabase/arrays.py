# SPDX-License-Identifier: MIT
"""NumPy arrays as images of the library.

An array is (height, width) or (height, width, channels) of uint8 or uint16. The library takes no
stride: the distance between rows follows from the width and a row alignment of 1, 2 or 4 bytes, and
rows may go upward in memory. So these arrays are used where they lie:

  - rows that follow each other without gaps, or padded to the next multiple of 2 or 4 bytes;
  - the same with the rows in reverse order (image[::-1]).

Others are copied: images cut out of wider ones, every second row or column, channels in another order
or apart, and samples of two bytes at odd addresses. The images of one call share one layout; where
theirs differ, sources are copied into a layout of the destination's. A destination that cannot be
described, or whose row padding the operation would write, is filled by way of another one.
"""

from __future__ import annotations

import ctypes
import dataclasses
import itertools
from typing import Iterable, Optional, Sequence, Tuple

import numpy
import numpy.typing

from .library import check, functions
from .native import ColorModel, RowOrder

Array = numpy.typing.NDArray[numpy.generic]


@dataclasses.dataclass(frozen=True)
class Layout:
    """How rows lie in memory."""

    alignment: int
    bottom_up: bool

    def stride(self, row_bytes: int) -> int:
        return -(-row_bytes // self.alignment) * self.alignment


PACKED = Layout(1, False)
LAYOUTS = tuple(Layout(a, b) for b, a in itertools.product((False, True), (1, 2, 4)))


@dataclasses.dataclass(frozen=True)
class Kind:
    """What the samples of an image are: bits a sample and colour model."""

    depth: int
    model: int


def channels_of(array: Array) -> int:
    return array.shape[2] if array.ndim == 3 else 1


def row_bytes_of(array: Array) -> int:
    return array.shape[1] * channels_of(array) * array.itemsize


def kind_of(array: Array, model: Optional[int] = None, depth: Optional[int] = None) -> Kind:
    """The kind of an array, with what the caller says of it; grey, RGB or RGBA otherwise."""
    if array.ndim not in (2, 3):
        raise ValueError("an image has two dimensions, or three with the channels last")
    if array.dtype not in (numpy.uint8, numpy.uint16):
        raise ValueError("samples are of type uint8 or uint16")
    bits = 8 * array.itemsize
    depth = bits if depth is None else depth
    if not (depth == 8 if bits == 8 else 9 <= depth <= 16):
        raise ValueError(f"samples of {bits} bits cannot have a depth of {depth}")
    usual = {3: ColorModel.RGB, 4: ColorModel.RGBA}.get(channels_of(array), ColorModel.GREY)
    return Kind(depth, usual if model is None else model)


def dtype_of(depth: int) -> numpy.dtype[numpy.generic]:
    return numpy.dtype(numpy.uint8 if depth == 8 else numpy.uint16)


def shape_of(height: int, width: int, like: Array) -> tuple[int, ...]:
    return (height, width) + like.shape[2:]


def make_pixel_format_code(depth_bits: int, channels: int, color_model: int, row_alignment: int = 1,
                           row_order: int = RowOrder.TOP_DOWN) -> int:
    """A format word, for the functions of native.Functions."""
    code = ctypes.c_uint32()
    check(functions.make_pixel_format_code(depth_bits, channels, color_model, row_alignment, row_order,
                                           ctypes.byref(code)))
    return code.value


def row_stride(width: int, format: int) -> int:
    """The bytes between the starts of two rows of an image with this format word."""
    stride = ctypes.c_size_t()
    check(functions.row_stride(width, format, ctypes.byref(stride)))
    return stride.value


def format_code(kind: Kind, channels: int, layout: Layout) -> int:
    order = RowOrder.BOTTOM_UP if layout.bottom_up else RowOrder.TOP_DOWN
    return make_pixel_format_code(kind.depth, channels, kind.model, layout.alignment, order)


def address(array: Array) -> int:
    """Where the first row in memory begins."""
    last = (array.shape[0] - 1) * array.strides[0] if array.size and array.strides[0] < 0 else 0
    return array.ctypes.data + last


def _pixels_lie_together(array: Array) -> bool:
    if array.ndim == 3 and array.shape[2] > 1 and array.strides[2] != array.itemsize:
        return False
    pixel_bytes = channels_of(array) * array.itemsize
    return array.shape[1] <= 1 or array.strides[1] == pixel_bytes


def layouts_of(array: Array, padding_may_change: bool = True) -> tuple[Layout, ...]:
    """The layouts that describe an array as it lies in memory, plain ones first."""
    if array.size == 0:
        return LAYOUTS
    if not array.flags.aligned or not _pixels_lie_together(array):
        return ()
    row_bytes = row_bytes_of(array)
    distance = array.strides[0]

    def fits(layout: Layout) -> bool:
        stride = layout.stride(row_bytes)
        if stride != row_bytes and not padding_may_change:
            return False
        return array.shape[0] == 1 or distance == (-stride if layout.bottom_up else stride)

    return tuple(filter(fits, LAYOUTS))


def empty(shape: Sequence[int], dtype: numpy.typing.DTypeLike, layout: Layout = PACKED) -> Array:
    """A new image in a layout. Its values are undefined."""
    dtype = numpy.dtype(dtype)
    height, width = shape[:2]
    pixel_bytes = int(numpy.prod(shape[2:])) * dtype.itemsize
    stride = layout.stride(width * pixel_bytes)
    # Where rows are padded to 4 bytes, clearing may run on for two bytes behind the last row.
    buffer = numpy.empty(height * stride + 4, numpy.uint8)
    strides = (stride, pixel_bytes, dtype.itemsize)[:len(shape)]
    image: Array = numpy.ndarray(tuple(shape), dtype, buffer, strides=strides)
    return image[::-1] if layout.bottom_up else image


def copy_in(array: Array, layout: Layout) -> Array:
    """The image in this layout: itself where it has it, else a copy."""
    if layout in layouts_of(array):
        return array
    copy = empty(array.shape, array.dtype, layout)
    copy[...] = array
    return copy


class Call:
    """The images of one call, in one layout.

    sources      what the operation reads
    shape, dtype what it writes: an array of this kind
    destination  where to; None for a new array
    layouts      the layouts that the operation takes
    in_place     whether a source may be the destination itself
    pads         whether the operation may write row padding, which must be nobody's then
    reads_padding  whether it may read row padding, even the last row's, which need not exist
    """

    def __init__(self, sources: Iterable[Array], shape: Sequence[int],
                 dtype: numpy.typing.DTypeLike, destination: Optional[Array] = None, *,
                 layouts: Sequence[Layout] = LAYOUTS, in_place: bool = False, pads: bool = False,
                 reads_padding: bool = False) -> None:
        sources = tuple(sources)
        self._target = destination
        if destination is not None:
            self._require_kind(destination, shape, dtype)
        possible = [set(layouts_of(source, not reads_padding)) for source in sources]
        wanted = [layout for layout in layouts if all(layout in p for p in possible)]
        if destination is not None:
            have = [layout for layout in layouts_of(destination, not pads) if layout in layouts]
            wanted = [layout for layout in have if layout in wanted] or have or wanted
        self.layout = wanted[0] if wanted else layouts[0]
        self.sources = tuple(copy_in(source, self.layout) for source in sources)
        if destination is not None and self.layout in layouts_of(destination, not pads):
            self.sources = tuple(self._apart(s, destination, in_place) for s in self.sources)
            self.destination = destination
        else:
            self.destination = empty(shape, dtype, self.layout)

    @staticmethod
    def _require_kind(array: Array, shape: Sequence[int], dtype: numpy.typing.DTypeLike) -> None:
        if array.shape != tuple(shape) or array.dtype != dtype:
            raise ValueError(f"the destination must be of shape {tuple(shape)} and type {dtype}")
        if not array.flags.writeable:
            raise ValueError("the destination cannot be written")

    def _apart(self, source: Array, destination: Array, in_place: bool) -> Array:
        if in_place and source.shape == destination.shape and address(source) == address(destination):
            return source
        if not numpy.may_share_memory(source, destination):
            return source
        return copy_in(source.copy(), self.layout)

    def result(self) -> Array:
        """The destination, filled."""
        if self._target is None or self._target is self.destination:
            return self.destination
        self._target[...] = self.destination
        return self._target


Size = Tuple[int, int]
