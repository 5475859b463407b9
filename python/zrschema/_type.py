# SPDX-License-Identifier: Apache-2.0
"""Types: the "type" statements of leafs and leaf-lists, and the typedefs behind them."""
from __future__ import annotations

import dataclasses
import decimal
from typing import Any, Dict, List, Optional, Tuple, Union

from ._constants import BoundKind, BuiltInType, RequireInstance, Restriction, Status
from ._errors import Error
from ._library import collect, collector, engine, ffi, text, text_or_none
from ._schema import Record, Schema

#: A bound of a range or length: a number, or "min" or "max" where a typedef decides it.
Bound = Union[int, decimal.Decimal, str]


@dataclasses.dataclass(frozen=True)
class Pattern:
    """A pattern of a type (RFC 7950, section 9.4.5)."""

    #: The regular expression.
    text: str
    #: Whether a value must not match it.
    is_inverted: bool = False


SIGNED_TYPES = {BuiltInType.INT8, BuiltInType.INT16, BuiltInType.INT32, BuiltInType.INT64,
           BuiltInType.DECIMAL64}


def _bound(bound: Any) -> Tuple[int, int, int]:
    return bound.kind, bound.fractionDigits, bound.number


_on_link = collector("ZrDerivedTypeScanFunc", lambda module, name, type_, user:
                     (text_or_none(module), text_or_none(name), type_))
_on_value = collector("ZrNameValueScanFunc", lambda name, description, value, user:
                      (text(name), text_or_none(description), value))
_on_bounds = collector("ZrBoundsScanFunc",
                       lambda start, end, user: (_bound(start), _bound(end)))
_on_member = collector("ZrUnionScanFunc", lambda module, name, member, user: member)
_on_base = collector("ZrIdentBaseScanFunc",
                     lambda module, name, user, bases: f"{text(module)}:{text(name)}", user=2)
_on_pattern = collector("ZrPatternScanFunc", lambda pattern, inverted, user, patterns:
                        Pattern(text(pattern), inverted != 0), user=2)
_on_if_feature = collector("ZrIfFeatureScanFunc",
                           lambda module, name, user: f"{text(module)}:{text(name)}")


