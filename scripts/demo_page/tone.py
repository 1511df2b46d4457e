# SPDX-License-Identifier: MIT
"""Clarity and tone: sliders at default and strong settings, halos, bands, and the curve."""

FORMS = [("hyper", "#c63"), ("hyper-light", "#c9a"), ("hybrid", "#36c"), ("hybrid-light", "#6ac")]

CLARITY = [("As it comes", []),
           ("Detail and clarity in full", ["--detail", 1, "--clarity", 1]),
           ("Soft skin", ["--soft-skin", 1]),
           ("Noise taken away", ["--denoise", 1]),
           ("Flatter light", ["--flatten", 1])]

TONE = [("As it comes", []),
        ("Strong, as it comes", ["--shadows", 1.5, "--highlights", 1, "--local-contrast", 1.4]),
        ("Strong, colors held back", ["--shadows", 1.5, "--highlights", 1, "--local-contrast", 1.4,
                                      "--colour", 0.5]),
        ("Strong, hyper", ["--shadows", 1.5, "--highlights", 1, "--local-contrast", 1.4,
                           "--form", "hyper"])]


def add(page, pictures):
    scenes = ["back-light.png", *pictures]
    page.section("Clarity", "The brightness is split into bands of detail, each an octave coarser "
                 "than the last, and put together again with other weights. Noise below a threshold "
                 "and edges above a limit are left alone.")
    add_variants(page, scenes, "clarity", CLARITY)
    add_bands(page, pictures[0])
    page.section("Tone", "Shadows are lifted and highlights held, region by region, while detail "
                 "keeps its contrast: each pixel is multiplied by one gain, so that colors keep "
                 "their ratios. The hybrid forms have no halos at strong edges.")
    add_variants(page, scenes, "tone", TONE)
    add_halos(page)
    add_curve(page, "back-light.png")


def add_variants(page, pictures, command, variants):
    """The first two under sliders: as it comes, and strong."""
    for number, picture in enumerate(pictures):
        sliders, figures = [], []
        for variant, (title, options) in enumerate(variants):
            result = f"{command}-{number}-{variant}.png"
            step = page.ovra(command, *options, picture, result)
            if variant < 2:
                sliders.append(page.slider(picture, result, title, step))
            else:
                figures.append(page.figure(result, title, step))
        page.figures(*sliders, kind="wide")
        page.figures(*figures)


def add_bands(page, picture):
    page.subsection("The bands of a picture")
    page.paragraph("Each band alone: the others and the base have the weight 0, about middle grey, "
                   "and what is shown is its difference from a picture without any, three times as "
                   "large.")
    page.ovra("clarity", "--bands", ",".join(["0"] * 6), "--base-gain", 0, picture, "band-none.png")
    figures = []
    for band in range(6):
        weights = ["0"] * 6
        weights[band] = "1"
        alone = f"band-{band + 1}-alone.png"
        page.ovra("clarity", "--bands", ",".join(weights), "--base-gain", 0, picture, alone)
        shown = f"band-{band + 1}.png"
        step = page.ovra("compare", "--gain", 3, "band-none.png", alone, "-o", shown, differ=True)
        (page.out / alone).unlink()
        figures.append(page.figure(shown, f"Band {band + 1}", step))
    page.figures(*figures)


def add_halos(page):
    page.subsection("A step edge in the four forms")
    page.paragraph("Brightness across a step from 0.2 to 0.8 with strong settings. The grey line is "
                   "what becomes of the two greys where there is no edge near; a halo is what "
                   "departs from it beside the edge. The hybrid forms keep to it.")
    width = 640
    page.run("ovra_scene", "--step-edge", "--width", width, "--height", 400, "halo.png")
    strong = ["--shadows", 1.5, "--highlights", 1, "--local-contrast", 1, "--scale", 6]
    curves = []
    for form, color in FORMS:
        result = f"halo-{form}.png"
        page.ovra("tone", *strong, "--form", form, "halo.png", result)
        values = grey_row(page, result, 200)
        curves.append((form, color, [(x / width, value) for x, value in enumerate(values)]))
    ends = curves[2][2]
    flat = [(0, ends[0][1]), (0.5, ends[0][1]), (0.5, ends[-1][1]), (1, ends[-1][1])]
    page.figures(*(page.plot(f"Form {curve[0]}", [("flat", "#999", flat), curve], size=280)
                   for curve in curves), kind="details")


def add_curve(page, picture):
    page.subsection("The tone curve and a histogram")
    page.paragraph("The curve of the sliders as they come and in strong settings over the tones of the "
                   "back-lit scene, and what becomes of these tones.")
    def curve(shadows, highlights):
        return [(x / 100, x / 100 + shadows * x / 100 * (1 - x / 100) ** 3
                 - highlights * (x / 100) ** 3 * (1 - x / 100)) for x in range(101)]
    page.figures(
        page.plot("Tone curve", [("tones", "#bbb", histogram(page, picture)),
                                 ("as it comes", "#36c", curve(0.6, 0.4)),
                                 ("strong", "#c63", curve(1.5, 1.0)),
                                 ("unchanged", "#999", [(0, 0), (1, 1)])]),
        page.plot("Tones of the scene", [("before", "#999", histogram(page, picture)),
                                         ("after", "#36c", histogram(page, "tone-0-0.png")),
                                         ("strong", "#c63", histogram(page, "tone-0-1.png"))]))


def grey_row(page, name, top):
    """The first channel along rows, 0..1, as the mean of eight rows, in which a dither is level."""
    width, _ = page.size(name)
    samples = page.samples(name)
    return [sum(samples[3 * ((top + y) * width + x)] for y in range(8)) / (8 * 255)
            for x in range(width)]


def histogram(page, name):
    """Shares of 64 tones of the green channel, scaled to the highest."""
    counts = [0] * 64
    for value in page.samples(name)[1::3]:
        counts[value // 4] += 1
    highest = max(counts)
    return [((tone + 0.5) / 64, count / highest) for tone, count in enumerate(counts)]
