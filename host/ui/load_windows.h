// Windows for what loading content has to ask or tell.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene/load_questions.h"

namespace openhost {

/// Each is modal, and ends when a person, or a program in that person's place, has answered it.
class LoadWindows : public LoadQuestions {
public:
    void missingFiles(const QStringList& files) override;
    void openError(const QString& file, const QString& reason) override;
    void duplicateFormulas(const QStringList& outputs) override;
    bool presetExceedsLimits(const QStringList& dials) override;
    bool dformOptions(DFormLoadOptions& options) override;
};

} // namespace openhost
