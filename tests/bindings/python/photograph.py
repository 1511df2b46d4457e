# SPDX-License-Identifier: MIT
"""The picture that the photograph examples are tried on, and what comes out in every language and on every
platform."""

import zlib

import numpy
from PIL import Image

SIZE = (640, 427)
CHECKSUM = 3905141124  # CRC-32 of the pixels


def write_source(name):
    """A picture with fine and coarse detail in whole numbers."""
    y, x = numpy.mgrid[0:601, 0:901]
    coarse = numpy.abs((x // 3 + y // 2) % 200 - 100)[..., None] * [1, 2, 1]
    fine = (x * 7919 ^ y * 104729)[..., None] // [1, 3, 5] % 53
    Image.fromarray((coarse + fine).clip(0, 255).astype(numpy.uint8)).save(name)


def checksum(name):
    image = Image.open(name).convert("RGB")
    assert image.size == SIZE
    return zlib.crc32(image.tobytes())
