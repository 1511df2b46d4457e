# SPDX-License-Identifier: MIT
"""What pyproject.toml cannot say: the version comes from the library's header, and the wheel holds a
library for one platform but no extension module for one Python."""

import pathlib
import re

from setuptools import Distribution, setup
from wheel.bdist_wheel import bdist_wheel


class PlatformDistribution(Distribution):
    def has_ext_modules(self):
        return True


class PlatformWheel(bdist_wheel):
    def get_tag(self):
        return "py3", "none", super().get_tag()[2]


def version():
    header = pathlib.Path(__file__).with_name("version.h").read_text()
    numbers = re.findall(r"#define OVRA_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header)
    return ".".join(numbers)


setup(version=version(), distclass=PlatformDistribution, cmdclass={"bdist_wheel": PlatformWheel})
