#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the figures of the documentation: figures.py PROGRAMS FOLDER. Pictures are made by the library, and
curves are the library's own values, by its Python package."""

import os
import subprocess
import sys
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
BLUE, ORANGE, GREY = "#3366cc", "#cc6633", "#999999"


def svg(folder, name, width, height, body):
    (folder / name).write_text(
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
        f'height="{height}" font-family="sans-serif" font-size="12">\n{body}\n</svg>\n', encoding="utf-8")


def plot(left, top, size, x_range, y_range, curves, title):
    """A square plot; curves are (label, color, points)."""
    def place(x, y):
        return (left + (x - x_range[0]) / (x_range[1] - x_range[0]) * size,
                top + size - (y - y_range[0]) / (y_range[1] - y_range[0]) * size)

    parts = [f'<rect x="{left}" y="{top}" width="{size}" height="{size}" fill="none" stroke="{GREY}"/>',
             f'<text x="{left}" y="{top - 8}">{title}</text>']
    if y_range[0] < 0:
        parts.append(f'<path d="M{left} {place(0, 0)[1]} h{size}" stroke="{GREY}"/>')
    for number, (label, color, points) in enumerate(curves):
        line = " ".join("{:.1f},{:.1f}".format(*place(x, y)) for x, y in points)
        parts.append(f'<polyline points="{line}" fill="none" stroke="{color}" stroke-width="1.5"/>')
        parts.append(f'<text x="{left + size - 6}" y="{top + 18 + 16 * number}" fill="{color}" '
                     f'text-anchor="end">{label}</text>')
    for x in x_range:
        parts.append(f'<text x="{place(x, 0)[0]}" y="{top + size + 16}" text-anchor="middle">{x:g}</text>')
    for y in y_range:
        parts.append(f'<text x="{left - 4}" y="{place(0, y)[1] + 4}" text-anchor="end">{y:g}</text>')
    return "\n".join(parts)


def draw_sampling(folder):
    """Six source pixels, a region of four in them, eight destination pixels over the region."""
    side, left, source_top, destination_top = 60, 30, 130, 40
    parts = []
    for i in range(6):
        x = left + i * side
        parts.append(f'<rect x="{x}" y="{source_top}" width="{side}" height="{side}" fill="none" '
                     f'stroke="{GREY}"/><circle cx="{x + side / 2}" cy="{source_top + side / 2}" r="3"/>'
                     f'<text x="{x + side / 2}" y="{source_top + side + 16}" text-anchor="middle">{i}</text>')
    region = left + side
    parts.append(f'<rect x="{region}" y="{source_top}" width="{4 * side}" height="{side}" fill="none" '
                 f'stroke="{ORANGE}" stroke-width="2"/>')
    for i in range(8):
        x = region + i * side / 2
        parts.append(f'<rect x="{x}" y="{destination_top}" width="{side / 2}" height="{side / 2}" '
                     f'fill="none" stroke="{BLUE}"/><circle cx="{x + side / 4}" '
                     f'cy="{destination_top + side / 4}" r="2" fill="{BLUE}"/><path d="M{x + side / 4} '
                     f'{destination_top + side / 2} V{source_top}" stroke="{BLUE}" stroke-dasharray="2 3"/>'
                     f'<text x="{x + side / 4}" y="{destination_top - 6}" text-anchor="middle" '
                     f'fill="{BLUE}">{i}</text>')
    parts.append(f'<text x="{left + 6 * side + 10}" y="{destination_top + 20}" fill="{BLUE}">destination</text>'
                 f'<text x="{left + 6 * side + 10}" y="{source_top + 26}" fill="{ORANGE}">region x = 1, width = 4'
                 f'</text><text x="{left + 6 * side + 10}" y="{source_top + 44}">source</text>')
    svg(folder, "sampling.svg", 570, 220, "\n".join(parts))


def draw_kernels(ovrabase, folder):
    def points(table):
        return [(i / 4096, float(table[i])) for i in range(0, 8193, 64)]

    curves = [("cubic, a = -0.75", BLUE, points(ovrabase.calc_cubic_spline(-0.75))),
              ("cubic, a = -0.5", GREY, points(ovrabase.calc_cubic_spline(-0.5))),
              ("B-spline, b = 0", ORANGE, points(ovrabase.calc_bspline(0)))]
    svg(folder, "kernels.svg", 340, 330, plot(40, 30, 270, (0, 2), (-0.2, 1), curves,
                                              "Weight by distance from the sample"))


def draw_curves(ovrabase, folder):
    levels, differences = ovrabase.default_curves()
    inner = [(x, y) for x, y in differences if abs(x) <= 0.25]
    svg(folder, "curves.svg", 640, 310,
        plot(40, 30, 240, (0, 1), (0, 1.2), [("", BLUE, levels)], "Level: strength by brightness") + "\n" +
        plot(360, 30, 240, (-0.25, 0.25), (0, 1.2), [("", BLUE, inner)],
             "Difference: strength by Y - blur"))


def draw_pictures(programs, folder):
    """Parts of a drawn scene before and after, at true size."""
    def run(program, *arguments):
        subprocess.run([programs / program, *map(str, arguments)], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL)

    run("ovra_scene", "--width", 1200, "--height", 900, "scene.png")
    part = ("--crop", "300,300,160,220")
    for name, command in (("before", None), ("sharpen", ["sharpen", "--amount", 2.5]), ("clarity", ["clarity"]),
                          ("smooth", ["smooth"]), ("softfocus", ["softfocus"])):
        whole = "scene.png"
        if command:
            whole = f"whole-{name}.png"
            run("ovra", *command, "scene.png", whole)
        run("ovra", "resize", *part, whole, f"{name}.png")
        if command:
            (folder / whole).unlink()
    (folder / "scene.png").unlink()


def main():
    programs, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    os.environ["OVRABASE_LIBRARY"] = str(programs / "libOvraBase.so")
    sys.path.insert(0, str(PROJECT / "python"))
    import ovrabase  # pylint: disable=import-outside-toplevel

    draw_sampling(folder)
    draw_kernels(ovrabase, folder)
    draw_curves(ovrabase, folder)
    draw_pictures(programs, folder)


if __name__ == "__main__":
    main()
