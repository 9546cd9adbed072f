"""Carrying morphs between meshes."""

# SPDX-License-Identifier: MIT

import threading

import gantrel
import numpy as np
import pytest
from conftest import cube, plane


@pytest.fixture(scope="module")
def match():
    return gantrel.Match(*plane(20), *plane(13))


def test_a_shift_of_the_source_is_one_of_the_target(match):
    carried = match.transfer(np.tile(np.float32([1, 2, 3]), (21 * 21, 1)))
    assert carried.dtype == np.float32 and carried.shape == (14 * 14, 3)
    # Weights sum to 1 within a few steps of single precision.
    np.testing.assert_allclose(carried, np.tile([1, 2, 3], (14 * 14, 1)), atol=1e-5)


def test_what_is_carried_is_what_the_source_has_at_the_place(match):
    source, target = plane(20)[0], plane(13)[0]
    # Linear over the plane, so that interpolation on its faces is exact but for rounding.
    carried = match.transfer(source @ np.float32([[0, 0, 0.1], [0, 0, 0.2], [0, 0, 0]]))
    np.testing.assert_allclose(carried[:, 2], target[:, 0] * 0.1 + target[:, 1] * 0.2, atol=1e-4)
    np.testing.assert_allclose(match.transfer(source[:, 0]), target[:, 0], atol=1e-4)


def test_a_match_is_used_again_and_by_several_threads(match):
    deltas = [np.random.default_rng(seed).normal(size=(21 * 21, 3)) for seed in range(4)]
    alone = [match.transfer(one) for one in deltas]
    results = [None] * len(deltas)

    def carry(i):
        for _ in range(20):
            results[i] = match.transfer(deltas[i])

    threads = [threading.Thread(target=carry, args=(i,)) for i in range(len(deltas))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for one, other in zip(alone, results):
        np.testing.assert_array_equal(one, other)


def test_statistics_tell_what_was_matched(match):
    assert match.statistics.matched == 14 * 14
    assert match.statistics.filled == 0
    assert match.statistics.mean_slide <= match.statistics.longest_slide
    assert (match.source_vertex_count, match.target_vertex_count) == (21 * 21, 14 * 14)
    assert match.source_faces.shape == (14 * 14,) and match.source_faces.max() < 400


def test_one_morph_is_carried_in_one_call():
    source, faces = plane(20)
    morphed = source + np.float32([0, 0, 0.5])
    target, target_faces = plane(13)
    moved = gantrel.transfer(source, morphed, faces, target, target_faces)
    np.testing.assert_allclose(moved, target + np.float32([0, 0, 0.5]), atol=1e-5)


def test_values_that_cannot_be_meant_are_refused(match):
    for values, text in [
        (np.zeros((14 * 14, 3)), "441 vertices but 196 values"),
        (np.zeros((441, 2)), r"values: has the shape \(441, 2\)"),
        (np.zeros((0, 3)), "0 values"),
        (np.full((441, 3), np.inf), "row 0 has a number that is not finite"),
        (np.full(441, np.nan), "row 0"),
    ]:
        with pytest.raises(gantrel.MeshError, match=text):
            match.transfer(values)
    for values in ("text", None, {}, [[object()] * 3] * 441):
        with pytest.raises(TypeError):
            match.transfer(values)


def test_meshes_that_lie_apart_are_refused_unless_that_is_wanted():
    source, faces = cube(2.0)
    target = source + np.float32([0, 0, 1000])
    with pytest.raises(gantrel.MeshError, match=r"^target_vertices: only .*; anyway=True goes on\.$"):
        gantrel.Match(source, faces, target, faces)
    with pytest.warns(gantrel.Warning, match="target_vertices: only"):
        assert gantrel.Match(source, faces, target, faces, anyway=True).statistics.filled > 0


def test_meshes_without_faces_are_refused():
    vertices, faces = cube()
    for arguments in [(vertices, [], vertices, faces), (vertices, faces, vertices, np.zeros((0, 4), int))]:
        with pytest.raises(gantrel.MeshError, match="no faces"):
            gantrel.Match(*arguments)


def test_shapes_of_a_morph_fit_each_other():
    vertices, faces = cube()
    with pytest.raises(gantrel.MeshError, match="source_morphed: has 7 vertices but source_neutral has 8"):
        gantrel.transfer(vertices, vertices[:7], faces, vertices, faces)


@pytest.mark.parametrize("options", [
    {"max_distance": 0.0}, {"max_distance": float("nan")}, {"max_distance": float("inf")},
    {"max_angle": 0.0}, {"max_angle": 181.0}, {"max_angle": float("nan")},
])
def test_options_that_cannot_be_meant_are_refused(options):
    with pytest.raises(gantrel.UsageError, match=f"^{next(iter(options))}: is no"):
        gantrel.Match(*cube(), *cube(), **options)


def test_a_target_that_is_inside_out_is_turned():
    source, faces = plane(20)
    target, target_faces = plane(13)
    with pytest.warns(gantrel.Warning, match="^target_faces: are wound the other way round than source_faces"):
        match = gantrel.Match(source, faces, target, target_faces[:, ::-1])
    assert match.statistics.matched == len(target)


def test_a_target_without_an_area_is_refused():
    vertices, faces = cube()
    with pytest.raises(gantrel.MeshError, match="target_faces: none has an area"):
        gantrel.Match(vertices, faces, np.zeros((8, 3)), faces)
