# SPDX-License-Identifier: Apache-2.0
"""The twin of the program zrschema for scripts: the same commands, output and exit statuses."""
from __future__ import annotations

import argparse
import os
import sys
from typing import Any, Callable, Dict, List, NoReturn, Optional, Sequence, Tuple

from . import __version__
from ._constants import Defaults, Format, Kind, YangOption
from ._data import Datastore, Fault, InvalidDataError, Result, Validator
from ._describe import describe_node, print_fields
from ._errors import Error, NotFoundError, PrepareError, Problem
from ._messages import RpcError, Verdict
from ._module import Module
from ._program import (FAILED, OK, WRONG_USAGE, FailedError, Run, Session, UsageError, describe,
                       kind_of, place_of)
from ._sources import Workspace
from ._xml import is_json

Options = argparse.Namespace


def read_input(file: str) -> bytes:
    """The content of a file, of standard input for "-"."""
    try:
        if file == "-":
            return sys.stdin.buffer.read()
        with open(file, "rb") as opened:
            return opened.read()
    except OSError as error:
        raise UsageError(f"cannot read {file}: {error.strerror}") from None


def session_of(run: Run, options: Options, **settings: bool) -> Session:
    """The session of a command that has the options of modules."""
    return Session(run, options.path, features=options.feature or (),
                   all_features=options.all_features, **settings)


# tree


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


# check


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


# prepare


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


# node


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


# validate


KINDS = {"config": Kind.CONFIG, "data": Kind.CONFIG_AND_STATE, "edit": Kind.EDIT,
         "strict_rpc": Kind.REQUEST, "strict_reply": Kind.REPLY,
         "strict_notification": Kind.NOTIFICATION, "rpc": None, "notification": None}


def run_validate(run: Run, options: Options) -> int:
    """Checks data, or has the engine validate a message."""
    given = [name for name in KINDS if getattr(options, name)]
    if len(given) != 1:
        raise UsageError("validate takes one of --config, --data, --edit, --strict-rpc, "
                         "--strict-reply, --strict-notification, --rpc and --notification")
    kind = KINDS[given[0]]
    if kind in (None, Kind.CONFIG, Kind.CONFIG_AND_STATE) and options.datastore:
        raise UsageError("--datastore is for --edit, --strict-rpc, --strict-reply and "
                         "--strict-notification")
    if kind is None and len(options.files) != 1:
        raise UsageError("--rpc and --notification take one file")
    if kind is not None and options.print:
        raise UsageError("--print is for --rpc and --notification")
    if kind is None:
        return validate_message(run, options, given[0] == "notification")
    return validate_data(run, options, kind)


def validate_message(run: Run, options: Options, is_notification: bool) -> int:
    """Has the engine validate a message."""
    session = session_of(run, options)
    text = read_input(options.files[0])
    if not session.set_up(options.module)[0]:
        return FAILED
    validate = session.context.validate_notification if is_notification \
        else session.context.validate_rpc
    try:
        verdict = validate(text)
    except ValueError as error:
        run.complain(str(error))
        verdict = None
    print_verdict(run, verdict, options.print)
    return OK if verdict else FAILED


def print_verdict(run: Run, verdict: Optional[Verdict], prints: bool) -> None:
    """Prints what the engine says of a message."""
    error = None if verdict is None else verdict.error
    defaults = list(verdict.defaults) if verdict is not None else []
    document = verdict.document if prints and verdict is not None else None
    if run.as_json:
        run.print_document({"valid": bool(verdict), "defaults": defaults, "document": document,
                            "error": None if error is None else describe_error(error)})
        return
    run.print("valid\n" if verdict else "not valid\n")
    if error is not None:
        names = describe_error(error)
        for name in ("type", "severity", "tag"):
            run.print(f"{name}: {names[name]} ({names[name + '-name']})\n")
        for name in ("app-tag", "path", "message", "bad-element"):
            if names[name] is not None:
                run.print(f"{name}: {names[name]}\n")
    run.print("".join(f"default: {path}\n" for path in defaults) + (document or ""))


def describe_error(error: RpcError) -> Dict[str, Any]:
    """An error record as a document has it."""
    return {"type": int(error.type), "type-name": error.type.name.lower(),
            "severity": int(error.severity), "severity-name": error.severity.name.lower(),
            "tag": int(error.tag), "tag-name": error.tag_name, "app-tag": error.app_tag,
            "path": error.path, "message": error.message, "bad-element": error.bad_element,
            "bad-attribute": error.bad_attribute}


