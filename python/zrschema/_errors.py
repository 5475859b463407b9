# SPDX-License-Identifier: Apache-2.0
"""Exceptions, and the records of what is wrong with modules."""
from __future__ import annotations

import dataclasses
from typing import Optional, Sequence, Tuple

from ._constants import ReportCode


@dataclasses.dataclass(frozen=True)
class Problem:
    """One thing that is wrong with a module, or doubtful.

    >>> str(Problem("syntax error", file="a.yang", line=3, column=5))
    'a.yang:3:5: error: syntax error'
    """

    #: One line of English.
    message: str
    #: The module or submodule; None when it has no name yet.
    module: Optional[str] = None
    #: The file as it was found; None when the problem belongs to none.
    file: Optional[str] = None
    #: From 1; None when the problem belongs to no line.
    line: Optional[int] = None
    #: In characters, from 1; None when it is not known.
    column: Optional[int] = None
    #: Whether the module is loaded, or written, all the same.
    is_warning: bool = False
    #: What a problem of a source is about; None for what the engine has recorded.
    code: Optional[ReportCode] = None

    def __str__(self) -> str:
        places = [self.file or self.module, self.line, self.column]
        place = ":".join(str(part) for part in places if part is not None)
        kind = "warning" if self.is_warning else "error"
        return f"{place}: {kind}: {self.message}" if place else f"{kind}: {self.message}"


class Error(Exception):
    """What every exception of this package is; also raised for failures without a class of their
    own."""

    def __init__(self, message: str, status: int = 0) -> None:
        super().__init__(message)
        #: The status of the library behind it; 0 when there is none.
        self.status = status


class LibraryError(Error, ImportError):
    """A shared library that is not there, or is not the right one."""


class StaleError(Error):
    """A node, a type, a plan or a result of a schema that has changed since.

    Loading and unloading change a schema: look the node up again, make a new validator.
    """


class NotFoundError(Error, LookupError):
    """A module, node or file that is not there."""


class InvalidValueError(Error, ValueError):
    """A value that the type of a leaf refuses; `status` says which restriction does."""


class LoadError(Error):
    """A module that could not be loaded, or not in whole."""

    def __init__(self, message: str, errors: Sequence[Problem] = (), status: int = 0) -> None:
        super().__init__("\n  ".join([message, *map(str, errors)]), status)
        #: What was recorded of it: errors and warnings.
        self.errors: Tuple[Problem, ...] = tuple(errors)


class PrepareError(LoadError):
    """A source with errors, so that nothing could be prepared or loaded."""
