// The menu actions of the plug-in.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMetaType>

#include <dzaction.h>

/// Both actions stand in the same menu and the same group.
class GntActionBase : public DzAction {
    Q_OBJECT
public:
    GntActionBase(const QString& text, const QString& description);
    ~GntActionBase();

    QString getActionGroup() const override;
    QString getDefaultMenuPath() const override;
};

/// Converts what is selected. Ctrl+Alt+C.
class GntConvertFigureAction : public GntActionBase {
    Q_OBJECT
public:
    GntConvertFigureAction();
    ~GntConvertFigureAction();

    QKeySequence getDefaultAccel() const override;

protected:
    /// Tells the user what went wrong; says nothing when the user cancelled. Any other exception than a
    /// std::exception ends the process.
    void executeAction() override;
};

class GntOpenManualAction : public GntActionBase {
    Q_OBJECT
public:
    GntOpenManualAction();
    ~GntOpenManualAction();

protected:
    void executeAction() override;
};

Q_DECLARE_METATYPE(GntConvertFigureAction*)
Q_DECLARE_METATYPE(GntOpenManualAction*)