def say_faults(run: Run, result: Result, file: str) -> None:
    """Says what is wrong with a file."""
    def say(fault: Fault, is_warning: bool) -> None:
        run.say(Problem(str(fault), file=file, line=fault.line, is_warning=is_warning))

    for fault in result.errors:
        say(fault, False)
    say_how_many_more(run, result, file)
    for fault in result.warnings:
        say(fault, True)


def say_how_many_more(run: Run, result: Result, file: str) -> None:
    """Says how many faults were left out."""
    if result.error_count > len(result.errors):
        run.say(Problem(f"{result.error_count - len(result.errors)} more faults", file=file))


def fault_document(fault: Fault, file: str, is_warning: bool) -> Dict[str, Any]:
    """A fault as a document has it."""
    return {"tag": fault.tag_name, "app-tag": fault.app_tag, "path": fault.path,
            "bad-element": fault.bad_element, "bad-attribute": fault.bad_attribute,
            **describe(Problem(fault.message, file=file, line=fault.line, is_warning=is_warning))}


def validate_data(run: Run, options: Options, kind: Kind) -> int:
    """Checks files by RFC 7950."""
    session = session_of(run, options, standard=True)
    if not session.set_up(options.module)[0]:
        return FAILED
    validator = Validator(session.context)
    datastore: Optional[Datastore] = None
    if options.datastore:
        try:
            datastore = validator.datastore(read_input(options.datastore))
        except InvalidDataError as error:
            say_faults(run, Result(error.errors, (), len(error.errors), None), options.datastore)
            return FAILED
    errors: List[Dict[str, Any]] = []
    is_valid = True
    for file in options.files:
        text = read_input(file)
        try:
            result = validator.check(text, kind, datastore=datastore,
                                     operation=options.strict_reply)
        except ValueError:
            raise UsageError(f"no rpc or action is called {options.strict_reply}"
                             if kind == Kind.REPLY else f"cannot check {file}") from None
        is_valid = is_valid and result.valid
        if run.as_json:
            errors += [fault_document(fault, file, False) for fault in result.errors]
            errors += [fault_document(fault, file, True) for fault in result.warnings]
            say_how_many_more(run, result, file)
        else:
            say_faults(run, result, file)
            run.print(f"{file}: {'valid' if result.valid else 'not valid'}\n")
    if run.as_json:
        run.print_document({"valid": is_valid, "errors": errors})
    return OK if is_valid else FAILED


# convert


def choose(option: str, word: str, choices: Any) -> Any:
    """The number that a word of the command line stands for."""
    words = {choice.name.lower().replace("_", "-"): choice for choice in choices}
    if word not in words:
        raise UsageError(f"{option} is one of {', '.join(words)}, not {word}")
    return words[word]


def run_convert(run: Run, options: Options) -> int:
    """Writes data as XML or JSON."""
    form = choose("--to", options.to, Format)
    defaults = choose("--defaults", options.defaults, Defaults)
    session = session_of(run, options, standard=True)
    text = read_input(options.file)
    if not session.set_up(options.module)[0]:
        return FAILED
    result = Validator(session.context).check(
        text, Kind.CONFIG_AND_STATE if options.data else Kind.CONFIG,
        format=Format.JSON if is_json(text) else Format.XML)
    say_faults(run, result, options.file)
    if not result:
        return FAILED
    document = (result.to_json if form == Format.JSON else result.to_xml)(defaults)
    if run.as_json:
        run.print_document({"document": document})
    else:
        run.print(document)
    return OK


# The command line


class Parser(argparse.ArgumentParser):
    """A parser whose mistakes are told like all others."""

    def error(self, message: str) -> NoReturn:
        raise UsageError(message)


def add_modules(parser: argparse.ArgumentParser) -> None:
    """Adds the options of a command that takes modules with -m."""
    parser.add_argument("-m", "--module", action="append", required=True, metavar="MODULE",
                        help="a module to load, with what it imports")
    add_features(parser)


def add_features(parser: argparse.ArgumentParser) -> None:
    """Adds the options that turn features on."""
    parser.add_argument("--feature", action="append", metavar="MODULE:NAME",
                        help="a feature to turn on; MODULE:* turns all of a module's features on")
    parser.add_argument("--all-features", action="store_true",
                        help="turn all features of every module on")


def add_tree(parser: argparse.ArgumentParser) -> None:
    """The options of tree."""
    add_features(parser)
    parser.add_argument("--standard", action="store_true", help="take what RFC 7950 allows")
    parser.add_argument("modules", nargs="+", metavar="MODULE", help="the modules to print")


def add_check(parser: argparse.ArgumentParser) -> None:
    """The options of check."""
    parser.add_argument("--imports", action="store_true", help="also load what modules import")
    parser.add_argument("--standard", action="store_true", help="take what RFC 7950 allows")
    parser.add_argument("--all", action="store_true", help="check every module")
    parser.add_argument("modules", nargs="*", metavar="MODULE", help="the modules to check")


