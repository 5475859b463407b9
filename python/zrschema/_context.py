# SPDX-License-Identifier: Apache-2.0
"""Contexts: loading modules, and finding what is in them."""
from __future__ import annotations

import os
import threading
from typing import Any, Callable, Dict, Iterable, Iterator, List, Optional, Set, Tuple

from ._constants import ContextFlag, LoadErrorKind, Status
from ._errors import LoadError, NotFoundError, PrepareError, Problem
from ._library import (PathLike, collect, collector, encoded, engine, ffi, path_bytes,
                       patterns_library, require, status_text, text, text_or_none)
from ._messages import Verdict, validate_notification, validate_rpc
from ._module import Module
from ._node import Node
from ._schema import Schema
from ._sources import Workspace
from ._xml import Data, is_submodule

_SOURCE, _PREPARED = ".yang", ".yin"

_on_problem = collector("ZrLoadFailScanFunc", lambda module, file, kind, message, time, user:
                        Problem(text(message), text(module), text_or_none(file),
                                is_warning=kind == LoadErrorKind.WARNING))
_on_module = collector("ZrModuleScanFunc", lambda module, user: module)


class Context:
    """Modules that are loaded together, with all that is in them.

    Modules are looked for in `paths`, as sources (`NAME.yang`, `NAME@REVISION.yang`), which are
    prepared in memory, or prepared (`NAME.yin` and so on); where both are there it is the source.

    A context is iterated over for its modules and indexed by their names. Any number of threads may
    use one: what reads it runs side by side, and what changes it waits until nobody reads. Modules,
    nodes and validators keep their context; after `close()` they raise `ValueError`.

    >>> with Context() as context:
    ...     context.add_source("m", 'module m { namespace "urn:m"; prefix m; }')
    ...     module = context.load("m")
    ...     "m" in context, len(context), context["m"] == module, context.find("/m:b")
    (True, 1, True, None)
    >>> module.namespace
    Traceback (most recent call last):
      ...
    ValueError: the context is closed
    """

    def __init__(self, paths: Iterable[PathLike] = (), *, standard: bool = True,
                 descriptions: bool = True, units: bool = True, keep_patterns: bool = True,
                 linear_patterns: bool = False, features: Iterable[str] = (),
                 on_report: Optional[Callable[[Problem], None]] = None) -> None:
        """Makes an empty context.

        standard        keep and take all of RFC 7950: what lists ask of their entries, the order of
                        keys, predicates of leafrefs; checks of whole data want it
        descriptions    keep descriptions
        units           keep units
        keep_patterns   compile each pattern once and keep it
        linear_patterns match patterns in linear time, with libzrpatterns
        features        the features that are turned on when their module is loaded: "module:name",
                        "module:*", or "*" for all
        on_report       hears the errors and warnings of each source that is prepared
        """
        flags = (standard * ContextFlag.STANDARD | descriptions * ContextFlag.KEEP_DESCRIPTIONS
                 | units * ContextFlag.KEEP_UNITS | keep_patterns * ContextFlag.KEEP_PATTERNS)
        pointer = engine.ZR_CTX_Create(int(flags))
        if pointer == ffi.NULL:
            raise MemoryError
        self._schema = Schema(pointer)
        if linear_patterns:
            require(engine.ZR_CTX_SetPatternMatcher(pointer,
                                                    patterns_library().ZR_PATTERNS_GetMatcher()))
        self._features = tuple(features)
        self._on_report = on_report
        self._loading = threading.RLock()  # one thread at a time loads
        self._sources: Optional[Workspace] = None
        self._source_names: Set[str] = set()
        self._paths: List[str] = []
        for path in paths:
            self.add_path(path)

    # Where modules are found

    def add_path(self, directory: PathLike) -> None:
        """Adds a folder that is searched for modules, behind those that were added before."""
        path = os.path.realpath(directory)
        names = {name[:-len(_SOURCE)].partition("@")[0] for name in os.listdir(path)
                 if name.endswith(_SOURCE)}
        with self._loading:
            with self._schema.lock.writing:
                require(engine.ZR_CTX_SetSearchDir(self._schema.open(), path_bytes(path)))
            if self._sources is not None:
                self._sources.add_path(path)
            self._paths.append(path)
            self._source_names |= names

    @property
    def paths(self) -> Tuple[str, ...]:
        """The folders that are searched."""
        return tuple(self._paths)

    @property
    def sources(self) -> Workspace:
        """The workspace that prepares the sources of the context's folders."""
        with self._loading:
            if self._sources is None:
                self._sources = Workspace(self._paths, features=self._features,
                                          on_report=self._on_report)
            return self._sources

    def add_source(self, name: str, source: str) -> None:
        """Adds the source of a module as text, to be loaded by its name."""
        with self._loading:
            self.sources.add_text(name, source)
            self._source_names.add(name.partition("@")[0])

    def prepare(self, name: str) -> str:
        """The prepared YIN of a module that has a source: see `Workspace.prepare()`."""
        return self.sources.prepare(name)

    # Loading

    def load(self, name: str, *, imports: bool = True, strict: bool = True) -> Module:
        """Loads a module, with what it imports.

        `name` is its name, NAME@REVISION for a certain source, or the path of a `.yang` or `.yin`
        file. Modules that are loaded already are not loaded again. Raises `NotFoundError` when no
        file of the module is found, `PrepareError` when its source has errors, and `LoadError` when
        it cannot be loaded. That is also raised when the module is loaded, but not as a whole: an
        import is missing, or an augment cannot be applied. With `strict` false that is no failure.
        """
        with self._loading:
            known = set(self.problems)
            module = self._load_one(name)
            loaded = [module]
            missing: List[Problem] = []
            seen = {module.name}
            for importer in loaded if imports else ():  # which grows
                for wanted in importer.imports:
                    if wanted.module in seen:
                        continue
                    seen.add(wanted.module)
                    try:
                        loaded.append(self._load_one(wanted.module))
                    except LoadError as error:
                        missing += error.errors or (Problem(str(error), wanted.module),)
                    except NotFoundError:
                        missing.append(Problem(f"imports {wanted.module}, which is not found",
                                               importer.name))
            self._turn_on(loaded)
            errors = missing + [problem for problem in self.problems if not problem.is_warning
                                and (problem not in known or problem.module == module.name)]
        if strict and errors:
            raise LoadError(f"module {module.name} is not loaded as a whole", errors)
        return module

    def load_text(self, yin: str) -> None:
        """Loads a module that is prepared YIN, without its imports."""
        with self._loading:
            self._load_memory("the text", yin.encode("utf-8"))
            self._turn_on(list(self))

    def available(self) -> List[str]:
        """The names of the modules that the folders have, loaded or not."""
        names = set(self.sources.modules()) if self._source_names else set()
        for folder in self._paths:
            for file in os.listdir(folder):
                name = file.partition("@")[0] if "@" in file else os.path.splitext(file)[0]
                if file.endswith(_PREPARED) and name not in self._source_names \
                        and not is_submodule(os.path.join(folder, file)):
                    names.add(name)
        return sorted(names)

    def _load_one(self, name: str) -> Module:
        """Loads one module, unless it is loaded."""
        stem, extension = os.path.splitext(os.path.basename(name))
        wanted = stem.partition("@")[0] if extension in (_SOURCE, _PREPARED) \
            else name.partition("@")[0]
        found = self.get(wanted)
        if found is not None:
            return found
        if extension == _PREPARED:
            with open(name, "rb") as file:
                self._load_memory(name, file.read())
        elif extension == _SOURCE:
            self.sources.add_file(name)
            self._load_source(wanted, stem)
        elif wanted in self._source_names:
            self._load_source(wanted, name)
        else:
            self._load_file(name)
        found = self.get(wanted)
        if found is None:
            raise LoadError(f"{name} holds no module {wanted}", self._problems_of(wanted))
        return found

    def _load_source(self, name: str, revised: str) -> None:
        try:
            self._load_memory(name, self.sources.prepare(revised).encode("utf-8"))
        except PrepareError as error:
            raise PrepareError(f"cannot load module {name}", error.errors, error.status) from None

    def _load_memory(self, name: str, text_of_it: bytes) -> None:
        if b"\0" in text_of_it:
            raise LoadError(f"cannot load {name}: it holds a null character")
        self._change(engine.ZR_CTX_LoadMemory, text_of_it, name)

    def _load_file(self, name: str) -> None:
        self._change(engine.ZR_CTX_LoadModule, encoded(name), name)

    def _change(self, function: Any, argument: bytes, name: str) -> None:
        """Has the engine load something; nodes and types are found anew from then on."""
        with self._schema.lock.writing:
            context = self._schema.open()
            self._schema.generation += 1
            status = function(context, argument)
            if status == Status.ERR_NOT_FOUND:  # nothing was read
                self._schema.generation -= 1
        if status == Status.ERR_NO_MEMORY:
            raise MemoryError
        if status == Status.ERR_NOT_FOUND:
            raise NotFoundError(f"no file of module {name} is found", status)
        if status != Status.OK:
            raise LoadError(f"cannot load {name}: {status_text(status)}", self._problems_of(name),
                            status)

    def _problems_of(self, name: str) -> List[Problem]:
        return [problem for problem in self.problems if problem.module == name]

    def _turn_on(self, modules: List[Module]) -> None:
        """Turns the features on that the context was made with."""
        for module in modules:
            for word in self._features:
                wanted, _, feature = word.partition(":")
                if wanted in (module.name, "*"):
                    module.enable_feature(feature or "*")

    def unload(self, name: str) -> None:
        """Unloads a module. Modules that depend on it are loaded again, from their prepared files
        or from their sources, with the features that were on.

        Raises `LoadError` when one could not be loaded again.
        """
        with self._loading:
            before = {module.name: [feature for feature, is_on in module.features.items() if is_on]
                      for module in self if module.name != name}
            with self._schema.lock.writing:  # nobody sees the schema without what comes back
                context = self._schema.open()
                self._schema.generation += 1
                status = engine.ZR_CTX_UnloadModule(context, encoded(name))
                for lost in [lost for lost in before if lost not in self]:
                    self._restore(lost, before[lost])
                gone = [lost for lost in before if lost not in self]
            if status == Status.ERR_NO_MEMORY:
                raise MemoryError
        if gone:
            raise LoadError(f"with {name} went " + ", ".join(gone),
                            [problem for lost in gone for problem in self._problems_of(lost)],
                            status)

    def _restore(self, name: str, features: List[str]) -> None:
        """Loads a module again whose prepared text the engine does not have any more."""
        if name in self._source_names:
            self._load_source(name, name)
            for feature in features:
                self[name].enable_feature(feature)

    @property
    def problems(self) -> Tuple[Problem, ...]:
        """The errors and warnings that loading has recorded: of each module the first two."""
        with self._schema.lock:
            return tuple(collect(engine.ZR_CTX_ScanAllSchemaLoadFail, self._schema.open(),
                                 _on_problem))

    # Looking up

    def get(self, name: str) -> Optional[Module]:
        """The loaded module of a name, or None."""
        with self._schema.lock:
            return self._module(engine.ZR_CTX_GetModuleByModName, name)

    def by_namespace(self, namespace: str) -> Optional[Module]:
        """The loaded module of an XML namespace, or None."""
        with self._schema.lock:
            return self._module(engine.ZR_CTX_GetModuleByModNs, namespace)

    def _module(self, find: Any, key: str) -> Optional[Module]:
        pointer = find(self._schema.open(), encoded(key))
        return None if pointer == ffi.NULL else Module(self._schema, pointer)

    @property
    def modules(self) -> Dict[str, Module]:
        """The loaded modules by their names."""
        with self._schema.lock:
            found = [Module(self._schema, module) for module in
                     collect(engine.ZR_CTX_ScanAllModules, self._schema.open(), _on_module)]
        return {module.name: module for module in found}

    def __getitem__(self, name: str) -> Module:
        found = self.get(name)
        if found is None:
            raise NotFoundError(f"no module {name} is loaded")
        return found

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and self.get(name) is not None

    def __iter__(self) -> Iterator[Module]:
        return iter(self.modules.values())

    def __len__(self) -> int:
        return len(self.modules)

    def __bool__(self) -> bool:
        return True

    def find(self, path: str) -> Optional[Node]:
        """The schema node of a path, or None.

        The path names the module at its start and where it changes: "/module:name/name". Choices,
        cases, inputs and outputs are steps of their own.
        """
        with self._schema.lock:
            pointer = engine.ZR_CTX_GetTargetNode(self._schema.open(), encoded(path), ffi.NULL)
            return None if pointer == ffi.NULL else Node(self._schema, pointer)

    def node(self, path: str) -> Node:
        """The schema node of a path, as `find()`; raises `NotFoundError` when there is none."""
        found = self.find(path)
        if found is None:
            raise NotFoundError(f"no such node: {path}")
        return found

    # Messages

    def validate_rpc(self, data: Data) -> Verdict:
        """Has the engine validate the request of an rpc or action, and complete its defaults.

        `data` may stand in its `<rpc>` and `<action>`. The check ends with the first fault, and is
        not all of RFC 7950: `Validator` checks the rest.
        """
        return validate_rpc(self._schema, data)

    def validate_notification(self, data: Data) -> Verdict:
        """Has the engine validate a notification, which may stand in its `<notification>`."""
        return validate_notification(self._schema, data)

    # The end

    def close(self) -> None:
        """Deletes the context with all its modules, once no other thread uses it."""
        with self._loading:
            self._schema.close()
            if self._sources is not None:
                self._sources.close()

    def __enter__(self) -> "Context":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<Context of {len(self)} modules>" if self._schema.pointer else "<closed Context>"
