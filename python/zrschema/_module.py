# SPDX-License-Identifier: Apache-2.0
"""Loaded modules."""
from __future__ import annotations

import dataclasses
from typing import Any, Dict, Iterator, Optional, Tuple

from ._constants import Status
from ._errors import NotFoundError, StaleError
from ._library import collect, collector, encoded, engine, ffi, require, text, text_or_none
from ._node import Extension, Node, make_nodes, on_extension, on_node, on_text
from ._schema import Record, Schema
from ._type import Type, _on_base, _on_if_feature, make_type


@dataclasses.dataclass(frozen=True)
class Import:
    """An import of a module (RFC 7950, section 7.1.5)."""

    #: The imported module.
    module: str
    #: The prefix that stands for it.
    prefix: str
    #: The revision of that module that is loaded, None when none is, or it has none.
    loaded_revision: Optional[str]


@dataclasses.dataclass(frozen=True)
class Deviation:
    """A deviation that a module makes (RFC 7950, section 7.20.3)."""

    #: The path of what it changes.
    target: str
    #: The module that defines that.
    module: str
    #: Whether all of it is applied.
    is_applied: bool


@dataclasses.dataclass(frozen=True)
class Identity:
    """An identity of a module (RFC 7950, section 7.18)."""

    #: Its name, without the module's.
    name: str
    #: What it is derived from, "module:identity".
    bases: Tuple[str, ...]
    #: The features that it depends on, "module:feature".
    if_features: Tuple[str, ...]
    #: Whether all of these were on when it was asked for.
    is_enabled: bool
    #: Its description, where the context keeps them.
    description: Optional[str]


_on_feature = collector("ZrFeatureScanFunc", lambda name, is_on, user: (text(name), is_on == 1))
_on_import = collector("ZrImportScanFunc", lambda module, prefix, revision, user:
                       Import(text(module), text(prefix), text_or_none(revision)))
_on_deviation = collector("ZrDeviationScanFunc", lambda target, module, is_applied, user:
                          Deviation(text(target), text(module), is_applied == 1))
_on_identity = collector("ZrIdentityScanFunc", lambda identity, user: identity)


