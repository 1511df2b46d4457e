# SPDX-License-Identifier: MIT
"""The wheel installs and finds the library that it brings along."""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).parents[3]
USE = """
import numpy, ovrabase, pathlib
assert pathlib.Path(ovrabase.__file__).is_relative_to({folder!r}), ovrabase.__file__
picture = numpy.arange(6, dtype=numpy.uint8).reshape(2, 3)
assert (ovrabase.rotate_image(picture, 1) == numpy.rot90(picture)).all()
"""


def test_wheel_works_where_nothing_else_is(tmp_path):
    subprocess.run([ROOT / "scripts/build-wheel", os.environ["OVRABASE_LIBRARY"], tmp_path], check=True)
    (wheel,) = tmp_path.glob("*.whl")
    folder = str(tmp_path / "site")
    subprocess.run([sys.executable, "-m", "pip", "install", "--quiet", "--no-index", "--no-deps",
                    "--root-user-action=ignore", "--target", folder, wheel], check=True)
    environment = {"PATH": os.environ["PATH"], "PYTHONPATH": folder}
    subprocess.run([sys.executable, "-c", USE.format(folder=folder)], check=True, cwd=tmp_path,
                   env=environment)
