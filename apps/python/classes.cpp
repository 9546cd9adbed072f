// What all classes of the module have in common.
// SPDX-License-Identifier: MIT

#include "classes.h"

#include <array>
#include <cstring>
#include <string>

#include <fmt/format.h>

namespace python {

namespace py = pybind11;

namespace {

std::string NameOf(const py::handle& type)
{
    return py::str(type.attr("__name__")).cast<std::string>();
}

std::string NewSentence(const std::string& name)
{
    return fmt::format("{0}.__new__ makes no object; {0} objects come from the functions of gantrel, or from "
                       "calling the class where it can be called",
                       name);
}

PyObject* RaiseAtNew(PyTypeObject* type, PyObject* /*arguments*/, PyObject* /*keywords*/)
{
    const char* const dot = std::strrchr(type->tp_name, '.');
    PyErr_SetString(PyExc_TypeError, NewSentence(dot ? dot + 1 : type->tp_name).c_str());
    return nullptr;
}

void RefuseNew(const py::handle& type)
{
    const auto refuse = [sentence = NewSentence(NameOf(type))](const py::args&,
                                                               const py::kwargs&) -> py::object {
        throw py::type_error(sentence);
    };
    py::setattr(type, "__new__", py::staticmethod(py::cpp_function(refuse, py::name("__new__"))));
    // The attribute is for those who ask by name; this is for the class that it is made from, whose own
    // __new__ would make an object of this one otherwise.
    reinterpret_cast<PyTypeObject*>(type.ptr())->tp_new = &RaiseAtNew;
}

bool IsWhole(PyObject* object)
{
    for (const py::detail::value_and_holder& part :
         py::detail::values_and_holders(reinterpret_cast<py::detail::instance*>(object)))
        if (!part.holder_constructed())
            return false;
    return true;
}

PyObject* MakeAndFill(PyObject* type, PyObject* arguments, PyObject* keywords)
{
    auto* const made = reinterpret_cast<PyTypeObject*>(type);
    PyObject* const object = py::detail::make_new_instance(made);
    if (!object)
        return nullptr;
    const bool isFilled = made->tp_init(object, arguments, keywords) == 0;
    if (isFilled && IsWhole(object))
        return object;
    if (isFilled) // a class of a script's own
        PyErr_Format(PyExc_TypeError, "%s.__init__ does not call that of the class it is made from",
                     made->tp_name);
    Py_DECREF(object);
    return nullptr;
}

void RefusePickling(const py::handle& type)
{
    const std::string sentence = fmt::format(
        "{} objects can neither be pickled nor copied: they belong to this process", NameOf(type));
    const auto refuse = [sentence](const py::args&) -> py::object { throw py::type_error(sentence); };
    for (const char* const name : {"__reduce__", "__reduce_ex__"})
        py::setattr(type, name, py::cpp_function(refuse, py::name(name), py::is_method(type)));
}

void Seal(const py::handle& type)
{
    RefuseNew(type);
    const py::dict own(type.attr("__dict__"));
    if (!own.contains("__reduce__"))
        RefusePickling(type);
}

} // namespace

py::metaclass CallableClass()
{
    static PyObject* const metaclass = [] {
        std::array<PyType_Slot, 2> slots{{{Py_tp_call, reinterpret_cast<void*>(&MakeAndFill)}, {0, nullptr}}};
        PyType_Spec spec{"gantrel._gantrel.class", 0, 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE,
                         slots.data()};
        const py::tuple bases = py::make_tuple(py::reinterpret_borrow<py::object>(
            reinterpret_cast<PyObject*>(py::detail::get_internals().default_metaclass)));
        PyObject* const made = PyType_FromSpecWithBases(&spec, bases.ptr());
        if (!made)
            throw py::error_already_set();
        return made;
    }();
    return py::metaclass(py::reinterpret_borrow<py::object>(metaclass));
}

void SealClasses(const py::module_& module)
{
    const py::dict members(module.attr("__dict__"));
    for (const auto& [name, member] : members)
        if (py::isinstance<py::type>(member))
            Seal(member);
}

} // namespace python
