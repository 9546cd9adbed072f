"""Morph files."""

# SPDX-License-Identifier: MIT

import gzip
import json

import gantrel
import numpy as np
import pytest

PARENT = "/data/Acme/Mini/Mini.dsf#Mini"
PLACE = "/data/Acme/Mini/Morphs/Me/Mine/Nose.dsf"


def nose():
    return gantrel.Morph("Nose", [7, 3], [[0, 0, 2], [0, 0.25, 0]], label="Long Nose", group="/Head/Nose",
                         vertex_count=9, min=-1.0, max=2.0)


def test_a_morph_that_was_written_is_read_again(tmp_path):
    path = gantrel.write_morph(tmp_path, PLACE, nose(), parent=PARENT, author="Me")
    assert path == tmp_path / PLACE[1:]
    [morph] = gantrel.read_morphs(path)
    assert (morph.name, morph.label, morph.group) == ("Nose", "Long Nose", "/Head/Nose")
    assert (morph.min, morph.max, morph.clamped, morph.vertex_count) == (-1.0, 2.0, True, 9)
    assert list(morph.vertices) == [3, 7]
    np.testing.assert_array_equal(morph.deltas, [[0, 0.25, 0], [0, 0, 2]])
    assert morph.deltas.dtype == np.float32 and not morph.deltas.flags.writeable
    assert morph.detail_file == ""
    assert json.loads(path.read_text())["modifier_library"][0]["parent"] == PARENT


def test_deltas_stay_the_same_to_the_last_bit(tmp_path):
    deltas = np.random.default_rng(5).normal(size=(1000, 3)).astype(np.float32)
    path = gantrel.write_morph(tmp_path, PLACE, gantrel.Morph("Nose", np.arange(1000), deltas), parent=PARENT,
                               compress=True)
    assert path.read_bytes()[:2] == b"\x1f\x8b"
    np.testing.assert_array_equal(gantrel.read_morphs(path)[0].deltas, deltas)


def test_a_file_that_is_there_stays_unless_it_may_go(tmp_path):
    path = gantrel.write_morph(tmp_path, PLACE, nose(), parent=PARENT)
    before = path.read_bytes()
    with pytest.raises(gantrel.FileError, match="is there already; overwrite=True replaces it"):
        gantrel.write_morph(tmp_path, PLACE, gantrel.Morph("Other", [0], [[1, 1, 1]]), parent=PARENT)
    assert path.read_bytes() == before
    gantrel.write_morph(tmp_path, PLACE, gantrel.Morph("Other", [0], [[1, 1, 1]]), parent=PARENT, overwrite=True)
    assert [morph.name for morph in gantrel.read_morphs(path)] == ["Other"]


@pytest.mark.parametrize("place", ["../out.dsf", "/data/../../out.dsf", "", "a\0b.dsf"])
def test_nothing_is_written_outside_of_the_folder(tmp_path, place):
    folder = tmp_path / "library"
    folder.mkdir()
    with pytest.raises((gantrel.UsageError, gantrel.FormatError)):
        gantrel.write_morph(folder, place, nose(), parent=PARENT)
    assert list(tmp_path.rglob("*")) == [folder]


def test_a_parent_names_a_figure(tmp_path):
    with pytest.raises(gantrel.UsageError, match="names no figure"):
        gantrel.write_morph(tmp_path, PLACE, nose(), parent="/data/Acme/Mini/Mini.dsf")


def test_dials_that_move_nothing_are_no_morphs(tmp_path):
    file = tmp_path / "dial.dsf"
    file.write_text(json.dumps({"file_version": "0.6.0.0", "asset_info": {"id": "/dial.dsf", "type": "modifier"},
                                "modifier_library": [{"id": "Dial", "name": "Dial",
                                                      "channel": {"id": "value", "type": "float"}}]}))
    assert gantrel.read_morphs(file) == []


@pytest.mark.parametrize("arguments, error, text", [
    (("", [0], [[0, 0, 0]]), gantrel.UsageError, "name: is empty"),
    (("N", [0, 0], [[0, 0, 0], [1, 1, 1]]), gantrel.MeshError, "vertices: has 0 twice"),
    (("N", [0], np.zeros((2, 3))), gantrel.MeshError, "1 vertex but 2 deltas"),
    (("N", [-1], [[0, 0, 0]]), gantrel.MeshError, "index -1"),
    (("N", [0.5], [[0, 0, 0]]), TypeError, "vertices holds no whole numbers"),
    (("N", [0], [[0, 0, np.nan]]), gantrel.MeshError, "deltas: row 0"),
    (("N", [0], [0, 0, 0]), gantrel.MeshError, r"deltas: has the shape \(3,\)"),
])
def test_morphs_that_cannot_be_meant_are_refused(arguments, error, text):
    with pytest.raises(error, match=text):
        gantrel.Morph(*arguments)


def test_limits_and_counts_that_cannot_be_meant_are_refused():
    for limits in ({"min": 1, "max": 0}, {"min": float("nan")}, {"max": float("inf")}):
        with pytest.raises(gantrel.UsageError, match="^max: is below min, or one"):
            gantrel.Morph("N", [0], [[0, 0, 0]], **limits)
    for count in (3, -2):
        with pytest.raises(gantrel.MeshError, match=f"vertex_count: is {count}"):
            gantrel.Morph("N", [3], [[0, 0, 0]], vertex_count=count)


def test_a_damaged_file_is_an_error_at_every_length(tmp_path):
    whole = gantrel.write_morph(tmp_path, PLACE, nose(), parent=PARENT).read_bytes()
    file = tmp_path / "cut.dsf"
    for content in (whole, gzip.compress(whole)):
        for length in range(0, len(content) - 2, 7):
            file.write_bytes(content[:length])
            with pytest.raises(gantrel.Error, match="cut.dsf"):
                gantrel.read_morphs(file)


def test_an_index_beyond_the_mesh_is_told(tmp_path):
    path = gantrel.write_morph(tmp_path, PLACE, nose(), parent=PARENT)
    path.write_text(path.read_text().replace('"vertex_count" : 9', '"vertex_count" : 5').replace(
        '"vertex_count": 9', '"vertex_count": 5'))
    with pytest.warns(gantrel.Warning, match="Nose"):
        [morph] = gantrel.read_morphs(path)
    assert morph.vertices.max() < 5
