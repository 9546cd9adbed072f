// What a finished conversion tells in words.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_outcome.h"

#include <cstdint>
#include <string>

/// The note about morphs that could not be found, with their values in percent: HTML, in order of their
/// names, which are taken as they are. Empty when none is missing.
std::string GntMissingNote(const GntMissingMorphs& missing);

/// Whole seconds, begun ones left out, such as "59 seconds".
std::string GntElapsedText(std::int64_t milliseconds);
