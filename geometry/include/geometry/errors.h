// What can go wrong with meshes.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/errors.h"

namespace geometry {

/// Two arrays or meshes that belong together do not fit, or a mesh is not one that the method can take.
class TopologyError : public base::Error {
public:
    explicit TopologyError(const std::string& text) : base::Error(text) {}
    template <class... Args>
    TopologyError(fmt::format_string<Args...> format, Args&&... args)
        : base::Error(fmt::format(format, std::forward<Args>(args)...))
    {
    }
};

} // namespace geometry
