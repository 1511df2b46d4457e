# SPDX-License-Identifier: MIT
"""Tones by curves, and channels mixed by matrices."""

from geometry import is_plain_color

CHANNELS = (("red", "#c33"), ("green", "#393"), ("blue", "#33c"))

CURVES = [
    ("contrast", "More contrast", ["--points", "0:0,0.25:0.18,0.75:0.84,1:1"]),
    ("lift", "Brighter shadows", ["--gamma", "1.6"]),
    ("film", "Crossed film", ["--red", "0:0.04,0.5:0.58,1:1", "--green", "0:0,0.5:0.53,1:0.97",
                              "--blue", "0:0.16,0.5:0.45,1:0.82"]),
]

MATRICES = [
    ("grey", "Luminance", ["--saturation", "0"]),
    ("vivid", "More color", ["--saturation", "1.6"]),
    ("sepia", "Sepia", ["--sepia"]),
    ("balance", "White balance for lamplight", ["--gains", "0.82,1,1.3"]),
    ("second-order", "Second order: deeper shadows, held highlights", ["--file", "deeper.txt"]),
]

# Each channel becomes 0.55 x + 0.45 x * x, and a little of what red and blue share.
DEEPER = """# r g b 1 r*r g*g b*b r*g g*b b*r
0.55 0 0 0  0.45 0 0  0 0 0
0 0.55 0 0  0 0.45 0  0 0 -0.05
0 0 0.55 0  0 0 0.45  0 0 0.05
"""


def add(page, pictures):
    pictures = [picture for picture in pictures if is_plain_color(page, picture)]
    page.run("ovra_scene", "--grey-ramp", "--width", 320, "--height", 80, "ramp.png")
    page.run("ovra_scene", "--grey-ramp", "--width", 256, "--height", 2, "tones.png")
    page.run("ovra_scene", "--hue-circle", "--width", 320, "--height", 320, "hues.png")
    page.section("Curves", "A table for each channel. Curves run smoothly through their points; the "
                           "plots show what became of all 256 tones.")
    add_variants(page, pictures, "curve", CURVES, "ramp.png", plotted=True)
    (page.out / "deeper.txt").write_text(DEEPER, encoding="ascii")
    page.section("Matrices", "Each new channel is a sum of the old ones with weights, in fixed "
                             "point, or of second order in double precision.")
    add_variants(page, pictures, "matrix", MATRICES, "hues.png", plotted=False)


def add_variants(page, pictures, command, variants, chart, plotted):
    """The chart and every picture before and after each variant."""
    if plotted:
        page.figures(*(plot_tones(page, command, *variant) for variant in variants))
    for number, picture in enumerate([chart, *pictures]):
        figures = [page.figure(picture, "Before")]
        for name, title, options in variants:
            result = f"{command}-{name}-{number}.png"
            step = page.ovra(command, *options, picture, result)
            figures.append(page.figure(result, title, step))
        page.figures(*figures)


def plot_tones(page, command, name, title, options):
    """A plot of the channels of a grey ramp of all tones, as the library has changed them."""
    result = f"{command}-{name}-tones.png"
    page.ovra(command, *options, "tones.png", result)
    before = page.samples("tones.png")
    after = page.samples(result)
    curves = [[(before[3 * x + k] / 255, after[3 * x + k] / 255) for x in range(256)]
              for k in range(3)]
    if curves[0] == curves[1] == curves[2]:
        return page.plot(title, [("all channels", "#333", curves[0])])
    return page.plot(title, [(*channel, curve) for channel, curve in zip(CHANNELS, curves)])
