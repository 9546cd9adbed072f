// What all classes of the module have in common.
// SPDX-License-Identifier: MIT

#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// For classes that scripts make by calling them. Objects that `__new__` alone makes would have no value
/// behind them, so calling a class makes and fills them in one, and `__new__` refuses; see SealClasses().
pybind11::metaclass CallableClass();

/// To be called when the classes have all that they are to have: no object comes from `__new__`, and none is
/// pickled or copied, which both make one that way, but where a class says itself how.
void SealClasses(const pybind11::module_& module);

} // namespace python
