# SPDX-License-Identifier: MIT
"""The opening: what the strongest operations do, before and after under a slider, and details at true size."""

EFFECTS = [("Light balanced", "tone", []),
           ("Clarity", "clarity", ["--detail", 0.7, "--clarity", 0.8]),
           ("Skin and noise softened, edges left", "clarity", ["--soft-skin", 0.9, "--denoise", 0.6]),
           ("Soft focus", "softfocus", [])]

# What a part of a picture at one screen pixel a pixel shows best.
DETAILS = [("As it was", None), ("Sharpened", ["sharpen", "--amount", 2]),
           ("Sharpened in two bands", ["sharpen", "--double"]), ("Smoothed", ["smooth"])]
DETAIL_SIDE = 290  # as wide as the columns of these rows: four on a screen of 1280 pixels


def add(page, pictures):
    first = pictures[0] if page.photographs else "back-light.png"
    page.section("Before and after", "Drag the sliders: left of the line the picture as it was, right of it "
                 "what one call of the library made of it.")
    sliders = []
    for number, (title, command, options) in enumerate(EFFECTS):
        picture = first if command == "tone" else pictures[number % len(pictures)]
        result = f"opening-{number}.jpg"
        step = page.ovra(command, *options, picture, result)
        sliders.append(page.slider(picture, result, title, step))
    page.figures(*sliders, kind="wide")
    page.subsection("Details, pixel for pixel")
    page.figures(*details(page, pictures[0]), kind="details")


def details(page, picture):
    """The middle of the picture, through the operations that work on detail."""
    width, height = page.size(picture)
    side = min(DETAIL_SIDE, width, height)
    part = f"{(width - side) // 2},{(height - side) // 2},{side},{side}"
    for number, (title, command) in enumerate(DETAILS):
        whole, step = picture, None
        if command is not None:
            whole = f"detail-whole-{number}.png"
            step = page.ovra(*command, picture, whole)
        page.ovra("resize", "--crop", part, whole, f"detail-{number}.png")
        page.steps.pop()  # shows what is there
        yield page.figure(f"detail-{number}.png", title, step)
