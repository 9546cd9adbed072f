// Errors and diagnostics as Python has them.
// SPDX-License-Identifier: MIT

#include "errors.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "command.h"
#include "dials.h"
#include "error_sentence.h"
#include "geometry/errors.h"
#include "ks_exception.h"

#include <exception>
#include <new>
#include <stdexcept>

namespace python {

namespace {

void SetError(const char* kind, const std::string& text)
{
    const py::object type = py::module_::import("gantrel.errors").attr(kind);
    PyErr_SetObject(type.ptr(), Text(app::ErrorSentence(text)).ptr());
}

void Translate(std::exception_ptr error)
{
    try {
        if (error)
            std::rethrow_exception(error);
    } catch (const base::Cancelled&) {
        SetError("Cancelled", "the work was interrupted");
    } catch (const cli::UsageError& e) {
        SetError("UsageError", e.what());
    } catch (const cli::UnknownDial& e) {
        SetError("UnknownDialError", e.what());
    } catch (const geometry::TopologyError& e) {
        SetError("MeshError", e.what());
    } catch (const base::IoError& e) {
        SetError("FileError", e.what());
    } catch (const base::FormatError& e) {
        SetError("FormatError", e.what());
    } catch (const base::Error& e) {
        SetError("Error", e.what());
    } catch (const kst::Exception& e) {
        SetError("Error", e.what());
    } catch (const std::bad_alloc&) {
        PyErr_SetString(PyExc_MemoryError, "There is not enough memory.");
    } catch (const py::builtin_exception&) {
        throw; // Python's own, such as that of a wrong type
    } catch (const std::runtime_error& e) {
        SetError("Error", e.what());
    }
}

} // namespace

py::str Text(const std::string& text)
{
    PyObject* const decoded =
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
    if (!decoded)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(decoded);
}

void Raise(const char* kind, const std::string& text)
{
    SetError(kind, text);
    throw py::error_already_set();
}

namespace {

/// A warning is about the caller's line, which calls by way of a frame of our own where arguments are
/// checked.
Py_ssize_t StackLevel()
{
    PyObject* const globals = PyEval_GetGlobals();
    PyObject* const name = globals ? PyDict_GetItemString(globals, "__name__") : nullptr;
    const bool isOurs = name && PyUnicode_CompareWithASCIIString(name, "gantrel._arguments") == 0;
    return isOurs ? 2 : 1;
}

} // namespace

void Warn(const base::Diagnostics& diagnostics)
{
    const py::object category = py::module_::import("gantrel.errors").attr("Warning");
    for (const base::Diagnostic& one : diagnostics) {
        if (one.severity == base::Severity::Note)
            continue;
        const std::string line = py::str(Text(base::ToLine(one))).cast<std::string>();
        if (PyErr_WarnEx(category.ptr(), line.c_str(), StackLevel()) != 0)
            throw py::error_already_set();
    }
}

void TranslateErrors()
{
    py::register_exception_translator(&Translate);
}

} // namespace python
