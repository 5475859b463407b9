# SPDX-License-Identifier: Apache-2.0
"""`python3 -m zrschema` and the program say the same of the examples."""
import json
import os
import subprocess
import sys

import pytest

from conftest import EXAMPLES, ROUTER

MODULES = ["-p", str(EXAMPLES / "modules")]
ROUTER_MODULE = [*MODULES, "-m", "example-router"]
PING = str(EXAMPLES / "requests" / "ping.xml")
TOO_LARGE = str(EXAMPLES / "requests" / "ping-too-large.xml")
DOWN = str(EXAMPLES / "requests" / "interface-down.xml")


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    """A folder with data, and with a module that has errors."""
    folder = tmp_path_factory.mktemp("files")
    (folder / "router.xml").write_text(ROUTER)
    (folder / "bad.xml").write_text(ROUTER.replace("9000", "9001").replace("r1", "-"))
    (folder / "router.json").write_text('{"example-router:router": {"hostname": "a"}}')
    (folder / "bad.yang").write_text(
        'module bad {\n  namespace "urn:bad"; prefix b;\n  leaf a { type nothing; }\n}\n')
    (folder / "wide.yin").write_text(
        '<module name="wide" xmlns="urn:ietf:params:xml:ns:yang:yin:1"><namespace uri="urn:w"/>'
        '<prefix value="w"/><leaf name="a"><type name="enumeration"><enum name="b">'
        '<value value="2147483647"/></enum></type></leaf></module>')
    (folder / "out").mkdir()
    return folder


def run(command, words, folder):
    # The program links what it runs with; the package is told where it is.
    return subprocess.run([*command, *words], cwd=folder, capture_output=True, text=True,
                          stdin=subprocess.DEVNULL)


def twin(words, folder):
    return run([sys.executable, "-m", "zrschema"], words, folder)


SAME = [
    ["tree", *MODULES, "example-router"],
    ["tree", *MODULES, "--all-features", "example-routing", "example-router"],
    ["tree", *MODULES, "--feature", "example-router:tunnels", "example-router", "--json"],
    ["tree", "-p", ".", "bad"],
    ["check", *MODULES, "--all"],
    ["check", *MODULES, "--all", "--json"],
    ["check", *MODULES, "--standard", "example-vendor"],
    ["check", *MODULES, "--imports", "example-routing"],
    ["check", "-p", ".", "bad"],
    ["check", "-p", ".", "bad", "--json"],
    ["check", "-p", ".", "wide"],
    ["check", "-p", ".", "--standard", "wide"],
    ["prepare", *MODULES, "--stdout", "example-router"],
    ["prepare", *MODULES, "-o", "out", "--all", "--strip", "--json"],
    ["prepare", *MODULES, "-o", "out", "--dependencies", "rules", "example-types"],
    ["prepare", "-p", ".", "-o", "out", "bad"],
    ["prepare", "-p", ".", "-o", "out", "bad", "--json"],
    ["prepare", "-p", ".", "-o", "nothing", "bad"],
    ["node", *ROUTER_MODULE, "/example-router:router"],
    ["node", *ROUTER_MODULE, "/example-router:router/interfaces/interface"],
    ["node", *ROUTER_MODULE, "--json", "/example-router:router/interfaces/interface/mtu"],
    ["node", *ROUTER_MODULE, "/example-router:router/interfaces/interface/speed"],
    ["node", *ROUTER_MODULE, "--json", "/example-router:router/interfaces/interface/flags"],
    ["node", *ROUTER_MODULE, "--json", "/example-router:router/hostname"],
    ["node", *ROUTER_MODULE, "/example-router:ping/input/destination"],
    ["node", *ROUTER_MODULE, "--all-features", "--json",
     "/example-router:router/interfaces/interface/link/tunnel/tunnel/source"],
    ["validate", *ROUTER_MODULE, "--rpc", PING],
    ["validate", *ROUTER_MODULE, "--rpc", "--print", PING],
    ["validate", *ROUTER_MODULE, "--rpc", TOO_LARGE],
    ["validate", *ROUTER_MODULE, "--notification", "--print", DOWN],
    ["validate", *ROUTER_MODULE, "--config", "router.xml", "router.json"],
    ["validate", *ROUTER_MODULE, "--config", "router.xml", "bad.xml"],
    ["validate", *ROUTER_MODULE, "--config", "--json", "bad.xml", "router.json"],
    ["validate", *ROUTER_MODULE, "--strict-rpc", PING, TOO_LARGE],
    ["validate", *ROUTER_MODULE, "--strict-notification", "--datastore", "router.xml", DOWN],
    ["validate", *ROUTER_MODULE, "--strict-notification", "--datastore", "router.json", DOWN],
    ["convert", *ROUTER_MODULE, "--to", "json", "--defaults", "report-all", "router.xml"],
    ["convert", *ROUTER_MODULE, "--to", "xml", "router.json"],
    ["convert", *ROUTER_MODULE, "--to", "xml", "--json", "router.json"],
    ["convert", *ROUTER_MODULE, "--to", "xml", "bad.xml"],
    ["--version"],
]


