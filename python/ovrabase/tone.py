# SPDX-License-Identifier: MIT
"""Tone processing of images (height, width, 3) of 10 or 12 bits a sample in uint16.

One call a picture: hyper_tone(source, HyperToneParams(...), depth=10), and the same for the other
three forms. Contexts for many pictures: hyper_tone_init(...) and run(source, context).
"""

from __future__ import annotations

import ctypes
from typing import Callable, Optional

import numpy

from .arrays import PACKED, Array, Call, Kind, address, channels_of, format_code, kind_of
from .library import Context, check, functions
from .native import ColorModel, HyperToneParams


class ToneContext(Context):
    """A context of one form of tone processing."""

    run_function: Callable[..., int]


def _init(form: str, params: HyperToneParams, depth: int, model: int,
          curve: Optional[Array]) -> ToneContext:
    if depth not in (10, 12):
        raise ValueError("tone processing takes 10 or 12 bits")
    entries = None if curve is None else numpy.ascontiguousarray(curve, numpy.uint16)
    if entries is not None and entries.size != 1 << depth:
        raise ValueError("the curve has an entry for each value")
    init = getattr(functions, form + ("_init" if depth == 10 else "_init_12"))

    def make(code: int, out: object) -> None:
        check(init(code, ctypes.byref(params), None if entries is None else entries.ctypes.data, out))

    kind = Kind(depth, model)
    context = ToneContext(make, getattr(functions, form + "_free"), kind, kind)
    context.run_function = getattr(functions, form)
    context.handle(format_code(kind, 3, PACKED))
    return context


def run(source: Array, context: ToneContext, *, destination: Optional[Array] = None) -> Array:
    """Runs any form with its context. The destination may be the source."""
    kind = kind_of(source, context.in_kind.model, context.in_kind.depth)
    call = Call([source], source.shape, source.dtype, destination, in_place=True)
    code = format_code(kind, channels_of(source), call.layout)
    check(context.run_function(address(call.sources[0]), address(call.destination), source.shape[1],
                               source.shape[0], code, context.handle(code)))
    return call.result()


def hyper_tone_init(params: HyperToneParams, depth: int, model: int = ColorModel.RGB,
                    curve: Optional[Array] = None) -> ToneContext:
    """A context for pictures of this depth and colour model."""
    return _init("hyper_tone", params, depth, model, curve)


def hyper_tone_light_init(params: HyperToneParams, depth: int, model: int = ColorModel.RGB,
                          curve: Optional[Array] = None) -> ToneContext:
    """The same for the light form."""
    return _init("hyper_tone_light", params, depth, model, curve)


def hybrid_hyper_tone_init(params: HyperToneParams, depth: int, model: int = ColorModel.RGB,
                           curve: Optional[Array] = None) -> ToneContext:
    """The same for the hybrid form."""
    return _init("hybrid_hyper_tone", params, depth, model, curve)


def hybrid_hyper_tone_light_init(params: HyperToneParams, depth: int, model: int = ColorModel.RGB,
                                 curve: Optional[Array] = None) -> ToneContext:
    """The same for the light hybrid form."""
    return _init("hybrid_hyper_tone_light", params, depth, model, curve)


def hyper_tone(source: Array, params: HyperToneParams, depth: int, *, model: int = ColorModel.RGB,
               curve: Optional[Array] = None, destination: Optional[Array] = None) -> Array:
    """Prepares, runs and releases."""
    with hyper_tone_init(params, depth, model, curve) as context:
        return run(source, context, destination=destination)


def hyper_tone_light(source: Array, params: HyperToneParams, depth: int, *,
                     model: int = ColorModel.RGB, curve: Optional[Array] = None,
                     destination: Optional[Array] = None) -> Array:
    """The same in the light form."""
    with hyper_tone_light_init(params, depth, model, curve) as context:
        return run(source, context, destination=destination)


def hybrid_hyper_tone(source: Array, params: HyperToneParams, depth: int, *,
                      model: int = ColorModel.RGB, curve: Optional[Array] = None,
                      destination: Optional[Array] = None) -> Array:
    """The same in the hybrid form."""
    with hybrid_hyper_tone_init(params, depth, model, curve) as context:
        return run(source, context, destination=destination)


def hybrid_hyper_tone_light(source: Array, params: HyperToneParams, depth: int, *,
                            model: int = ColorModel.RGB, curve: Optional[Array] = None,
                            destination: Optional[Array] = None) -> Array:
    """The same in the light hybrid form."""
    with hybrid_hyper_tone_light_init(params, depth, model, curve) as context:
        return run(source, context, destination=destination)
