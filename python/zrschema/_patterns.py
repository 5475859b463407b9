# SPDX-License-Identifier: Apache-2.0
"""Patterns of XML Schema by themselves."""
from __future__ import annotations

from typing import Any

from ._constants import PatternMatch, PatternsStatus
from ._errors import Error
from ._library import encoded, ffi, patterns_library


class Matcher:
    """A compiled pattern (RFC 7950, section 9.4.5), which matches in linear time.

    >>> Matcher("[a-z]+[0-9]*").matches("eth0")
    True
    >>> Matcher("[a-z]+[0-9]*").matches("eth0/1")
    False
    """

    def __init__(self, pattern: str) -> None:
        self._library = patterns_library()
        out = ffi.new("ZrPattern **")
        status = self._library.ZR_PATTERNS_Compile(encoded(pattern), out)
        if status == PatternsStatus.ERR_NO_MEMORY:
            raise MemoryError
        if status == PatternsStatus.ERR_TOO_LARGE:
            raise Error(f"too large to be matched in linear time: {pattern}", status)
        if status != PatternsStatus.OK:
            raise ValueError(f"no regular expression of XML Schema: {pattern}")
        #: The regular expression.
        self.pattern = pattern
        self._pointer: Any = ffi.gc(out[0], self._library.ZR_PATTERNS_Free)

    def matches(self, value: str) -> bool:
        """Tells whether the pattern matches the whole of a value.

        Raises `ValueError` for a value with characters that XML does not have.
        """
        answer = self._library.ZR_PATTERNS_Match(self._pointer, encoded(value))
        if answer == PatternMatch.UNDECIDED:
            raise ValueError(f"no text of XML: {value!r}")
        return bool(answer == PatternMatch.MATCH)

    def __repr__(self) -> str:
        return f"Matcher({self.pattern!r})"
