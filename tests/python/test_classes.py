"""What all classes of the module have in common."""

# SPDX-License-Identifier: MIT

import copy
import pickle
import subprocess
import sys

import gantrel
import gantrel._gantrel as compiled
import numpy
import pytest

CLASSES = sorted((one for one in vars(compiled).values() if isinstance(one, type)), key=lambda one: one.__name__)
SQUARE = numpy.array([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]], numpy.float32)


@pytest.mark.parametrize("cls", CLASSES, ids=lambda cls: cls.__name__)
def test_new_alone_makes_no_object(cls):
    with pytest.raises(TypeError, match=f"^{cls.__name__}.__new__ makes no object"):
        cls.__new__(cls)
    with pytest.raises(TypeError):
        object.__new__(cls)
    # A process of its own: what is made so would end it.
    code = f"import gantrel._gantrel as g\ntry: g.{cls.__name__}.__mro__[1].__new__(g.{cls.__name__})\nexcept TypeError: print('refused')"
    ended = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
    assert ended.stdout == "refused\n"


def test_every_class_says_what_an_object_is():
    own = [cls.__name__ for cls in CLASSES if "__repr__" not in vars(cls)]
    assert own == []
    match = gantrel.Match(SQUARE, [[0, 1, 2, 3]], SQUARE, [[0, 1, 2, 3]])
    assert repr(match) == "<gantrel.Match: 4 vertices to 4>"
    assert repr(gantrel.Save("/lib", "Acme", "Heroes")) == '<gantrel.Save into "/lib", Acme, Heroes>'


def test_a_class_of_a_script_has_to_fill_what_it_is_made_from():
    class Empty(gantrel.Save):
        def __init__(self):
            pass

    class Filled(gantrel.Save):
        def __init__(self):
            super().__init__("/lib", "Acme", "Heroes")
            self.more = 1

    with pytest.raises(TypeError, match="Empty.__init__ does not call"):
        Empty()
    assert (Filled().vendor, Filled().more) == ("Acme", 1)


def test_calls_are_checked_as_ever():
    with pytest.raises(TypeError, match="^Save: vendor is missing$"):
        gantrel.Save("/lib")
    with pytest.raises(gantrel.UsageError):
        gantrel.Save("", "Acme", "Heroes")


def test_a_save_can_be_pickled_and_copied():
    save = gantrel.Save("/lib", "Acme", "Heroes", compress=True)
    for again in (pickle.loads(pickle.dumps(save)), copy.copy(save), copy.deepcopy(save)):
        assert [str(getattr(again, name)) for name in ("library", "vendor", "product")] == ["/lib", "Acme", "Heroes"]
        assert (again.compress, again.overwrite) == (True, False)


def test_others_say_that_they_cannot():
    match = gantrel.Match(SQUARE, [[0, 1, 2, 3]], SQUARE, [[0, 1, 2, 3]])
    for one in (match, match.statistics):
        for attempt in (pickle.dumps, copy.copy, copy.deepcopy):
            with pytest.raises(TypeError, match="can neither be pickled nor copied"):
                attempt(one)
