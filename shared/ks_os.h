// The few things that are asked of the operating system directly.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <string_view>

/// Texts and paths are UTF-8.
namespace kst {
namespace os {

/// Blocks the calling thread; a signal may end it early. Windows freeze meanwhile: they use kst::GuiSleep.
void Sleep(unsigned milliseconds);
std::string GetTempDir(); ///< the user's own, without a slash at the end

/// Calls back for every byte of the name that a file name cannot have, in order and repeats included.
void ForEachInvalidFilenameCharacter(std::string_view filename, const std::function<void(char)>& callback);
bool HasInvalidFilenameCharacters(std::string_view filename);
/// @throws kst::Exception  "invalid {} {} in filename {}" with each such character once
void ThrowIfFilenameHasInvalidCharacters(std::string_view filename);

/// What users call the program that LaunchExplorerOrThrow opens.
std::string GetWindowsExplorerString();
/// Shows a file or folder in the desktop's file browser, without waiting for it; whether that worked is not
/// known.
/// @throws kst::Exception  "file {} does not exist"
void LaunchExplorerOrThrow(const std::string& path);

std::string FindAssetEditor(); ///< the application's bundle path; empty if it is not installed
/// Opens a file in the asset editor, without waiting for it; whether that worked is not known. Does nothing
/// when the editor is not installed.
/// @throws kst::Exception  none at present; callers are to expect it
void LaunchAssetEditorWithFileOrThrow(std::string_view file);

} // namespace os
} // namespace kst
