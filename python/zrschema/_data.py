# SPDX-License-Identifier: Apache-2.0
"""Whole data, checked by RFC 7950, and written again."""
from __future__ import annotations

import dataclasses
import os
import weakref
import xml.etree.ElementTree as ElementTree
from typing import Any, Dict, List, Optional, Tuple, Union

from ._constants import DataStatus, Defaults, ErrorTag, Format, Kind
from ._context import Context
from ._errors import Error, StaleError
from ._library import (STOPPED, collector, data_library, encoded, engine, ffi, text, text_or_none)
from ._schema import Schema
from ._xml import Data, Tree, is_json, to_bytes


@dataclasses.dataclass(frozen=True)
class Fault:
    """A fault of data, or a warning, with the fields of an rpc-error (RFC 6241, section 4.3)."""

    #: What kind of fault it is.
    tag: ErrorTag
    #: The error-app-tag, if there is one.
    app_tag: Optional[str]
    #: The node as an instance-identifier, with the names of modules for prefixes.
    path: str
    #: One line; the schema's own error-message where it has one.
    message: str
    #: The name of the element at fault, if there is one.
    bad_element: Optional[str] = None
    #: The name of the attribute at fault, if there is one.
    bad_attribute: Optional[str] = None
    #: The line in the text, from 1; None when it is not known, and for elements.
    line: Optional[int] = None
    #: The file, when one was checked.
    file: Optional[str] = None
    #: The namespaces of the modules that `path` names.
    namespaces: Dict[str, str] = dataclasses.field(default_factory=dict, hash=False)
    #: The fault as an `<rpc-error>`; None for a warning.
    rpc_error: Optional[str] = None

    @property
    def tag_name(self) -> str:
        """The tag as NETCONF writes it, such as "missing-element"."""
        return text(engine.ZR_GetErrorTagName(self.tag))

    def __str__(self) -> str:
        tags = f"{self.tag_name}, {self.app_tag}" if self.app_tag else self.tag_name
        return f"{self.path}: {self.message} ({tags})"


class InvalidDataError(Error, ValueError):
    """Data that has faults where it must have none."""

    def __init__(self, message: str, errors: Tuple[Fault, ...]) -> None:
        super().__init__("\n  ".join([message, *map(str, errors)]), DataStatus.ERR_FAULTY)
        #: The faults.
        self.errors = errors


@dataclasses.dataclass(frozen=True)
class PlanProblem:
    """An expression of the schema that checks cannot use."""

    #: The path of the schema node that has it.
    node: str
    #: The expression.
    expression: str
    #: What is wrong with it.
    message: str


_on_piece = collector("ZrDataWriteFunc", lambda piece, length, user: ffi.buffer(piece, length)[:])
_on_problem = collector("ZrDataProblemFunc", lambda node, expression, message, user:
                        PlanProblem(text(node), text(expression), text(message)))


#: What the library writes again.
_WRITTEN = {Kind.CONFIG, Kind.CONFIG_AND_STATE}


def _require(status: int) -> None:
    """Raises what a status says that is no verdict."""
    if status in (DataStatus.OK, DataStatus.ERR_FAULTY):
        return
    if status in (DataStatus.ERR_NO_MEMORY, STOPPED):
        raise MemoryError
    if status == DataStatus.ERR_STALE:
        raise StaleError("the context has changed: make a new validator and check again", status)
    raise ValueError("an operation that is not there, or an argument out of its range")


class _Plan:
    """The plan of a schema, which goes before the schema and after its documents."""

    def __init__(self, schema: Schema) -> None:
        library = data_library()
        self.schema = schema
        self.documents: weakref.WeakSet[Any] = weakref.WeakSet()
        out = ffi.new("ZrDataPlan **")
        with schema.lock:
            context = schema.open()
            _require(library.ZR_DATA_CreatePlan(context, ffi.NULL, out))
            # The context stays as long as the plan, whatever is collected first.
            self._pointer: Any = ffi.gc(out[0], lambda plan, context=context:
                                        library.ZR_DATA_DeletePlan(plan))
            self.generation = schema.generation
        schema.depend(self)

    def open(self) -> Any:
        """The plan; to be called with the schema's lock held."""
        self.schema.open()
        if self._pointer is None:
            raise ValueError("the validator is closed")
        return self._pointer

    def open_current(self) -> Any:
        """The plan, which must be of the schema as it is. A schema that has been loaded anew may
        look the same to the library, at the same addresses."""
        pointer = self.open()
        if self.generation != self.schema.generation:
            _require(DataStatus.ERR_STALE)
        return pointer

    def _close(self) -> None:
        if self._pointer is not None:
            for document in list(self.documents):
                document._close()
            ffi.release(self._pointer)
            self._pointer = None


