"""Wrong arguments are told in one sentence, everywhere."""

# SPDX-License-Identifier: MIT

import inspect
import pickle

import gantrel
import gantrel._gantrel as compiled
import pytest
from conftest import cube


class Odd:
    """Of no kind that anything takes."""

    def __repr__(self):
        return "odd"


def plain_calls(samples_library, figure):
    """Everything that can be called and has a documented signature."""
    dial = figure.dials["PHMSmile"]
    match = gantrel.Match(*cube(), *cube())
    objects = [samples_library, figure, figure.dials, dial, match, gantrel.subdivide(*cube(), 0).faces,
               gantrel.Save("a", "b", "c")]
    for one in objects:
        for name, member in vars(type(one)).items():
            if inspect.isfunction(member) and not name.startswith("__"):
                yield f"{type(one).__name__}.{name}", getattr(one, name)
            elif isinstance(member, property) and member.fset:
                yield f"{type(one).__name__}.{name}", lambda value, one=one, name=name: setattr(one, name, value)
    for name, member in vars(compiled).items():
        if callable(member) and not name.startswith("_") and name != "convert":
            yield name, member


def test_nothing_shows_what_the_compiled_part_takes(samples, vera):
    told = 0
    with gantrel.Library(samples) as library:
        for name, call in plain_calls(library, library.load(vera)):
            for arguments in ((Odd(),), (Odd(),) * 9):
                try:
                    call(*arguments)
                except (TypeError, gantrel.Error, ValueError, KeyError) as error:
                    assert "incompatible" not in str(error) and "Invoked" not in str(error) and "\n" not in str(error), name
                    told += isinstance(error, TypeError)
    assert told > 30


@pytest.mark.parametrize("call, sentence", [
    (lambda: gantrel.read_obj(5), "read_obj: path is 5, not the name of a file or folder"),
    (lambda: gantrel.read_obj(), "read_obj: path is missing"),
    (lambda: gantrel.read_obj("a", "b"), "read_obj: 2 arguments are given without their names, and 1 can be"),
    (lambda: gantrel.read_obj(pat="a"), "read_obj: there is no argument pat; did you mean path?"),
    (lambda: gantrel.read_obj("a", path="b"), "read_obj: path is given twice"),
    (lambda: gantrel.Save("a", 2, "c"), "Save: vendor is 2, not a text"),
    (lambda: gantrel.Save("a", "b", "c", compress="no"), "Save: compress is 'no', not True or False"),
    (lambda: gantrel.Save("a", "b" * 99, 3), "Save: product is 3, not a text"),
    (lambda: gantrel.read_morphs(["x" * 99]), f"read_morphs: path is ['{'x' * 58}..., not the name of a file or folder"),
])
def test_the_argument_and_what_it_is_are_named(call, sentence):
    with pytest.raises(TypeError) as raised:
        call()
    assert str(raised.value) == sentence
    assert raised.value.__suppress_context__ or raised.value.__context__ is None


def test_properties_tell_what_they_take(samples, vera):
    with gantrel.Library(samples) as library:
        figure = library.load(vera)
        with pytest.raises(TypeError, match="^Figure.level: it is 'fine', not a whole number$"):
            figure.level = "fine"
        with pytest.raises(TypeError, match="^Dial.value: it is 'much', not a number$"):
            figure.dials["PHMSmile"].value = "much"
        with pytest.raises(TypeError, match="^Dials.__setitem__: "):
            figure.dials["PHMSmile"] = "much"


def test_a_warning_names_the_line_of_the_caller(tmp_path):
    (tmp_path / "odd.obj").write_text("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2\nf 1 2 3\n")
    with pytest.warns(gantrel.Warning) as told:
        gantrel.read_obj(tmp_path / "odd.obj")
    assert {one.filename for one in told} == {__file__}


def test_functions_keep_what_they_are_called_and_tell():
    for name in ("convert", "read_obj", "transfer"):
        function = getattr(gantrel, name)
        assert function is getattr(compiled, name) and function.__name__ == name
        assert function.__doc__.startswith(name + "(")
        assert pickle.loads(pickle.dumps(function)) is function
