# SPDX-License-Identifier: Apache-2.0
"""The shared libraries: where they are found, and how texts and lists come out of them."""
from __future__ import annotations

import functools
import os
from typing import Any, Callable, List, Optional, Union

from ._constants import VERSION, Status
from ._errors import Error, LibraryError
from ._ffi import ffi as ffi

#: Names a folder with the libraries, for those that are not installed.
LIBRARY_PATH = "ZRSCHEMA_LIBRARY_PATH"
_MAJOR = VERSION.partition(".")[0]  # of the interface that the declarations are of

#: What a callback returns that could not keep what it was told.
STOPPED = 0x7FFFFFFF

PathLike = Union[str, "os.PathLike[str]"]


def _open(name: str) -> Any:
    file = f"lib{name}.so.{_MAJOR}"
    folder = os.environ.get(LIBRARY_PATH)
    path = os.path.join(folder, file) if folder else file
    try:
        # Objects may be freed at the very end, when the interpreter has closed what it opened.
        return ffi.dlopen(path, os.RTLD_NOW | os.RTLD_NODELETE)
    except OSError as error:
        raise LibraryError(f"cannot open {file}: {error}; {LIBRARY_PATH} may name the folder "
                           "that it is in") from error


#: The engine; libxml2's functions are found through it, in the copy that the engine uses.
engine = _open("zrschema")
engine.xmlInitParser()


@functools.lru_cache(maxsize=None)
def sources_library() -> Any:
    """The library that prepares YANG sources, opened when it is first asked for."""
    return _open("zryang")


@functools.lru_cache(maxsize=None)
def data_library() -> Any:
    """The library that checks whole data, opened when it is first asked for."""
    return _open("zrdata")


@functools.lru_cache(maxsize=None)
def patterns_library() -> Any:
    """The library that matches patterns, opened when it is first asked for."""
    return _open("zrpatterns")


def version() -> str:
    """Tells the version of the engine that runs.

    >>> version().split(".")[0]
    '1'
    """
    return text(engine.ZR_GetVersion())


def text(pointer: Any) -> str:
    """The text that a pointer leads to, which is not null."""
    return str(ffi.string(pointer).decode("utf-8", "replace"))


def text_or_none(pointer: Any) -> Optional[str]:
    """The text that a pointer leads to, None for a null pointer."""
    return None if pointer == ffi.NULL else text(pointer)


def encoded(word: str) -> bytes:
    """A name, path or value as the libraries take it."""
    if "\0" in word:
        raise ValueError(f"a text with a null character: {word!r}")
    return word.encode("utf-8", "surrogateescape")


def path_bytes(path: PathLike) -> bytes:
    """The path of a file or folder as the libraries take it."""
    return os.fsencode(os.fspath(path))


def collector(signature: str, item: Callable[..., Any], user: int = -1) -> Any:
    """A callback that appends what `item` makes of its arguments to the list behind its user data,
    which is the argument at the place `user`."""

    @ffi.callback(signature, error=STOPPED)  # type: ignore[misc]
    def collect(*arguments: Any) -> int:
        ffi.from_handle(arguments[user]).append(item(*arguments))
        return 0

    return collect


def collect(scan: Callable[..., int], record: Any, callback: Any) -> List[Any]:
    """What a scan tells a collector of."""
    items: List[Any] = []
    require(scan(record, callback, ffi.new_handle(items)))
    return items


#: The pieces of a printed text.
_on_print = collector("ZrPrintFunc", lambda piece, length, user: ffi.buffer(piece, length)[:])


def printed(print_function: Callable[..., int], record: Any) -> str:
    """The text that a function prints of a record."""
    return b"".join(collect(print_function, record, _on_print)).decode("utf-8", "replace")


def require(status: int) -> None:
    """Raises what a status of the engine says, unless it is 0."""
    if status == Status.OK:
        return
    if status in (Status.ERR_NO_MEMORY, STOPPED):
        raise MemoryError
    raise Error(status_text(status), status)


def status_text(status: int) -> str:
    """What a status of the engine means, in a sentence."""
    return text(engine.ZR_GetStatusText(status))