class _Document:
    """Data without faults, ready to be written."""

    def __init__(self, plan: _Plan, pointer: Any) -> None:
        self._plan = plan
        keep = plan.open()
        library = data_library()
        self._pointer: Any = ffi.gc(pointer, lambda document, plan=keep:
                                    library.ZR_DATA_DeleteDocument(document))
        plan.documents.add(self)

    def _close(self) -> None:
        ffi.release(self._pointer)
        self._pointer = None

    def write(self, form: Format, defaults: Defaults, indent: int) -> str:
        """The data as text."""
        options = ffi.new("ZrDataWriteOptions *", [form, defaults, indent])
        pieces: List[bytes] = []
        with self._plan.schema.lock:
            _require(data_library().ZR_DATA_WriteText(self._open(), options, _on_piece,
                                                      ffi.new_handle(pieces)))
        return b"".join(pieces).decode("utf-8")

    def tree(self) -> Tree:
        """The data as a tree of libxml2's."""
        out = ffi.new("void **")
        with self._plan.schema.lock:
            _require(data_library().ZR_DATA_WriteTree(self._open(), Defaults.EXPLICIT, out))
        return Tree(out[0])

    def _open(self) -> Any:
        self._plan.open_current()
        return self._pointer


class Datastore:
    """Data that messages are held against, read once: see `Validator.datastore()`."""

    def __init__(self, tree: Tree) -> None:
        self._tree = tree


class Result:
    """What a check has found. It is true when the data is valid.

    Valid data, configuration alone or with state, can be written again.
    """

    def __init__(self, errors: Tuple[Fault, ...], warnings: Tuple[Fault, ...], found: int,
                 document: Optional[_Document]) -> None:
        #: The faults, in document order, up to the limit.
        self.errors = errors
        #: What a receiver may take and a sender had better not write.
        self.warnings = warnings
        #: How many faults were found; more than `errors` holds when the limit was met.
        self.error_count = found
        self._document = document

    @property
    def valid(self) -> bool:
        """Whether the data has no faults."""
        return not self.errors

    def __bool__(self) -> bool:
        return self.valid

    def require_valid(self) -> "Result":
        """Raises `InvalidDataError` when there are faults; else returns the result itself."""
        if self.errors:
            raise InvalidDataError(f"the data has {self.error_count} faults", self.errors)
        return self

    def _written(self) -> _Document:
        self.require_valid()
        if self._document is None:
            raise Error("edits and messages are not written again")
        return self._document

    def to_xml(self, defaults: Defaults = Defaults.EXPLICIT, indent: int = 2) -> str:
        """The data as XML, canonical and in the schema's order (RFC 6243 for the defaults).

        The root is the element that the data was read in, or NETCONF's `<data>` for JSON.
        """
        return self._written().write(Format.XML, defaults, indent)

    def to_json(self, defaults: Defaults = Defaults.EXPLICIT, indent: int = 2) -> str:
        """The data as JSON (RFC 7951)."""
        return self._written().write(Format.JSON, defaults, indent)

    def to_etree(self, defaults: Defaults = Defaults.EXPLICIT) -> ElementTree.Element:
        """The data as an element of `xml.etree`."""
        return ElementTree.fromstring(self.to_xml(defaults, 0))

    def to_lxml(self, defaults: Defaults = Defaults.EXPLICIT) -> Any:
        """The data as an element of lxml, which has to be installed."""
        import lxml.etree
        return lxml.etree.fromstring(self.to_xml(defaults, 0).encode("utf-8"))

    def __repr__(self) -> str:
        return "<Result: valid>" if self.valid else f"<Result: {self.error_count} faults>"


