// What the shared library is told about this product.
// SPDX-License-Identifier: MIT

#include "ks_product.h"

namespace kst {
namespace product {

const char* const TITLE = "Kestrom's Gantrel";
const char* const LOG_PREFIX = "KeGNT: ";
const Version VERSION = {1, 0, 5};

} // namespace product
} // namespace kst
