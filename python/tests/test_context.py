# SPDX-License-Identifier: Apache-2.0
"""Contexts: what loading does, and what is left of it."""
import zrschema
import pytest
from conftest import EXAMPLES, ROUTER

BOX = 'module box { namespace "urn:box"; prefix b; leaf size { type uint8; } }'
LID = """module lid {
  namespace "urn:lid"; prefix l;
  import box { prefix b; }
  feature seals;
  container lid { leaf seal { if-feature seals; type string; } }
  deviation "/b:size" { deviate not-supported; }
}"""


def test_a_source_is_loaded_with_what_it_imports(context):
    assert [module.name for module in context] == ["example-router", "example-routing",
                                                   "example-types"]
    assert context["example-types"].namespace == "urn:example:types"


def test_prepared_modules_and_their_suffixed_parts_are_loaded_from_the_folders():
    with zrschema.Context([EXAMPLES / "modules"]) as context:
        module = context.load("example-services")
        assert module.name in context
        assert len(module.children) > 0


def test_a_prepared_text_is_loaded_without_its_imports(context):
    with zrschema.Context() as other:
        other.load_text(context.prepare("example-types"))
        assert [module.name for module in other] == ["example-types"]


def test_a_file_is_loaded_by_its_path(tmp_path):
    (tmp_path / "box.yang").write_text(BOX)
    with zrschema.Context() as context:
        assert context.load(str(tmp_path / "box.yang")).name == "box"
    with zrschema.Workspace([tmp_path]) as workspace:
        prepared = workspace.prepare_to("box", tmp_path)
    with zrschema.Context() as context:
        assert context.load(str(prepared)).name == "box"


def test_the_modules_of_the_folders_are_listed_without_their_submodules():
    with zrschema.Context([EXAMPLES / "modules"]) as context:
        assert context.available() == ["example-router", "example-routing", "example-services",
                                       "example-types", "example-vendor"]


def test_a_module_that_is_not_there_is_not_found(context):
    with pytest.raises(zrschema.NotFoundError, match="no file of module nothing is found"):
        context.load("nothing")
    with pytest.raises(LookupError):
        context["nothing"]
    assert context.get("nothing") is None
    assert "nothing" not in context


def test_the_errors_of_a_source_stand_in_the_exception_with_their_places(tmp_path):
    (tmp_path / "bad.yang").write_text(
        'module bad {\n  namespace "urn:bad"; prefix b;\n  leaf a { type nothing; }\n}\n')
    with zrschema.Context([tmp_path]) as context:
        with pytest.raises(zrschema.PrepareError) as caught:
            context.load("bad")
    error, = caught.value.errors
    assert (error.line, error.column, error.is_warning) == (3, 12, False)
    assert error.file == str(tmp_path / "bad.yang")
    assert error.code == zrschema.ReportCode.NAME
    assert 'unknown typedef "nothing"' in str(caught.value)


def test_a_prepared_module_that_cannot_be_read_is_a_load_error_with_what_was_recorded(tmp_path):
    (tmp_path / "bad.yin").write_text("<module name='bad'")
    with zrschema.Context([tmp_path]) as context:
        with pytest.raises(zrschema.LoadError) as caught:
            context.load("bad")
        assert caught.value.status == zrschema.Status.ERR_INVALID
        assert {error.module for error in caught.value.errors} == {"bad"}
        assert caught.value.errors == context.problems


def test_a_missing_import_is_an_error_unless_loading_is_not_strict(tmp_path):
    (tmp_path / "lid.yin").write_text(
        '<module name="lid" xmlns="urn:ietf:params:xml:ns:yang:yin:1"><namespace uri="urn:lid"/>'
        '<prefix value="l"/><import module="box"><prefix value="b"/></import></module>')
    with zrschema.Context([tmp_path]) as context:
        with pytest.raises(zrschema.LoadError, match="lid: error: imports box, which is not found"):
            context.load("lid")
        assert context.load("lid", strict=False).name == "lid"


def test_features_are_turned_on_when_their_module_is_loaded(make):
    on = make(BOX, LID, features=["lid:seals"])
    assert on["lid"].features == {"seals": True}
    assert on.node("/lid:lid/seal").is_enabled
    off = make(BOX, LID)
    assert off["lid"].features == {"seals": False}
    off["lid"].enable_feature("seals")
    assert off.node("/lid:lid/seal").is_enabled
    off["lid"].disable_feature("seals")
    assert not off.node("/lid:lid/seal").is_enabled
    with pytest.raises(zrschema.NotFoundError, match="module lid has no feature locks"):
        off["lid"].enable_feature("locks")


def test_nodes_are_looked_up_again_when_something_was_loaded(make):
    context = make(BOX)
    box, size = context["box"], context.node("/box:size")
    context.add_source("lid", LID)
    context.load("lid")
    with pytest.raises(zrschema.StaleError):
        size.name
    assert box.name == "box"
    assert context.find("/box:size") is None  # the deviation removed it
    assert box.children == ()


def test_what_depends_on_an_unloaded_module_comes_back_from_its_source(make):
    context = make(BOX, LID, features=["lid:seals"])
    lid = context["lid"]
    context.unload("lid")
    assert [module.name for module in context] == ["box"]
    assert context.node("/box:size").name == "size"
    with pytest.raises(zrschema.StaleError, match="module lid is not loaded any more"):
        lid.features
    context.load("lid")
    assert lid.features == {"seals": True}
    context.unload("box")
    assert [module.name for module in context] == ["lid"]
    assert lid.features == {"seals": True}


def test_a_closed_context_is_an_error_wherever_it_is_used(context, validator):
    node, module = context.node("/example-router:router"), context["example-router"]
    result = validator.check(ROUTER)
    context.close()
    context.close()
    for use in (lambda: context.node("/example-router:router"), lambda: node.name,
                lambda: module.tree(), lambda: context.load("example-router"),
                lambda: node.type, lambda: validator.check("<config/>"), result.to_xml,
                lambda: validator.is_current, lambda: context.validate_rpc("<a/>")):
        with pytest.raises(ValueError, match="closed"):
            use()
    assert result.valid


def test_objects_keep_their_context(make):
    node = make(BOX).node("/box:size")
    assert node.module.name == "box"


def test_texts_with_null_characters_are_refused(context):
    with pytest.raises(ValueError, match="null character"):
        context.node("/example-router:router\0")
    with pytest.raises(zrschema.LoadError, match="null character"):
        context.load_text("<module/>\0")


def test_a_missing_library_is_a_clear_error(monkeypatch):
    from zrschema import _library
    monkeypatch.setenv("ZRSCHEMA_LIBRARY_PATH", "/nonexistent")
    with pytest.raises(ImportError, match=r"cannot open libzrdata.so.1: .*; "
                                          "ZRSCHEMA_LIBRARY_PATH may name the folder"):
        _library.data_library.__wrapped__()


def test_the_version_is_that_of_the_libraries():
    assert zrschema.version() == zrschema.__version__
