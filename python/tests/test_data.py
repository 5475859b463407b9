# SPDX-License-Identifier: Apache-2.0
"""Checks of whole data, and writing it again."""
import json
import xml.etree.ElementTree as ElementTree

import pytest

import zrschema
from conftest import EXAMPLES, ROUTER
from zrschema import Defaults, ErrorTag, Format, Kind


def test_valid_data_has_no_faults(validator):
    result = validator.check(ROUTER)
    assert result and result.valid and result.errors == () and result.warnings == ()
    assert result.require_valid() is result


def test_every_fault_is_told_with_its_line(validator):
    result = validator.check(ROUTER.replace(">9000<", ">1501<").replace("<hostname>r1</hostname>",
                                                                      "<hostnam/>"))
    assert not result
    assert [(fault.tag, fault.line, fault.bad_element) for fault in result.errors] == [
        (ErrorTag.MISSING_ELEMENT, 2, "hostname"), (ErrorTag.UNKNOWN_ELEMENT, 3, "hostnam"),
        (ErrorTag.INVALID_VALUE, 8, "mtu")]
    mtu = result.errors[2]
    assert mtu.path == "/example-router:router/example-router:interfaces/" \
        "example-router:interface[example-router:name='eth0']/example-router:mtu"
    assert mtu.namespaces == {"example-router": "urn:example:router"}
    assert mtu.tag_name == "invalid-value"
    assert str(mtu) == f"{mtu.path}: {mtu.message} (invalid-value)"
    error = ElementTree.fromstring(mtu.rpc_error)
    assert error.tag == "{urn:ietf:params:xml:ns:netconf:base:1.0}rpc-error"


def test_a_schema_gives_its_own_message_and_app_tag(make):
    context = make("""module m { namespace "urn:m"; prefix m;
      container c { must "x > 1" { error-message "too few"; error-app-tag "few"; }
        leaf x { type int8; } } }""")
    fault, = zrschema.Validator(context).check('{"m:c": {"x": 1}}').errors
    assert (fault.message, fault.app_tag) == ("too few", "few")


def test_invalid_data_is_an_exception_where_it_must_be_valid(validator):
    result = validator.check("<config><router xmlns='urn:example:router'/></config>")
    for use in (result.to_xml, result.to_json, result.to_etree, result.to_lxml,
                result.require_valid):
        with pytest.raises(zrschema.InvalidDataError) as caught:
            use()
        assert caught.value.errors == result.errors


def test_faults_above_the_limit_are_counted(validator):
    text = json.dumps({"example-router:router": {"hostname": "a", "interfaces": {
        "interface": [{"name": f"eth{i}"} for i in range(20)]}}})
    result = validator.check(text, error_limit=5)
    assert (len(result.errors), result.error_count) == (5, 20)


@pytest.mark.parametrize("make_input", [
    str, str.encode, ElementTree.fromstring, lambda text: ElementTree.ElementTree(
        ElementTree.fromstring(text.replace("t:ethernet", "ns1:ethernet"))),
])
def test_data_is_text_bytes_or_an_element(validator, make_input):
    # xml.etree keeps no prefixes, which values have
    text = ROUTER.replace(
        '<type xmlns:t="urn:example:types">t:ethernet</type>\n        <mtu>9000</mtu>',
        "<type>ethernet</type>").replace("<type>ethernet</type>",
                                         '<type xmlns="urn:example:router">x</type>')
    result = validator.check(make_input(text))
    assert [fault.bad_element or fault.path[-4:] for fault in result.errors] == ["type"]


def test_elements_of_lxml_keep_the_prefixes_of_values(validator):
    import lxml.etree
    tree = lxml.etree.fromstring(ROUTER.encode())
    assert validator.check(tree)
    assert validator.check(lxml.etree.ElementTree(tree))
    wrapped = lxml.etree.fromstring(f"<x>{ROUTER}</x>".encode())
    assert validator.check(wrapped[0])


def test_faults_of_elements_have_no_lines(validator):
    root = ElementTree.fromstring("<config>\n\n<a/></config>")
    assert validator.check(root).errors[0].line is None


def test_a_file_is_named_in_its_faults(validator, tmp_path):
    path = tmp_path / "data.json"
    path.write_text('{"example-router:router":\n {"hostname": "-"}}')
    fault, = validator.check(path).errors
    assert (fault.file, fault.line) == (str(path), 2)


