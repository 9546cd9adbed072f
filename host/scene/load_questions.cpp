// What loading content may have to ask or tell a person.
// SPDX-License-Identifier: MIT

#include "scene/load_questions.h"

#include "app/host_log.h"

namespace openhost {

namespace {

LoadQuestions* g_questions = nullptr;

} // namespace

LoadQuestions::~LoadQuestions() = default;

// What was found is in the log already; the loader writes it in any case.
void LoadQuestions::missingFiles(const QStringList&) {}
void LoadQuestions::openError(const QString&, const QString&) {}
void LoadQuestions::duplicateFormulas(const QStringList&) {}

bool LoadQuestions::presetExceedsLimits(const QStringList&)
{
    return false;
}

bool LoadQuestions::dformOptions(DFormLoadOptions& options)
{
    LogNote(QStringLiteral("not shown without display: D-Former Load Options; %1 is added as it is")
                .arg(options.name));
    return true;
}

void SetLoadQuestions(LoadQuestions* questions)
{
    g_questions = questions;
}

LoadQuestions& CurrentLoadQuestions()
{
    static LoadQuestions unattended;
    return g_questions ? *g_questions : unattended;
}

} // namespace openhost
