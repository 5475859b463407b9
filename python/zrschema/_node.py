# SPDX-License-Identifier: Apache-2.0
"""Schema nodes: the tree of what modules define."""
from __future__ import annotations

import dataclasses
from typing import TYPE_CHECKING, Any, Callable, Iterator, List, Optional, Tuple

from ._constants import NodeKind, Status, ValueInput
from ._errors import Error, InvalidValueError, NotFoundError
from ._library import (collect, collector, encoded, engine, ffi, require, status_text, text,
                       text_or_none)
from ._schema import Record, Schema, name_bytes
from ._type import Type, _on_if_feature, make_type

if TYPE_CHECKING:
    from ._module import Module


@dataclasses.dataclass(frozen=True)
class Must:
    """A "must" condition (RFC 7950, section 7.5.3)."""

    #: The XPath expression, with the names of modules for prefixes.
    condition: str
    #: The error-message that it is reported with, if it has one.
    error_message: Optional[str]
    #: The error-app-tag that it is reported with, if it has one.
    error_app_tag: Optional[str]


@dataclasses.dataclass(frozen=True)
class Extension:
    """A use of an extension (RFC 7950, section 7.19)."""

    #: The module that defines the extension.
    module: str
    #: The extension's name.
    name: str
    #: Its argument, if it has one.
    argument: Optional[str]
    #: What stands in it.
    children: Tuple["Extension", ...] = ()


def _extension(instance: Any, module: Any, name: Any, argument: Any, user: Any) -> Extension:
    children = collect(engine.ZR_EXT_ScanAllChildExtInsts, instance, on_extension)
    return Extension(text(module), text(name), text_or_none(argument), tuple(children))


on_extension = collector("ZrExtInstScanFunc", _extension)
on_node = collector("ZrNodeScanFunc", lambda node, arrival, user: node)
on_text = collector("ZrTextScanFunc", lambda item, user: text(item))
_on_unique = collector("ZrUniqueScanFunc", lambda argument, user: text(argument))
_on_must = collector("ZrMustScanFunc", lambda condition, message, tag, user:
                     Must(text(condition), text_or_none(message), text_or_none(tag)))

_PATH_SIZES = (512, 20_000, 1 << 22)


