"""Meshes as arrays: faces, OBJ files, subdivision, and arrays that cannot be meant."""

# SPDX-License-Identifier: MIT

import os
import pathlib
import re
import subprocess
import sys

import gantrel
import numpy as np
import pytest
from conftest import cube, plane


def test_an_obj_file_that_was_written_is_read_again(tmp_path):
    vertices, faces = cube()
    gantrel.write_obj(tmp_path / "cube.obj", vertices, faces)
    mesh = gantrel.read_obj(str(tmp_path / "cube.obj"))
    assert mesh.vertices.dtype == np.float32
    np.testing.assert_array_equal(mesh.vertices, vertices)
    np.testing.assert_array_equal(mesh.faces.as_array(), faces)


def test_faces_are_views_that_nobody_can_change(tmp_path):
    (tmp_path / "mixed.obj").write_text("v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 2 0\nf 1 2 3 4\nf 3 4 5\n")
    faces = gantrel.read_obj(tmp_path / "mixed.obj").faces
    assert [list(face) for face in faces] == [[0, 1, 2, 3], [2, 3, 4]]
    assert len(faces) == 2 and faces.vertex_count == 5
    assert list(faces[-1]) == [2, 3, 4]
    assert list(faces.offsets) == [0, 4, 7]
    assert np.shares_memory(faces.corners, faces[1])
    with pytest.raises(ValueError):
        faces.corners[0] = 9
    with pytest.raises(IndexError):
        faces[2]
    with pytest.raises(gantrel.MeshError, match=r"^Face 1 has 3 corners and face 0 has 4\.$"):
        faces.as_array()


def test_arrays_live_longer_than_what_they_were_taken_from():
    corners = gantrel.subdivide(*cube(), 1).faces.corners
    assert corners.size == 96 and corners.max() == 25


def test_groups_come_with_the_faces(tmp_path):
    (tmp_path / "groups.obj").write_text("v 0 0 0\nv 1 0 0\nv 1 1 0\ng left\nusemtl Skin\nf 1 2 3\ng right\nf 3 2 1\n")
    faces = gantrel.read_obj(tmp_path / "groups.obj").faces
    assert faces.group_names == ["left", "right"] and list(faces.groups) == [0, 1]
    assert faces.surface_names == ["Skin"] and list(faces.surfaces) == [0, 0]


def test_what_an_obj_file_has_too_much_is_told(tmp_path):
    (tmp_path / "odd.obj").write_text("v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nf 1 2\n")
    with pytest.warns(gantrel.Warning, match="odd.obj"):
        assert len(gantrel.read_obj(tmp_path / "odd.obj").faces) == 1


@pytest.mark.parametrize(
    "text, error",
    [
        ("v 0 0 0\nf 1 2 3\n", gantrel.FormatError),
        ("", gantrel.FormatError),
        ("v 0 0 nan\n", gantrel.FormatError),
        ("v 0 0 1e30\n", gantrel.FormatError),
        ("\x1f\x8b\x00\x00", gantrel.FormatError),
    ],
)
def test_damaged_obj_files_are_named(tmp_path, text, error):
    (tmp_path / "bad.obj").write_text(text)
    with pytest.raises(error, match="bad.obj"):
        gantrel.read_obj(tmp_path / "bad.obj")


def test_a_file_that_is_not_there_is_an_error_of_the_system_too(tmp_path):
    with pytest.raises(gantrel.FileError, match="No such file or directory") as caught:
        gantrel.read_obj(tmp_path / "none.obj")
    assert isinstance(caught.value, OSError)
    with pytest.raises(gantrel.FileError):
        gantrel.write_obj(tmp_path / "no/folder.obj", *cube())


def test_subdivision_keeps_a_flat_plane_flat_and_counts_as_the_rules_do():
    vertices, faces = plane(3)
    fine = gantrel.subdivide(vertices, faces, 2)
    assert fine.vertices.shape == (13 * 13, 3) and len(fine.faces) == 144
    assert np.abs(fine.vertices[:, 2]).max() == 0.0
    same = gantrel.subdivide(vertices, faces, 0)
    np.testing.assert_array_equal(same.vertices, vertices)


def test_kinds_of_faces_mean_the_same():
    vertices, faces = cube()
    known = gantrel.subdivide(vertices, faces, 0).faces
    shapes = [gantrel.subdivide(vertices, kind, 1).vertices
              for kind in (faces, np.array(faces), np.array(faces, np.uint8), tuple(map(tuple, faces)), known)]
    for shape in shapes[1:]:
        np.testing.assert_array_equal(shape, shapes[0])


@pytest.mark.parametrize("kind", [
    lambda a: a.astype(np.float64), lambda a: np.asfortranarray(a), lambda a: np.repeat(a, 2, axis=0)[::2],
    lambda a: a.astype(">f4"), lambda a: a.tolist(), lambda a: a[::-1].copy()[::-1],
    lambda a: np.frombuffer(b"x" + a.tobytes(), np.float32, offset=1).reshape(a.shape),
])
def test_kinds_of_vertices_mean_the_same(kind):
    vertices, faces = cube()
    np.testing.assert_array_equal(gantrel.subdivide(kind(vertices), faces, 1).vertices,
                                  gantrel.subdivide(vertices, faces, 1).vertices)


