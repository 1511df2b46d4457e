# SPDX-License-Identifier: MIT
"""Looks: colour cubes that are computed here, and what they do to pictures and to test charts."""

from geometry import is_plain_color

POINTS = 33


def add(page, pictures):
    page.section("Looks", "A color cube maps every color to another one, with a lattice of "
                 f"{POINTS} points an axis and interpolation between them. The two looks were "
                 "computed for this page and written as .cube files.")
    for look in (identity, warm, cool):
        write_cube(page.out / f"{look.__name__}.cube", look)
    pictures = [picture for picture in pictures if is_plain_color(page, picture)]
    if not pictures:
        page.paragraph("This needs a picture of 8 bits a sample in color.")
        return
    for number, picture in enumerate(pictures):
        add_looks(page, picture, number)
    add_cascade(page, pictures[0])
    add_charts(page)


def add_looks(page, picture, number):
    figures = [page.figure(picture, "Before")]
    unchanged = apply(page, "identity", picture, f"look-identity-{number}.png")
    require_equal(page, picture, unchanged[0])
    figures.append(page.figure(unchanged[0], "Identity: no pixel has changed", unchanged[1]))
    for look in ("warm", "cool"):
        result, step = apply(page, look, picture, f"look-{look}-{number}.png")
        figures.append(page.figure(result, look.capitalize(), step))
    page.figures(*figures)


def add_cascade(page, picture):
    page.subsection("Two looks in one")
    page.paragraph("The cascade joins two cubes into one that does what both did in turn.")
    joined = page.ovra("cascade", "warm.cube", "cool.cube", "both.cube")
    in_turn, _ = apply(page, "warm", picture, "look-first.png")
    in_turn, second = apply(page, "cool", in_turn, "look-in-turn.png")
    result, step = apply(page, "both", picture, "look-both.png")
    page.figures(page.figure(in_turn, "Warm, then cool", second),
                 page.figure(result, "The joined cube", step))
    page.paragraph(f"<code>{joined.command}</code>")


def add_charts(page):
    page.subsection("Charts")
    page.run("ovra_scene", "--hue-circle", "--width", 320, "--height", 320, "chart-hues.png")
    page.run("ovra_scene", "--grey-ramp", "--width", 320, "--height", 80, "chart-greys.png")
    charts = (("hues", "Hue circle"), ("greys", "Grey ramp"))
    for chart, title in charts:
        figures = [page.figure(f"chart-{chart}.png", f"{title} before")]
        for look in ("warm", "cool"):
            result, step = apply(page, look, f"chart-{chart}.png", f"chart-{chart}-{look}.png")
            figures.append(page.figure(result, look.capitalize(), step))
        page.figures(*figures)
    page.figures(*(page.plot(f"{look.__name__.capitalize()}: what becomes of grey", responses(look))
                   for look in (warm, cool)))


# Looks ------------------------------------------------------------------------------------------
# Each maps red, green and blue of 0..1.

def identity(red, green, blue):
    return red, green, blue


def warm(red, green, blue):
    """Evening sun: more contrast, highlights to amber, shadows a little to teal."""
    red, green, blue = (contrast(v, 0.45) for v in (red, green, blue))
    light = luminance(red, green, blue)
    red, green, blue = saturate(1.12, red, green, blue)
    shadow = (1 - light) ** 3
    return (red * (1 + 0.07 * light) - 0.02 * shadow, green + 0.01 * shadow,
            blue * (1 - 0.15 * light) + 0.035 * shadow)


def cool(red, green, blue):
    """An overcast morning: faded blacks, paler colors, everything toward blue."""
    red, green, blue = saturate(0.72, red, green, blue)
    return 0.03 + 0.86 * red, 0.045 + 0.91 * green, 0.085 + 0.915 * blue


def contrast(value, amount):
    """Mixes in a smooth step, which is steeper in the middle and leaves 0 and 1."""
    return value + amount * (value * value * (3 - 2 * value) - value)


def luminance(red, green, blue):
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def saturate(factor, red, green, blue):
    grey = luminance(red, green, blue)
    return tuple(grey + factor * (v - grey) for v in (red, green, blue))


def responses(look):
    """Curves of the three channels along the grey axis."""
    greys = [i / 64 for i in range(65)]
    return [(name, color, [(v, min(1, max(0, look(v, v, v)[k]))) for v in greys])
            for k, (name, color) in enumerate((("red", "#c33"), ("green", "#393"),
                                               ("blue", "#33c")))]


# Files ------------------------------------------------------------------------------------------

def write_cube(path, look):
    levels = [i / (POINTS - 1) for i in range(POINTS)]
    rows = (look(red, green, blue) for blue in levels for green in levels for red in levels)
    with open(path, "w", encoding="ascii") as file:
        file.write(f'TITLE "{look.__name__}"\nLUT_3D_SIZE {POINTS}\n')
        for row in rows:
            file.write(" ".join(f"{min(1, max(0, value)):.6f}" for value in row) + "\n")


def apply(page, cube, picture, result):
    return result, page.ovra("lut", "--cube", f"{cube}.cube", picture, result)


def require_equal(page, picture, result):
    """Both written by the same program: equal pixels are equal files."""
    page.ovra("rotate", "--mode", "none", picture, "look-copy.png")
    if (page.out / "look-copy.png").read_bytes() != (page.out / result).read_bytes():
        raise SystemExit(f"demo: the identity look has changed {picture}")
