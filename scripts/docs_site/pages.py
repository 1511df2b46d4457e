#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the pages that are made of other files: pages.py FOLDER."""

import sys
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
# How each language is compiled and run, with the library installed.
LANGUAGES = [("C", "c", "photograph.c", "cc photograph.c $(pkg-config --cflags --libs OvraBase)"),
             ("C++", "cpp", "photograph.cpp", "c++ -std=c++17 photograph.cpp $(pkg-config --cflags --libs OvraBase)"),
             ("Python", "py", "photograph.py", "python3 photograph.py photo.jpg small.jpg"),
             ("C#", "cs", "photograph.cs", "mcs photograph.cs Native.cs"),
             ("Pascal", "pas", "photograph.pas", "fpc photograph.pas")]


def languages():
    lines = ["# A first program in each language {#languages}", "",
             "Each reads a picture, makes it smaller, and writes it; all give the same bytes.", ""]
    for name, kind, file, command in LANGUAGES:
        text = (PROJECT / "examples" / file).read_text(encoding="utf-8")
        lines += [f"## {name}", "", f"    {command}", "", f"~~~{{.{kind}}}", text.rstrip(), "~~~", ""]
    return "\n".join(lines)


if __name__ == "__main__":
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "languages.md").write_text(languages(), encoding="utf-8")
    # Under its own name a second README would be taken for the main page.
    readme = (PROJECT / "python/README.md").read_text(encoding="utf-8")
    (folder / "python-package.md").write_text(readme, encoding="utf-8")
