# SPDX-License-Identifier: Apache-2.0
"""A real NETCONF client: what ncclient builds is checked before it would be sent."""
import pytest

import zrschema
from conftest import EXAMPLES
from zrschema import ErrorTag, Kind

pytest.importorskip("ncclient")
from ncclient import operations  # noqa: E402
from ncclient.devices.default import DefaultDeviceHandler  # noqa: E402
from ncclient.xml_ import new_ele, sub_ele, to_ele  # noqa: E402

BASE = "urn:ietf:params:netconf:"


class CheckingSession:
    """A session that checks each request and keeps it, where a real one would send it."""

    def __init__(self, validator, kind=Kind.REQUEST):
        self.server_capabilities = {
            f"{BASE}base:1.1", ":candidate", ":url", ":validate", ":validate:1.1", ":xpath",
            ":writable-running", ":rollback-on-error", ":startup", ":confirmed-commit"}
        self.validator = validator
        self.kind = kind
        self.sent = []
        self.id = "test"
        self.host = "test"

    def get_listener_instance(self, cls):
        return None

    def add_listener(self, listener):
        pass

    def close(self):
        pass

    def send(self, message):
        self.validator.check(message, self.kind).require_valid()
        self.sent.append(message)


@pytest.fixture(scope="module")
def netconf(corpus):
    """What checks the requests of NETCONF itself."""
    with zrschema.Context([corpus], features=["ietf-netconf:*"]) as context:
        context.load("ietf-netconf", strict=False)
        yield zrschema.Validator(context)


@pytest.fixture
def request_of(netconf):
    """Has an operation of ncclient make its request, and returns what was sent."""
    session = CheckingSession(netconf)

    def make(operation, *arguments, **options):
        made = operation(session, DefaultDeviceHandler(), async_mode=True)
        made.request(*arguments, **options)
        return session.sent[-1]

    return make


CONFIG = '<config xmlns="urn:ietf:params:xml:ns:netconf:base:1.0"><a xmlns="urn:a"/></config>'


@pytest.mark.parametrize("operation, arguments, options", [
    (operations.Get, (), {}),
    (operations.Get, (), {"filter": ("subtree", '<a xmlns="urn:a"/>')}),
    (operations.Get, (), {"filter": ("xpath", "/a")}),
    (operations.GetConfig, ("running",), {}),
    (operations.GetConfig, ("candidate",), {"filter": ("subtree", '<a xmlns="urn:a"/>')}),
    (operations.EditConfig, (CONFIG,), {"target": "candidate"}),
    (operations.EditConfig, (CONFIG,), {"target": "running", "default_operation": "none",
                                        "test_option": "test-then-set",
                                        "error_option": "rollback-on-error"}),
    (operations.CopyConfig, ("running", "startup"), {}),
    (operations.CopyConfig, ("https://example.com/a.xml", "candidate"), {}),
    (operations.DeleteConfig, ("startup",), {}),
    (operations.Validate, ("candidate",), {}),
    (operations.Commit, (), {}),
    (operations.Commit, (), {"confirmed": True, "timeout": "60"}),
    (operations.DiscardChanges, (), {}),
    (operations.Lock, ("running",), {}),
    (operations.Unlock, ("running",), {}),
    (operations.CloseSession, (), {}),
    (operations.KillSession, ("7",), {}),
])
def test_what_it_builds_is_valid(request_of, operation, arguments, options):
    assert "<nc:rpc" in request_of(operation, *arguments, **options)


@pytest.mark.parametrize("operation, arguments, tag, element", [
    (operations.Lock, ("nothing",), ErrorTag.UNKNOWN_ELEMENT, "nothing"),
    (operations.DeleteConfig, ("running",), ErrorTag.UNKNOWN_ELEMENT, "running"),
    (operations.KillSession, ("0",), ErrorTag.INVALID_VALUE, "session-id"),
])
def test_a_request_that_the_schema_refuses_is_not_sent(request_of, operation, arguments, tag,
                                                       element):
    with pytest.raises(zrschema.InvalidDataError) as caught:
        request_of(operation, *arguments)
    assert (tag, element) in [(fault.tag, fault.bad_element) for fault in caught.value.errors]


def test_an_edit_is_held_against_the_modules_of_its_configuration(corpus):
    with zrschema.Context([EXAMPLES / "modules", corpus], features=["*"]) as context:
        context.load("ietf-netconf", strict=False)
        context.load("example-router")
        session = CheckingSession(zrschema.Validator(context), Kind.EDIT)
        edit = operations.EditConfig(session, DefaultDeviceHandler(), async_mode=True)
        config = new_ele("config")
        router = sub_ele(config, "router", nsmap={None: "urn:example:router"})
        router.tag = "{urn:example:router}router"
        hostname = sub_ele(router, "{urn:example:router}hostname")
        hostname.text = "r1"
        edit.request(config, target="candidate")
        assert "r1" in session.sent[0]
        hostname.text = "-"
        with pytest.raises(zrschema.InvalidDataError) as caught:
            edit.request(config, target="candidate")
        fault, = caught.value.errors
        assert fault.bad_element == "hostname"
        assert len(session.sent) == 1


def test_a_request_of_another_module_is_checked_as_an_element(context):
    session = CheckingSession(zrschema.Validator(context))
    dispatch = operations.Dispatch(session, DefaultDeviceHandler(), async_mode=True)
    ping = to_ele((EXAMPLES / "requests" / "ping.xml").read_text())
    dispatch.request(ping)
    assert len(session.sent) == 1
    with pytest.raises(zrschema.InvalidDataError, match="at most 1472 octets"):
        dispatch.request(to_ele((EXAMPLES / "requests" / "ping-too-large.xml").read_text()))
    assert context.validate_rpc(ping)