def test_arguments_stay_as_they_are():
    vertices, faces = cube()
    before = vertices.copy()
    vertices.flags.writeable = False
    fine = gantrel.subdivide(vertices, faces, 0)
    fine.vertices[:] = 7
    np.testing.assert_array_equal(vertices, before)


HOSTILE_VERTICES = [
    (np.zeros((8, 2)), gantrel.MeshError, r"vertices: has the shape \(8, 2\), not \(n, 3\)"),
    (np.zeros(24), gantrel.MeshError, r"shape \(24,\)"),
    (np.zeros((2, 4, 3)), gantrel.MeshError, r"shape \(2, 4, 3\)"),
    (np.zeros((0, 3)), gantrel.MeshError, "face 0 names vertex 0 but only 0 are defined"),
    (np.zeros((7, 3)), gantrel.MeshError, "names vertex 7 but only 7 are defined"),
    (np.full((8, 3), np.nan), gantrel.MeshError, "row 0 has a number that is not finite"),
    (np.full((8, 3), 1e300), gantrel.MeshError, "not finite in single precision"),
    (np.full((8, 3), 2e9), gantrel.MeshError, "row 0 lies farther than 1e\\+09 cm"),
    (np.zeros((8, 3), complex), TypeError, "vertices holds no real numbers"),
    (np.ma.masked_equal(np.eye(8, 3), 1), TypeError, "vertices has numbers that are masked"),
    ("nonsense", TypeError, "vertices holds no real numbers"),
    ([[0, 0, 0], [1, 2]], TypeError, "vertices"),
    (None, TypeError, "vertices"),
]


@pytest.mark.parametrize("vertices, error, text", HOSTILE_VERTICES)
@pytest.mark.filterwarnings("ignore::numpy.VisibleDeprecationWarning", "ignore:overflow:RuntimeWarning")
def test_vertices_that_cannot_be_meant_are_refused(vertices, error, text):
    with pytest.raises(error, match=text):
        gantrel.subdivide(vertices, cube()[1], 1)


@pytest.mark.parametrize("faces, error, text", [
    ([[0, 1, 8]], gantrel.MeshError, "face 0 names vertex 8 but only 8 are defined"),
    ([[0, 1, 2], [0, 1]], gantrel.MeshError, "face 1 has fewer than three corners"),
    ([[0, 1, -1]], gantrel.MeshError, "index -1, which names nothing"),
    ([[0, 1, 2**70]], gantrel.MeshError, "an index that names nothing"),
    (np.array([[0, 1, 2**32]]), gantrel.MeshError, "which names nothing"),
    (np.array([[0, 1, -5]]), gantrel.MeshError, "index -5"),
    (np.zeros((1, 2), int), gantrel.MeshError, "fewer than three corners"),
    (np.zeros(12, int), gantrel.MeshError, r"shape \(12,\), not \(f, k\)"),
    (np.zeros((2, 3)), TypeError, "faces holds no whole numbers"),
    ([[0, 1, 2.5]], TypeError, "integer"),
    ([0, 1, 2], TypeError, "iterable"),
    ("faces", TypeError, "neither Faces"),
    (None, TypeError, "neither Faces"),
    (5, TypeError, "neither Faces"),
])
def test_faces_that_cannot_be_meant_are_refused(faces, error, text):
    with pytest.raises(error, match=text):
        gantrel.subdivide(cube()[0], faces, 1)


def test_faces_of_another_mesh_are_refused():
    other = gantrel.subdivide(*plane(1), 0).faces
    with pytest.raises(gantrel.MeshError, match="faces: are for 4 vertices but 8 are given"):
        gantrel.subdivide(cube()[0], other, 1)


@pytest.mark.parametrize("level", [-1, 6, 1000])
def test_levels_beyond_what_figures_have_are_refused(level):
    with pytest.raises(gantrel.UsageError, match=f"level: is {level}, not 0 to 5"):
        gantrel.subdivide(*cube(), level)


@pytest.mark.skipif("libasan" in os.environ.get("LD_PRELOAD", ""),
                    reason="the address sanitizer itself takes more room than is left to the program")
def test_what_the_memory_cannot_hold_is_refused_before_the_work():
    script = (
        "import resource, gantrel, conftest\n"
        "resource.setrlimit(resource.RLIMIT_AS, (3 * 2**30, 3 * 2**30))\n"
        "try:\n    gantrel.subdivide(*conftest.plane(200), 5)\nexcept MemoryError as error:\n    print(error)\n"
    )
    ended = subprocess.run([sys.executable, "-c", script], cwd=pathlib.Path(__file__).parent, capture_output=True,
                           text=True, check=True)
    # 40000 quads become 41 million; what is left depends on the machine.
    assert re.fullmatch(r"Subdivision to level 5 needs about 12500 MiB of memory, and \d+ are left\.\n", ended.stdout)


def test_an_empty_mesh_is_written_and_not_read(tmp_path):
    gantrel.write_obj(tmp_path / "empty.obj", np.zeros((0, 3)), np.zeros((0, 3), int))
    with pytest.raises(gantrel.FormatError, match="has no vertices"):
        gantrel.read_obj(tmp_path / "empty.obj")
