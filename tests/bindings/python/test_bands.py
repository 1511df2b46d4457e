# SPDX-License-Identifier: MIT
"""Operations that docs/threads.md allows to run in bands give the bytes of one call."""

import numpy
import ovrabase
import pytest
from test_arrays import noise
from test_operations import BANDS as SHARPENING

HEIGHT = 61
PHOTO = noise((HEIGHT, 50, 3))
BANDS = [(0, 20), (20, 41), (41, HEIGHT)]


@pytest.mark.parametrize("mode", [0, 2, 4, 6])
def test_turns(mode):
    result = numpy.zeros_like(PHOTO)
    for first, last in BANDS:
        to = slice(first, last) if mode in (0, 4) else slice(HEIGHT - last, HEIGHT - first)
        result[to] = ovrabase.rotate_image(PHOTO[first:last], mode)
    numpy.testing.assert_array_equal(result, ovrabase.rotate_image(PHOTO, mode))


@pytest.mark.parametrize("x, y", [(5, 12), (-7, -3), (10, 40), (0, HEIGHT)])
def test_composition(x, y):
    logo = noise((30, 25, 4), seed=2)
    result = PHOTO.copy()
    for first, last in BANDS:
        ovrabase.composite_image(result[first:last], logo, x, y - first)
    numpy.testing.assert_array_equal(result, ovrabase.composite_image(PHOTO.copy(), logo, x, y))


MASKS = {
    "yusm": (7, lambda image: ovrabase.yusm_single_step(image, [3, 20, 30, 22, 30, 20, 3], 2.5)),
    "even taps": (4, lambda image: ovrabase.yusm_single_step(image, [10, 54, 54, 10], 2.5)),
    "yusm double": (13, lambda image: ovrabase.yusm_double_single_step(image, *SHARPENING)),
}


@pytest.mark.parametrize("mask", MASKS)
def test_masks_with_overlap(mask):
    overlap, run = MASKS[mask]
    expected = run(PHOTO)
    for first, last in BANDS:
        above, below = max(first - overlap, 0), min(last + overlap, HEIGHT)
        band = run(PHOTO[above:below])[first - above:last - above]
        numpy.testing.assert_array_equal(band, expected[first:last])