class Module(Record):
    """A loaded module. It is iterated over for its nodes at the top, and indexed for them.

    A module is found again by its name when others were loaded or it was loaded anew.
    """

    __slots__ = ("_name",)

    def __init__(self, schema: Schema, pointer: Any) -> None:
        super().__init__(schema, pointer)
        self._name = text(engine.ZR_MOD_GetModuleName(pointer))

    def _find_again(self) -> None:
        pointer = engine.ZR_CTX_GetModuleByModName(self._schema.open(), encoded(self._name))
        if pointer == ffi.NULL:
            raise StaleError(f"module {self._name} is not loaded any more")
        self._pointer = pointer
        self._generation = self._schema.generation

    def __eq__(self, other: object) -> bool:
        return (isinstance(other, Module) and self._name == other._name
                and self._schema is other._schema)

    def __hash__(self) -> int:
        return hash(self._name)

    @property
    def name(self) -> str:
        """Its name."""
        return self._name

    @property
    def namespace(self) -> Optional[str]:
        """Its XML namespace."""
        return self._ask_text(engine.ZR_MOD_GetModuleNs)

    @property
    def prefix(self) -> Optional[str]:
        """The prefix that it gives itself."""
        return self._ask_text(engine.ZR_MOD_GetModulePrefix)

    @property
    def revision(self) -> Optional[str]:
        """Its revision, the first that it names."""
        return self._ask_text(engine.ZR_MOD_GetRevision)

    @property
    def organization(self) -> Optional[str]:
        """Who is responsible for it."""
        return self._ask_text(engine.ZR_MOD_GetOrganization)

    @property
    def description(self) -> Optional[str]:
        """Its description, where the context keeps them."""
        return self._ask_text(engine.ZR_MOD_GetDescription)

    @property
    def yang_version(self) -> str:
        """The version of YANG that it is written in: "1" or "1.1"."""
        return self._ask_name(engine.ZR_MOD_GetYangVersion)

    @property
    def features(self) -> Dict[str, bool]:
        """Its features, each with whether it is on."""
        return dict(self._ask_all(engine.ZR_MOD_ScanAllFeatures, _on_feature))

    def enable_feature(self, name: str = "*") -> None:
        """Turns a feature on, or all of them."""
        self._switch(engine.ZR_MOD_EnableFeature, name)

    def disable_feature(self, name: str) -> None:
        """Turns a feature off."""
        self._switch(engine.ZR_MOD_DisableFeature, name)

    def _switch(self, function: Any, name: str) -> None:
        with self._schema.lock.writing:
            status = function(self._open(), encoded(name))
        if status == Status.ERR_INVALID:
            raise NotFoundError(f"module {self._name} has no feature {name}", status)
        require(status)

    @property
    def imports(self) -> Tuple[Import, ...]:
        """The modules that it imports."""
        return tuple(self._ask_all(engine.ZR_MOD_ScanAllImports, _on_import))

    @property
    def submodules(self) -> Tuple[str, ...]:
        """The submodules that it includes."""
        return tuple(self._ask_all(engine.ZR_MOD_ScanAllSubmodules, on_text))

    @property
    def deviations(self) -> Tuple[Deviation, ...]:
        """The deviations that it makes."""
        return tuple(self._ask_all(engine.ZR_MOD_ScanAllDeviations, _on_deviation))

    @property
    def extensions(self) -> Tuple[Extension, ...]:
        """The extensions that are used at its top."""
        return tuple(self._ask_all(engine.ZR_MOD_ScanAllExtInsts, on_extension))

    @property
    def identities(self) -> Tuple[Identity, ...]:
        """Its identities."""
        with self._schema.lock:
            return tuple(map(self._identity, collect(engine.ZR_MOD_ScanAllIdentity, self._open(),
                                                     _on_identity)))

    def _identity(self, identity: Any) -> Identity:
        return Identity(
            text(engine.ZR_MOD_GetIdentityName(identity)),
            tuple(collect(engine.ZR_MOD_ScanIdentityBase, identity, _on_base)),
            tuple(collect(engine.ZR_MOD_ScanIdentityIfFeatures, identity, _on_if_feature)),
            engine.ZR_MOD_IsIdentityEnabled(identity, self._schema.open()) == 1,
            text_or_none(engine.ZR_MOD_GetIdentityDescription(identity)))

    def typedef(self, name: str) -> Type:
        """The type inside one of its typedefs."""
        with self._schema.lock:
            found = make_type(self._schema, engine.ZR_MOD_GetRealTypeByTypDefName(
                self._open(), encoded(name)))
        if found is None:
            raise NotFoundError(f"module {self._name} has no typedef {name}")
        return found

    @property
    def children(self) -> Tuple[Node, ...]:
        """Its nodes at the top: those of data, then its rpcs, then its notifications."""
        with self._schema.lock:
            return make_nodes(self._schema, collect(engine.ZR_MOD_IterScanTopmostNode,
                                                    self._open(), on_node))

    @property
    def augments(self) -> Tuple[Node, ...]:
        """Its augments; what each adds are its children."""
        with self._schema.lock:
            return make_nodes(self._schema, collect(engine.ZR_MOD_IterScanAugmentNode,
                                                    self._open(), on_node))

    def __iter__(self) -> Iterator[Node]:
        return iter(self.children)

    def walk(self) -> Iterator[Node]:
        """All nodes of its tree, parents before their children, with what others have added."""
        for node in self.children:
            yield from node.walk()

    def __getitem__(self, name: str) -> Node:
        """The top-level element, rpc or notification of a name."""
        with self._schema.lock:
            self._open()
            pointer = engine.ZR_CTX_FindTopDataNode(self._schema.open(), encoded(self._name),
                                                    encoded(name))
            if pointer == ffi.NULL:
                raise NotFoundError(f"module {self._name} has no top-level node {name}")
            return Node(self._schema, pointer)

    def tree(self) -> str:
        """The module as a text tree, in the style of RFC 8340."""
        return self._print(engine.ZR_MOD_PrintModelTree)

    def __repr__(self) -> str:
        return f"<Module {self._name}>"
