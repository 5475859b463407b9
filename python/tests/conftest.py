# SPDX-License-Identifier: Apache-2.0
"""What the tests share: the sample modules, and the real ones where they are."""
import os
import pathlib

import pytest

import zrschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"

ROUTER = """<config xmlns="urn:ietf:params:xml:ns:netconf:base:1.0">
  <router xmlns="urn:example:router">
    <hostname>r1</hostname>
    <interfaces>
      <interface>
        <name>eth0</name>
        <type xmlns:t="urn:example:types">t:ethernet</type>
        <mtu>9000</mtu>
      </interface>
    </interfaces>
  </router>
</config>
"""


@pytest.fixture
def context():
    """The sample modules, loaded from their sources."""
    with zrschema.Context([EXAMPLES / "modules"], features=["*"]) as made:
        made.load("example-routing")
        yield made


@pytest.fixture
def validator(context):
    """What checks data of the sample modules."""
    return zrschema.Validator(context)


@pytest.fixture
def make():
    """Makes contexts of sources that stand in the test, and closes them at its end."""
    made = []

    def make_context(*sources, **options):
        context = zrschema.Context(**options)
        made.append(context)
        for source in sources:
            name = source.split()[1]
            context.add_source(name, source)
            context.load(name)
        return context

    yield make_context
    for one in made:
        one.close()


@pytest.fixture(scope="session")
def corpus():
    """The folder of real modules; the test is skipped without it."""
    folder = os.environ.get("ZR_CORPUS_DIR")
    if not folder:
        pytest.skip("ZR_CORPUS_DIR is not set")
    return pathlib.Path(folder)
