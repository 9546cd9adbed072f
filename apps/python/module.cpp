// The Python module.
// SPDX-License-Identifier: MIT

#include "bindings.h"
#include "classes.h"
#include "errors.h"
#include "work.h"

PYBIND11_MODULE(_gantrel, module)
{
    module.doc() = "The compiled part of gantrel.";
    module.attr("__version__") = GANTREL_VERSION;
    python::TranslateErrors();
    python::WatchForInterrupts();
    python::BindMeshes(module);
    python::BindMatches(module);
    python::BindMorphs(module);
    python::BindLibrary(module);
    python::BindConversion(module);
    python::SealClasses(module);
}
