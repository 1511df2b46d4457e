# SPDX-License-Identifier: MIT
"""The same photograph goes from file to file in every language, and comes out the same."""

import os
import pathlib
import subprocess
import sys

import numpy
import pytest
from PIL import Image

ROOT = pathlib.Path(__file__).parents[3]
EXAMPLES = ROOT / "examples"
LIBRARY = pathlib.Path(os.environ["OVRABASE_LIBRARY"])


@pytest.fixture(scope="module")
def photograph(tmp_path_factory):
    """A picture with fine and coarse detail, as PNG and BMP without the ending of their names."""
    generator = numpy.random.default_rng(5)
    y, x = numpy.mgrid[0:601, 0:901]
    waves = 60 * numpy.sin(x / 7)[..., None] + 40 * numpy.sin(y[..., None] / [3, 11, 40])
    picture = 128 + waves + generator.integers(-25, 25, (601, 901, 3))
    name = tmp_path_factory.mktemp("photograph") / "in"
    image = Image.fromarray(picture.clip(0, 255).astype(numpy.uint8))
    image.save(name.with_suffix(".png"))
    image.save(name.with_suffix(".bmp"))
    return name


def run(command, **more):
    environment = {**os.environ, "LD_LIBRARY_PATH": str(LIBRARY.parent)}
    subprocess.run([str(part) for part in command], check=True, env=environment, **more)


def by_c(folder, before, after):
    run([os.environ["OVRA_PHOTOGRAPH_C"], before, after])


def by_cpp(folder, before, after):
    run([os.environ["OVRA_PHOTOGRAPH_CPP"], before, after])


def by_python(folder, before, after):
    run([sys.executable, EXAMPLES / "photograph.py", before, after])


def by_csharp(folder, before, after):
    run(["mcs", "-warnaserror", f"-out:{folder}/photograph.exe", EXAMPLES / "photograph.cs",
         ROOT / "csharp/Native.cs"])
    run(["mono", folder / "photograph.exe", before, after])


def by_pascal(folder, before, after):
    run(["fpc", "-v0", "-l-", "-Sew", f"-Fu{ROOT}/pascal", f"-Fl{LIBRARY.parent}", f"-FE{folder}",
         EXAMPLES / "photograph.pas"])
    run([folder / "photograph", before, after])


@pytest.fixture(scope="module")
def expected(photograph):
    by_python(None, photograph.with_suffix(".png"), photograph.with_name("out.png"))
    picture = numpy.asarray(Image.open(photograph.with_name("out.png")))
    assert picture.shape == (427, 640, 3)
    return picture


@pytest.mark.parametrize("by, kind", [(by_c, "png"), (by_cpp, "png"), (by_csharp, "bmp"), (by_pascal, "bmp")])
def test_photograph(by, kind, photograph, expected, tmp_path):
    after = tmp_path / f"out.{kind}"
    by(tmp_path, photograph.with_suffix("." + kind), after)
    numpy.testing.assert_array_equal(numpy.asarray(Image.open(after).convert("RGB")), expected)
