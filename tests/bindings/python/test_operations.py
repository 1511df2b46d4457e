# SPDX-License-Identifier: MIT
"""Arguments reach the functions that they are meant for, and results come back."""

import ctypes

import numpy
import ovrabase
import pytest
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
        numpy.testing.assert_array_equal(destination, expected)
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
    numpy.testing.assert_array_equal(dib, expected)
    numpy.testing.assert_array_equal(ovrabase.dib2raw(dib, 77, 64, threads=threads), photo)


def test_the_resize_functions_agree_where_they_do_the_same():
    size, whole = (60, 48), (0, 0, 80, 64)
    small = ovrabase.resize_image(PHOTO, size)
    assert small.shape == (48, 60, 3)
    table = ovrabase.calc_cubic_spline(-0.75)
    taps, stretch = ovrabase.select_kernel_support(0.75)
    others = [
        ovrabase.resize_image_roi(PHOTO, size, whole),
        ovrabase.resize_image_var(PHOTO, size, 0.75, 0.75),
        ovrabase.resize_image_roi_var(PHOTO, size, whole, 0.75, 0.75),
        ovrabase.resize_image_core(PHOTO, size, whole, table, stretch, taps),
        ovrabase.resize_image_core_var(PHOTO, size, whole, (0.75, 0.75), table, (stretch, stretch),
                                       (taps, taps)),
    ]
    for other in others:
        numpy.testing.assert_array_equal(other, small)
    tiny = ovrabase.small_resize_image(PHOTO, (10, 8), whole, table)
    numpy.testing.assert_array_equal(ovrabase.resize_image(PHOTO, (10, 8)), tiny)


def test_trimming():
    cut = ovrabase.free_trimming(PHOTO, (20, 16), 30, 10, 0)
    numpy.testing.assert_array_equal(cut, PHOTO[10:26, 30:50])
    outside = ovrabase.free_trimming(PHOTO, (20, 16), 200, 10, 35, (1, 2, 3))
    assert (outside == [1, 2, 3]).all()
    turned = ovrabase.free_trimming(PHOTO, (64, 80), 8, -8, 900)
    numpy.testing.assert_array_equal(turned, numpy.rot90(PHOTO))


def test_resize_with_a_turn():
    whole, table = (0, 0, 80, 64), ovrabase.calc_cubic_spline(-0.75)
    taps, stretch = ovrabase.select_kernel_support(0.75)
    expected = numpy.rot90(ovrabase.resize_image(PHOTO, (60, 48)))
    tiny = numpy.rot90(ovrabase.resize_image(PHOTO, (20, 16)))
    for arrange, _ in ARRANGEMENTS.values():
        photo = arrange(PHOTO)
        to = arrange(numpy.zeros((60, 48, 3), numpy.uint8))
        ovrabase.resize_rotate_image_roi(photo, (48, 60), whole, 1, destination=to)
        numpy.testing.assert_array_equal(to, numpy.rot90(ovrabase.resize_image(photo, (60, 48))))
    core = ovrabase.resize_rotate_image_core(PHOTO, (48, 60), whole, table, stretch, taps, 1)
    numpy.testing.assert_array_equal(core, expected)
    small = ovrabase.small_resize_rotate_image(PHOTO, (16, 20), whole, table, 1)
    numpy.testing.assert_array_equal(small, tiny)


@pytest.mark.parametrize("size", [(60, 48), (20, 16), (80, 64), (100, 80)])
@pytest.mark.parametrize("rows", [1, 7, 64])
def test_resize_in_bands(size, rows):
    expected = ovrabase.resize_image(PHOTO, size)
    with ovrabase.band_resize_init((80, 64), size, ovrabase.RGB8, 3) as resize:
        for _ in range(2):
            parts = [resize.push(PHOTO[first:first + rows]) for first in range(0, 64, rows)]
            numpy.testing.assert_array_equal(numpy.concatenate(parts), expected)
        with pytest.raises(ValueError):
            resize.push(PHOTO[:, 1:])
    table = ovrabase.calc_cubic_spline(-0.5)
    with ovrabase.band_resize_core_init((80, 64), size, ovrabase.RGB8, 3, table, 1.5, 6) as resize:
        numpy.testing.assert_array_equal(
            resize.push(PHOTO), ovrabase.resize_image_core(PHOTO, size, (0, 0, 80, 64), table, 1.5, 6))


def test_sharpening_by_context_and_in_one_step():
    weights = ovrabase.gaussian_weights(1.0)
    assert weights.tolist() == [7, 31, 52, 31, 7]
    tables = ovrabase.yusm_make_table(*ovrabase.default_curves())
    sharp = ovrabase.yusm_single_step(PHOTO, weights, 2.5, tables)
    assert (sharp != PHOTO).any()
    with ovrabase.yusm_init(ovrabase.RGB8, 3, weights, 2.5) as context:
        for arrange, _ in ARRANGEMENTS.values():
            arranged = arrange(PHOTO.copy())
            numpy.testing.assert_array_equal(ovrabase.yusm(arranged, context), sharp)
            ovrabase.yusm(arranged, context, destination=arranged)
            numpy.testing.assert_array_equal(arranged, sharp)
        with pytest.raises(ValueError):
            ovrabase.yusm(PHOTO.astype(numpy.uint16), context)
    numpy.testing.assert_array_equal(ovrabase.yusm_single_step(PHOTO, weights, 1.0, tables), PHOTO)


