# SPDX-License-Identifier: Apache-2.0
"""What the engine itself validates: requests and notifications, up to their first fault."""
from __future__ import annotations

import dataclasses
from typing import Any, Optional, Tuple

from ._constants import ErrorSeverity, ErrorTag, ErrorType, ValueInput
from ._errors import Error
from ._library import STOPPED, collector, encoded, engine, ffi, text, text_or_none
from ._schema import Schema
from ._xml import Data, Tree, schema_path, to_bytes


@dataclasses.dataclass(frozen=True)
class RpcError:
    """The fault of a message, with the fields of an rpc-error (RFC 6241, section 4.3)."""

    type: ErrorType
    severity: ErrorSeverity
    tag: ErrorTag
    app_tag: Optional[str]
    path: Optional[str]
    message: Optional[str]
    bad_element: Optional[str]
    bad_attribute: Optional[str]

    @property
    def tag_name(self) -> str:
        """The tag as NETCONF writes it, such as "operation-failed"."""
        return text(engine.ZR_GetErrorTagName(self.tag))


@dataclasses.dataclass(frozen=True)
class Verdict:
    """What the engine says of a message. It is true when the message is valid."""

    #: The fault; None when the message is valid.
    error: Optional[RpcError]
    #: The schema paths of the defaults that were added, each the root of what was.
    defaults: Tuple[str, ...]
    #: The message as the check left it: with defaults, or without what its conditions rule out;
    #: None for a notification that is not valid and a text that is not well-formed.
    document: Optional[str]

    @property
    def is_valid(self) -> bool:
        """Whether the message is valid."""
        return self.error is None

    def __bool__(self) -> bool:
        return self.error is None


_on_document = collector("ZrDocumentFunc", lambda document, user: text(document))


@ffi.callback("ZrDefaultNodeFunc")  # type: ignore[misc]
def _on_default(element: Any, user: Any) -> None:
    context, paths = ffi.from_handle(user)
    paths.append(schema_path(context, ffi.cast("ZrXmlNode *", element)))


def _take_error(error: Any) -> Optional[RpcError]:
    """What a record says, which is freed."""
    if error == ffi.NULL:
        return None
    try:
        return RpcError(
            ErrorType(engine.ZR_GetErrorType(error)),
            ErrorSeverity(engine.ZR_GetErrorSeverity(error)),
            ErrorTag(engine.ZR_GetErrorTag(error)),
            *(text_or_none(function(error)) for function in (
                engine.ZR_GetErrorAppTag, engine.ZR_GetErrorPath, engine.ZR_GetErrorMessage,
                engine.ZR_GetBadElement, engine.ZR_GetBadAttribute)))
    finally:
        engine.ZR_FreeErrNode(error)


def _read(data: Data, is_notification: bool) -> Optional[Tree]:
    tree = Tree.parse(to_bytes(data)[0])
    if tree is None:
        return None
    message = tree.message(is_notification)
    if message is None:
        raise ValueError("the envelope does not hold exactly one element to validate")
    return message


def validate_rpc(schema: Schema, data: Data) -> Verdict:
    """Has the engine validate a request."""
    tree = _read(data, is_notification=False)
    with schema.lock:
        context = schema.open()
        if tree is None:
            return _refused(context)
        paths: Any = []
        error = _take_error(engine.ZR_CTX_ValidateRpcDataTree(
            context, ValueInput.XML, tree.root, _on_default, ffi.new_handle((context, paths))))
    return Verdict(error, tuple(paths), tree.dump())


def validate_notification(schema: Schema, data: Data) -> Verdict:
    """Has the engine validate a notification."""
    tree = _read(data, is_notification=True)
    error, documents = ffi.new("ZrdErrNode **"), []  # type: ignore[var-annotated]
    with schema.lock:
        context = schema.open()
        if tree is None:
            return _refused(context)
        status = engine.ZR_CTX_ValidateNotifDataTreeWithError(
            context, encoded(tree.dump()), _on_document, ffi.new_handle(documents), error)
    found = _take_error(error[0])
    if status == STOPPED:
        raise MemoryError
    if found is None and not documents:
        raise Error("the notification cannot be written", status)
    return Verdict(found, (), documents[0] if documents else None)


def _refused(context: Any) -> Verdict:
    """The engine's answer to a text that is no XML, which is the same for all of them."""
    return Verdict(_take_error(engine.ZR_CTX_ValidateRpcDataTree(
        context, ValueInput.STRING, ffi.new("char[]", b""), ffi.NULL, ffi.NULL)), (), None)
