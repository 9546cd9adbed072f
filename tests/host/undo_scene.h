// All of a scene that steps take back, as text.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Tree, selection, labels, values to the bit, links, followers, morphs. Each object is named by its number
/// in the order in which they were made, so that another one in its place shows.
std::string SceneText();
