# SPDX-License-Identifier: Apache-2.0
"""Modules, nodes, types and values."""
from decimal import Decimal

import pytest

import zrschema
from zrschema import BuiltInType, NodeKind


def test_a_module_tells_its_header(context):
    router = context["example-router"]
    assert (router.name, router.namespace, router.prefix, router.revision, router.yang_version) == (
        "example-router", "urn:example:router", "er", "2026-11-01", "1.1")
    assert router.organization == "The example network"
    assert router.description == "A small router with its interfaces."
    assert [one.module for one in router.imports] == ["example-types"]
    assert router.imports[0].loaded_revision == context["example-types"].revision
    assert context.by_namespace("urn:example:router") == router


def test_a_module_is_iterated_over_for_its_nodes(context):
    assert [(node.keyword, node.name) for node in context["example-router"]] == [
        ("container", "statistics"), ("container", "router"), ("rpc", "ping"),
        ("notification", "interface-state-changed")]


def test_nodes_make_a_tree(context):
    interface = context.node("/example-router:router/interfaces/interface")
    assert interface.kind == NodeKind.LIST
    assert interface.parent.parent == context.node("/example-router:router")
    assert interface.parent.parent.parent is None
    assert [key.name for key in interface.keys] == ["name"]
    assert interface["encapsulation"].path == \
        "/example-router:router/interfaces/interface/link/plain/encapsulation"
    assert interface["encapsulation"].data_parent == interface
    assert interface["example-routing:cost"].module.name == "example-routing"
    assert "cost" not in interface and "example-routing:cost" in interface
    with pytest.raises(LookupError, match="interface has no child cost"):
        interface["cost"]


def test_every_node_is_found_by_its_path(context):
    nodes = [node for module in context for node in module.walk()]
    assert len(nodes) == 60
    for node in nodes:
        assert context.node(node.path) == node
        assert hash(context.node(node.path)) == hash(node)


def test_a_walk_visits_parents_before_their_children(context):
    names = [node.name for node in context.node("/example-router:ping").walk()]
    assert names[:4] == ["ping", "input", "destination", "count"]
    assert names[-3:] == ["output", "received", "loss"]


def test_a_node_tells_its_properties(context):
    interface = context.node("/example-router:router/interfaces/interface")
    assert interface.is_config and not interface.is_mandatory and interface.is_enabled
    assert interface.musts[0].error_app_tag == "mtu-without-state"
    assert interface["type"].is_mandatory
    assert interface["name"].is_key
    assert interface["address"].is_user_ordered
    assert interface["mtu"].units == "octets"
    assert interface["mtu"].when.startswith("derived-from-or-self(../example-router:type,")
    assert interface["enabled"].default == "true"
    assert interface["jumbo"].if_features == ("example-types:jumbo-frames",)
    assert interface["tunnel"].is_presence
    assert interface["tunnel"]["source"].leafref_target() == interface["name"]
    assert context.node("/example-router:statistics/drop-rate").status == "deprecated"
    assert not context.node("/example-router:statistics").is_config
    extension, = context.node("/example-router:router/hostname").extensions
    assert (extension.module, extension.name, extension.argument) == (
        "example-types", "shown-as", "Name of the router")


def test_lists_tell_what_they_ask_of_their_entries(make):
    context = make("""module m { namespace "urn:m"; prefix m;
      list l { key "b a"; min-elements 1; max-elements 3; unique "c d";
        leaf a { type string; } leaf b { type string; } leaf c { type string; }
        leaf d { type string; } } }""")
    node = context.node("/m:l")
    assert [key.name for key in node.keys] == ["b", "a"]
    assert (node.min_elements, node.max_elements) == (1, 3)
    assert node.uniques == ("m:c m:d",)


def test_augments_tell_what_they_add_and_where(context):
    targets = {augment.augment_target.path: [node.name for node in augment]
               for augment in context["example-routing"].augments}
    assert targets["/example-router:router/interfaces/interface"] == ["cost"]


def test_deviations_tell_whether_they_are_applied():
    from conftest import EXAMPLES
    with zrschema.Context([EXAMPLES / "modules"]) as context:
        deviations = context.load("example-vendor").deviations
    assert deviations and all(deviation.is_applied for deviation in deviations)


def test_rpcs_have_input_and_output(context):
    ping = context["example-router"]["ping"]
    assert ping.input["destination"] == ping["destination"]
    assert [node.name for node in ping.output] == ["received", "loss"]


