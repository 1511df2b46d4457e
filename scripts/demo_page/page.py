# SPDX-License-Identifier: MIT
"""What the sections of the demonstration page share: running a command, and parts of HTML."""

import html
import os
import re
import shlex
import shutil
import struct
import subprocess
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

# Larger pictures are shown reduced to this: the page stays quick to make and to load.
SHOWN_PIXELS = 4_000_000

# What browsers show; pictures of other kinds are converted for the page.
SHOWN_BY_BROWSERS = {".png", ".jpg", ".jpeg"}


@dataclass
class Step:
    """One run of a program: what was typed and printed, and how long it took."""

    command: str
    total_ms: float
    peak_mb: float  # most memory that the program held
    library_ms: list  # (function, milliseconds) for each library call
    output: str


class Page:
    """Collects the page and runs what makes its pictures, all in one folder."""

    def __init__(self, programs, out):
        self.programs = Path(programs).resolve()
        self.out = Path(out)
        self.parts = []
        self.contents = []
        self.steps = []
        self.reduced = {}  # size that a picture came in, where that was too large to show
        self.photographs = False  # are the pictures somebody's own?

    # Running programs -------------------------------------------------------------------------

    def run(self, program, *arguments, expected=(0,)):
        """Runs one of the project's programs in the folder of the pictures."""
        shown = [program, *map(str, arguments)]
        timed = ["--time"] if program == "ovra" and arguments[0] != "bench" else []
        with tempfile.TemporaryFile("w+") as output, tempfile.TemporaryFile("w+") as errors:
            start = time.perf_counter()
            process = subprocess.Popen([self.programs / program, *timed, *map(str, arguments)],
                                       cwd=self.out, stdout=output, stderr=errors)
            _, status, usage = os.wait4(process.pid, 0)
            total_ms = 1000 * (time.perf_counter() - start)
            process.returncode = os.waitstatus_to_exitcode(status)
            output.seek(0)
            errors.seek(0)
            printed = output.read()
            if process.returncode not in expected:
                raise SystemExit(f"demo: {shlex.join(shown)}\n{errors.read().strip()}")
        library = re.findall(r"^(Ovra\w+) ([\d.]+) ms$", printed, re.MULTILINE)
        step = Step(shlex.join(shown), total_ms, usage.ru_maxrss / 1024,
                    [(name, float(ms)) for name, ms in library], printed)
        self.steps.append(step)
        return step

    def ovra(self, *arguments, differ=False):
        """Runs the host program; `differ` is for comparisons, whose status tells what they found."""
        return self.run("ovra", *arguments, expected=(0, 1) if differ else (0,))

    def import_picture(self, path, number):
        """Brings a picture into the folder, as a kind that browsers show and of a size that a page can
        hold; answers its name."""
        source = Path(path).resolve()
        stem = f"{number:02d}-" + re.sub(r"[^A-Za-z0-9]+", "-", source.stem).strip("-")
        width, height = self.size(source)
        if width * height > SHOWN_PIXELS:
            scale = (SHOWN_PIXELS / (width * height)) ** 0.5
            name = stem + (".jpg" if source.suffix.lower() in (".jpg", ".jpeg") else ".png")
            self.run("ovra", "resize", "--scale", f"{scale:.4f}", source, name)
            self.reduced[name] = f"{width}&thinsp;&times;&thinsp;{height}"
        elif source.suffix.lower() in SHOWN_BY_BROWSERS:
            name = stem + source.suffix.lower()
            shutil.copyfile(source, self.out / name)
        else:
            name = stem + ".png"
            self.run("ovra", "rotate", "--mode", "none", source, name)
        self.size(name)  # refuses what is no picture, before any section begins
        return name

    def info(self, name):
        """What `ovra info` says, as a dictionary."""
        result = subprocess.run([self.programs / "ovra", "info", name], cwd=self.out,
                                capture_output=True, text=True, check=False)
        if result.returncode != 0:
            raise SystemExit(result.stderr.strip())
        lines = [line.strip().split("  ", 1) for line in result.stdout.splitlines()[1:]]
        return {key: value.strip() for key, value in lines}

    def size(self, name):
        """Width and height in pixels."""
        width, height = re.findall(r"\d+", self.info(name)["size"])[:2]
        return int(width), int(height)

    def samples(self, name):
        """All samples of a picture as 8-bit red, green, blue, from the top left, row by row."""
        bitmap = self.out / "samples.bmp"
        self.run("ovra", "rotate", "--mode", "none", name, bitmap.name)
        data = bitmap.read_bytes()
        bitmap.unlink()
        self.steps.pop()  # says nothing about the library
        start, = struct.unpack_from("<I", data, 10)
        width, height = struct.unpack_from("<ii", data, 18)
        stride = (3 * width + 3) // 4 * 4
        rows = []
        for y in reversed(range(height)):
            row = bytearray(data[start + y * stride:start + y * stride + 3 * width])
            row[0::3], row[2::3] = row[2::3], row[0::3]
            rows.append(bytes(row))
        return b"".join(rows)

    # Parts of the page ------------------------------------------------------------------------

    def section(self, title, text):
        anchor = re.sub(r"\W+", "-", title.lower())
        self.contents.append((anchor, title))
        self.parts.append(f'<h2 id="{anchor}">{html.escape(title)}</h2>\n<p>{text}</p>\n')

    def subsection(self, title):
        self.parts.append(f"<h3>{html.escape(title)}</h3>\n")

    def paragraph(self, text):
        self.parts.append(f"<p>{text}</p>\n")

    def figures(self, *figures, true_size=False, kind=""):
        """A row of figures. At true size they are never scaled, and scroll where they are wide. Kinds of
        rows: `wide`, two beside one another, and `details`, four parts of pictures at true size."""
        kind = "row true-size" if true_size else f"row {kind}"
        self.parts.append(f'<div class="{kind}">\n{"".join(figures)}</div>\n')

    def framed(self, name, part, angle):
        """A picture with the outline of a part (left, top, width, height) that will be cut out of it
        when it has been turned counter-clockwise by so many degrees about the part's middle."""
        left, top, across, down = part
        width, height = self.size(name)
        middle = f"{left + across / 2} {top + down / 2}"
        return (f'<svg class="framed" viewBox="0 0 {width} {height}" role="img">'
                f'<image href="{html.escape(name)}" width="{width}" height="{height}"/>'
                f'<rect x="{left}" y="{top}" width="{across}" height="{down}" '
                f'transform="rotate({angle} {middle})"/></svg>')

    def figure(self, name, title, step=None, scale=1, content=None):
        """A picture with its title and, when a step made it, the command line and its time.
        Above 1, scale repeats each pixel so many times. `content` is shown in place of the picture."""
        width, height = self.size(name)
        pixels = f' class="pixels" style="width: {width * scale}px"' if scale != 1 else ""
        picture = (f'<img src="{html.escape(name)}" width="{width}" height="{height}" '
                   f'loading="lazy" alt="{html.escape(title)}"{pixels}>')
        note = f"{width}&thinsp;&times;&thinsp;{height}"
        if scale != 1:
            note += f", shown {scale} times as large"
        if name in self.reduced:
            note += f", reduced from {self.reduced[name]}"
        caption = f'<b>{html.escape(title)}</b> <span class="note">{note}</span>'
        return self._figure(content or picture, caption, step)

    def chart(self, svg, title, step):
        """A drawing that somebody else made."""
        return self._figure(svg[svg.index("<svg"):], f"<b>{html.escape(title)}</b>", step)

    def slider(self, before, after, title, step):
        """Two pictures of one size, of which a slider shows more or less."""
        width, height = self.size(after)
        pictures = "".join(f'<img src="{html.escape(name)}" width="{width}" height="{height}" alt="{when}">'
                           for name, when in ((after, "after"), (before, "before")))
        content = (f'<div class="slider" style="--at: 50%; aspect-ratio: {width} / {height}">{pictures}'
                   '<input type="range" min="0" max="100" value="50" aria-label="how much is shown as it was" '
                   'oninput="this.parentNode.style.setProperty(\'--at\', this.value + \'%\')"></div>')
        return self._figure(content, f"<b>{html.escape(title)}</b>", step)

    def plot(self, title, curves, step=None, x_range=(0, 1), y_range=(0, 1), size=320):
        """Curves as inline SVG; curves: list of (label, color, [(x, y), ...])."""
        def place(x, y):
            across = (x - x_range[0]) / (x_range[1] - x_range[0])
            up = (y - y_range[0]) / (y_range[1] - y_range[0])
            return f"{across * size:.2f},{(1 - up) * size:.2f}"

        grid = "".join(f'<path d="M0 {i * size / 4} H{size} M{i * size / 4} 0 V{size}"/>'
                       for i in range(5))
        lines = "".join(
            f'<polyline stroke="{color}" points="{" ".join(place(x, y) for x, y in points)}"/>'
            for _, color, points in curves)
        legend = " ".join(f'<span style="color:{color}">&#9644;</span>&thinsp;{html.escape(label)}'
                          for label, color, _ in curves)
        svg = (f'<svg viewBox="-4 -4 {size + 8} {size + 8}" width="{size}" height="{size}" '
               f'role="img" aria-label="{html.escape(title)}">'
               f'<g class="grid">{grid}</g><g class="curves">{lines}</g></svg>')
        return self._figure(svg, f"<b>{html.escape(title)}</b> {legend}", step)

    @staticmethod
    def _figure(content, caption, step):
        command = ""
        if step is not None:
            calls = ", ".join(f"{name} {ms:.2f} ms" for name, ms in step.library_ms)
            times = f"{calls}; " if calls else ""
            command = (f"<code>{html.escape(step.command)}</code>"
                       f'<span class="time">{times}whole program {step.total_ms:.0f} ms</span>')
        return (f'<figure>{content}<figcaption>{caption}{command}</figcaption></figure>\n')

    # The whole --------------------------------------------------------------------------------

    def write(self, title, introduction):
        links = "".join(f'<a href="#{anchor}">{html.escape(text)}</a>'
                        for anchor, text in [*self.contents, ("times", "Times")])
        document = (f'<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
                    f'<meta name="viewport" content="width=device-width">\n'
                    f"<title>{html.escape(title)}</title>\n<style>\n{self._style()}</style>\n"
                    f"</head>\n<body>\n<h1>{html.escape(title)}</h1>\n<p>{introduction}</p>\n"
                    f"<nav>{links}</nav>\n{''.join(self.parts)}{self._times()}</body>\n</html>\n")
        (self.out / "index.html").write_text(document, encoding="utf-8")

    def _times(self):
        rows = "".join(
            f"<tr><td><code>{html.escape(step.command)}</code></td>"
            f"<td>{'<br>'.join(html.escape(name) for name, _ in step.library_ms)}</td>"
            f"<td>{'<br>'.join(f'{ms:.2f}' for _, ms in step.library_ms)}</td>"
            f"<td>{step.total_ms:.0f}</td></tr>\n" for step in self.steps)
        return ('<h2 id="times">Times</h2>\n<p>Milliseconds of each step in this run: the call of '
                "the library, and the whole program with reading and writing of files.</p>\n"
                "<table><tr><th>command</th><th>function</th><th>call</th><th>whole</th></tr>\n"
                f"{rows}</table>\n")

    @staticmethod
    def _style():
        return (Path(__file__).parent / "style.css").read_text(encoding="utf-8")