def test_double_sharpening():
    flat = ovrabase.yusm_make_table([(0, 1), (1, 1)], [(-1, 1), (1, 1)])
    coarse = ovrabase.Band(ovrabase.gaussian_weights(3, 25), 1.5, flat)
    fine = ovrabase.Band(ovrabase.gaussian_weights(0.8, 25), 2.0, flat)
    sharp = ovrabase.yusm_double_single_step(PHOTO, coarse, fine)
    assert (sharp != PHOTO).any()
    with ovrabase.yusm_double_init(coarse, fine) as context:
        numpy.testing.assert_array_equal(ovrabase.yusm_double(PHOTO, context), sharp)


def test_filters_of_packed_rows_take_every_arrangement():
    for function in (ovrabase.efilter_image, lambda image: ovrabase.soft_focus(image, 200, 0.5)):
        expected = function(PHOTO)
        assert (expected != PHOTO).any()
        for arrange, _ in ARRANGEMENTS.values():
            numpy.testing.assert_array_equal(function(arrange(PHOTO)), expected)


def test_multi_frequency_with_unit_weights_changes_nothing():
    params = ovrabase.MultiFrequencyParams(band_count=3, base_gain=1, pivot=0.5)
    for band in params.band:
        band.gain = band.limit = 1
    numpy.testing.assert_array_equal(ovrabase.multi_frequency(PHOTO, params), PHOTO)
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
    numpy.testing.assert_array_equal(getattr(ovrabase, form)(picture, unchanged, depth), picture)


def swapping_cube(count):
    """Exchanges the first and the third channel."""
    grid = numpy.linspace(0, 255, count).astype(numpy.uint16)
    nodes = numpy.stack(numpy.meshgrid(grid, grid, grid, indexing="ij"), axis=-1)
    return ovrabase.ColorCube([grid] * 3, nodes[..., ::-1])


RAMP = numpy.arange(256, dtype=numpy.uint16)
CONVERSIONS = {
    "cube": (lambda image, **more: ovrabase.conv_color_cube_single_step(image, swapping_cube(2), **more),
             lambda image: image[..., ::-1]),
    "tables": (lambda image, **more: ovrabase.conv_color_1d_tbl_single_step(
        image, [RAMP, 255 - RAMP, RAMP // 2], **more),
        lambda image: numpy.stack([image[..., 0], 255 - image[..., 1], image[..., 2] // 2], axis=-1)),
    "polynomials": (lambda image, **more: ovrabase.conv_color_coef_single_step(
        image, [(0, 1, 0), (255, -1, 0), (7, 0, 0)], **more),
        lambda image: numpy.stack([image[..., 0], 255 - image[..., 1], 0 * image[..., 2] + 7], axis=-1)),
    "matrix": (lambda image, **more: ovrabase.conv_color_mtx_single_step(
        image, [[0, 0, 1], [1, 0, 0], [0, 1, 0]], **more), lambda image: image[..., [2, 0, 1]]),
}


@pytest.mark.parametrize("threads", [1, 3])
@pytest.mark.parametrize("arrangement", ARRANGEMENTS)
@pytest.mark.parametrize("conversion", CONVERSIONS)
def test_conversions(conversion, arrangement, threads):
    function, definition = CONVERSIONS[conversion]
    arranged = ARRANGEMENTS[arrangement][0](PHOTO.copy())
    numpy.testing.assert_array_equal(function(arranged, threads=threads), definition(PHOTO))
    destination = ARRANGEMENTS[arrangement][0](numpy.zeros_like(PHOTO))
    function(PHOTO, destination=destination, threads=threads)
    numpy.testing.assert_array_equal(destination, definition(PHOTO))


def test_conversions_between_kinds():
    deep = ovrabase.conv_color_1d_tbl_single_step(PHOTO, [RAMP * 16] * 3, BGR8, RGB12)
    assert deep.dtype == numpy.uint16
    numpy.testing.assert_array_equal(deep, PHOTO.astype(numpy.uint16) * 16)
    cmyk = numpy.zeros((2, 2, 2, 4), numpy.uint16)
    cmyk[..., 3] = 99
    cube = ovrabase.ColorCube([[0, 255]] * 3, cmyk)
    inked = ovrabase.conv_color_cube_single_step(PHOTO, cube, out_kind=Kind(8, ovrabase.ColorModel.CMYK))
    assert inked.shape == (64, 80, 4) and (inked == [0, 0, 0, 99]).all()


def test_cascaded_cubes_do_what_both_do():
    first, second = swapping_cube(3), swapping_cube(2)
    ovrabase.cascade_3d(first, second)
    numpy.testing.assert_array_equal(ovrabase.conv_color_cube_single_step(PHOTO, first), PHOTO)


def test_a_band_that_fails_is_reported():
    with pytest.raises(ovrabase.Error):
        ovrabase.conv_color_mtx_single_step(noise((64, 4, 4)), numpy.eye(3), threads=4)