def test_types_tell_their_restrictions(context):
    interface = context.node("/example-router:router/interfaces/interface")
    assert interface["mtu"].type.bounds == ((68, 1500), (9000, 9000))
    assert interface["mtu"].type.name == "uint16"
    speed = interface["speed"].type
    assert (speed.name, speed.builtin) == ("example-types:rate", BuiltInType.DECIMAL64)
    assert speed.bounds == ((Decimal("0.01"), Decimal("400.00")),)
    assert speed.fraction_digits == 2
    assert interface["flags"].type.values == {"up": 0, "running": 1, "promiscuous": 8}
    assert interface["name"].type.typedefs == ("example-types:interface-name",
                                               "example-types:name-text")
    assert [pattern.is_inverted for pattern in interface["name"].type.patterns] == [True, False]
    assert interface["type"].type.bases == ("example-types:interface-type",)
    assert interface["tunnel"]["source"].type.path == \
        "/example-router:router/interfaces/interface/name"
    assert interface["tunnel"]["source"].type.require_instance is True
    assert interface["name"].type.require_instance is None
    assert interface.type is None
    members = context.node("/example-router:ping/input/destination").type.members
    assert [member.name for member in members] == [
        "example-types:ipv4-address", "example-types:interface-name", "enumeration"]


def test_bounds_of_signed_types_may_be_negative(make):
    context = make("""module m { namespace "urn:m"; prefix m;
      leaf a { type int64 { range "min..-5 | 0..max"; } } }""")
    assert context.node("/m:a").type.bounds == ((-2**63, -5), (0, 2**63 - 1))


def test_restrictions_tell_what_is_said_of_a_violation(make):
    context = make("""module m { namespace "urn:m"; prefix m;
      leaf a { type string { pattern "a*"; pattern "b*" { error-message "no b";
        error-app-tag "bs"; } } } }""")
    type_ = context.node("/m:a").type
    assert type_.error_message(zrschema.Restriction.PATTERN, 1) == "no b"
    assert type_.error_app_tag(zrschema.Restriction.PATTERN, 1) == "bs"
    assert type_.error_message(zrschema.Restriction.PATTERN, 0) is None


def test_values_are_checked_with_the_type_that_takes_them(context):
    destination = context.node("/example-router:ping/input/destination")
    assert destination.check_value("192.0.2.1").patterns
    assert destination.accepts("router-1") and not destination.accepts("-")
    with pytest.raises(zrschema.InvalidValueError) as caught:
        destination.check_value("-")
    assert caught.value.status == zrschema.Status.ERR_VALUE_UNION
    assert isinstance(caught.value, ValueError)
    with pytest.raises(zrschema.Error, match="router is a container, which has no value"):
        context.node("/example-router:router").accepts("1")


def test_identities_tell_their_bases(context):
    identities = {identity.name: identity for identity in context["example-routing"].identities}
    assert identities["static"].bases == ("example-routing:protocol",)
    assert identities["static"].is_enabled


def test_typedefs_are_found_by_name(context):
    assert context["example-types"].typedef("percent").bounds == ((0, 100),)
    with pytest.raises(LookupError):
        context["example-types"].typedef("nothing")


def test_enums_may_depend_on_features(make):
    context = make("""module m { yang-version 1.1; namespace "urn:m"; prefix m; feature f;
      leaf a { type enumeration { enum x; enum y { if-feature f; } } } }""")
    type_ = context.node("/m:a").type
    assert type_.is_value_enabled("x") and not type_.is_value_enabled("y")
    with pytest.raises(ValueError):
        type_.is_value_enabled("z")


def test_trees_are_texts(context):
    assert context["example-routing"].tree().startswith(
        "module: example-routing\naugment /example-router:router:\n+--rw routing\n")
    assert context.node("/example-router:ping/output").tree() == (
        "module: example-router\nrpcs:\n+---x ping\n   +--ro output\n"
        "      +--ro received?   uint16\n      +--ro loss?       example-types:percent\n")


def test_patterns_are_matched_by_themselves():
    matcher = zrschema.Matcher(r"\p{L}+")
    assert matcher.matches("été") and not matcher.matches("2")
    with pytest.raises(ValueError, match="no regular expression"):
        zrschema.Matcher("[")
    with pytest.raises(ValueError, match="no text of XML"):
        matcher.matches("\x01")


def test_a_context_may_match_its_patterns_in_linear_time(make):
    source = """module m { namespace "urn:m"; prefix m;
      leaf a { type string { pattern "(a|aa)+b"; } } }"""
    context = make(source, linear_patterns=True)
    assert context.node("/m:a").accepts("aaab")
    assert not context.node("/m:a").accepts("a" * 1000)


def test_real_modules_are_walked_to_their_end(corpus):
    with zrschema.Context([corpus]) as context:
        for name in ("ietf-interfaces", "ietf-ip", "ietf-netconf", "ietf-yang-library"):
            module = context.load(name, strict=False)
            for node in module.walk():
                assert context.node(node.path) == node
                if node.type is not None:
                    assert node.type.name and node.type.builtin != BuiltInType.NONE