def test_a_text_that_says_another_encoding_is_taken_as_what_it_is(make):
    context = make('module m { namespace "urn:m"; prefix m; leaf a { type string; } }')
    validator = zrschema.Validator(context)
    text = '<?xml version="1.0" encoding="ISO-8859-1"?>\n<c><a xmlns="urn:m">\u00e9</a></c>'
    assert "\u00e9" in validator.check(text).to_xml()
    assert "\u00e9" in validator.check(text.encode("latin-1")).to_xml()


def test_what_is_neither_text_nor_element_is_a_type_error(validator):
    with pytest.raises(TypeError, match="neither text, path nor element: int"):
        validator.check(7)


def test_text_that_is_not_well_formed_is_one_fault(validator):
    for text in ("<config>", "{", "", '<!DOCTYPE a []><a/>'):
        fault, = validator.check(text).errors
        assert fault.tag == ErrorTag.MALFORMED_MESSAGE
    fault, = validator.check("{}", format=Format.XML).errors
    assert fault.tag == ErrorTag.MALFORMED_MESSAGE


def test_data_is_written_as_xml_json_and_elements(validator):
    result = validator.check(ROUTER)
    assert validator.check(result.to_json()).to_xml() == result.to_xml().replace(
        "<config", "<data").replace("</config", "</data")
    assert json.loads(result.to_json(indent=0))["example-router:router"]["hostname"] == "r1"
    names = {"r": "urn:example:router"}
    assert result.to_etree().find("r:router/r:hostname", names).text == "r1"
    assert result.to_lxml().find("r:router/r:hostname", names).text == "r1"


def test_defaults_are_written_as_asked(validator):
    result = validator.check('{"example-router:router": {"hostname": "a", "max-load": 10}}')

    def router(defaults):
        return json.loads(result.to_json(defaults))["example-router:router"]

    assert router(Defaults.EXPLICIT) == {"hostname": "a", "max-load": 10}
    assert router(Defaults.TRIM) == {"hostname": "a"}
    result = validator.check('{"example-router:router": {"hostname": "a"}}')
    assert router(Defaults.EXPLICIT) == {"hostname": "a"}
    assert router(Defaults.REPORT_ALL) == {"hostname": "a", "max-load": 10}
    assert "@max-load" in router(Defaults.REPORT_ALL_TAGGED)
    with pytest.raises(ValueError):
        result.to_json(7)


def test_messages_are_checked_by_their_kind(validator):
    ping = (EXAMPLES / "requests" / "ping.xml").read_text()
    assert validator.check(ping, Kind.REQUEST)
    assert not validator.check(ping.replace("1200", "1500"), Kind.REQUEST)
    reply = '<x><received xmlns="urn:example:router">3</received></x>'
    assert validator.check(reply, Kind.REPLY, operation="example-router:ping")
    with pytest.raises(zrschema.Error, match="messages are not written again"):
        validator.check(ping, Kind.REQUEST).to_xml()
    with pytest.raises(ValueError, match="an operation that is not there"):
        validator.check(reply, Kind.REPLY, operation="example-router:pong")


def test_messages_look_into_a_datastore(validator):
    def notification(name):
        return f"""<interface-state-changed xmlns="urn:example:router">
          <interface>{name}</interface></interface-state-changed>"""

    as_json = validator.check(ROUTER).to_json()
    for store in (ROUTER, as_json, ElementTree.fromstring(ROUTER.replace("t:eth", "ns1:eth")),
                  validator.datastore(ROUTER), validator.datastore(as_json)):
        assert validator.check(notification("eth0"), Kind.NOTIFICATION, datastore=store)
        fault, = validator.check(notification("eth1"), Kind.NOTIFICATION, datastore=store).errors
        assert fault.app_tag == "instance-required"
    assert validator.check(notification("eth1"), Kind.NOTIFICATION)


def test_a_datastore_that_cannot_be_read_is_an_exception(validator):
    for text in ("<a", '{"example-router:router": {}}'):
        with pytest.raises(zrschema.InvalidDataError):
            validator.datastore(text)


