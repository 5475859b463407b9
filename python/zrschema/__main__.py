# SPDX-License-Identifier: Apache-2.0
"""The twin of the program zrschema for scripts: the same commands, output and exit statuses."""
from __future__ import annotations

import argparse
import sys
from typing import Any, Callable, Dict, NoReturn, Optional, Sequence, Tuple

from . import __version__
from ._data_commands import KINDS, run_convert, run_validate
from ._errors import Error
from ._program import FAILED, WRONG_USAGE, FailedError, Options, Run, UsageError
from ._schema_commands import run_check, run_node, run_prepare, run_tree


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
