# SPDX-License-Identifier: MIT
"""Straightened by tenths of a degree, and large pictures resized in bands."""

import re

ANGLE = 4.5


def add(page, pictures):
    add_straightened(page, pictures)
    add_precision(page)
    add_bands(page)


def add_straightened(page, pictures):
    page.section("Straightened", "A turn by any tenth of a degree and an upright cut, in one step and "
                 "at the scale of the source. The frame on the tilted picture is what was cut out: "
                 "the largest part of the same proportions that shows no border.")
    for number, picture in enumerate(pictures):
        tilted = f"tilted-{number}.png"
        page.ovra("straighten", "--angle", -ANGLE, "--crop", "same", "--fill", 128, picture, tilted)
        level = f"straightened-{number}.png"
        step = page.ovra("straighten", "--angle", ANGLE, tilted, level)
        same = f"straightened-same-{number}.png"
        whole = page.ovra("straighten", "--angle", ANGLE, "--crop", "same", tilted, same)
        left, top, width, height = map(int, re.search(r"crop (\d+),(\d+),(\d+),(\d+)",
                                                      step.output).groups())
        frame = page.framed(tilted, (left, top, width, height), ANGLE)
        page.figures(page.figure(tilted, f"Tilted by {ANGLE} degrees", content=frame),
                     page.figure(level, "Straightened, cut inside", step),
                     page.figure(same, "Straightened, same size, edges repeated", whole))


def add_precision(page):
    page.subsection("A step edge and the zone plate, turned by 10 degrees")
    page.paragraph("Edges stay as sharp as they were, without stairs; rings keep their contrast "
                   "nearly to the finest that pixels hold. Shown pixel for pixel.")
    page.run("ovra_scene", "--step-edge", "--width", 160, "--height", 160, "step.png")
    page.run("ovra_scene", "--zone-plate", "--width", 500, "--height", 500, "rings.png")
    figures = []
    for name, title, scale in (("step.png", "Step edge", 3), ("rings.png", "Zone plate", 1)):
        result = f"turned-{name}"
        step = page.ovra("straighten", "--angle", 10, name, result)
        figures += [page.figure(name, title, scale=scale),
                    page.figure(result, f"{title}, turned", step, scale=scale)]
    page.figures(*figures, true_size=True)


def add_bands(page):
    page.section("Large pictures in bands", "A picture that is larger than memory goes through in "
                 "bands of rows, and what comes out is the same, byte for byte.")
    page.run("ovra_scene", "--zone-plate", "--width", 7000, "--height", 7000, "large.tif")
    whole = page.ovra("resize", "--fast", "--scale", "5%", "large.tif", "large-whole.png")
    bands = page.ovra("resize", "--fast", "--scale", "5%", "--bands", 64, "large.tif",
                      "large-bands.png")
    (page.out / "large.tif").unlink()
    same = page.samples("large-whole.png") == page.samples("large-bands.png")
    page.paragraph(f"A zone plate of 7000&thinsp;&times;&thinsp;7000 pixels, 147&nbsp;MB in memory. "
                   f"Most memory that the program held: <b>{whole.peak_mb:.0f}&nbsp;MB</b> with the "
                   f"whole picture, <b>{bands.peak_mb:.0f}&nbsp;MB</b> in bands of 64 rows. The "
                   f"results are {'the same' if same else '<b>different</b>'}.")
    page.figures(page.figure("large-whole.png", "Whole", whole),
                 page.figure("large-bands.png", "In bands", bands), true_size=True)
