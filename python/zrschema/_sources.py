# SPDX-License-Identifier: Apache-2.0
"""YANG sources, checked and prepared for loading."""
from __future__ import annotations

import os
import pathlib
import threading
from typing import Any, Callable, Iterable, List, Optional, Tuple

from ._constants import ReportCode, Severity, YangOption, YangStatus
from ._errors import Error, NotFoundError, PrepareError, Problem
from ._library import (STOPPED, PathLike, collector, encoded, ffi, path_bytes, sources_library,
                       text)

#: Hears how far a run over all modules is: modules done, modules there are, the next one's name.
Progress = Callable[[int, int, str], None]


@ffi.callback("ZrYangReportFunc")  # type: ignore[misc]
def _on_report(report: Any, user: Any) -> None:
    ffi.from_handle(user).append(Problem(
        text(report.message), text(report.module) or None, text(report.file) or None,
        report.line or None, report.column or None, report.severity == Severity.WARNING,
        ReportCode(report.code)))


@ffi.callback("ZrYangProgressFunc", error=STOPPED)  # type: ignore[misc]
def _on_progress(done: int, total: int, name: Any, user: Any) -> int:
    progress, failures = ffi.from_handle(user)
    try:
        progress(done, total, text(name))
    except BaseException as failure:  # raised again behind the library
        failures.append(failure)
        return STOPPED
    return 0


_on_name = collector("ZrYangNameFunc", lambda name, user: os.fsdecode(ffi.string(name)))