def test_edits_are_held_against_the_datastore_that_they_are_made_for(validator):
    edit = """<config xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0">
      <router xmlns="urn:example:router"><hostname nc:operation="create">x</hostname></router>
    </config>"""
    assert validator.check(edit, Kind.EDIT)
    fault, = validator.check(edit, Kind.EDIT, datastore=ROUTER).errors
    assert fault.tag == ErrorTag.DATA_EXISTS


def test_a_validator_is_renewed_when_the_context_changes(context, validator):
    result = validator.check(ROUTER)
    assert validator.is_current
    context.load("example-vendor")
    assert not validator.is_current
    with pytest.raises(zrschema.StaleError, match="make a new validator"):
        validator.check(ROUTER)
    with pytest.raises(zrschema.StaleError):
        result.to_xml()
    assert zrschema.Validator(context).is_current


def test_a_validator_is_renewed_when_a_module_was_loaded_anew(context, validator):
    context.unload("example-routing")
    context.load("example-routing")
    assert not validator.is_current
    with pytest.raises(zrschema.StaleError):
        validator.check(ROUTER)


def test_a_module_that_is_not_found_changes_nothing(context, validator):
    node = context.node("/example-router:router")
    with pytest.raises(zrschema.NotFoundError):
        context.load("nothing")
    assert validator.is_current and validator.check(ROUTER) and node.name == "router"


def test_a_validator_is_renewed_when_features_change(context, validator):
    context["example-router"].disable_feature("tunnels")
    assert not validator.is_current
    with pytest.raises(zrschema.StaleError, match="make a new validator"):
        validator.check(ROUTER)


def test_a_closed_validator_is_an_error(validator):
    result = validator.check(ROUTER)
    validator.close()
    with pytest.raises(ValueError, match="the validator is closed"):
        validator.check(ROUTER)
    with pytest.raises(ValueError, match="the validator is closed"):
        result.to_xml()


def test_expressions_that_cannot_be_used_are_told(validator, make):
    assert validator.problems == ()
    context = make()
    context.load_text("""<module name="m" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:m="urn:m">
      <namespace uri="urn:m"/><prefix value="m"/>
      <leaf name="a"><when condition="1 +"/><type name="string"/></leaf></module>""")
    problem, = zrschema.Validator(context).problems
    assert (problem.node, problem.expression) == ("/m:a", "1 +")


def test_the_engine_validates_requests_and_completes_them(context):
    verdict = context.validate_rpc((EXAMPLES / "requests" / "ping.xml").read_text())
    assert verdict and verdict.error is None
    assert verdict.defaults == ("/example-router:ping/options", "/example-router:ping/count")
    assert "<count>5</count>" in verdict.document
    verdict = context.validate_rpc(EXAMPLES / "requests" / "ping-too-large.xml")
    assert not verdict
    assert verdict.error.tag_name == "operation-failed"
    assert verdict.error.message == "An echo request has at most 1472 octets."


def test_the_engine_takes_messages_out_of_their_envelopes(context):
    ping = (EXAMPLES / "requests" / "ping.xml").read_text()
    rpc = f'<rpc xmlns="urn:ietf:params:xml:ns:netconf:base:1.0" message-id="1">{ping}</rpc>'
    assert context.validate_rpc(rpc)
    with pytest.raises(ValueError, match="exactly one element"):
        context.validate_rpc(rpc.replace(ping, ""))
    assert context.validate_notification(EXAMPLES / "requests" / "interface-down.xml").document


def test_the_engine_refuses_what_is_no_xml(context):
    for validate in (context.validate_rpc, context.validate_notification):
        verdict = validate("<a")
        assert verdict.error.tag == ErrorTag.OPERATION_FAILED
        assert verdict.document is None


def test_real_configuration_is_checked(corpus):
    with zrschema.Context([corpus]) as context:
        context.load("ietf-ip", strict=False)
        context.load("iana-if-type", strict=False)
        validator = zrschema.Validator(context)
        text = json.dumps({"ietf-interfaces:interfaces": {"interface": [{
            "name": "eth0", "type": "iana-if-type:ethernetCsmacd",
            "ietf-ip:ipv4": {"address": [{"ip": "192.0.2.1", "prefix-length": 24}]}}]}})
        assert "<enabled>true</enabled>" in validator.check(text).to_xml(Defaults.REPORT_ALL)
        fault, = validator.check(text.replace("24", "33")).errors
        assert fault.tag == ErrorTag.INVALID_VALUE
