"""Wrong arguments, told in one sentence rather than by a table of all that C++ would take."""

# SPDX-License-Identifier: MIT

import difflib
import functools
import operator
import os
import re

_TABLES = ("incompatible function arguments", "incompatible constructor arguments")
_OPENING, _CLOSING = "([{", ")]}"
_LONGEST = 60


def _split(text):
    """At commas that stand in no brackets."""
    parts, depth = [""], 0
    for letter in text:
        depth += (letter in _OPENING) - (letter in _CLOSING)
        if letter == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += letter
    return [part.strip() for part in parts if part.strip()]


class _Parameter:
    """Of a documented signature: "level: int = 0"."""

    def __init__(self, text):
        head, _, default = text.partition(" = ")
        self.name, _, self.kind = head.partition(": ")
        self.is_needed = not default


def _parameters(function):
    """Those that may stand without their names, and all; without the object itself, and none where the functions are several."""
    first = (function.__doc__ or "").partition("\n")[0]
    found = re.match(r"\w*\((.*)\)(?: -> .*)?$", first)
    if not found:
        return None
    texts = _split(found[1])
    bare = texts.index("*") if "*" in texts else len(texts)
    every = [_Parameter(text) for text in texts if text != "*"]
    return [one.name for one in every[:bare]], {one.name: one for one in every}


def _works(act, value):
    try:
        act(value)
    except TypeError:
        return False
    return True


def _inner(kind, name):
    return kind[len(name) + 1:-1] if kind.startswith(name + "[") else None


def _fits(value, kind):
    """Whether the value is of a kind, as signatures write it; True for kinds that are told otherwise."""
    if (inner := _inner(kind, "Optional")) is not None:
        return value is None or _fits(value, inner)
    if (inner := _inner(kind, "List")) is not None:
        return not isinstance(value, (str, bytes)) and hasattr(value, "__iter__") and all(_fits(one, inner) for one in value)
    known = {
        "str": lambda: isinstance(value, str),
        "bool": lambda: isinstance(value, bool) or type(value).__name__ in ("bool_", "bool"),
        "int": lambda: not isinstance(value, float) and _works(operator.index, value),
        "float": lambda: hasattr(value, "__float__") or _works(operator.index, value),
        "os.PathLike": lambda: _works(os.fspath, value),
    }
    if kind in known:
        return known[kind]()
    return not kind.startswith("gantrel.") or kind.rpartition(".")[2] in [cls.__name__ for cls in type(value).__mro__]


_ONE = {"str": "a text", "bool": "True or False", "int": "a whole number", "float": "a number",
        "os.PathLike": "the name of a file or folder"}
_MANY = {"str": "texts", "bool": "True or False", "int": "whole numbers", "float": "numbers",
         "os.PathLike": "names of files or folders"}


def _words(kind):
    if (inner := _inner(kind, "Optional")) is not None:
        return f"{_words(inner)} or None"
    if (inner := _inner(kind, "List")) is not None:
        return "a list of " + _MANY.get(inner, f"{inner.rpartition('.')[2]} objects")
    return _ONE.get(kind, f"a {kind.rpartition('.')[2]}")


def _shown(value):
    text = repr(value)
    return text if len(text) <= _LONGEST else f"{text[:_LONGEST]}..."


def _misfit(function, args, kwargs):
    """What is wrong; empty where no single argument is to blame."""
    known = _parameters(function)
    if known is None:
        return ""
    bare, every = known
    for name in kwargs:
        if name not in every:
            close = difflib.get_close_matches(name, every, 1)
            return f"there is no argument {name}" + (f"; did you mean {close[0]}?" if close else "")
    if len(args) > len(bare):
        own = bare[:1] == ["self"]
        return f"{len(args) - own} arguments are given without their names, and {len(bare) - own} can be"
    given = dict(zip(bare, args))
    twice = [name for name in kwargs if name in given]
    if twice:
        return f"{twice[0]} is given twice"
    given.update(kwargs)
    missing = [one.name for one in every.values() if one.is_needed and one.name not in given]
    if missing:
        return f"{missing[0]} is missing"
    for name, value in given.items():
        if not _fits(value, every[name].kind):
            called = "it" if re.fullmatch(r"arg\d+", name) else name
            return f"{called} is {_shown(value)}, not {_words(every[name].kind)}"
    return ""


def _plainly(function, called):
    @functools.wraps(function)
    def call(*args, **kwargs):
        try:
            return function(*args, **kwargs)
        except TypeError as error:
            if not any(table in str(error) for table in _TABLES):
                raise
            sentence = f"{called}: {_misfit(function, args, kwargs) or 'these arguments do not fit'}"
        raise TypeError(sentence)

    call.__qualname__ = called  # by which other processes find it
    return call


def _check_class(cls):
    for name, member in list(vars(cls).items()):
        if isinstance(member, property) and member.fset:
            setter = _plainly(member.fset, f"{cls.__name__}.{name}")
            setattr(cls, name, property(member.fget, setter, member.fdel, member.__doc__))
        elif type(member).__name__ == "instancemethod" and name not in ("__repr__", "__reduce__", "__reduce_ex__"):
            called = cls.__name__ if name == "__init__" else f"{cls.__name__}.{name}"
            setattr(cls, name, _plainly(member, called))


def check(module):
    """Has all functions of the compiled module tell which argument is wrong."""
    for name, member in list(vars(module).items()):
        if isinstance(member, type):
            _check_class(member)
        elif callable(member) and not name.startswith("_"):
            setattr(module, name, _plainly(member, name))
