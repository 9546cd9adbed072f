// The small library in the host of a test.
// SPDX-License-Identifier: MIT

#pragma once

class DzFigure;

/// Makes the library a content directory; its files are written once a process. Temporary files go into the
/// test's folder.
void AddMiniLibrary();
/// Adds a file of the library to the scene.
/// @return what it brings, which is selected then
DzFigure& LoadMini(const char* relativePath);
