# SPDX-License-Identifier: Apache-2.0
"""The package as such: its types, its declarations, its style."""
import pathlib
import re
import shutil
import subprocess
import sys

import pytest

import zrschema
from zrschema._library import engine, ffi

ROOT = pathlib.Path(__file__).resolve().parents[2]


def test_the_types_are_complete(tmp_path_factory):
    mypy = shutil.which("mypy")
    if mypy is None:
        pytest.skip("mypy is not installed")
    package = pathlib.Path(zrschema.__file__).parent
    result = subprocess.run(
        [mypy, "--config-file", ROOT / "python" / "pyproject.toml", "--python-executable",
         sys.executable, "--cache-dir", package.parent / "mypy_cache"],
        cwd=package.parent, capture_output=True, text=True)
    assert result.stdout.startswith("Success"), result.stdout + result.stderr


def test_every_declared_function_of_the_engine_can_be_called():
    headers = "".join(path.read_text()
                      for path in (ROOT / "include" / "zrschema").glob("*.h*"))
    names = set(re.findall(r"^ZR_API [^;(]*?(\w+)\(", headers, re.MULTILINE))
    assert len(names) > 120
    for name in names:
        assert callable(getattr(engine, name))


def test_the_numbers_are_those_of_the_headers():
    assert zrschema.NodeKind.LEAF_LIST == ffi.integer_const("ZR_NODE_LEAF_LIST") == 3
    assert zrschema.Status.ERR_VALUE_RANGE == ffi.integer_const("ZR_ERR_VALUE_RANGE")
    assert zrschema.ErrorTag.MALFORMED_MESSAGE == ffi.integer_const(
        "ZR_ERROR_TAG_MALFORMED_MESSAGE")
    assert zrschema.Defaults.REPORT_ALL == ffi.integer_const("ZR_DATA_REPORT_ALL")


def test_everything_public_is_documented():
    for name in zrschema.__all__:
        one = getattr(zrschema, name)
        if not isinstance(one, type) or name in ("Bound",):
            continue
        assert one.__doc__, name
        for member, value in vars(one).items():
            if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                assert value.__doc__, f"{name}.{member}"


def test_no_line_is_longer_than_100_characters():
    for path in (ROOT / "python").rglob("*.py"):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            assert len(line) <= 100, f"{path}:{number}"
