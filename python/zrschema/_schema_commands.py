# SPDX-License-Identifier: Apache-2.0
"""The commands of `python3 -m zrschema` that are about modules: tree, check, prepare and node."""
from __future__ import annotations

import os
from typing import Dict, List, Optional, Sequence, Tuple

from ._describe import describe_node, print_fields
from ._errors import NotFoundError, PrepareError, Problem
from ._module import Module
from ._program import (FAILED, OK, FailedError, Options, Run, Session, UsageError, describe,
                       kind_of, place_of, session_of)
from ._sources import Workspace


def run_tree(run: Run, options: Options) -> int:
    """Prints modules as text trees."""
    session = session_of(run, options, standard=options.standard)
    is_good, modules = session.set_up(options.modules)
    trees = [{"module": name, "tree": None if module is None else module.tree()}
             for name, module in modules]
    if run.as_json:
        run.print_document({"trees": trees})
    else:
        run.print("\n".join(tree["tree"] for tree in trees if tree["tree"] is not None))
    return OK if is_good else FAILED


def in_order(session: Session, names: Sequence[str]) -> List[str]:
    """The modules of the names, imported ones before those that import them."""
    order: List[str] = []
    seen = set()
    waiting = [(name, False) for name in reversed(sorted(names))]
    while waiting:
        name, is_left = waiting.pop()
        if is_left:
            order.append(name)
        elif name not in seen:
            seen.add(name)
            module = session.context.get(name)
            imports = sorted({one.module for one in module.imports}) if module else []
            waiting.append((name, True))
            waiting.extend((wanted, False) for wanted in reversed(imports))
    return [name for name in order if name in names]


def run_check(run: Run, options: Options) -> int:
    """Loads modules and reports what went wrong."""
    if options.all == bool(options.modules):
        raise UsageError("check takes either MODULE... or --all")
    session = Session(run, options.path, standard=options.standard)
    names = session.context.available() if options.all else options.modules
    if options.all and not names:
        run.complain("no module found: looked for module files NAME.yang, NAME.yin, NAME@*.yin in "
                     + " ".join(session.context.paths))
    for name in names:
        session.try_to_load(name, options.imports, advises=True)
    problems: Dict[str, List[Problem]] = {}
    for problem in session.context.problems:
        problems.setdefault(problem.module or "", []).append(problem)
    if options.all:
        names = in_order(session, names)
    reports = [(name, session.context.get(name), problems.get(name, []))
               for name in dict.fromkeys([*names, *problems])]
    print_check(run, reports)
    errors = run.count_of_sources(False) + sum(
        not problem.is_warning for _, _, found in reports for problem in found)
    is_good = names and errors == 0 and all(module is not None for _, module, _ in reports)
    return OK if is_good else FAILED


def print_check(run: Run, reports: List[Tuple[str, Optional[Module], List[Problem]]]) -> None:
    """Prints what became of each module, and the totals."""
    loaded = sum(module is not None for _, module, _ in reports)
    if run.as_json:
        run.print_document({"modules": [
            {"name": name, "revision": None if module is None else module.revision,
             "namespace": None if module is None else module.namespace,
             "loaded": module is not None, "errors": list(map(describe, found))}
            for name, module, found in reports],
            "loaded": loaded, "failed": len(reports) - loaded})
        return
    counts = {kind: run.count_of_sources(kind == "warning") for kind in ("error", "warning")}
    for name, module, found in reports:
        revision = None if module is None else module.revision
        run.print(f"{name}: " + ("loaded" if module is not None else "not loaded")
                  + (f" {revision}" if revision else "") + "\n")
        for problem in found:
            counts[kind_of(problem)] += 1
            place = place_of(problem)
            run.print(f"  {place}{': ' if place else ''}{kind_of(problem)}: {problem.message}\n")
    run.print(f"{len(reports)} modules: {loaded} loaded, {len(reports) - loaded} failed, "
              f"{counts['error']} errors, {counts['warning']} warnings\n")


def set_features(workspace: Workspace, words: Sequence[str]) -> None:
    """Says of each named module that the named features are on and its others off."""
    for word in words:
        module, colon, rest = word.partition(":")
        if not (module and colon):
            raise UsageError(f"--features takes MODULE:NAME,NAME..., not {word}")
        workspace.set_feature(module, "*", False)
        for name in filter(None, rest.split(",")):
            workspace.set_feature(module, name, True)


def for_make(path: str) -> str:
    """A path as make reads it."""
    return path.replace(" ", "\\ ").replace("#", "\\#").replace("$", "$$")


def run_prepare(run: Run, options: Options) -> int:
    """Checks sources and writes them as prepared YIN."""
    if options.all == bool(options.modules):
        raise UsageError("prepare takes either modules or --all")
    if options.stdout == bool(options.output):
        raise UsageError("prepare takes either -o or --stdout")
    if options.stdout and (options.all or len(options.modules) != 1 or run.as_json):
        raise UsageError("--stdout takes one module, and no --json")
    if options.stdout and options.dependencies:
        raise UsageError("--dependencies needs -o")
    try:
        workspace = Workspace(options.path, strip=options.strip, node_limit=options.node_limit,
                              on_report=run.say)
    except OSError as error:
        raise FailedError(f"cannot list {error.filename}: {error.strerror}") from None
    set_features(workspace, options.features or ())
    names = workspace.modules() if options.all else options.modules
    if not names:
        run.complain("no module found: the directories hold no NAME.yang")
    files = [(name, prepare_one(run, workspace, name, options)) for name in names]
    is_good = bool(files) and all(file is not None for _, file in files)
    if options.dependencies:
        is_good = write_dependencies(run, workspace, options.dependencies, files) and is_good
    if run.as_json:
        run.print_document({"modules": [{"module": name, "file": file} for name, file in files]})
    return OK if is_good else FAILED


def prepare_one(run: Run, workspace: Workspace, name: str, options: Options) -> Optional[str]:
    """Prepares a module; the file's path, "" for standard output, None when it is not written."""
    try:
        if options.stdout:
            run.print(workspace.prepare(name))
            return ""
        workspace.prepare_to(name, options.output)
        return f"{options.output}/{name.partition('@')[0]}.yin"
    except (PrepareError, NotFoundError):
        return None
    except OSError as error:
        run.complain(f"cannot write {options.output}/{name.partition('@')[0]}.yin: "
                     f"{error.strerror}")
        return None


def write_dependencies(run: Run, workspace: Workspace, path: str,
                       files: List[Tuple[str, Optional[str]]]) -> bool:
    """Writes a rule for make: each prepared file and all the sources that it is made from."""
    rules = ""
    for name, file in files:
        if file:
            rules += for_make(file) + ":" + "".join(
                f" \\\n  {for_make(source)}" for source in workspace.dependencies(name)) + "\n"
    try:
        with open(path, "wb") as output:
            output.write(os.fsencode(rules))
    except OSError as error:
        run.complain(f"cannot write {path}: {error.strerror}")
        return False
    return True


def run_node(run: Run, options: Options) -> int:
    """Describes one schema node."""
    session = session_of(run, options, texts=True)
    is_good, _ = session.set_up(options.module)
    node = session.context.find(options.node)
    if node is None:
        run.complain(f"no such node: {options.node}")
        return FAILED
    document = describe_node(node)
    if run.as_json:
        run.print_document(document)
    else:
        print_fields(document, run.print)
    return OK if is_good else FAILED