class Node(Record):
    """A schema node: a container, leaf, list, choice, rpc, notification and so on.

    A node is iterated over for its children in the schema, and indexed for those of data:
    `node["name"]` is the child element `name`, also one inside choices and cases.

    >>> import zrschema
    >>> context = zrschema.Context()
    >>> context.add_source("m", '''module m { namespace "urn:m"; prefix m;
    ...   container c { choice d { leaf a { type int8; default 5; } leaf b { type int8; } } } }''')
    >>> node = context.load("m")["c"]
    >>> [child.keyword for child in node], node["a"].path, node["a"].default
    (['choice'], '/m:c/d/a/a', '5')
    >>> [below.name for below in node.walk() if below.type is not None]
    ['a', 'b']
    """

    __slots__ = ()

    def _is(self, function: Callable[[Any], int]) -> bool:
        return bool(self._ask(function) == 1)

    def _node(self, function: Callable[..., Any], *arguments: Any) -> Optional["Node"]:
        with self._schema.lock:
            return make_node(self._schema, function(self._open(), *arguments))

    def _nodes(self, scan: Callable[..., int]) -> Tuple["Node", ...]:
        with self._schema.lock:
            return tuple(Node(self._schema, node)
                         for node in collect(scan, self._open(), on_node))

    @property
    def name(self) -> str:
        """Its name; of an augment the path of what it augments."""
        return self._ask_name(engine.ZR_NODE_GetNodeName)

    @property
    def kind(self) -> NodeKind:
        """What it is."""
        return NodeKind(self._ask(engine.ZR_NODE_GetNodeType))

    @property
    def keyword(self) -> str:
        """What it is, as YANG says it, such as "leaf-list"."""
        return text(engine.ZR_GetNodeKindName(self.kind))

    @property
    def path(self) -> str:
        """Its schema path, by which `Context.node()` finds it."""
        with self._schema.lock:
            for size in _PATH_SIZES:
                buffer = ffi.new("char[]", size)
                status = engine.ZR_NODE_GetNodePath(self._open(), buffer, size)
                if status != Status.ERR_NO_MEMORY:
                    break
            require(status)
            return text(buffer)

    @property
    def module(self) -> "Module":
        """The module that defines it."""
        from ._module import Module
        with self._schema.lock:
            return Module(self._schema, engine.ZR_NODE_GetModule(self._open()))

    @property
    def parent(self) -> Optional["Node"]:
        """Its parent in the schema; None at the top and in an augment without a target."""
        return self._node(engine.ZR_NODE_GetParentNode)

    @property
    def data_parent(self) -> Optional["Node"]:
        """Its nearest ancestor that is neither a choice nor a case."""
        return self._node(engine.ZR_NODE_GetNonChoiceCaseParent)

    @property
    def children(self) -> Tuple["Node", ...]:
        """Its children in the schema's order, choices, cases, input and output included."""
        return self._nodes(engine.ZR_NODE_IterScanChildrenNode)

    def __iter__(self) -> Iterator["Node"]:
        return iter(self.children)

    def walk(self) -> Iterator["Node"]:
        """The node and all that is below it, parents before their children."""
        waiting = [self]
        while waiting:
            node = waiting.pop()
            yield node
            waiting.extend(reversed(node.children))

    def child(self, name: str, module: Optional[str] = None) -> Optional["Node"]:
        """The child element of a name, also one inside choices and cases; None when there is none.

        `module` is the name of the module that defines it, the node's own when nothing is said.
        Below an rpc or action stand the elements of its input.
        """
        return self._node(engine.ZR_NODE_FindDataChild, name_bytes(module), encoded(name))

    def __getitem__(self, name: str) -> "Node":
        """The child element "name", or "module:name"."""
        module, _, local = name.rpartition(":")
        found = self.child(local, module or None)
        if found is None:
            raise NotFoundError(f"{self.name} has no child {name}")
        return found

    def __contains__(self, name: object) -> bool:
        if not isinstance(name, str):
            return any(name == child for child in self.children)
        module, _, local = name.rpartition(":")
        return self.child(local, module or None) is not None

    @property
    def input(self) -> Optional["Node"]:
        """The input of an rpc or action."""
        return self._node(engine.ZR_NODE_GetInputNode)

    @property
    def output(self) -> Optional["Node"]:
        """The output of an rpc or action."""
        return self._node(engine.ZR_NODE_GetOutputNode)

    @property
    def augment_target(self) -> Optional["Node"]:
        """What an augment augments; None while it is not loaded, and for other nodes."""
        return self._node(engine.ZR_NODE_GetAugmentTargetNode)

    @property
    def keys(self) -> Tuple["Node", ...]:
        """The keys of a list, in their order where the context is a standard one."""
        return self._nodes(engine.ZR_NODE_ScanAllKeysInOrder)

    @property
    def uniques(self) -> Tuple[str, ...]:
        """What is unique in the entries of a list: the arguments of its "unique" statements."""
        return tuple(self._ask_all(engine.ZR_NODE_ScanAllUniques, _on_unique))

    @property
    def min_elements(self) -> int:
        """How many entries a list or leaf-list must have (in a standard context)."""
        return int(self._ask(engine.ZR_NODE_GetMinElements))

    @property
    def max_elements(self) -> Optional[int]:
        """How many entries a list or leaf-list may have; None for any number."""
        return self._ask(engine.ZR_NODE_GetMaxElements) or None

    @property
    def description(self) -> Optional[str]:
        """Its description, where the context keeps them."""
        return self._ask_text(engine.ZR_NODE_GetDescription)

    @property
    def when(self) -> Optional[str]:
        """Its "when" condition, with the names of modules for prefixes."""
        return self._ask_text(engine.ZR_NODE_GetWhenCond)

    @property
    def musts(self) -> Tuple[Must, ...]:
        """Its "must" conditions."""
        return tuple(self._ask_all(engine.ZR_NODE_ScanAllMusts, _on_must))

    @property
    def if_features(self) -> Tuple[str, ...]:
        """The features that it depends on, "module:feature"."""
        return tuple(self._ask_all(engine.ZR_NODE_ScanAllIfFeatures, _on_if_feature))

    @property
    def extensions(self) -> Tuple[Extension, ...]:
        """The extensions that are used in it."""
        return tuple(self._ask_all(engine.ZR_NODE_ScanAllExtInsts, on_extension))

    @property
    def is_config(self) -> bool:
        """Whether it is configuration."""
        return self._is(engine.ZR_NODE_IsRwConfig)

    @property
    def is_key(self) -> bool:
        """Whether it is a key of its list."""
        return self._is(engine.ZR_NODE_IsKey)

    @property
    def is_mandatory(self) -> bool:
        """Whether it says that it is mandatory."""
        return self._is(engine.ZR_NODE_IsMandatory)

    @property
    def is_presence(self) -> bool:
        """Whether it is a container whose presence means something."""
        return self._is(engine.ZR_NODE_IsPresenceContainer)

    @property
    def is_user_ordered(self) -> bool:
        """Whether the user orders the entries of a list or leaf-list."""
        return self._is(engine.ZR_NODE_IsOrderedByNode)

    @property
    def is_enabled(self) -> bool:
        """Whether all features are on that it depends on itself."""
        return self._is(engine.ZR_NODE_IsEnabled)

    @property
    def is_deny_all(self) -> bool:
        """Whether all access to it is denied by default (RFC 8341)."""
        return self._is(engine.ZR_NODE_IsNacmDefaultDenyAll)

    @property
    def is_deny_write(self) -> bool:
        """Whether writing it is denied by default (RFC 8341)."""
        return self._is(engine.ZR_NODE_IsNacmDefaultDenyWrite)

    @property
    def status(self) -> str:
        """Its own status: "current", "deprecated" or "obsolete"."""
        if self._is(engine.ZR_NODE_IsObsoleteNode):
            return "obsolete"
        return "deprecated" if self._is(engine.ZR_NODE_IsDeprecatedNode) else "current"

    @property
    def type(self) -> Optional[Type]:
        """The type of a leaf or leaf-list."""
        with self._schema.lock:
            return make_type(self._schema, engine.ZR_NODE_GetRealType(self._open()))

    @property
    def default(self) -> Optional[str]:
        """The default value of a leaf, its own or else that of its type."""
        return self._ask_text(engine.ZR_NODE_GetDefaultValueStr)

    @property
    def defaults(self) -> Tuple[str, ...]:
        """The defaults that it gives itself: of a leaf or leaf-list, or a choice's default case."""
        return tuple(self._ask_all(engine.ZR_NODE_ScanAllDefaults, on_text))

    @property
    def units(self) -> Optional[str]:
        """The units of a leaf or leaf-list, where the context keeps them."""
        return self._ask_text(engine.ZR_NODE_GetUnitsValueStr)

    def leafref_target(self, follow: bool = False) -> Optional["Node"]:
        """What a leafref points to; with `follow` the node at the end of leafrefs on leafrefs."""
        return self._node(engine.ZR_NODE_GetLeafrefTargetNode, int(follow))

    def accepts(self, value: str) -> bool:
        """Tells whether the type of a leaf or leaf-list takes a value."""
        return self._value_status(value) == Status.OK

    def check_value(self, value: str) -> Type:
        """Checks a value against the type of a leaf or leaf-list.

        Returns the type that took it: the member of a union, the innermost typedef's, or its own.
        Raises `InvalidValueError` when the value is refused.
        """
        status = self._value_status(value)
        if status != Status.OK:
            raise InvalidValueError(f"{self.name}: {value!r}: {status_text(status)}", status)
        with self._schema.lock:
            return Type(self._schema, engine.ZR_NODE_FindRealTypeMatchedValue(
                self._open(), ValueInput.STRING, encoded(value)))

    def _value_status(self, value: str) -> int:
        status = self._ask(engine.ZR_NODE_ValidateValue, ValueInput.STRING, encoded(value))
        if status == Status.ERR_INVALID:
            raise Error(f"{self.name} is a {self.keyword}, which has no value", status)
        if status == Status.ERR_NO_MEMORY:
            raise MemoryError
        return int(status)

    def tree(self) -> str:
        """The node with all below it as a text tree, under the lines of its ancestors."""
        return self._print(engine.ZR_NODE_PrintNodesTree)

    def __repr__(self) -> str:
        return f"<Node {self.keyword} {self.name}>"


def make_node(schema: Schema, pointer: Any) -> Optional[Node]:
    """The node behind a pointer, None for a null pointer."""
    return None if pointer == ffi.NULL else Node(schema, pointer)


def make_nodes(schema: Schema, pointers: List[Any]) -> Tuple[Node, ...]:
    """The nodes behind pointers."""
    return tuple(Node(schema, pointer) for pointer in pointers)
