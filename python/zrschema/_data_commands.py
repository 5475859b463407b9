# SPDX-License-Identifier: Apache-2.0
"""The commands of `python3 -m zrschema` that are about data: validate and convert."""
from __future__ import annotations

import sys
from typing import Any, Dict, List, Optional

from ._constants import Defaults, Format, Kind
from ._data import Datastore, Fault, InvalidDataError, Result, Validator
from ._errors import Problem
from ._messages import RpcError, Verdict
from ._program import FAILED, OK, Options, Run, UsageError, describe, session_of
from ._xml import is_json

# What each option says that the files are; None where the engine itself validates.
KINDS = {"config": Kind.CONFIG, "data": Kind.CONFIG_AND_STATE, "edit": Kind.EDIT,
         "strict_rpc": Kind.REQUEST, "strict_reply": Kind.REPLY,
         "strict_notification": Kind.NOTIFICATION, "rpc": None, "notification": None}


def read_input(file: str) -> bytes:
    """The content of a file, of standard input for "-"."""
    try:
        if file == "-":
            return sys.stdin.buffer.read()
        with open(file, "rb") as opened:
            return opened.read()
    except OSError as error:
        raise UsageError(f"cannot read {file}: {error.strerror}") from None


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