class Workspace:
    """Sources of modules in folders and texts, which are checked and written as prepared YIN.

    Features decide expressions such as "a or not b": `features` are those that are on,
    "module:name", "module:*" or "*"; all others are off, where `features` is not None. Errors and
    warnings are told to `on_report`, at the end of the call that has found them. Any number of
    threads may use a workspace; they take turns.

    >>> workspace = Workspace()
    >>> workspace.add_text("m", 'module m { namespace "urn:m"; prefix m; leaf a { } }')
    >>> workspace.prepare("m")
    Traceback (most recent call last):
      ...
    zrschema.PrepareError: cannot prepare m
      m:1:41: error: "leaf" without "type"
    """

    def __init__(self, paths: Iterable[PathLike] = (), *,
                 features: Optional[Iterable[str]] = None, strip: bool = False,
                 node_limit: Optional[int] = None,
                 on_report: Optional[Callable[[Problem], None]] = None) -> None:
        self._library = sources_library()
        pointer = self._library.ZR_YANG_Create(ffi.NULL)
        if pointer == ffi.NULL:
            raise MemoryError
        self._pointer: Any = ffi.gc(pointer, self._library.ZR_YANG_Delete)
        self._lock = threading.RLock()
        self._is_busy = False
        self._on_report = on_report
        self._reports: List[Problem] = []
        self._handle = ffi.new_handle(self._reports)
        self._library.ZR_YANG_SetReportFunc(pointer, _on_report, self._handle)
        for path in paths:
            self.add_path(path)
        if features is not None:
            self._decide(features)
        self._set(YangOption.STRIP, int(strip))
        if node_limit is not None:
            self._set(YangOption.NODE_LIMIT, node_limit)

    def _decide(self, features: Iterable[str]) -> None:
        self.set_feature("*", "*", False)
        for word in features:
            module, colon, name = word.partition(":")
            if word != "*" and not (module and colon and name):
                raise ValueError(f"a feature is MODULE:NAME, MODULE:* or *, not {word}")
            self.set_feature(module, name or "*", True)

    def _set(self, option: YangOption, value: int) -> None:
        self._call(self._library.ZR_YANG_SetOption, option, value)

    def _open(self) -> Any:
        """The workspace, which a callback of its own cannot use."""
        if self._pointer is None:
            raise ValueError("the workspace is closed")
        if self._is_busy:
            raise Error("the workspace is at work")
        return self._pointer

    def _call(self, function: Any, *arguments: Any, what: str = "") -> None:
        """Calls a function on the workspace and raises what its status says."""
        with self._lock:
            pointer = self._open()
            self._reports.clear()
            self._is_busy = True
            try:
                status = function(pointer, *arguments)
            finally:
                self._is_busy = False
            number = ffi.errno
            reports = tuple(self._reports)
        if self._on_report is not None:
            for report in reports:
                self._on_report(report)
        if status == YangStatus.OK:
            return
        if status in (YangStatus.ERR_NO_MEMORY, YangStatus.ERR_STOPPED):
            raise MemoryError
        if status == YangStatus.ERR_IO:
            raise OSError(number, os.strerror(number), what)
        if status == YangStatus.ERR_NOT_FOUND:
            raise NotFoundError("\n".join([f"no source of {what}", *map(str, reports)]), status)
        if status == YangStatus.ERR_FAULTY:
            raise PrepareError(f"cannot prepare {what}", reports, status)
        raise Error("a null or malformed argument", status)

    def add_path(self, directory: PathLike) -> None:
        """Adds a folder that is searched for sources, behind those that were added before."""
        self._call(self._library.ZR_YANG_AddDirectory, path_bytes(directory),
                   what=os.fspath(directory))

    def add_file(self, path: PathLike) -> None:
        """Adds one `.yang` file, which is preferred to what the folders hold under its name."""
        self._call(self._library.ZR_YANG_AddFile, path_bytes(path))

    def add_text(self, name: str, source: str) -> None:
        """Adds a source, which is preferred to what the folders hold under its name. `name` is the
        module's name, or NAME@REVISION."""
        data = source.encode("utf-8")
        self._call(self._library.ZR_YANG_AddText, encoded(name), data, len(data))

    def set_feature(self, module: str, feature: str, is_on: bool) -> None:
        """Says whether a feature is on; "*" is every module, or every feature, of which nothing
        else is said."""
        self._call(self._library.ZR_YANG_SetFeature, encoded(module), encoded(feature),
                   int(is_on))

    @property
    def reports(self) -> Tuple[Problem, ...]:
        """What the last call has found: errors and warnings."""
        with self._lock:
            return tuple(self._reports)

    def modules(self) -> List[str]:
        """The names of all modules that have a source, in alphabetical order."""
        names: List[str] = []
        self._call(self._library.ZR_YANG_ScanModules, _on_name, ffi.new_handle(names))
        return names

    def dependencies(self, module: str) -> List[str]:
        """The files that a module is made of: its own, its submodules' and its imports'."""
        files: List[str] = []
        self._call(self._library.ZR_YANG_ScanDependencies, encoded(module), _on_name,
                   ffi.new_handle(files), what=module)
        return files

    def prepare(self, module: str) -> str:
        """Prepares a module, NAME or NAME@REVISION, and returns its YIN.

        Raises `PrepareError` when it has errors, `NotFoundError` when it has no source; `reports`
        has the warnings.
        """
        found, length = ffi.new("char **"), ffi.new("size_t *")
        self._call(self._library.ZR_YANG_PrepareToText, encoded(module), found, length,
                   what=module)
        with self._lock:
            pointer = self._open()
            try:
                return bytes(ffi.buffer(found[0], length[0])).decode("utf-8")
            finally:
                self._library.ZR_YANG_FreeText(pointer, found[0])

    def prepare_to(self, module: str, directory: PathLike) -> pathlib.Path:
        """Prepares a module and writes `NAME.yin` into a folder; returns the file's path."""
        path = pathlib.Path(directory) / (module.partition("@")[0] + ".yin")
        self._call(self._library.ZR_YANG_PrepareToFile, encoded(module), path_bytes(directory),
                   what=str(path))
        return path

    def prepare_all(self, directory: PathLike, progress: Optional[Progress] = None) -> None:
        """Prepares every module that has a source, each to a file of its own. An exception of
        `progress` ends the run."""
        failures: List[BaseException] = []
        handle = ffi.new_handle((progress, failures))
        try:
            self._call(self._library.ZR_YANG_PrepareAll, path_bytes(directory),
                       ffi.NULL if progress is None else _on_progress, handle, what="all modules")
        except MemoryError:
            if failures:
                raise failures[0] from None
            raise

    def close(self) -> None:
        """Deletes the workspace with all that it has read."""
        with self._lock:
            if self._pointer is not None:
                ffi.release(self._open())
                self._pointer = None

    def __enter__(self) -> "Workspace":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
