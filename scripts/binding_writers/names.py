# SPDX-License-Identifier: MIT
"""Names in other styles than C's."""

import re

# What the rule for capitals would cut in the wrong places.
_WORDS = {
    "Ovra": "", "ROIVAR": "RoiVar", "YUsm": "Yusm", "EFilter": "Efilter", "BSpline": "Bspline",
    "1D": "_1d", "3D": "_3d", "Dib2Raw": "Dib2raw", "Raw2Dib": "Raw2dib",
}


def snake_case(name):
    """OvraConvColor1DTbl_Init -> conv_color_1d_tbl_init, OvraYUsm -> yusm."""
    for written, read in _WORDS.items():
        name = name.replace(written, read)
    name = re.sub(r"(?<=[a-z0-9])([A-Z])", r"_\1", name)
    name = re.sub(r"(?<=[A-Z])([A-Z][a-z])", r"_\1", name)
    return re.sub(r"_+", "_", name.lower())


def camel_case(name):
    """source_width -> sourceWidth."""
    first, *rest = name.split("_")
    return first + "".join(word[:1].upper() + word[1:] for word in rest)


def without_common_prefix(names):
    """The ends of names of one enumeration, whose beginnings are words that all of them share."""
    words = [name.split("_") for name in names]
    shared = 0
    while all(len(w) > shared + 1 and w[shared] == words[0][shared] for w in words):
        shared += 1
    return ["_".join(w[shared:]) for w in words]