@pytest.mark.parametrize("words", SAME, ids=" ".join)
def test_the_twin_says_what_the_program_says(words, files):
    program = os.environ.get("ZR_TOOL")
    if not program:
        pytest.skip("ZR_TOOL is not set")
    expected, found = run([program], words, files), twin(words, files)
    if "--json" in words:
        assert json.loads(found.stdout) == json.loads(expected.stdout)
    else:
        assert found.stdout == expected.stdout
    assert found.stderr == expected.stderr
    assert found.returncode == expected.returncode


def test_prepared_files_and_rules_are_the_same(files, tmp_path):
    program = os.environ.get("ZR_TOOL")
    if not program:
        pytest.skip("ZR_TOOL is not set")
    words = ["prepare", *MODULES, "-o", "out", "--dependencies", "out/rules", "--all"]
    contents = []
    for command in ([program], [sys.executable, "-m", "zrschema"]):
        (tmp_path / "out").mkdir()
        assert run(command, words, tmp_path).returncode == 0
        contents.append({path.name: path.read_text() for path in (tmp_path / "out").iterdir()})
        for path in (tmp_path / "out").iterdir():
            path.unlink()
        (tmp_path / "out").rmdir()
    assert contents[0] == contents[1]
    assert "rules" in contents[0] and len(contents[0]) == 5


@pytest.mark.parametrize("words, reason", [
    ([], "the following arguments are required: COMMAND"),
    (["check", *MODULES], "check takes either MODULE... or --all"),
    (["tree", "example-router"], "the following arguments are required: -p/--path"),
    (["validate", *ROUTER_MODULE, PING], "validate takes one of --config, --data"),
    (["validate", *ROUTER_MODULE, "--config", "nothing"], "cannot read nothing"),
    (["convert", *ROUTER_MODULE, "--to", "yaml", PING], "--to is one of xml, json, not yaml"),
    (["tree", *MODULES, "--feature", "x", "example-router"], "--feature takes MODULE:NAME"),
])
def test_wrong_usage_is_status_2_and_said_in_the_document_too(words, reason, files):
    result = twin(words, files)
    assert result.returncode == 2
    assert reason in result.stderr
    assert result.stdout == ""
    result = twin([*words, "--json"], files)
    assert result.returncode == 2
    assert reason in json.loads(result.stdout)["errors"][0]["message"]


@pytest.mark.parametrize("words, reason", [
    (["tree", *MODULES, "nothing"], "zrschema: cannot load module nothing\n"),
    (["tree", "-p", "nothing", "x"], "zrschema: cannot list "),
    (["node", *ROUTER_MODULE, "/x:y"], "zrschema: no such node: /x:y\n"),
    (["tree", *MODULES, "--feature", "example-router:x", "example-router"],
     "zrschema: no such feature: example-router:x\n"),
])
def test_failures_are_status_1_with_a_reason(words, reason, files):
    result = twin(words, files)
    assert result.returncode == 1
    assert result.stderr.startswith(reason)
