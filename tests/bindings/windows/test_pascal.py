# SPDX-License-Identifier: MIT
"""A 32-bit Windows program in Pascal calls the DLL under Wine."""

import os
import pathlib
import shutil
import subprocess

import photograph

ROOT = pathlib.Path(__file__).parents[3]


def test_photograph(tmp_path):
    compiler = pathlib.Path(os.environ["OVRA_PASCAL_WIN32"])
    subprocess.run([ROOT / "scripts/build-pascal-win32", compiler], check=True)
    subprocess.run([compiler / "ppcross386", "-n", "-v0", "-Twin32", f"-Fu{compiler}/units", f"-Fu{ROOT}/pascal",
                    f"-FE{tmp_path}", ROOT / "examples/photograph.pas"], check=True)
    shutil.copy(os.environ["OVRABASE_LIBRARY"], tmp_path)
    photograph.write_source(tmp_path / "before.bmp")
    subprocess.run([ROOT / "scripts/wine-run", "photograph.exe", "before.bmp", "after.bmp"], check=True, cwd=tmp_path)
    assert photograph.checksum(tmp_path / "after.bmp") == photograph.CHECKSUM
