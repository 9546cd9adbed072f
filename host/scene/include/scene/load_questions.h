// What loading content may have to ask or tell a person.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace openhost {

/// How a D-Former preset is applied.
struct DFormLoadOptions {
    QString name;                 ///< of the new D-Former; never empty
    bool replaceSameName = false; ///< D-Formers of that name on the figure are removed first
};

/// Tells and asks. The answers here are those of a host that nobody watches; windows are one room up. An
/// implementation may run an event loop, so the caller looks at the scene anew after each call.
class LoadQuestions {
public:
    virtual ~LoadQuestions();

    /// Files that were referred to and not found, as they were named. Loading goes on.
    virtual void missingFiles(const QStringList& files);
    /// A file could not be opened.
    virtual void openError(const QString& file, const QString& reason);
    /// Properties, as the files name them, that several of a figure's formulas drive in the same way. Loading
    /// goes on with all of these formulas.
    virtual void duplicateFormulas(const QStringList& outputs);
    /// Dials, by label, whose limits a preset goes beyond.
    /// @return true to switch these dials' limits off, false to stay within them
    virtual bool presetExceedsLimits(const QStringList& dials);
    /// @param options  what is proposed; changed to what is wanted
    /// @return false to leave the preset alone
    virtual bool dformOptions(DFormLoadOptions& options);
};

/// @param questions  borrowed; null for the answers of a host that nobody watches
void SetLoadQuestions(LoadQuestions* questions);
LoadQuestions& CurrentLoadQuestions();

} // namespace openhost
