#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes what the package has of the libraries' public headers.

    make_bindings.py OUTPUT INCLUDE VERSION

Reads every header in the folder INCLUDE and writes two modules into the folder OUTPUT: `_ffi.py`,
the functions and records as cffi reads them, and `_constants.py`, the numbers as enumerations, and
the version. So the headers are the one place that declares anything, and nothing is compiled: the
libraries are opened when the package is used.
"""
from __future__ import annotations

import contextlib
import itertools
import pathlib
import re
import sys
import textwrap
from typing import Iterator, List, NamedTuple

import cffi

# Names of enumerations that read better in Python than those of C without their "Zr".
RENAMED = {"CtxFlag": "ContextFlag", "DataKind": "Kind", "DataDefaults": "Defaults",
           "DataFormat": "Format", "YangCode": "ReportCode", "YangSeverity": "Severity"}
FLAGS = {"ContextFlag"}  # whose members are bits

# The few functions of libxml2 that the package calls itself, from its documentation.
LIBXML2 = """
typedef struct ZrXmlNamespace {
    struct ZrXmlNamespace *next;
    int type;
    const char *href;
    const char *prefix;
} ZrXmlNamespace;
typedef struct ZrXmlNode {
    void *_private;
    int type;
    const char *name;
    struct ZrXmlNode *children;
    struct ZrXmlNode *last;
    struct ZrXmlNode *parent;
    struct ZrXmlNode *next;
    struct ZrXmlNode *prev;
    void *doc;
    ZrXmlNamespace *ns;
    char *content;
    void *properties;
    ZrXmlNamespace *nsDef;
} ZrXmlNode;
void xmlInitParser(void);
void *xmlReadMemory(const char *buffer, int size, const char *url, const char *encoding,
                    int options);
void *xmlNewDoc(const char *version);
void xmlFreeDoc(void *document);
void *xmlGetIntSubset(const void *document);
ZrXmlNode *xmlDocGetRootElement(const void *document);
ZrXmlNode *xmlDocSetRootElement(void *document, ZrXmlNode *root);
ZrXmlNode *xmlDocCopyNode(ZrXmlNode *node, void *document, int extended);
ZrXmlNamespace *xmlSearchNs(void *document, ZrXmlNode *node, const char *prefix);
ZrXmlNamespace *xmlNewNs(ZrXmlNode *node, const char *href, const char *prefix);
char *xmlGetNoNsProp(const ZrXmlNode *node, const char *name);
void xmlDocDumpFormatMemoryEnc(void *document, char **memory, int *size, const char *encoding,
                               int format);
extern void (*xmlFree)(void *block);
"""

COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
DIRECTIVE = re.compile(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*\n", re.MULTILINE)
MARK = re.compile(r"\bZR(?:_[A-Z]+)?_API\b")
LINKAGE = re.compile(r'extern "C" \{')
ENUM = re.compile(r"(?:/\*\*(?P<doc>(?:(?!\*/).)*?)\*/\s*)?enum (?P<name>\w+) \{(?P<body>.*?)\};",
                  re.DOTALL)
MEMBER = re.compile(r"(?:/\*\*(?!<)(?P<before>(?:(?!\*/).)*?)\*/\s*)?\b(?P<name>[A-Z]\w+) = "
                    r"(?P<value>-?\w+),?(?:\s*/\*\*<(?P<after>.*?)\*/)?", re.DOTALL)
INDENT = "    "
HEAD = '# SPDX-License-Identifier: Apache-2.0\n"""{} Made by make_bindings.py."""\n'


class Member(NamedTuple):
    """A number of an enumeration."""

    name: str
    value: int
    doc: str


class Enumeration(NamedTuple):
    """An enum of a header."""

    name: str
    doc: str
    members: List[Member]


def read_headers(folder: str) -> str:
    """The text of all headers, those that others include first, each once."""
    root = pathlib.Path(folder)
    done: List[pathlib.Path] = []

    def add(path: pathlib.Path) -> Iterator[str]:
        if path in done or not path.is_file():
            return
        done.append(path)
        text = path.read_text(encoding="utf-8")
        for name in re.findall(r"#include <(zr\w+/[\w.]+)>", text):
            yield from add(root / name)
        yield text

    headers = sorted([*root.glob("zr*/*.h"), *root.glob("zr*/*.h.in")])
    if not headers:
        raise SystemExit(f"make_bindings.py: no header in {folder}")
    return "".join(text for header in headers for text in add(header))


def declarations(headers: str) -> str:
    """What the headers declare, as cffi reads it."""
    text = DIRECTIVE.sub("", COMMENT.sub("", headers))
    text = LINKAGE.sub("", MARK.sub("", text))
    # The closing brace of the linkage stands alone on its line, and no other one does.
    return re.sub(r"^\}\n", "", text, flags=re.MULTILINE) + LIBXML2


def plain(comment: str) -> str:
    """The first paragraph of a comment on one line, without the marks of Doxygen."""
    lines = [re.sub(r"^\s*\*", "", line).strip() for line in comment.strip().splitlines()]
    text = " ".join(itertools.takewhile(bool, lines))  # the first paragraph
    return re.sub(r"(?:::|#)(\w+)", r"\1", text)


def enumerations(headers: str) -> Iterator[Enumeration]:
    """The enums of the headers, with names as Python has them."""
    for match in ENUM.finditer(headers):
        members = [Member(member["name"], int(member["value"], 0),
                          plain(member["after"] or member["before"] or ""))
                   for member in MEMBER.finditer(match["body"])]
        # The words with which all of them begin.
        words = [member.name.split("_") for member in members]
        common = 0
        while len({tuple(word[:common + 1]) for word in words}) == 1 \
                and all(len(word) > common + 1 for word in words):
            common += 1
        name = re.sub(r"^Zrt?", "", match["name"])
        yield Enumeration(RENAMED.get(name, name), plain(match["doc"] or ""),
                          [member._replace(name="_".join(word[common:]))
                           for member, word in zip(members, words)])


def constants(headers: str, version: str) -> str:
    """A module with the numbers of the headers."""
    found = list(enumerations(headers))
    lines = [HEAD.format("The numbers of the libraries' interfaces."), "import enum", "",
             "__all__ = [", *(f'    "{one.name}",' for one in found), "]", "",
             f'VERSION = "{version}"', ""]
    for one in found:
        base = "IntFlag" if one.name in FLAGS else "IntEnum"
        doc = one.doc or f"Numbers of {one.name}."
        lines += ["", f"class {one.name}(enum.{base}):"]
        lines += textwrap.wrap(f'"""{doc}"""', 96, initial_indent=INDENT, subsequent_indent=INDENT)
        lines += [""]
        for member in one.members:
            lines += textwrap.wrap(member.doc, 96, initial_indent=INDENT + "#: ",
                                   subsequent_indent=INDENT + "#: ")
            lines += [f"{INDENT}{member.name} = {member.value}"]
        lines += [""]
    return "\n".join(lines)


def main(arguments: List[str]) -> None:
    """Writes the two modules."""
    if len(arguments) != 3:
        raise SystemExit("usage: make_bindings.py OUTPUT INCLUDE VERSION")
    output, include, version = pathlib.Path(arguments[0]), arguments[1], arguments[2]
    headers = read_headers(include)
    (output / "_constants.py").write_text(constants(headers, version), encoding="utf-8")
    builder = cffi.FFI()
    builder.cdef(declarations(headers))
    builder.set_source("_ffi", None)
    with contextlib.redirect_stdout(None):  # which says what it writes
        builder.emit_python_code(str(output / "_ffi.py"))


if __name__ == "__main__":
    main(sys.argv[1:])
