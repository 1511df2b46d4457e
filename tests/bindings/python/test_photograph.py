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


# How the program is built, its command, and the kind of files that it takes.
LANGUAGES = {
    "c": ("", "$OVRA_PHOTOGRAPH_C", "png"),
    "cpp": ("", "$OVRA_PHOTOGRAPH_CPP", "png"),
    "python": ("", f"{sys.executable} {EXAMPLES}/photograph.py", "png"),
    "csharp": (f"mcs -warnaserror -out:photograph.exe {EXAMPLES}/photograph.cs {ROOT}/csharp/Native.cs",
               "mono photograph.exe", "bmp"),
    "pascal": (f"fpc -v0 -l- -Sew -Fu{ROOT}/pascal -Fl{LIBRARY.parent} -FE. {EXAMPLES}/photograph.pas",
               "./photograph", "bmp"),
}


@pytest.mark.parametrize("language", LANGUAGES)
def test_photograph(language, tmp_path):
    build, command, kind = LANGUAGES[language]
    photograph.write_source(tmp_path / f"before.{kind}")
    environment = {**os.environ, "LD_LIBRARY_PATH": str(LIBRARY.parent)}
    for line in (build, f"{command} before.{kind} after.{kind}"):
        subprocess.run(line, shell=True, check=True, cwd=tmp_path, env=environment)
    assert photograph.checksum(tmp_path / f"after.{kind}") == photograph.CHECKSUM
