# SPDX-License-Identifier: MIT
"""The loaded library, its statuses as exceptions, and contexts that live in it."""

from __future__ import annotations

import ctypes
import os
import pathlib
import sys
import threading
from typing import TYPE_CHECKING, Callable, TypeVar

from . import native

if TYPE_CHECKING:
    from .arrays import Kind

AnyContext = TypeVar("AnyContext", bound="Context")


class Error(Exception):
    """A function answered a status other than OK; `status` is its number."""

    def __init__(self, status: int) -> None:
        self.status = status
        text = functions.status_text(status).decode()
        super().__init__(f"{text} (status {status})")


def _load() -> ctypes.CDLL:
    """The library that OVRABASE_LIBRARY names, the one beside this file, or the system's."""
    windows = sys.platform == "win32"
    name = "OvraBase.dll" if windows else "libOvraBase.so.0"
    beside = pathlib.Path(__file__).with_name(name)
    path = os.environ.get("OVRABASE_LIBRARY") or (str(beside) if beside.exists() else name)
    # The functions are __stdcall on 32-bit Windows; elsewhere there is one convention. Either kind
    # releases the interpreter's lock while a function runs.
    library: ctypes.CDLL = getattr(ctypes, "WinDLL" if windows else "CDLL")(path)
    return library


functions = native.Functions(_load())


def check(status: int) -> None:
    """Raises Error for a status other than OK."""
    if status != native.StatusCode.OK:
        raise Error(status)


def get_version() -> tuple[int, int, int]:
    """Major, minor and patch number of the loaded library."""
    version = functions.get_version()
    return version >> 16, version >> 8 & 0xFF, version & 0xFF


def status_text(status: int) -> str:
    """One line of English for a status."""
    text: bytes = functions.status_text(status)
    return text.decode()


class Context:
    """Something that the library has prepared for runs; the _init functions return one.

    The library makes one for each pair of format words. This object makes those that runs turn out
    to need (pictures of one kind may differ in their row alignment), and releases all of them when it
    is closed: by close(), at the end of a with statement, or with its last reference. Runs may share
    it between threads; it must not be closed while one is under way.
    """

    def __init__(self, make: Callable[..., None], free: Callable[[object], int],
                 in_kind: Kind, out_kind: Kind) -> None:
        self._make = make
        self._free = free
        self._handles: dict[tuple[int, ...], ctypes.c_size_t] = {}
        self._lock = threading.Lock()
        self.in_kind = in_kind
        self.out_kind = out_kind

    def handle(self, *formats: int) -> int:
        """The prepared thing for these format words: a handle word, or an address."""
        with self._lock:
            if formats not in self._handles:
                handle = ctypes.c_size_t()
                self._make(*formats, ctypes.byref(handle))
                self._handles[formats] = handle
            return self._handles[formats].value

    def close(self) -> None:
        """Releases everything; nothing happens when that is done already."""
        with self._lock:
            for handle in self._handles.values():
                self._free(ctypes.byref(handle))
            self._handles.clear()

    def __enter__(self: AnyContext) -> AnyContext:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        self.close()
