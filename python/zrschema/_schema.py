# SPDX-License-Identifier: Apache-2.0
"""What modules, nodes and types share: the engine's context behind a lock.

The libraries release the interpreter's lock while they work, and a context has no lock of its own;
so each call that reads a context takes this one as a reader, and what changes a context waits until
no reader is left.
"""
from __future__ import annotations

import threading
import weakref
from typing import Any, Callable, Dict, List, Optional, Protocol

from ._errors import StaleError
from ._library import collect, encoded, engine, ffi, printed, text_or_none


class SharedLock:
    """A lock that any number of readers have at the same time, or one writer alone.

    The lock itself is the context manager of readers. Who has it may take it again, but a reader
    does not become a writer. New readers stand behind writers who wait.
    """

    def __init__(self) -> None:
        # A writer has this all the time, readers only to come and go.
        self._gate = threading.RLock()
        self._changed = threading.Condition(self._gate)
        self._readers: Dict[int, int] = {}  # how often each thread is in
        self._waiting = 0  # writers
        self._depth = 0  # of the writer
        self.writing = _Writing(self)

    def __enter__(self) -> None:
        me = threading.get_ident()
        with self._gate:
            if self._waiting and not self._depth and me not in self._readers:
                self._changed.wait_for(lambda: self._waiting == 0)
            self._readers[me] = self._readers.get(me, 0) + 1

    def __exit__(self, *_: object) -> None:
        me = threading.get_ident()
        with self._gate:
            count = self._readers.pop(me) - 1
            if count:
                self._readers[me] = count
            elif self._waiting:
                self._changed.notify_all()


class _Writing:
    """The context manager of a writer."""

    def __init__(self, lock: SharedLock) -> None:
        self._lock = lock

    def __enter__(self) -> None:
        lock = self._lock
        lock._changed.acquire()
        if not lock._depth:
            lock._waiting += 1
            try:
                lock._changed.wait_for(lambda: not lock._readers)
            except BaseException:  # an interrupt, while waiting
                lock._waiting -= 1
                lock._changed.notify_all()
                lock._changed.release()
                raise
            lock._waiting -= 1
        lock._depth += 1

    def __exit__(self, *_: object) -> None:
        lock = self._lock
        lock._depth -= 1
        if not lock._depth:
            lock._changed.notify_all()
        lock._changed.release()


class Dependent(Protocol):
    """What refers to a schema and has to go before it."""

    def _close(self) -> None: ...


class Schema:
    """The engine's context, and the number of changes that it has seen."""

    def __init__(self, pointer: Any) -> None:
        self.pointer: Optional[Any] = ffi.gc(pointer, engine.ZR_CTX_Delete)
        self.lock = SharedLock()
        #: Grows with each load and unload, which pointers to nodes and types do not outlive.
        self.generation = 0
        self._dependents: weakref.WeakSet[Any] = weakref.WeakSet()

    def open(self) -> Any:
        """The engine's context; to be called with the lock held."""
        if self.pointer is None:
            raise ValueError("the context is closed")
        return self.pointer

    def depend(self, dependent: Dependent) -> None:
        """Has something closed before the context is, if it is still there then."""
        self._dependents.add(dependent)

    def close(self) -> None:
        """Deletes the context with all that depends on it, once nobody uses it any more."""
        with self.lock.writing:
            if self.pointer is None:
                return
            for dependent in list(self._dependents):
                dependent._close()
            ffi.release(self.pointer)
            self.pointer = None


class Record:
    """A record of the engine's, such as a node, with its schema."""

    __slots__ = ("_schema", "_pointer", "_generation")

    def __init__(self, schema: Schema, pointer: Any) -> None:
        self._schema = schema
        self._pointer = pointer
        self._generation = schema.generation

    def _open(self) -> Any:
        """The engine's record; to be called with the lock held."""
        self._schema.open()
        if self._generation != self._schema.generation:
            self._find_again()
        return self._pointer

    def _find_again(self) -> None:
        raise StaleError("the schema has changed since this was found: look it up again")

    def _ask(self, function: Callable[..., Any], *arguments: Any) -> Any:
        """Calls a function that only reads, on this record."""
        with self._schema.lock:
            return function(self._open(), *arguments)

    def _ask_text(self, function: Callable[..., Any], *arguments: Any) -> Optional[str]:
        with self._schema.lock:
            return text_or_none(function(self._open(), *arguments))

    def _ask_name(self, function: Callable[..., Any]) -> str:
        return self._ask_text(function) or ""

    def _ask_all(self, scan: Callable[..., int], callback: Any) -> List[Any]:
        """What a scan of this record tells."""
        with self._schema.lock:
            return collect(scan, self._open(), callback)

    def _print(self, function: Callable[..., int]) -> str:
        with self._schema.lock:
            return printed(function, self._open())

    def __eq__(self, other: object) -> bool:
        return (isinstance(other, Record) and self._pointer == other._pointer
                and self._schema is other._schema and self._generation == other._generation)

    def __hash__(self) -> int:
        return hash((self._pointer, self._generation))


def name_bytes(name: Optional[str]) -> Any:
    """A name as the engine takes it, a null pointer for None."""
    return ffi.NULL if name is None else encoded(name)
