// A point as an array of three floats.
// SPDX-License-Identifier: MIT

#pragma once

/// An element of a mesh's vertex array.
typedef float DzPnt3[3];
