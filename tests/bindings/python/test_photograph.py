# SPDX-License-Identifier: MIT
"""The same photograph goes from file to file in every language, and comes out the same."""

import os
import pathlib
import subprocess
import sys

import photograph
import pytest

ROOT = pathlib.Path(__file__).parents[3]
EXAMPLES = ROOT / "examples"
LIBRARY = pathlib.Path(os.environ["OVRABASE_LIBRARY"])


def run(*command):
    environment = {**os.environ, "LD_LIBRARY_PATH": str(LIBRARY.parent)}
    subprocess.run([str(part) for part in command], check=True, env=environment)


def by_c(folder, before, after):
    run(os.environ["OVRA_PHOTOGRAPH_C"], before, after)


def by_cpp(folder, before, after):
    run(os.environ["OVRA_PHOTOGRAPH_CPP"], before, after)


def by_python(folder, before, after):
    run(sys.executable, EXAMPLES / "photograph.py", before, after)


def by_csharp(folder, before, after):
    run("mcs", "-warnaserror", f"-out:{folder}/photograph.exe", EXAMPLES / "photograph.cs",
        ROOT / "csharp/Native.cs")
    run("mono", folder / "photograph.exe", before, after)


def by_pascal(folder, before, after):
    run("fpc", "-v0", "-l-", "-Sew", f"-Fu{ROOT}/pascal", f"-Fl{LIBRARY.parent}", f"-FE{folder}",
        EXAMPLES / "photograph.pas")
    run(folder / "photograph", before, after)


@pytest.mark.parametrize("by, kind", [(by_c, "png"), (by_cpp, "png"), (by_python, "png"), (by_csharp, "bmp"),
                                      (by_pascal, "bmp")])
def test_photograph(by, kind, tmp_path):
    before, after = tmp_path / f"before.{kind}", tmp_path / f"after.{kind}"
    photograph.write_source(before)
    by(tmp_path, before, after)
    assert photograph.checksum(after) == photograph.CHECKSUM
