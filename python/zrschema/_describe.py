# SPDX-License-Identifier: Apache-2.0
"""All that is known of a node, as `python3 -m zrschema node` prints it."""
from __future__ import annotations

import json
from typing import Any, Callable, Dict, List, Optional

from ._constants import NodeKind
from ._library import collector, engine
from ._node import Extension, Node
from ._type import SIGNED_TYPES, Type, _on_base, _on_member, _on_value

_on_segment = collector("ZrStartEndScanFunc", lambda start, end, user: [start, end])


def put(document: Dict[str, Any], **members: Any) -> None:
    """Adds the members that are neither empty nor None."""
    document.update({name.replace("_", "-"): value for name, value in members.items()
                     if value not in (None, False, [], ())})


def describe_node(node: Node) -> Dict[str, Any]:
    """What is known of a node."""
    document: Dict[str, Any] = {
        "path": node.path, "kind": node.keyword, "module": node.module.name,
        "config": node.is_config, "status": node.status, "enabled": node.is_enabled}
    default = node.default
    defaults = list(node.defaults) or ([default] if default is not None else [])
    target = node.leafref_target()
    put(document, mandatory=node.is_mandatory, presence=node.is_presence,
        ordered_by="user" if node.is_user_ordered else None, is_key=node.is_key,
        key=[child.name for child in node if child.is_key]
        if node.kind == NodeKind.LIST else None,
        description=node.description, units=node.units, default=defaults,
        type=_types(node), leafref_target=None if target is None else target.path,
        when=node.when, must=[_must(*one) for one in (
            (must.condition, must.error_message, must.error_app_tag) for must in node.musts)],
        if_feature=list(node.if_features), extensions=list(map(_extension, node.extensions)))
    return document


def _must(condition: str, message: Optional[str], app_tag: Optional[str]) -> Dict[str, Any]:
    document = {"condition": condition}
    put(document, error_message=message, error_app_tag=app_tag)
    return document


def _extension(one: Extension) -> Dict[str, Any]:
    document: Dict[str, Any] = {"name": f"{one.module}:{one.name}", "argument": one.argument}
    put(document, children=list(map(_extension, one.children)))
    return document


def _types(node: Node) -> List[Dict[str, Any]]:
    """The node's own type statement and then each typedef's, down to the built-in type."""
    type_ = node.type
    if type_ is None:
        return []
    is_signed = type_.builtin in SIGNED_TYPES
    return [_type(node, link, is_signed) for link in type_.chain]


def _type(node: Node, type_: Type, is_signed: bool) -> Dict[str, Any]:
    """What one type statement says."""
    document: Dict[str, Any] = {"type": type_.name}
    members = [Type(type_._schema, member)
               for member in type_._ask_all(engine.ZR_TYPE_ScanUnionSubType, _on_member)]
    put(document,
        fraction_digits=type_._ask(engine.ZR_TYPE_GetDecimal64Fraction) or None,
        segments=[[_number(bound, is_signed) for bound in segment] for segment in
                  type_._ask_all(engine.ZR_TYPE_ScanStartEndPair, _on_segment)],
        patterns=[{"pattern": pattern.text, **({"invert-match": True} if pattern.is_inverted
                                               else {})} for pattern in type_.own_patterns],
        values=[{"name": name, "value": value,
                 **({} if description is None else {"description": description})}
                for name, description, value in
                type_._ask_all(engine.ZR_TYPE_ScanNameValuePair, _on_value)],
        bases=type_._ask_all(engine.ZR_TYPE_ScanIdentRefBase, _on_base),
        members=[member.name for member in members],
        leafrefs=[_target(node, path) for member in members for link in member.chain
                  for path in [_path(link)] if path is not None],
        path=_path(type_))
    return document


def _path(type_: Type) -> Optional[str]:
    return type_._ask_text(engine.ZR_TYPE_GetTypeConsDataLeafrefPath)


def _number(bound: int, is_signed: bool) -> int:
    return bound - (1 << 64) if is_signed and bound >= 1 << 63 else bound


def _target(leaf: Node, path: str) -> Dict[str, Any]:
    """What a member of a union points to that is a leafref."""
    target = _follow(leaf, path)
    type_ = None if target is None else target.type
    return {"path": path, "target": None if target is None else target.path,
            "type": None if type_ is None else type_.name}


def _follow(leaf: Node, path: str) -> Optional[Node]:
    """The node that a leafref's path leads to from the leaf that has it."""
    node: Optional[Node] = None if path.startswith("/") else leaf
    module = leaf.module.name
    for step in path.strip("/").split("/"):
        name, _, local = step.rpartition(":")
        module = name or module
        if local == "..":
            node = None if node is None else node.data_parent
        elif node is None:
            pointer = leaf._ask(lambda _: engine.ZR_CTX_FindTopDataNode(
                leaf._schema.open(), module.encode(), local.encode()))
            node = Node(leaf._schema, pointer) if pointer else None
        else:
            node = node.child(local, module)
        if node is None:
            return None
    return node


def print_fields(document: Dict[str, Any], write: Callable[[str], None], indent: str = "") -> None:
    """Writes one field a line; what a field holds in turn stands indented below it."""
    for key, value in document.items():
        if not isinstance(value, list):
            write(f"{indent}{key}: {_plain(value)}\n")
            continue
        write(f"{indent}{key}:\n")
        for item in value:
            if isinstance(item, dict):
                print_fields(item, write, indent + "  ")
            else:
                write(f"{indent}  {_plain(item)}\n")


def _plain(value: Any) -> str:
    return value if isinstance(value, str) else json.dumps(value, separators=(",", ":"))
