"""What type checkers read agrees with the module."""

# SPDX-License-Identifier: MIT

import ast
import inspect
import pathlib
import re

import gantrel
import gantrel.errors
import pytest

PACKAGE = pathlib.Path(gantrel.__file__).parent
STUB = ast.parse((PACKAGE / "__init__.pyi").read_text())
CLASSES = {node.name: node for node in STUB.body if isinstance(node, ast.ClassDef)}
FUNCTIONS = {node.name: node for node in STUB.body if isinstance(node, ast.FunctionDef)}
ERRORS = {alias.asname for node in STUB.body if isinstance(node, ast.ImportFrom) and node.module == "gantrel.errors"
          for alias in node.names}


def told_parameters(function):
    """Names, those that are keywords only, and defaults, as the module's own documentation has them."""
    first = function.__doc__.splitlines()[0]
    arguments = ast.parse(f"def f{re.sub(': [^,=)]+', '', first[first.index('('):].split(' -> ')[0])}: pass").body[0].args
    return described(arguments)


def described(arguments):
    positional = [argument.arg for argument in arguments.args if argument.arg != "self"]
    keywords = [argument.arg for argument in arguments.kwonlyargs]
    defaults = [ast.literal_eval(one) if one is not None else ... for one in arguments.defaults + arguments.kw_defaults]
    return positional, keywords, defaults


def members(node):
    """Methods and properties of a class of the stub; of properties, whether they can be set."""
    methods, properties = {}, {}
    for one in node.body:
        if not isinstance(one, ast.FunctionDef):
            continue
        marks = [ast.unparse(mark) for mark in one.decorator_list]
        if "property" in marks:
            properties[one.name] = False
        elif any(mark.endswith(".setter") for mark in marks):
            properties[one.name] = True
        else:
            methods[one.name] = one
    return methods, properties


def test_both_have_the_same_names():
    assert set(gantrel.__all__) == set(CLASSES) | set(FUNCTIONS) | ERRORS
    for name in gantrel.__all__:
        assert getattr(gantrel, name).__doc__, name


def test_errors_are_all_told():
    own = {name for name, value in vars(gantrel.errors).items() if inspect.isclass(value)}
    assert own == ERRORS
    for name in own - {"Warning"}:
        assert issubclass(getattr(gantrel, name), gantrel.Error)


@pytest.mark.parametrize("name", sorted(FUNCTIONS))
def test_functions_have_the_same_parameters(name):
    assert described(FUNCTIONS[name].args) == told_parameters(getattr(gantrel, name))


@pytest.mark.parametrize("name", sorted(CLASSES))
def test_classes_have_the_same_members(name):
    kind, (methods, properties) = getattr(gantrel, name), members(CLASSES[name])
    own = {key: value for key, value in vars(kind).items()
           if not key.startswith("_") or isinstance(value, property) or key in methods}
    assert {key: value.fset is not None for key, value in own.items() if isinstance(value, property)} == properties
    assert {key for key, value in own.items() if not isinstance(value, property)} == set(methods)
    for key, value in own.items():
        assert key.startswith("__") or value.__doc__, f"{name}.{key}"


@pytest.mark.parametrize("name", sorted(CLASSES))
def test_methods_have_the_same_parameters(name):
    methods, _ = members(CLASSES[name])
    for key, node in methods.items():
        if key != "__init__" and key.startswith("__") or node.decorator_list:
            continue
        positional, keywords, defaults = told_parameters(getattr(getattr(gantrel, name), key))
        assert described(node.args) == ([one for one in positional if one != "self"], keywords, defaults)


def test_the_package_says_that_it_has_types():
    assert (PACKAGE / "py.typed").exists()
