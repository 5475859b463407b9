# SPDX-License-Identifier: Apache-2.0
"""What one run of `python3 -m zrschema` says, and the modules that it works on."""
from __future__ import annotations

import argparse
import json
import os
import sys
from typing import Any, Dict, List, Optional, Sequence, Tuple

from ._context import Context
from ._errors import Error, LoadError, NotFoundError, PrepareError, Problem
from ._module import Module

OK, FAILED, WRONG_USAGE = 0, 1, 2

#: What the words of a command line say.
Options = argparse.Namespace


class UsageError(Exception):
    """A mistake in the words of the command line."""


class FailedError(Exception):
    """What ends a run before it has a result."""


def one_line(text: str) -> str:
    """A text whatever a name in it holds."""
    return "".join(" " if ord(char) < 32 or ord(char) == 127 else char for char in text)


def place_of(problem: Problem) -> str:
    """The file of a problem with the line, where it is known."""
    file = problem.file or ""
    return f"{file}:{problem.line}" if problem.line else file


def kind_of(problem: Problem) -> str:
    """The word for how grave a problem is."""
    return "warning" if problem.is_warning else "error"


def describe(problem: Problem) -> Dict[str, Any]:
    """The members that every problem has in a document."""
    document = {"file": problem.file or None, "line": problem.line or None,
                "kind": kind_of(problem), "message": one_line(problem.message)}
    if problem.column:
        document["column"] = problem.column
    return document


class Run:
    """What goes to standard output and standard error, and the exit status."""

    def __init__(self, as_json: bool, empty: Dict[str, Any]) -> None:
        self.as_json = as_json
        self._empty = empty  # the document of a run that fails before it has a result
        self._has_answered = False
        self._problems: List[Problem] = []

    def say(self, problem: Problem) -> None:
        """Says something on standard error, at once, and keeps it for the document."""
        message, place = one_line(problem.message), one_line(place_of(problem))
        if problem.code is not None:  # of a source: as a compiler says it
            if problem.column:
                place += f":{problem.column}"
            line = f"{place or 'zrschema'}: {kind_of(problem)}: {message}"
        else:
            if problem.module:
                place = f"{problem.module} ({place})" if place else problem.module
            line = "zrschema: " + (f"{place}: " if place else "")
            if place or problem.is_warning:
                line += kind_of(problem) + ": "
            line += message
        print(line, file=sys.stderr)
        self._problems.append(problem)

    def complain(self, message: str) -> None:
        """Says what went wrong as a whole."""
        self.say(Problem(message))

    def count_of_sources(self, is_warning: bool) -> int:
        """How many errors, or warnings, of sources were said."""
        return sum(problem.code is not None and problem.is_warning == is_warning
                   for problem in self._problems)

    def print(self, text: str) -> None:
        """Prints a piece of the result."""
        self._has_answered = True
        sys.stdout.buffer.write(text.encode("utf-8", "surrogateescape"))

    def print_document(self, document: Dict[str, Any]) -> None:
        """Prints the result as JSON, with all that was said in it."""
        errors = [{"module": problem.module or None, **describe(problem)}
                  for problem in self._problems]
        document["errors"] = document.get("errors", []) + errors
        self.print(json.dumps(document, indent=2, ensure_ascii=False) + "\n")

    def finish(self, status: int) -> int:
        """Ends the run; the exit status is a failure also when an error was said."""
        if self.as_json and not self._has_answered:
            self.print_document(dict(self._empty))
        if status == OK and any(not problem.is_warning for problem in self._problems):
            status = FAILED
        try:
            sys.stdout.flush()
        except OSError as error:
            self.complain(f"cannot write the output: {error.strerror}")
            return FAILED
        return status


class Session:
    """The modules of a run."""

    def __init__(self, run: Run, paths: Sequence[str], *, features: Sequence[str] = (),
                 all_features: bool = False, standard: bool = False, texts: bool = False) -> None:
        self.run = run
        self.features = features
        self.is_standard = standard
        self.all_features = all_features
        try:
            self.context = Context(paths, standard=standard, descriptions=texts, units=texts,
                                   linear_patterns=True, on_report=run.say)
        except OSError as error:
            raise FailedError(f"cannot list {error.filename}: {error.strerror}") from None
        self.sources = self.context.sources
        self.sources.set_feature("*", "*", all_features)
        for word in features:
            module, colon, name = word.partition(":")
            if colon:
                self.sources.set_feature(module, name, True)

    def load(self, name: str) -> Optional[Module]:
        """Loads a module with what it imports, and says what is wrong with it."""
        known = set(self.context.problems)
        module = self.try_to_load(name)
        for problem in self.context.problems:
            if problem not in known:
                self.run.say(problem)
        return module

    def try_to_load(self, name: str, imports: bool = True,
                    advises: bool = False) -> Optional[Module]:
        """Loads a module; says why it is not loaded, and perhaps with what it would be."""
        try:
            return self.context.load(name, imports=imports, strict=False)
        except PrepareError:
            self.run.complain(f"cannot load module {name}: its source has errors")
        except NotFoundError:
            self.run.complain(f"cannot load module {name}")
        except LoadError:
            self.run.complain(f"cannot load module {name}"
                              + (self.advice(name) if advises else ""))
        except OSError as error:
            self.run.complain(f"cannot load module {name}: {error.strerror}")
        return None

    def advice(self, name: str) -> str:
        """What to say of a module that a context for all of RFC 7950 alone takes."""
        if self.is_standard:
            return ""
        with Context(self.context.paths, standard=True, linear_patterns=True) as context:
            try:
                context.load(name, imports=False, strict=False)
            except Error:
                return ""
        return "; it loads with --standard"

    def set_up(self, names: Sequence[str]) -> Tuple[bool, List[Tuple[str, Optional[Module]]]]:
        """Loads the modules and turns features on: whether all went well, and the modules."""
        found = [(name, self.load(name)) for name in names]
        is_good = all(module is not None for _, module in found)
        if self.all_features:
            for module in self.context:
                module.enable_feature("*")
        for word in self.features:
            is_good = self.turn_on(word) and is_good
        if any(not problem.is_warning for problem in self.context.problems):
            is_good = False
        return is_good, [(os.path.basename(name).partition("@")[0] if module is None
                          else module.name, module) for name, module in found]

    def turn_on(self, word: str) -> bool:
        """Turns a feature on; False when there is no such one, which is said."""
        name, colon, feature = word.partition(":")
        if not (name and colon and feature):
            raise UsageError(f"--feature takes MODULE:NAME or MODULE:*, not {word}")
        module = self.context.get(name)
        try:
            if module is not None:
                module.enable_feature(feature)
                return True
        except NotFoundError:
            pass
        self.run.complain(f"no such feature: {word}"
                          + (f" (module {name} is not loaded)" if module is None else ""))
        return False


def session_of(run: Run, options: Options, **settings: bool) -> Session:
    """The session of a command that has the options of modules."""
    return Session(run, options.path, features=options.feature or (),
                   all_features=options.all_features, **settings)