def add_prepare(parser: argparse.ArgumentParser) -> None:
    """The options of prepare."""
    parser.add_argument("-o", "--output", metavar="OUTDIR", help="the directory for NAME.yin")
    parser.add_argument("--stdout", action="store_true", help="print one module instead")
    parser.add_argument("--features", action="append", metavar="MODULE:NAME,NAME...",
                        help="the features of a module that are on; * is all")
    parser.add_argument("--dependencies", metavar="FILE", help="write a rule for make")
    parser.add_argument("--strip", action="store_true", help="leave descriptions out")
    parser.add_argument("--node-limit", type=int, metavar="COUNT",
                        help="the most nodes that a module may expand to")
    parser.add_argument("--all", action="store_true", help="prepare every module")
    parser.add_argument("modules", nargs="*", metavar="MODULE", help="the modules to prepare")


def add_node(parser: argparse.ArgumentParser) -> None:
    """The options of node."""
    add_modules(parser)
    parser.add_argument("node", metavar="PATH", help="the node's schema path")


def add_validate(parser: argparse.ArgumentParser) -> None:
    """The options of validate."""
    for name in KINDS:
        option = "--" + name.replace("_", "-")
        if name == "strict_reply":
            parser.add_argument(option, metavar="MODULE:RPC", help="replies, by RFC 7950")
        else:
            parser.add_argument(option, action="store_true", help="what the files are")
    parser.add_argument("--datastore", metavar="FILE", help="the data that messages look into")
    add_modules(parser)
    parser.add_argument("--print", action="store_true", help="print the document afterwards")
    parser.add_argument("files", nargs="+", metavar="FILE|-", help="the files, XML or JSON")


def add_convert(parser: argparse.ArgumentParser) -> None:
    """The options of convert."""
    parser.add_argument("--to", required=True, metavar="FORMAT", help="xml or json")
    parser.add_argument("--defaults", default="explicit", metavar="MODE",
                        help="explicit, trim, report-all or report-all-tagged (RFC 6243)")
    parser.add_argument("--data", action="store_true", help="configuration with state")
    add_modules(parser)
    parser.add_argument("file", metavar="FILE|-", help="the data")


Command = Tuple[str, Callable[[argparse.ArgumentParser], None], Callable[[Run, Options], int],
                Dict[str, Any]]

# Name, help, options, what is done, and the document of a run that fails before it has a result.
COMMANDS: Dict[str, Command] = {
    "tree": ("print modules as text trees (RFC 8340)", add_tree, run_tree, {"trees": []}),
    "check": ("load modules and report what went wrong", add_check, run_check,
              {"modules": [], "loaded": 0, "failed": 0}),
    "prepare": ("check YANG sources and write them as prepared YIN", add_prepare, run_prepare,
                {"modules": []}),
    "node": ("describe a schema node", add_node, run_node, {}),
    "validate": ("check data, a request or a notification", add_validate, run_validate,
                 {"valid": None, "error": None, "defaults": [], "document": None}),
    "convert": ("write data as XML or JSON", add_convert, run_convert, {"document": None}),
}


def make_parser() -> Parser:
    """The parser of the command line."""
    parser = Parser(prog="zrschema", description=__doc__)
    parser.add_argument("--version", action="version", version=f"zrschema {__version__}")
    commands = parser.add_subparsers(dest="command", required=True, metavar="COMMAND")
    for name, (summary, add_options, _, _) in COMMANDS.items():
        command = commands.add_parser(name, help=summary, description=summary)
        command.add_argument("-p", "--path", action="append", required=True, metavar="DIR",
                             help="a directory that is searched for modules, YANG or YIN")
        command.add_argument("--json", action="store_true", help="print one JSON document")
        add_options(command)
    return parser


def main(words: Optional[Sequence[str]] = None) -> int:
    """Runs the program and returns its exit status."""
    words = sys.argv[1:] if words is None else words
    command = COMMANDS.get(words[0]) if words else None
    run = Run("--json" in words, command[3] if command is not None else {})
    try:
        options = make_parser().parse_args(words)
        return run.finish(COMMANDS[options.command][2](run, options))
    except UsageError as error:
        run.complain(f"{error} (see zrschema --help)")
        return run.finish(WRONG_USAGE)
    except MemoryError:
        run.complain("out of memory")
    except (Error, FailedError, OSError) as error:
        run.complain(str(error))
    return run.finish(FAILED)


if __name__ == "__main__":
    sys.exit(main())
