# SPDX-License-Identifier: MIT
"""Smoothed and soft: the edge filter and soft focus, each with what it has changed."""

from geometry import is_plain_color


def add(page, pictures):
    pictures = [picture for picture in pictures if is_plain_color(page, picture)]
    page.section("Smoothed", "The edge filter moves every pixel toward those of its neighbours that "
                 "are like it: noise goes, edges stay. In the third picture the difference is shown "
                 "eight times as large, about grey.")
    add_figures(page, pictures, "smooth", 8, [("Smoothed", [])])
    page.section("Soft focus", "A blurred copy is mixed in, so that light spreads and contours stay. "
                 "Differences are shown twice as large.")
    add_figures(page, pictures, "softfocus", 2,
                [("As it comes", []), ("Wide and strong", ["--radius", 200, "--mix", 0.7])])


def add_figures(page, pictures, command, gain, variants):
    if not pictures:
        page.paragraph("This needs a picture of 8 bits a sample in color.")
    for number, picture in enumerate(pictures):
        figures = [page.figure(picture, "Before")]
        for variant, (title, options) in enumerate(variants):
            result = f"{command}-{number}-{variant}.png"
            step = page.ovra(command, *options, picture, result)
            difference = f"{command}-{number}-{variant}-difference.png"
            page.ovra("compare", "--gain", gain, picture, result, "-o", difference, differ=True)
            figures += [page.figure(result, title, step),
                        page.figure(difference, f"Difference, {gain} times")]
        page.figures(*figures)
