# SPDX-License-Identifier: MIT
"""Arguments reach the functions that they are meant for, and results come back."""

import ctypes
from functools import partial

import numpy
import ovrabase
import pytest
from numpy.testing import assert_array_equal
from ovrabase import Kind, native
from test_arrays import ARRANGEMENTS, noise

PHOTO = noise((64, 80, 3))
BGR8 = Kind(8, ovrabase.ColorModel.BGR)
RGB12 = Kind(12, ovrabase.ColorModel.RGB)
TONE = ovrabase.HyperToneParams(amount=1, shadows=0.6, highlights=0.4, local_contrast=1.2, edge=0.12,
                                colour=1, scale=3)


def test_records_have_the_sizes_that_are_laid_down():
    sizes = {"ColorMatrix": 244, "SoftFocusParams": 40, "ChannelPolynomial": 32, "HyperToneParams": 32,
             "MultiFrequencyParams": 144}
    for name, size in sizes.items():
        assert ctypes.sizeof(getattr(native, name)) == size, name


def test_format_words_and_strides():
    word = ovrabase.make_pixel_format_code(12, 3, ovrabase.ColorModel.BGR, 4, ovrabase.RowOrder.BOTTOM_UP)
    assert word == 0x01200224
    assert ovrabase.row_stride(3, word) == 20


def test_composition():
    picture = numpy.full((3, 4, 3), 10, numpy.uint8)
    logo = numpy.array([[[200, 0, 0, 255], [200, 0, 0, 127], [200, 0, 0, 0]]], numpy.uint8)
    expected = picture.copy()
    expected[1, 1:] = [[200, 0, 0], [105, 5, 5], [10, 10, 10]]
    for arrange, _ in ARRANGEMENTS.values():
        destination = arrange(picture.copy())
        assert ovrabase.composite_image(destination, logo, 1, 1) is destination
        assert_array_equal(destination, expected)
    white = numpy.full((1, 4, 3), 255, numpy.uint8)
    weights = numpy.repeat(numpy.array([[0, 127, 255, 255]], numpy.uint8)[..., None], 3, axis=2)
    ovrabase.composite_image_with_mask_blending(picture, white, weights, 0, 2)
    assert picture[2, :, 0].tolist() == [10, 132, 255, 255]


@pytest.mark.parametrize("threads", [1, 3])
def test_bitmap_rows(threads):
    photo = PHOTO[:, :77]
    dib = ovrabase.raw2dib(photo, threads=threads)
    expected = numpy.zeros((64, 232), numpy.uint8)
    expected[:, :231] = photo[::-1, :, ::-1].reshape(64, 231)
    assert_array_equal(dib, expected)
    assert_array_equal(ovrabase.dib2raw(dib, 77, 64, threads=threads), photo)


def swapping_cube(count):
    """Exchanges the first and the third channel."""
    grid = numpy.linspace(0, 255, count).astype(numpy.uint16)
    nodes = numpy.stack(numpy.meshgrid(grid, grid, grid, indexing="ij"), axis=-1)
    return ovrabase.ColorCube([grid] * 3, nodes[..., ::-1])


SIZE, WHOLE = (60, 48), (0, 0, 80, 64)
TABLE = ovrabase.calc_cubic_spline(-0.75)
TAPS, STRETCH = ovrabase.select_kernel_support(0.75)
SMALLER, TINY = (ovrabase.resize_image(PHOTO, size) for size in (SIZE, (20, 16)))
WEIGHTS = ovrabase.gaussian_weights(1.0)
FLAT = ovrabase.yusm_make_table([(0, 1), (1, 1)], [(-1, 1), (1, 1)])
BANDS = (ovrabase.Band(ovrabase.gaussian_weights(3, 25), 1.5, FLAT),
         ovrabase.Band(ovrabase.gaussian_weights(0.8, 25), 2.0, FLAT))
SHARP = ovrabase.yusm_single_step(PHOTO, WEIGHTS, 2.5, ovrabase.yusm_make_table(*ovrabase.default_curves()))
RAMP = numpy.arange(256, dtype=numpy.uint16)
RED, GREEN, BLUE = (PHOTO[..., channel] for channel in range(3))

