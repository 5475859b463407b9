# SPDX-License-Identifier: Apache-2.0
"""XML on its way into the libraries: texts, elements of xml.etree and lxml, trees of libxml2's."""
from __future__ import annotations

import os
import re
import xml.etree.ElementTree as ElementTree
from typing import Any, Optional, Tuple, Union

from ._library import encoded, engine, ffi, text

#: What is checked: a text, a file's path, or an element or tree of xml.etree or lxml.
Data = Union[str, bytes, "os.PathLike[str]", Any]

_NO_BLANKS, _NO_ERRORS, _NO_WARNINGS, _NO_NETWORK, _BIG_LINES = 1 << 8, 32, 64, 1 << 11, 1 << 22
_PARSE = _NO_BLANKS | _NO_ERRORS | _NO_WARNINGS | _NO_NETWORK | _BIG_LINES
_ELEMENT = 1  # the kind of a node of libxml2's

_ENCODING = re.compile(r"""\A(\ufeff?<\?xml[^>]*?)\s+encoding\s*=\s*("[^"]*"|'[^']*')""")

BASE_NAMESPACE = "urn:ietf:params:xml:ns:netconf:base:1.0"
YANG_NAMESPACE = "urn:ietf:params:xml:ns:yang:1"
EVENT_NAMESPACE = "urn:ietf:params:xml:ns:netconf:notification:1.0"


def to_bytes(data: Data) -> Tuple[bytes, Optional[str], bool]:
    """The bytes of what is to be checked, its file if it is one, and whether it has lines."""
    if isinstance(data, (bytes, bytearray, memoryview)):
        return bytes(data), None, True
    if isinstance(data, str):
        # What a text says of its encoding was true of the bytes that it was read from.
        return _ENCODING.sub(r"\1", data, count=1).encode("utf-8"), None, True
    if isinstance(data, os.PathLike):
        with open(data, "rb") as file:
            return file.read(), os.fspath(data), True
    if hasattr(data, "getroot"):
        data = data.getroot()
    if hasattr(data, "nsmap"):
        import lxml.etree
        return bytes(lxml.etree.tostring(data, encoding="utf-8", with_tail=False)), None, False
    if isinstance(data, ElementTree.Element):
        return ElementTree.tostring(data, encoding="utf-8"), None, False
    raise TypeError(f"neither text, path nor element: {type(data).__name__}")


def is_json(data: bytes) -> bool:
    """Tells by its first character whether a text is JSON."""
    if data.startswith(b"\xef\xbb\xbf"):
        data = data[3:]
    return data.lstrip(b" \t\r\n")[:1] in (b"{", b"[")


def is_submodule(path: str) -> bool:
    """Tells whether a file of YIN holds a submodule; False for what is no XML."""
    try:
        with open(path, "rb") as file:
            _, root = next(ElementTree.iterparse(file, ["start"]))
    except (ElementTree.ParseError, StopIteration, OSError):
        return False
    return bool(root.tag.rpartition("}")[2] == "submodule")


class Tree:
    """A tree of libxml2's."""

    def __init__(self, document: Any) -> None:
        self._document = ffi.gc(document, engine.xmlFreeDoc)

    @classmethod
    def parse(cls, data: bytes) -> Optional["Tree"]:
        """The tree of a text; None when it is not well-formed, or has a document type."""
        document = engine.xmlReadMemory(data, len(data), ffi.NULL, ffi.NULL, _PARSE)
        if document == ffi.NULL:
            return None
        tree = cls(document)
        has_type = engine.xmlGetIntSubset(document) != ffi.NULL
        return None if has_type or tree.root == ffi.NULL else tree

    @property
    def root(self) -> Any:
        """The top element."""
        return engine.xmlDocGetRootElement(self._document)

    def message(self, is_notification: bool) -> Optional["Tree"]:
        """What stands inside the envelopes of RFC 6241, RFC 7950 (section 7.15) and RFC 5277, as a
        tree of its own; None when an envelope does not hold one element."""
        node = self.root
        if is_notification:
            if _is(node, "notification", EVENT_NAMESPACE):
                node = _only_element(node, "eventTime")
        else:
            if _is(node, "rpc", BASE_NAMESPACE):
                node = _only_element(node, "")
            if node is not None and _is(node, "action", YANG_NAMESPACE):
                node = _only_element(node, "")
        return None if node is None else self._extract(node)

    def _extract(self, node: Any) -> "Tree":
        tree = Tree(engine.xmlNewDoc(b"1.0"))
        copy = engine.xmlDocCopyNode(node, tree._document, 1)
        engine.xmlDocSetRootElement(tree._document, copy)
        # Values may use prefixes that only an envelope declares.
        while node != ffi.NULL and node.type == _ELEMENT:
            declared = node.nsDef
            while declared != ffi.NULL:
                if declared.prefix != ffi.NULL and engine.xmlSearchNs(
                        tree._document, copy, declared.prefix) == ffi.NULL:
                    engine.xmlNewNs(copy, declared.href, declared.prefix)
                declared = declared.next
            node = node.parent
        return tree

    def dump(self) -> str:
        """The tree as text, indented, with an XML declaration."""
        memory, size = ffi.new("char **"), ffi.new("int *")
        engine.xmlDocDumpFormatMemoryEnc(self._document, memory, size, b"UTF-8", 1)
        if memory[0] == ffi.NULL:
            raise MemoryError
        try:
            return bytes(ffi.buffer(memory[0], size[0])).decode("utf-8")
        finally:
            engine.xmlFree(memory[0])


def _is(node: Any, name: str, namespace: str) -> bool:
    return bool(node.ns != ffi.NULL and text(node.name) == name
                and text(node.ns.href) == namespace)


def _only_element(parent: Any, passed_over: str) -> Optional[Any]:
    """The one child element beside those to pass over; None for none, or more than one."""
    found = None
    child = parent.children
    while child != ffi.NULL:
        if child.type == _ELEMENT and text(child.name) != passed_over:
            if found is not None:
                return None
            found = child
        child = child.next
    return found


def _namespace_of(node: Any) -> Optional[str]:
    """The namespace of an element that a check has added: its own, or that of the closest ancestor
    that has one. Such an element declares its own as an attribute, if at all."""
    while node != ffi.NULL and node.type == _ELEMENT:
        if node.ns != ffi.NULL:
            return text(node.ns.href)
        added = engine.xmlGetNoNsProp(node, b"xmlns")
        if added != ffi.NULL:
            try:
                return text(added)
            finally:
                engine.xmlFree(added)
        node = node.parent
    return None


def schema_path(context: Any, node: Any) -> str:
    """The path of an element, with the names of modules where they change."""

    def module_of(element: Any) -> Optional[str]:
        namespace = _namespace_of(element)
        module = engine.ZR_CTX_GetModuleByModNs(context, encoded(namespace or ""))
        return None if module == ffi.NULL else text(engine.ZR_MOD_GetModuleName(module))

    steps = []
    while node != ffi.NULL and node.type == _ELEMENT:
        module, parent = module_of(node), node.parent
        is_top = parent == ffi.NULL or parent.type != _ELEMENT
        name = text(node.name)
        is_new = module is not None and (is_top or module != module_of(parent))
        steps.append(f"/{module}:{name}" if is_new else f"/{name}")
        node = parent
    return "".join(reversed(steps))
