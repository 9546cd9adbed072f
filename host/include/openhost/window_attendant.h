// Windows for what a person should know or decide.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/attendant.h"

namespace openhost {

/// Each window is modal, and ends when a person, or a program in that person's place, has answered it. It
/// stands over the application's dialog parent.
class WindowAttendant : public Attendant {
public:
    void tellMissingFiles(const QStringList& files) override;
    void tellOpenError(const QString& file, const QString& reason) override;
    void tellDuplicateFormulas(const QStringList& outputs) override;
    std::optional<bool> mayReplaceFiles(const QStringList& files) override;
    bool mayExceedLimits(const QStringList& dials) override;
    bool chooseDFormOptions(DFormLoadOptions& options) override;
    bool chooseFileOptions(const QString& title, const std::vector<OptionRow>& rows,
                           DzFileIOSettings& options) override;
    std::optional<QString> chooseFileToSave(const QString& title, const QString& startingDir) override;
};

} // namespace openhost
