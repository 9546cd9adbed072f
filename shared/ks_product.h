// What the shared library knows of the product that it is built into: the product defines these constants.
// SPDX-License-Identifier: MIT

#pragma once

namespace kst {
namespace product {

extern const char* const TITLE;      ///< plug-in title, UTF-8
extern const char* const LOG_PREFIX; ///< before every log line, with its trailing blank

/// Shown through the format "V{}.{}.{}".
struct Version {
    int majorNumber, minorNumber, revision;
};
extern const Version VERSION;

} // namespace product
} // namespace kst
