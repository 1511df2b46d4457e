# SPDX-License-Identifier: MIT
"""Records have one layout in all languages: that of ctypes, which is the C compiler's."""

import ctypes
import os
import pathlib
import subprocess

from ovrabase import native

ROOT = pathlib.Path(__file__).parents[3]
LIBRARY = pathlib.Path(os.environ["OVRABASE_LIBRARY"])

RECORDS = {"Ovra" + name: value for name, value in vars(native).items()
           if isinstance(value, type) and issubclass(value, ctypes.Structure) and value is not ctypes.Structure}
SIZES = {name: ctypes.sizeof(record) for name, record in RECORDS.items()}


def output_of(*command):
    lines = subprocess.run([str(part) for part in command], check=True, text=True,
                           stdout=subprocess.PIPE).stdout.split("\n")
    return {name: int(size) for name, size in (line.split() for line in lines if line)}


def test_csharp(tmp_path):
    lines = "".join(f'System.Console.WriteLine("{name} " + System.Runtime.InteropServices.Marshal.SizeOf('
                    f"typeof(OvraBase.{name})));" for name in SIZES)
    (tmp_path / "sizes.cs").write_text(f"class Sizes {{ static void Main() {{ {lines} }} }}")
    subprocess.run(["mcs", f"-out:{tmp_path}/sizes.exe", tmp_path / "sizes.cs", ROOT / "csharp/Native.cs"],
                   check=True)
    assert output_of("mono", tmp_path / "sizes.exe") == SIZES


def test_pascal(tmp_path, monkeypatch):
    lines = "".join(f"WriteLn('{name} ', SizeOf(T{name}));\n" for name in SIZES)
    (tmp_path / "sizes.pas").write_text(f"program Sizes; uses OvraBase;\nbegin\n{lines}end.\n")
    subprocess.run(["fpc", "-v0", "-l-", f"-Fu{ROOT}/pascal", f"-Fl{LIBRARY.parent}",
                    f"-FE{tmp_path}", tmp_path / "sizes.pas"], check=True)
    monkeypatch.setenv("LD_LIBRARY_PATH", str(LIBRARY.parent))
    assert output_of(tmp_path / "sizes") == SIZES
