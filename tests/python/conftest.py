"""What the tests of the Python module share: small shapes, and the sample library."""

# SPDX-License-Identifier: MIT

import os
import pathlib
import signal
import subprocess

import numpy as np
import pytest


@pytest.fixture(scope="session")
def samples(tmp_path_factory):
    """A content folder with the sample figures."""
    folder = tmp_path_factory.mktemp("samples")
    subprocess.run([os.environ["GANTREL_PROGRAM"], "sample-content", folder], check=True, stdout=subprocess.DEVNULL)
    return folder


@pytest.fixture
def vera(samples):
    return samples / "People/Genesis 8 Female/Characters/Vera.duf"


@pytest.fixture
def genesis9(samples):
    return samples / "People/Genesis 9/Genesis 9.duf"


@pytest.fixture
def interruptible():
    """Ctrl+C raises, also in a test run that a shell has put into the background."""
    former = signal.signal(signal.SIGINT, signal.default_int_handler)
    yield
    signal.signal(signal.SIGINT, former)


def files_below(folder):
    return sorted(path for path in pathlib.Path(folder).rglob("*") if path.is_file())


def cube(edge=2.0):
    """Vertices and faces of a cube around the origin."""
    corners = np.array([[x, y, z] for z in (-1, 1) for y in (-1, 1) for x in (-1, 1)], np.float32) * (edge / 2)
    faces = [[0, 2, 3, 1], [4, 5, 7, 6], [0, 1, 5, 4], [2, 6, 7, 3], [0, 4, 6, 2], [1, 3, 7, 5]]
    return corners, faces


def plane(rows, size=10.0):
    """A square in the plane z = 0 of rows by rows quads."""
    steps = np.linspace(-size / 2, size / 2, rows + 1, dtype=np.float32)
    y, x = np.meshgrid(steps, steps, indexing="ij")
    vertices = np.stack([x.ravel(), y.ravel(), np.zeros(x.size, np.float32)], axis=1)
    first = (np.arange(rows)[:, None] * (rows + 1) + np.arange(rows)[None, :]).ravel()
    return vertices, np.stack([first, first + 1, first + rows + 2, first + rows + 1], axis=1)
