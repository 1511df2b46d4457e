# SPDX-License-Identifier: MIT
"""Sharpened: both luminance masks, what they have changed, and the curves that steer them."""

import re

from geometry import is_plain_color

VARIANTS = [("Sharpened as it comes", []),
            ("Strongly, by a wide blur", ["--amount", 2.5, "--radius", 4]),
            ("Softened", ["--amount", 0.2]),
            ("Two bands", ["--double"])]
GAIN = 4


def add(page, pictures):
    pictures = [picture for picture in pictures if is_plain_color(page, picture)]
    page.section("Sharpened", "The luminance mask adds to every pixel what distinguishes its "
                 "luminance from a blur of it; colors keep their hue. The double mask does so in "
                 f"two bands, fine and coarse. Differences are shown {GAIN} times as large, about "
                 "grey.")
    if not pictures:
        page.paragraph("This needs a picture of 8 bits a sample in color.")
        return
    for number, picture in enumerate(pictures):
        figures = [page.figure(picture, "Before")]
        for variant, (title, options) in enumerate(VARIANTS):
            result = f"sharpen-{number}-{variant}.png"
            step = page.ovra("sharpen", *options, picture, result)
            difference = f"sharpen-{number}-{variant}-difference.png"
            page.ovra("compare", "--gain", GAIN, picture, result, "-o", difference, differ=True)
            figures += [page.figure(result, title, step),
                        page.figure(difference, f"Difference, {GAIN} times")]
        page.figures(*figures)
    add_curves(page, pictures[0])


def add_curves(page, picture):
    page.subsection("Response curves")
    page.paragraph("How strongly the mask acts: by the brightness of a pixel, and by its "
                   "difference from the blur, of which the middle eighth is shown. The smallest "
                   "differences are noise, and large ones are edges that need no help. The double "
                   "mask's curves, times the amount, are what becomes of the band.")
    single = shown_curves(page, picture, [])
    double = shown_curves(page, picture, ["--double"])
    inner = {"x_range": (-0.125, 0.125), "y_range": (0, 2)}
    page.figures(
        page.plot("Strength by brightness", [("mask", "#36c", single["mask level"])],
                  y_range=(0, 2)),
        page.plot("Strength by difference", [("mask", "#36c", single["mask difference"])], **inner),
        page.plot("Bands by difference",
                  [(name, color, [(x, double[f"{name} amount"] * y)
                                  for x, y in double[f"{name} difference"]])
                   for name, color in (("fine", "#36c"), ("coarse", "#c63"))], **inner))


def shown_curves(page, picture, options):
    """What --show prints: amounts, and curves as points."""
    output = page.ovra("sharpen", *options, "--show", picture, "sharpen-shown.png").output
    shown = {}
    for name, text in re.findall(r"^(\w+ (?:amount|level|difference)) (.*)$", output, re.MULTILINE):
        points = [tuple(map(float, point.split(":"))) for point in text.split(",")]
        shown[name] = points[0][0] if name.endswith("amount") else cut(points, name)
    return shown


def cut(points, name):
    """A difference curve within the part that is plotted, with points at its ends."""
    if name.endswith("level"):
        return points
    limit = 0.125
    inner = [(x, y) for x, y in points if -limit < x < limit]
    return [(-limit, value(points, -limit)), *inner, (limit, value(points, limit))]


def value(points, x):
    for (x0, y0), (x1, y1) in zip(points, points[1:]):
        if x0 <= x <= x1:
            return y0 + (y1 - y0) * (x - x0) / (x1 - x0)
    raise ValueError(f"{x} is outside the curve")
