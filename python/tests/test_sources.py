# SPDX-License-Identifier: Apache-2.0
"""Preparing YANG sources."""
import pytest

import zrschema
from conftest import EXAMPLES


@pytest.fixture
def workspace():
    with zrschema.Workspace([EXAMPLES / "modules"]) as made:
        yield made


def test_modules_and_their_files_are_listed(workspace):
    assert workspace.modules() == ["example-router", "example-routing", "example-types",
                                   "example-vendor"]
    files = workspace.dependencies("example-router")
    assert [file.rpartition("/")[2] for file in files] == [
        "example-router.yang", "example-router-statistics.yang", "example-types.yang"]


def test_a_module_is_prepared_to_text_and_to_a_file_with_the_same_bytes(workspace, tmp_path):
    text = workspace.prepare("example-router")
    path = workspace.prepare_to("example-router", tmp_path)
    assert path == tmp_path / "example-router.yin"
    assert path.read_text() == text
    assert "<uses" not in text


def test_all_modules_are_prepared_with_progress(workspace, tmp_path):
    heard = []
    workspace.prepare_all(tmp_path, lambda *what: heard.append(what))
    assert heard[0] == (0, 4, "example-router") and heard[-1] == (4, 4, "")
    assert sorted(path.name for path in tmp_path.iterdir()) == [
        f"{name}.yin" for name in workspace.modules()]


def test_an_exception_of_the_progress_ends_the_run(workspace, tmp_path):
    def stop(done, total, name):
        if done == 1:
            raise KeyboardInterrupt
    with pytest.raises(KeyboardInterrupt):
        workspace.prepare_all(tmp_path, stop)
    assert [path.name for path in tmp_path.iterdir()] == ["example-router.yin"]


def test_a_workspace_cannot_be_used_while_it_is_at_work(workspace, tmp_path):
    with pytest.raises(zrschema.Error, match="at work"):
        workspace.prepare_all(tmp_path, lambda *what: workspace.modules())
    assert len(workspace.modules()) == 4


def test_warnings_stand_in_the_reports():
    source = """module m { yang-version 1.1; namespace "urn:m"; prefix m; feature f;
      leaf a { if-feature "not f"; type string; } }"""
    with zrschema.Workspace() as workspace:
        workspace.add_text("m", source)
        assert "leaf" in workspace.prepare("m")
        warning, = workspace.reports
        assert warning.is_warning and warning.code == zrschema.ReportCode.FEATURE
        assert str(warning).startswith("m:2:")
    with zrschema.Workspace(features=["m:f"]) as workspace:
        workspace.add_text("m", source)
        assert "leaf" not in workspace.prepare("m")
        assert workspace.reports == ()


def test_descriptions_may_be_left_out():
    with zrschema.Workspace([EXAMPLES / "modules"], strip=True) as workspace:
        assert "description" not in workspace.prepare("example-router")


def test_what_is_not_there_is_not_found(workspace, tmp_path):
    with pytest.raises(zrschema.NotFoundError, match="no source of nothing"):
        workspace.prepare("nothing")
    with pytest.raises(FileNotFoundError):
        workspace.add_path(tmp_path / "nothing")
    with pytest.raises(FileNotFoundError):
        workspace.prepare_to("example-types", tmp_path / "nothing")


def test_a_node_limit_is_kept():
    with zrschema.Workspace([EXAMPLES / "modules"], node_limit=3) as workspace:
        with pytest.raises(zrschema.PrepareError) as caught:
            workspace.prepare("example-router")
    assert caught.value.errors[0].code == zrschema.ReportCode.LIMIT


def test_features_are_written_with_their_module():
    with pytest.raises(ValueError, match="a feature is MODULE:NAME"):
        zrschema.Workspace(features=["tunnels"])


def test_a_closed_workspace_is_an_error(workspace):
    workspace.close()
    with pytest.raises(ValueError, match="closed"):
        workspace.modules()
