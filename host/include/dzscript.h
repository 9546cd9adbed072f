// Scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

#include <QStringList>
#include <QVariant>

#include <memory>

/// ECMAScript code that drives the host. Each run has an engine of its own with the scene, the main window,
/// the application, the host's classes and its functions as globals, so that nothing is left of a run but
/// what it did and its result. What a script makes with `new` and gives to nobody goes with the run.
class DzScript : public DzBase {
    Q_OBJECT
public:
    DzScript();
    ~DzScript();

    Q_INVOKABLE void addLine(const QString& line, int indent = 0); ///< indent in levels of four blanks
    Q_INVOKABLE void addCode(const QString& code);
    Q_INVOKABLE void setCode(const QString& code);
    Q_INVOKABLE QString getCode() const;
    Q_INVOKABLE void clear();
    /// Takes the file's text as code. False, and nothing changed, when it cannot be read.
    Q_INVOKABLE bool loadFromFile(const QString& filename, bool convert = false);
    Q_INVOKABLE QString getFilename() const; ///< empty for code that came from no file
    /// What errors call code that came from elsewhere.
    void setFilename(const QString& filename);

    /// False, with errorMessage and errorLine, when the code cannot be parsed.
    Q_INVOKABLE bool checkSyntax();
    /// Runs the code. False when it throws, cannot be parsed or is stopped.
    /// @param args  what getArguments() gives the script
    Q_INVOKABLE bool execute();
    Q_INVOKABLE bool execute(const QVariantList& args);
    /// Runs the code, then the function of that name with the arguments.
    Q_INVOKABLE bool call(const QString& function, const QVariantList& args);

    /// Of the last run: the value of the last statement, or what the function returned. Invalid after a
    /// failure.
    Q_INVOKABLE QVariant result() const;
    Q_INVOKABLE QString errorMessage() const; ///< empty after a success
    Q_INVOKABLE int errorLine() const;        ///< from 1; -1 for none
    /// Whose line it is: of scripts that include others, one of these. Empty for code that has no name.
    QString errorFile() const;
    Q_INVOKABLE QStringList stackTrace() const;
    /// What the script called exit() with; another status than 0 counts as a failure.
    int exitStatus() const;

    /// Runs a piece of code; the object's members can be named without it. Invalid on an error, which is
    /// logged.
    static QVariant evaluate(const QString& code, QObject* context = 0);

    /// Ends a run that takes longer, in milliseconds; 0, the default, for none.
    void setTimeLimit(int milliseconds);
    /// Ends every run, now and until the next one begins. May be called from a signal handler.
    static void stopAll();
    /// The errno with which a script's print() failed, which ends every run; 0 for none.
    static int outputError();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
