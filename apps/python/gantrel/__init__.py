"""Gantrel: shapes of older figure generations as morphs on Genesis 9.

Lengths are centimetres, Y is up, indices count from 0. Meshes are NumPy arrays: ``vertices`` of shape (n, 3) and type
float32, and ``faces`` as a ``Faces`` object, as an integer array of shape (f, k), or as a list of lists.
Errors are exceptions below ``gantrel.Error``; what was left out or guessed is told as ``gantrel.Warning``.
"""

# SPDX-License-Identifier: MIT

import atexit
import collections.abc

from gantrel.errors import (
    BusyError,
    Cancelled,
    ClosedError,
    Error,
    FileError,
    FormatError,
    MeshError,
    UnknownDialError,
    UsageError,
    Warning,  # pylint: disable=redefined-builtin
)
from gantrel import _arguments, _gantrel

_arguments.check(_gantrel)
# What is checked is another object than what was there before.
from gantrel._gantrel import (  # noqa: E402  pylint: disable=wrong-import-position
    Conversion,
    CreatedMorph,
    Dial,
    Dials,
    Distances,
    Faces,
    Figure,
    FigureInfo,
    Library,
    Match,
    MatchStatistics,
    Mesh,
    Morph,
    Save,
    __version__,
    _close_library,
    convert,
    read_morphs,
    read_obj,
    subdivide,
    transfer,
    write_morph,
    write_obj,
)

__all__ = [
    "BusyError",
    "Cancelled",
    "ClosedError",
    "Conversion",
    "CreatedMorph",
    "Dial",
    "Dials",
    "Distances",
    "Error",
    "Faces",
    "Figure",
    "FigureInfo",
    "FileError",
    "FormatError",
    "Library",
    "Match",
    "MatchStatistics",
    "Mesh",
    "MeshError",
    "Morph",
    "Save",
    "UnknownDialError",
    "UsageError",
    "Warning",
    "convert",
    "read_morphs",
    "read_obj",
    "subdivide",
    "transfer",
    "write_morph",
    "write_obj",
]

collections.abc.Mapping.register(Dials)
collections.abc.Sequence.register(Faces)
# The host has to end before the interpreter does.
atexit.register(_close_library)


def _make_save(library, vendor, product, compress, overwrite):
    """Of what is pickled."""
    return Save(library, vendor, product, compress=compress, overwrite=overwrite)
