# SPDX-License-Identifier: MIT
"""Made smaller and larger, whole and in part."""


def add(page, pictures):
    page.section("Resized", "Enlargements and reductions to about a third take a few pixels around "
                            "each place; stronger ones weigh all pixels that they cover. Shown pixel "
                            "for pixel: on screens that magnify, zoom out.")
    for number, picture in enumerate(pictures):
        add_resizes(page, picture, f"resize-{number}")
    page.subsection("Zone plate")
    page.paragraph("Rings that grow finer toward the edge, up to the finest that pixels hold. A "
                   "strong reduction turns what it cannot show into plain grey; the eight pixels "
                   "that make a half leave faint ghosts where the rings are finest.")
    page.run("ovra_scene", "--zone-plate", "--width", 1000, "--height", 1000, "zone-plate.png")
    page.figures(page.figure("zone-plate.png", "Before"), true_size=True)
    add_resizes(page, "zone-plate.png", "resize-zone-plate")


def add_resizes(page, picture, stem):
    width, height = page.size(picture)
    side = max(16, min(width, height) // 6)
    crop = f"{(width - side) // 2},{(height - side) // 2},{side},{side}"
    versions = [("Half", "half", ("--scale", 0.5)),
                ("A strong reduction", "small", ("--scale", 0.15)),
                ("A part, enlarged", "crop", ("--crop", crop, "--width", 3 * side + 1)),
                ("The same part as it is", "part", ("--crop", crop))]
    figures = []
    for title, name, options in versions:
        result = f"{stem}-{name}.png"
        step = page.ovra("resize", *options, picture, result)
        figures.append(page.figure(result, title, step))
    page.figures(*figures, true_size=True)
