# SPDX-License-Identifier: MIT
"""Writes the demonstration page. Each section is a module with add(page, pictures), where pictures
are names of files in the page's folder; SECTIONS gives their order."""

import argparse
import sys
import time
from pathlib import Path

import color_cube
import color_curve
import filter_sharpen
import filter_smooth
import geometry
import geometry_straighten
import opening
import resample
import speed
import tone
from page import Page

SECTIONS = [opening, speed, tone, filter_sharpen, filter_smooth, color_cube, color_curve, resample,
            geometry_straighten, geometry]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--programs", required=True, help="folder of ovra and ovra_scene")
    parser.add_argument("--out", required=True, help="folder for the page; emptied of old pictures")
    parser.add_argument("images", nargs="*")
    arguments = parser.parse_args()

    out = Path(arguments.out)
    out.mkdir(parents=True, exist_ok=True)
    for old in [p for kind in ("*.png", "*.jpg", "*.jpeg") for p in out.glob(kind)]:
        old.unlink()

    page = Page(arguments.programs, out)
    if arguments.images:
        pictures = [page.import_picture(image, i) for i, image in enumerate(arguments.images, 1)]
        page.photographs = True
        subject = f"{len(pictures)} photograph{'s' if len(pictures) > 1 else ''}"
    else:
        page.run("ovra_scene", "--width", 1200, "--height", 900, "scene.png")
        pictures = ["scene.png"]
        subject = "a test scene that it drew itself"
    page.run("ovra_scene", "--back-light", "--width", 1200, "--height", 800, "back-light.png")
    version = page.info(pictures[0])["library"]
    start = time.perf_counter()
    for number, section in enumerate(SECTIONS, 1):
        print(f"[{number}/{len(SECTIONS)}] {section.__name__.replace('_', ', ')}", end="", flush=True)
        section.add(page, pictures)
        print(f"  {time.perf_counter() - start:.0f} s", flush=True)
    page.write("What the library does to a picture",
               f"{version} at work on {subject}, by its host program <code>ovra</code>. Under each "
               "picture stands the command that made it, with its time on this computer.")
    print(f"{out / 'index.html'}: {len(page.steps)} steps")
    return 0


if __name__ == "__main__":
    sys.exit(main())
