// Who is told and asked what a person should know or decide.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class DzFileIOSettings;

namespace openhost {

/// How a D-Former preset is applied.
struct DFormLoadOptions {
    QString name;                 ///< of the new D-Former; never empty
    bool replaceSameName = false; ///< D-Formers of that name on the figure are removed first
};

/// One option of a file as a dialog shows it.
struct OptionRow {
    enum Kind { Flag, Choice, Number, Whole };

    const char* group; ///< heading under which rows stand together, in the table's order
    const char* key;   ///< in the option set
    const char* label;
    Kind kind = Flag;
    QStringList choices = {};    ///< of a choice: the values as they are stored
    double min = 0.0, max = 0.0; ///< of a number
};

/// The answers here are those of a host that nobody watches. An implementation may run an event loop, so the
/// caller looks at the scene anew after each call.
class Attendant {
public:
    virtual ~Attendant();

    /// Files that were referred to and not found, as they were named. Loading goes on.
    virtual void tellMissingFiles(const QStringList& files);
    virtual void tellOpenError(const QString& file, const QString& reason);
    /// Properties, as the files name them, that several of a figure's formulas drive in the same way. Loading
    /// goes on with all of these formulas.
    virtual void tellDuplicateFormulas(const QStringList& outputs);
    /// Long work is about to show its next text. An exception from here ends the work as one of its own
    /// would.
    virtual void beforeProgress();
    /// A load goes on to the next of many files; called often, and on any thread. An exception from here ends
    /// the load.
    virtual void beforeReading();

    /// Whether a file may be loaded in place of all that is in the scene.
    virtual bool mayReplaceScene(const QString& file);
    /// Whether morphs may be saved over files that hold others.
    /// @param files  all of them, with their folders
    /// @return nothing where nobody can be asked, and the files stay
    virtual std::optional<bool> mayReplaceFiles(const QStringList& files);
    /// Dials, by label, whose limits a preset goes beyond.
    /// @return true to switch these dials' limits off, false to stay within them
    virtual bool mayExceedLimits(const QStringList& dials);
    /// @param options  what is proposed; changed to what is wanted
    /// @return false to leave the preset alone
    virtual bool chooseDFormOptions(DFormLoadOptions& options);
    /// @param options  what is proposed; changed to what is wanted, those that the rows do not name being
    /// kept
    /// @return false to neither read nor write the file, the options being as they were
    virtual bool chooseFileOptions(const QString& title, const std::vector<OptionRow>& rows,
                                   DzFileIOSettings& options);
    /// @param title        names what is saved
    /// @param startingDir  folder to begin in
    /// @return empty for a refusal; nothing where nobody can be asked
    virtual std::optional<QString> chooseFileToSave(const QString& title, const QString& startingDir);
};

} // namespace openhost
