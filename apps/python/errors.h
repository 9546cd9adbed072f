// Errors and diagnostics as Python has them.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <string>

#include <pybind11/pybind11.h>

namespace python {

namespace py = pybind11;

/// As text of Python; what is not UTF-8 becomes replacement characters.
py::str Text(const std::string& text);

/// Throws the package's exception of that name, such as "ClosedError", with the text as one sentence. The
/// caller has the interpreter's lock.
[[noreturn]] void Raise(const char* kind, const std::string& text);

/// Tells each as a gantrel.Warning; notes are left out. The caller has the interpreter's lock.
/// @throws py::error_already_set  the program turns such warnings into errors
void Warn(const base::Diagnostics& diagnostics);

/// Errors of the libraries become the package's from now on.
void TranslateErrors();

} // namespace python
