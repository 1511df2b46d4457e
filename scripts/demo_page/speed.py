# SPDX-License-Identifier: MIT
"""How fast the operations are on this machine, and beside other libraries where that was measured."""

from pathlib import Path

DOCS = Path(__file__).resolve().parents[2] / "docs"


def add(page, _pictures):
    page.section("How fast", "Each operation in turns with the others on a picture in memory, on one thread: "
                 "medians, in megapixels a second, beside the speed at which this machine copies as many bytes.")
    step = page.run("ovra", "bench", "--svg")
    page.figures(page.chart(step.output, "On this machine", step), kind="wide")
    charts = sorted(DOCS.glob("performance-[0-9]*.svg"))
    if charts:
        page.subsection("Beside other libraries")
        page.paragraph("Measured by <code>scripts/compare</code> on the machine that "
                       "<code>docs/performance.md</code> describes, on one thread.")
        page.figures(*(page.chart(chart.read_text(encoding="utf-8"), f"{chart.stem.split('-')[1]} megapixels", None)
                       for chart in charts), kind="wide")
