// A figure in the scene, as Python has it.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzfigure.h"
#include "open_library.h"

#include <filesystem>
#include <memory>

#include <QPointer>

namespace python {

/// Lasts as long as its library is open.
struct Figure {
    std::shared_ptr<OpenLibrary> origin; ///< that it lies in
    QPointer<DzFigure> node;
    std::filesystem::path file; ///< that it was loaded from

    /// Throws a ClosedError, or a BusyError where this call may not use it.
    DzFigure& use() const;
};

} // namespace python
