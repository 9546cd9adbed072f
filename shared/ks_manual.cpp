// Opening a plug-in's manual.
// SPDX-License-Identifier: MIT

#include "ks_manual.h"

#include "ks_critical-box.h"
#include "ks_string.h"
#include "ks_wait-cursor.h"

#include <QFileInfo>

#include <fmt/format.h>

#include <dzapp.h>

namespace kst {
namespace daz {

namespace {

const char* const failure = "Could not open PDF file";

void ShowManual(const char* manualName)
{
    const std::string path =
        fmt::format("{0}/Plugins/{1}/{1} Manual.pdf", str::ToStd(dzApp->getDocumentationPath()), manualName);
    if (!QFileInfo(str::ToQ(path)).exists()) {
        CriticalBox(failure,
                    fmt::format("The file {} does not exist. Did you install the plugin correctly?",
                                str::Quote(path)),
                    nullptr, true);
        return;
    }
    const WaitCursor waiting;
    // With the slash that the path begins with there are four, and the path is not encoded: the host takes
    // such an address.
    dzApp->showURL(str::ToQ("file:///" + path));
}

} // namespace

void OpenPluginManual(const char* manualName) noexcept
{
    CallOutermost(failure, nullptr, [manualName] { ShowManual(manualName); });
}

} // namespace daz
} // namespace kst