# Functions of a picture, their arguments, and what they give.
FILTERS = [
    (ovrabase.efilter_image, (), ovrabase.efilter_image(PHOTO)),
    (ovrabase.soft_focus, (200, 0.5), ovrabase.soft_focus(PHOTO, 200, 0.5)),
    (ovrabase.yusm, (ovrabase.yusm_init(ovrabase.RGB8, 3, WEIGHTS, 2.5),), SHARP),
    (ovrabase.yusm_double, (ovrabase.yusm_double_init(*BANDS),), ovrabase.yusm_double_single_step(PHOTO, *BANDS)),
]

# Many agree with others where they do the same.
CALLS = FILTERS + [
    (ovrabase.resize_image_roi, (SIZE, WHOLE), SMALLER),
    (ovrabase.resize_image_var, (SIZE, 0.75, 0.75), SMALLER),
    (ovrabase.resize_image_roi_var, (SIZE, WHOLE, 0.75, 0.75), SMALLER),
    (ovrabase.resize_image_core, (SIZE, WHOLE, TABLE, STRETCH, TAPS), SMALLER),
    (ovrabase.resize_image_core_var, (SIZE, WHOLE, (0.75, 0.75), TABLE, (STRETCH, STRETCH), (TAPS, TAPS)), SMALLER),
    (ovrabase.small_resize_image, ((20, 16), WHOLE, TABLE), TINY),
    (ovrabase.resize_rotate_image_roi, ((48, 60), WHOLE, 1), numpy.rot90(SMALLER)),
    (ovrabase.resize_rotate_image_core, ((48, 60), WHOLE, TABLE, STRETCH, TAPS, 1), numpy.rot90(SMALLER)),
    (ovrabase.small_resize_rotate_image, ((16, 20), WHOLE, TABLE, 1), numpy.rot90(TINY)),
    (ovrabase.free_trimming, ((20, 16), 30, 10, 0), PHOTO[10:26, 30:50]),
    (ovrabase.free_trimming, ((64, 80), 8, -8, 900), numpy.rot90(PHOTO)),
    (ovrabase.free_trimming, ((20, 16), 200, 10, 35, (1, 2, 3)), numpy.full((16, 20, 3), [1, 2, 3], numpy.uint8)),
]
for threads in (1, 3):
    CALLS += [(partial(function, threads=threads), (data,), numpy.stack(expected, axis=-1))
              for function, data, expected in [
        (ovrabase.conv_color_cube_single_step, swapping_cube(2), (BLUE, GREEN, RED)),
        (ovrabase.conv_color_1d_tbl_single_step, [RAMP, 255 - RAMP, RAMP // 2], (RED, 255 - GREEN, BLUE // 2)),
        (ovrabase.conv_color_coef_single_step, [(0, 1, 0), (255, -1, 0), (7, 0, 0)], (RED, 255 - GREEN, 0 * BLUE + 7)),
        (ovrabase.conv_color_mtx_single_step, [[0, 0, 1], [1, 0, 0], [0, 1, 0]], (BLUE, RED, GREEN))]]


@pytest.mark.parametrize("arrangement", ARRANGEMENTS)
@pytest.mark.parametrize("function, arguments, expected", CALLS,
                         ids=lambda part: getattr(getattr(part, "func", part), "__name__", ""))
def test_calls(function, arguments, expected, arrangement):
    arrange = ARRANGEMENTS[arrangement][0]
    assert_array_equal(function(arrange(PHOTO.copy()), *arguments), expected)
    destination = arrange(numpy.zeros_like(expected))
    assert function(PHOTO, *arguments, destination=destination) is destination
    assert_array_equal(destination, expected)


@pytest.mark.parametrize("arrangement", ARRANGEMENTS)
def test_sharpening_in_place(arrangement):
    with ovrabase.yusm_init(ovrabase.RGB8, 3, WEIGHTS, 2.5) as context:
        arranged = ARRANGEMENTS[arrangement][0](PHOTO.copy())
        ovrabase.yusm(arranged, context, destination=arranged)
        assert_array_equal(arranged, SHARP)
        with pytest.raises(ValueError):
            ovrabase.yusm(PHOTO.astype(numpy.uint16), context)


def test_filters_change_what_they_should():
    assert WEIGHTS.tolist() == [7, 31, 52, 31, 7]
    for function, arguments, expected in FILTERS:
        assert (expected != PHOTO).any(), function
    assert_array_equal(ovrabase.yusm_single_step(PHOTO, WEIGHTS, 1.0), PHOTO)


@pytest.mark.parametrize("size", [(60, 48), (20, 16), (80, 64), (100, 80)])
@pytest.mark.parametrize("rows", [1, 7, 64])
def test_resize_in_bands(size, rows):
    expected = ovrabase.resize_image(PHOTO, size)
    with ovrabase.band_resize_init((80, 64), size, ovrabase.RGB8, 3) as resize:
        for _ in range(2):
            parts = [resize.push(PHOTO[first:first + rows]) for first in range(0, 64, rows)]
            assert_array_equal(numpy.concatenate(parts), expected)
        with pytest.raises(ValueError):
            resize.push(PHOTO[:, 1:])
    table = ovrabase.calc_cubic_spline(-0.5)
    with ovrabase.band_resize_core_init((80, 64), size, ovrabase.RGB8, 3, table, 1.5, 6) as resize:
        assert_array_equal(
            resize.push(PHOTO), ovrabase.resize_image_core(PHOTO, size, (0, 0, 80, 64), table, 1.5, 6))


def test_multi_frequency_with_unit_weights_changes_nothing():
    params = ovrabase.MultiFrequencyParams(band_count=3, base_gain=1, pivot=0.5)
    for band in params.band:
        band.gain = band.limit = 1
    assert_array_equal(ovrabase.multi_frequency(PHOTO, params), PHOTO)
    params.band[0].gain = 3
    assert (ovrabase.multi_frequency(PHOTO, params) != PHOTO).any()


@pytest.mark.parametrize("form", ["hyper_tone", "hyper_tone_light", "hybrid_hyper_tone",
                                  "hybrid_hyper_tone_light"])
@pytest.mark.parametrize("depth", [10, 12])
def test_tone_lifts_shadows(form, depth):
    picture = PHOTO.astype(numpy.uint16) // 8 << (depth - 8)
    lifted = getattr(ovrabase, form)(picture, TONE, depth)
    assert lifted.mean() > picture.mean()
    unchanged = ovrabase.HyperToneParams.from_buffer_copy(TONE)
    unchanged.amount = 0
    assert_array_equal(getattr(ovrabase, form)(picture, unchanged, depth), picture)


def test_conversions_between_kinds():
    deep = ovrabase.conv_color_1d_tbl_single_step(PHOTO, [RAMP * 16] * 3, BGR8, RGB12)
    assert deep.dtype == numpy.uint16
    assert_array_equal(deep, PHOTO.astype(numpy.uint16) * 16)
    cmyk = numpy.zeros((2, 2, 2, 4), numpy.uint16)
    cmyk[..., 3] = 99
    cube = ovrabase.ColorCube([[0, 255]] * 3, cmyk)
    inked = ovrabase.conv_color_cube_single_step(PHOTO, cube, out_kind=Kind(8, ovrabase.ColorModel.CMYK))
    assert inked.shape == (64, 80, 4) and (inked == [0, 0, 0, 99]).all()


def test_cascaded_cubes_do_what_both_do():
    first, second = swapping_cube(3), swapping_cube(2)
    ovrabase.cascade_3d(first, second)
    assert_array_equal(ovrabase.conv_color_cube_single_step(PHOTO, first), PHOTO)


def test_a_band_that_fails_is_reported():
    with pytest.raises(ovrabase.Error):
        ovrabase.conv_color_mtx_single_step(noise((64, 4, 4)), numpy.eye(3), threads=4)
