# SPDX-License-Identifier: MIT
"""A photograph from file to file: reduces it to 640 pixels of width and sharpens what the reduction has
softened. Needs the wheel of OvraBase, NumPy, and Pillow for the files.

    python3 photograph.py IN.png OUT.png
"""

import sys

import numpy
import ovrabase
from PIL import Image

NEW_WIDTH = 640


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: photograph.py IN.png OUT.png")
    photograph = numpy.asarray(Image.open(sys.argv[1]).convert("RGB"))
    height, width = photograph.shape[:2]
    reduced = ovrabase.resize_image(photograph, (NEW_WIDTH, (height * NEW_WIDTH + width // 2) // width))
    ovrabase.yusm_single_step(reduced, ovrabase.gaussian_weights(0.8), 2.0, destination=reduced)
    Image.fromarray(reduced).save(sys.argv[2])


main()
