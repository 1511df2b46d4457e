# SPDX-License-Identifier: MIT
"""Several threads for operations whose rows do not depend on each other."""

from __future__ import annotations

import concurrent.futures
from typing import Callable

# Below so many rows a thread costs more than it gains.
_FEWEST_ROWS = 16


def run_in_bands(height: int, threads: int, run: Callable[[int, int], None]) -> None:
    """Calls run(first row, row behind the last) for bands of rows that make up the height, on so many
    threads. An exception of any band is raised when all have ended."""
    count = max(1, min(threads, height // _FEWEST_ROWS))
    if count == 1:
        return run(0, height)
    edges = [height * i // count for i in range(count + 1)]
    with concurrent.futures.ThreadPoolExecutor(count) as pool:
        bands = [pool.submit(run, first, last) for first, last in zip(edges, edges[1:])]
    for band in bands:
        band.result()