class Type(Record):
    """The type of a leaf, leaf-list or typedef, or a member of a union.

    What a type says itself is told by the properties that `own_` stands before; the others also ask
    the typedefs that it is built on, the closest one first.

    >>> import zrschema
    >>> context = zrschema.Context()
    >>> context.add_source("m", '''module m { namespace "urn:m"; prefix m;
    ...   typedef t { type string { length "1..9"; pattern "[a-z]*"; } }
    ...   leaf a { type t { pattern "x.*"; } } }''')
    >>> type_ = context.load("m")["a"].type
    >>> type_.name, type_.builtin.name, type_.bounds, len(type_.patterns), len(type_.own_patterns)
    ('m:t', 'STRING', ((1, 9),), 2, 1)
    """

    __slots__ = ()

    def _links(self) -> List[Tuple[Optional[str], Optional[str], Any]]:
        """The typedefs behind the type, as names and pointers; to be called with the lock held."""
        pointer = self._open()
        links: List[Any] = []
        status = engine.ZR_TYPE_IterRealTypeDerivedName(pointer, self._schema.open(), _on_link,
                                                        ffi.new_handle(links))
        if status not in (Status.OK, Status.ERR_INVALID):  # a chain without an end is cut
            raise Error("the chain of typedefs cannot be read", status)
        return links

    def _chain(self) -> List[Any]:
        """The type and the typedefs' types behind it that are loaded."""
        pointer = self._open()
        if engine.ZR_TYPE_GetBuiltInBaseType(pointer) != BuiltInType.DERIVED:
            return [pointer]
        return [pointer] + [link for _, _, link in self._links() if link != ffi.NULL]

    def _first(self, scan: Any, callback: Any) -> List[Any]:
        """What a scan tells of the first type of the chain that has any."""
        with self._schema.lock:
            return next(filter(None, (collect(scan, link, callback) for link in self._chain())),
                        [])

    @property
    def name(self) -> str:
        """The typedef that it names, "module:typedef", or else the built-in type's keyword."""
        with self._schema.lock:
            links = self._links()
            if links and links[0][1] is not None:
                return f"{links[0][0]}:{links[0][1]}"
            return text(engine.ZR_GetBuiltInTypeName(
                engine.ZR_TYPE_GetBuiltInBaseType(self._open())))

    @property
    def builtin(self) -> BuiltInType:
        """The built-in type at the end of its typedefs; `BuiltInType.DERIVED` where one of these is
        not loaded."""
        with self._schema.lock:
            return BuiltInType(engine.ZR_TYPE_GetBuiltInBaseType(self._chain()[-1]))

    @property
    def chain(self) -> Tuple["Type", ...]:
        """The type itself, and then that of each typedef, to the one built on a built-in type."""
        with self._schema.lock:
            return tuple(Type(self._schema, link) for link in self._chain())

    @property
    def typedefs(self) -> Tuple[str, ...]:
        """The typedefs that it is built on, "module:typedef"; none for a built-in type."""
        with self._schema.lock:
            return tuple(f"{module}:{name}" for module, name, _ in self._links()
                         if name is not None)

    @property
    def fraction_digits(self) -> Optional[int]:
        """The digits of a decimal64 behind the point; None for other types."""
        with self._schema.lock:
            return engine.ZR_TYPE_GetDecimal64Fraction(self._chain()[-1]) or None

    @property
    def bounds(self) -> Tuple[Tuple[Bound, Bound], ...]:
        """The segments of its length or range, as written: pairs of the first and last value."""
        with self._schema.lock:
            chain = self._chain()
            is_signed = engine.ZR_TYPE_GetBuiltInBaseType(chain[-1]) in SIGNED_TYPES
            for link in chain:
                found = collect(engine.ZR_TYPE_ScanBounds, link, _on_bounds)
                if found:
                    is_decimal = engine.ZR_TYPE_GetDecimal64Fraction(chain[-1]) != 0
                    return tuple((_value(start, is_signed, is_decimal),
                                  _value(end, is_signed, is_decimal)) for start, end in found)
            return ()

    @property
    def patterns(self) -> Tuple[Pattern, ...]:
        """The patterns that a value is held against: its own, and then those of its typedefs."""
        with self._schema.lock:
            return tuple(pattern for link in self._chain() for pattern in
                         collect(engine.ZR_TYPE_ScanPatternInvertMatch, link, _on_pattern))

    @property
    def own_patterns(self) -> Tuple[Pattern, ...]:
        """The patterns of the type statement itself."""
        return tuple(self._ask_all(engine.ZR_TYPE_ScanPatternInvertMatch, _on_pattern))

    @property
    def values(self) -> Dict[str, int]:
        """The names of an enumeration with their values, or of bits with their positions."""
        found = self._first(engine.ZR_TYPE_ScanNameValuePair, _on_value)
        return {name: value for name, _, value in found}

    @property
    def value_descriptions(self) -> Dict[str, Optional[str]]:
        """The descriptions of the names of an enumeration, None where there is none or the context
        does not keep them."""
        found = self._first(engine.ZR_TYPE_ScanNameValuePair, _on_value)
        return {name: description for name, description, _ in found}

    def is_value_enabled(self, name: str) -> bool:
        """Tells whether all features are on that an enum or bit of the type depends on."""
        with self._schema.lock:
            for link in self._chain():
                found = collect(engine.ZR_TYPE_ScanNameValuePair, link, _on_value)
                for index, (known, _, _) in enumerate(found):
                    if known == name:
                        return bool(engine.ZR_TYPE_IsNameEnabled(link, self._schema.open(),
                                                                 index))
        raise ValueError(f"the type has no {name!r}")

    @property
    def members(self) -> Tuple["Type", ...]:
        """The member types of a union, in the order in which they are tried."""
        found = self._first(engine.ZR_TYPE_ScanUnionSubType, _on_member)
        return tuple(Type(self._schema, member) for member in found)

    @property
    def bases(self) -> Tuple[str, ...]:
        """The base identities of an identityref, "module:identity"."""
        return tuple(self._first(engine.ZR_TYPE_ScanIdentRefBase, _on_base))

    @property
    def path(self) -> Optional[str]:
        """The path of a leafref with the names of modules for prefixes, None for other types."""
        with self._schema.lock:
            for link in self._chain():
                found = text_or_none(engine.ZR_TYPE_GetLeafrefPathWithPredicates(link))
                if found is not None:
                    return found
            return None

    @property
    def require_instance(self) -> Optional[bool]:
        """Whether what a leafref or instance-identifier refers to must be there; None where no
        statement says so."""
        with self._schema.lock:
            for link in self._chain():
                said = engine.ZR_TYPE_GetRequireInstance(link)
                if said != RequireInstance.NOT_SAID:
                    return bool(said == RequireInstance.REQUIRED)
            return None

    def error_message(self, restriction: Restriction, index: int = 0) -> Optional[str]:
        """What a server says of a value that the type's own restriction refuses; `index` is the
        place of a pattern."""
        return self._ask_text(engine.ZR_TYPE_GetErrorMessage, restriction, index)

    def error_app_tag(self, restriction: Restriction, index: int = 0) -> Optional[str]:
        """The app-tag of a value that the type's own restriction refuses."""
        return self._ask_text(engine.ZR_TYPE_GetErrorAppTag, restriction, index)

    def __repr__(self) -> str:
        return f"<Type {self.name}>"


def make_type(schema: Schema, pointer: Any) -> Optional[Type]:
    """The type behind a pointer, None for a null pointer."""
    return None if pointer == ffi.NULL else Type(schema, pointer)


def _value(bound: Tuple[int, int, int], is_signed: bool, is_decimal: bool) -> Bound:
    kind, digits, number = bound
    if kind != BoundKind.NUMBER:
        return "min" if kind == BoundKind.MIN else "max"
    if is_signed and number >= 1 << 63:
        number -= 1 << 64
    return decimal.Decimal(number).scaleb(-digits) if is_decimal else number
