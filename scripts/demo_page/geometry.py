# SPDX-License-Identifier: MIT
"""Turned, mirrored, placed on a canvas, and composed."""

ORIENTATIONS = [("left", "Quarter turn left"), ("half", "Half turn"),
                ("right", "Quarter turn right"), ("mirror", "Mirrored"), ("flip", "Flipped"),
                ("transpose", "Transposed"), ("anti-transpose", "Transposed the other way")]


def add(page, pictures):
    for make in (add_orientations, add_canvas, add_composition):
        make(page, pictures)


def add_orientations(page, pictures):
    page.section("Turned and mirrored", "Whole pixels are moved; no sample changes.")
    picture = pictures[0]
    figures = [page.figure(picture, "Before")]
    for mode, title in ORIENTATIONS:
        result = f"rotate-{mode}.png"
        step = page.ovra("rotate", "--mode", mode, picture, result)
        figures.append(page.figure(result, title, step))
    page.figures(*figures)


def add_canvas(page, pictures):
    page.section("On a canvas", "A larger canvas of one color; the picture stands in it unchanged.")
    for number, picture in enumerate(pictures):
        width, height = page.size(picture)
        border = max(8, min(width, height) // 12)
        result = f"canvas-{number}.png"
        channels = page.info(picture)["channels"][0]
        fill = {"1": "235", "3": "240,230,210", "4": "240,230,210,255"}[channels]
        step = page.ovra("canvas", "--size", f"{width + 2 * border}x{height + 3 * border}",
                         "--offset", f"{border},{border}", "--fill", fill, picture, result)
        page.figures(page.figure(picture, "Before"), page.figure(result, "Framed", step))


def add_composition(page, pictures):
    page.section("Composed", "One picture placed in another: copied, or blended by its own alpha, "
                             "or by a mask that holds a weight for every pixel.")
    background = next((p for p in pictures if is_plain_color(page, p)), None)
    if background is None:
        page.paragraph("This needs a picture of 8 bits a sample in color.")
        return
    width, height = page.size(background)
    side = max(16, min(width, height) // 2)
    place = ("--at", f"{(width - side) // 2},{(height - side) // 2}")
    drawn = {"--hue-circle": "circle.png", "--hue-spot": "spot.png", "--grey-ramp": "weights.png"}
    for kind, name in drawn.items():
        page.run("ovra_scene", kind, "--width", side, "--height", side, name)
    copied = page.ovra("compose", background, "compose-copy.png", "--overlay", "circle.png", *place)
    by_alpha = page.ovra("compose", background, "compose-alpha.png", "--overlay", "spot.png", *place)
    by_mask = page.ovra("compose", background, "compose-mask.png", "--overlay", "circle.png", *place,
                        "--mask", "weights.png")
    page.figures(page.figure("circle.png", "Overlay"),
                 page.figure("spot.png", "Overlay with alpha"),
                 page.figure("weights.png", "Mask for the first overlay"))
    page.figures(page.figure("compose-copy.png", "Copied", copied),
                 page.figure("compose-alpha.png", "Blended by alpha", by_alpha),
                 page.figure("compose-mask.png", "Blended by the mask", by_mask))


def is_plain_color(page, picture):
    info = page.info(picture)
    return info["channels"].startswith("3") and info["depth"].startswith("8")
