# SPDX-License-Identifier: MIT
"""Arrays of all kinds of layout give what contiguous ones give, and nothing else is written."""

import numpy
import ovrabase
import pytest
from ovrabase.arrays import Layout, layouts_of

HEIGHT, WIDTH = 21, 37


def noise(shape, dtype=numpy.uint8, seed=1):
    return numpy.random.default_rng(seed).integers(0, 256, shape).astype(dtype)


def padded(image, alignment):
    copy = ovrabase.empty(image.shape, image.dtype, Layout(alignment, False))
    copy[...] = image
    return copy


def inside_another(image):
    large = noise((image.shape[0] + 5, image.shape[1] + 9) + image.shape[2:], image.dtype, 2)
    part = large[2:-3, 4:-5]
    part[...] = image
    return part


def at_odd_address(image):
    memory = numpy.zeros(image.nbytes + 1, numpy.uint8)
    memory[1:] = numpy.frombuffer(image.tobytes(), numpy.uint8)
    return memory[1:].view(image.dtype).reshape(image.shape)


# What an array is made into, and whether it is used without a copy.
ARRANGEMENTS = {
    "packed": (lambda image: image, True),
    "padded to 2": (lambda image: padded(image, 2), True),
    "padded to 4": (lambda image: padded(image, 4), True),
    "cut out": (inside_another, False),
    "columns apart": (lambda image: numpy.repeat(image, 2, axis=1)[:, ::2], False),
    "columns reversed": (lambda image: image[:, ::-1].copy()[:, ::-1], False),
    "Fortran order": (numpy.asfortranarray, False),
    "rows repeated": (lambda image: numpy.repeat(image, 3, axis=0)[::3], False),
    "bottom-up": (lambda image: image[::-1].copy()[::-1], True),
    "bottom-up, padded": (lambda image: padded(image[::-1], 4)[::-1], True),
}

IMAGES = {
    "grey8": noise((HEIGHT, WIDTH)),
    "rgb8": noise((HEIGHT, WIDTH, 3)),
    "rgba8": noise((HEIGHT, WIDTH, 4)),
    "grey16": noise((HEIGHT, WIDTH), numpy.uint16),
    "rgb16": noise((HEIGHT, WIDTH, 3), numpy.uint16),
}

FILL = 77


def canvas(image, destination=None):
    return ovrabase.extrapolate_image(image, WIDTH + 4, HEIGHT + 3, 1, 2, FILL, destination=destination)


def canvas_by_numpy(image):
    return numpy.pad(image, [(2, 1), (1, 3)] + [(0, 0)] * (image.ndim - 2), constant_values=FILL)


# Each with its definition, for pictures as they are seen.
OPERATIONS = {
    "quarter turn": (lambda image, to=None: ovrabase.rotate_image(image, 1, destination=to), numpy.rot90),
    "mirror": (lambda image, to=None: ovrabase.rotate_image(image, 4, destination=to),
               lambda image: image[:, ::-1]),
    "canvas": (canvas, canvas_by_numpy),
    "same size": (lambda image, to=None: ovrabase.resize_image(image, (WIDTH, HEIGHT), destination=to),
                  lambda image: image),
}


@pytest.mark.parametrize("operation", OPERATIONS)
@pytest.mark.parametrize("arrangement", ARRANGEMENTS)
@pytest.mark.parametrize("image", IMAGES)
def test_operations(image, arrangement, operation):
    function, definition = OPERATIONS[operation]
    arrange, expected = ARRANGEMENTS[arrangement][0], definition(IMAGES[image])
    source = arrange(IMAGES[image])
    numpy.testing.assert_array_equal(function(source), expected)
    numpy.testing.assert_array_equal(source, IMAGES[image])
    destination = arrange(numpy.zeros_like(expected))
    assert function(IMAGES[image], destination) is destination
    numpy.testing.assert_array_equal(destination, expected)


@pytest.mark.parametrize("arrangement", ARRANGEMENTS)
@pytest.mark.parametrize("image", IMAGES)
def test_copies_only_where_it_must(image, arrangement):
    arrange, without_copy = ARRANGEMENTS[arrangement]
    assert bool(layouts_of(arrange(IMAGES[image].copy()))) == without_copy


def test_samples_at_odd_addresses():
    image = at_odd_address(IMAGES["grey16"])
    assert not layouts_of(image)
    numpy.testing.assert_array_equal(ovrabase.rotate_image(image, 2), image[::-1, ::-1])


# What looks like padding to 4 bytes belongs to the picture around it.
@pytest.mark.parametrize("operation", OPERATIONS)
def test_what_lies_beside_a_destination_stays(operation):
    function, definition = OPERATIONS[operation]
    expected = definition(IMAGES["grey8"])
    height, width = expected.shape
    large = noise((height, (width + 3) // 4 * 4), seed=3)
    before = large.copy()
    function(IMAGES["grey8"], large[:, :width])
    numpy.testing.assert_array_equal(large[:, :width], expected)
    numpy.testing.assert_array_equal(large[:, width:], before[:, width:])


def test_overlapping_images_count_as_separate_ones():
    large = noise((HEIGHT + 4, WIDTH))
    expected = large[:HEIGHT, ::-1].copy()
    ovrabase.rotate_image(large[:HEIGHT], 4, destination=large[4:])
    numpy.testing.assert_array_equal(large[4:], expected)


@pytest.mark.parametrize("image, arguments", [
    (noise((4, 4, 3)).astype(numpy.float32), {}),
    (noise((2, 4, 4, 3)), {}),
    (noise((4, 4)), {"depth": 10}),
    (noise((4, 4), numpy.uint16), {"depth": 8}),
    (noise((4, 4)), {"destination": numpy.zeros((4, 5), numpy.uint8)}),
    (noise((4, 4)), {"destination": numpy.zeros((4, 4), numpy.uint16)}),
    (noise((4, 4)), {"destination": numpy.broadcast_to(numpy.uint8(0), (4, 4))}),
])
def test_what_is_no_image_is_refused(image, arguments):
    with pytest.raises(ValueError):
        ovrabase.rotate_image(image, 0, **arguments)


def test_statuses_are_exceptions():
    with pytest.raises(ovrabase.Error, match="mode is not 0 to 7") as caught:
        ovrabase.rotate_image(IMAGES["grey8"], 8)
    assert caught.value.status == ovrabase.StatusCode.ERROR_ROTATION_MODE
    with pytest.raises(ovrabase.Error) as caught:
        ovrabase.rotate_image(noise((0, 4)), 0)
    assert caught.value.status == ovrabase.StatusCode.ERROR_ROTATION_ZERO_SIZE
