// The parts of the module, in the order in which they know each other.
// SPDX-License-Identifier: MIT

#pragma once

#include <pybind11/pybind11.h>

namespace python {

void BindMeshes(pybind11::module_& module);
void BindMatches(pybind11::module_& module);
void BindMorphs(pybind11::module_& module);
void BindLibrary(pybind11::module_& module);
void BindConversion(pybind11::module_& module);

} // namespace python