class Validator:
    """Checks data against the modules of a context, by RFC 7950.

    It is made of what is loaded, with the features that are on; when that changes, a new one is
    due, and `check()` raises `StaleError`. Any number of threads may check at the same time.

    >>> import zrschema
    >>> context = zrschema.Context()
    >>> context.add_source("m", '''module m { namespace "urn:m"; prefix m;
    ...   list l { key k; leaf k { type int8; } leaf a { type string; default "x"; } } }''')
    >>> module = context.load("m")
    >>> validator = zrschema.Validator(context)
    >>> validator.check('{"m:l": [{"k": 1}, {"k": 1}]}').errors[0].tag_name
    'bad-element'
    >>> validator.check('{"m:l": [{"k": 1}]}').to_json(zrschema.Defaults.REPORT_ALL, indent=0)
    '{"m:l":[{"k":1,"a":"x"}]}'
    """

    def __init__(self, context: Context) -> None:
        self._plan = _Plan(context._schema)

    def check(self, data: Data, kind: Kind = Kind.CONFIG, *, format: Optional[Format] = None,
              datastore: Union[Datastore, Data, None] = None, operation: Optional[str] = None,
              error_limit: int = 0, step_limit: int = 0) -> Result:
        """Checks data, an edit or a message.

        data         XML or JSON as a text, bytes or the path of a file (`pathlib.Path`), or an
                     element or tree of `xml.etree` or lxml
        kind         what it is, which decides what it may hold and what it must
        format       what a text is; it is seen from its first character when nothing is said
        datastore    of a message or an edit: the data that it is sent to or comes from
        operation    of a reply: the rpc or action that gives it, "module:rpc"
        error_limit  how many faults are kept, 100 when nothing is said
        step_limit   how many steps a condition may take, a measure of libxml2's
        """
        content, file, has_lines = to_bytes(data)
        if datastore is not None and not isinstance(datastore, Datastore):
            datastore = self.datastore(datastore)
        name = ffi.NULL if operation is None else ffi.new("char[]", encoded(operation))
        options = ffi.new("ZrDataOptions *")
        options.kind, options.errorLimit, options.stepLimit = kind, error_limit, step_limit
        options.operation = name
        if datastore is not None:
            options.datastore = datastore._tree.root
        library = data_library()
        as_json = is_json(content) if format is None else format == Format.JSON
        found, made = ffi.new("ZrDataDocument **"), ffi.new("ZrDataResult **")
        with self._plan.schema.lock:
            arguments = self._plan.open_current(), options, content, len(content)
            if kind in _WRITTEN:
                read = library.ZR_DATA_ReadJson if as_json else library.ZR_DATA_ReadXml
                _require(read(*arguments, found, made))
            else:
                check = library.ZR_DATA_CheckJson if as_json else library.ZR_DATA_CheckText
                _require(check(*arguments, made))
            document = None if found[0] == ffi.NULL else _Document(self._plan, found[0])
        try:
            return _result(made[0], document, file, has_lines)
        finally:
            library.ZR_DATA_DeleteResult(made[0])

    def datastore(self, data: Data, format: Optional[Format] = None) -> Datastore:
        """Reads data that messages and edits are held against, to be given to many checks.

        Raises `InvalidDataError` when it is not well-formed, and for faults of JSON.
        """
        content = to_bytes(data)[0]
        as_json = is_json(content) if format is None else format == Format.JSON
        tree = None if as_json else Tree.parse(content)
        if tree is None:
            result = self.check(content, Kind.CONFIG_AND_STATE, format=format)
            tree = result._written().tree()
        return Datastore(tree)

    @property
    def is_current(self) -> bool:
        """Whether the context is still as it was when the validator was made."""
        plan = self._plan
        with plan.schema.lock:
            pointer = plan.open()
            return bool(plan.generation == plan.schema.generation
                        and data_library().ZR_DATA_IsPlanCurrent(pointer))

    @property
    def problems(self) -> Tuple[PlanProblem, ...]:
        """The expressions of the schema that checks cannot use."""
        found: List[PlanProblem] = []
        with self._plan.schema.lock:
            _require(data_library().ZR_DATA_ScanPlanProblems(self._plan.open(), _on_problem,
                                                             ffi.new_handle(found)))
        return tuple(found)

    def close(self) -> None:
        """Deletes the validator with what its results hold, once no check is running."""
        with self._plan.schema.lock.writing:
            self._plan._close()

    def __enter__(self) -> "Validator":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


def _result(made: Any, document: Optional[_Document], file: Optional[str],
            has_lines: bool) -> Result:
    library = data_library()
    found = ffi.new("size_t *")
    count = library.ZR_DATA_GetErrorCount(made, found)
    errors = tuple(_fault(library.ZR_DATA_GetError(made, i), file, has_lines,
                          text(library.ZR_DATA_GetErrorXml(made, i))) for i in range(count))
    warnings = tuple(_fault(library.ZR_DATA_GetWarning(made, i), file, has_lines, None)
                     for i in range(library.ZR_DATA_GetWarningCount(made, ffi.NULL)))
    return Result(errors, warnings, found[0], document)


def _fault(error: Any, file: Optional[str], has_lines: bool, rpc_error: Optional[str]) -> Fault:
    return Fault(
        ErrorTag(error.tag), text_or_none(error.appTag), text(error.path), text(error.message),
        text_or_none(error.badElement), text_or_none(error.badAttribute),
        error.line or None if has_lines else None, None if file is None else os.fspath(file),
        {text(error.prefixes[i].prefix): text(error.prefixes[i].namespaceUri)
         for i in range(error.prefixCount)}, rpc_error)
