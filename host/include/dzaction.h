// Menu actions.
// SPDX-License-Identifier: MIT

#pragma once

#include <QAction>
#include <QKeySequence>

class DzAction : public QAction {
    Q_OBJECT
public:
    explicit DzAction(const QString& text = QString(), const QString& description = QString(),
                      bool isToggle = false);
    ~DzAction();

    /// Group in the customisation dialog.
    Q_INVOKABLE virtual QString getActionGroup() const;
    /// Menus with '/' between levels and '&' before mnemonics.
    Q_INVOKABLE virtual QString getDefaultMenuPath() const;
    virtual QKeySequence getDefaultAccel() const;
    Q_INVOKABLE QString getDescription() const { return _description; }

signals:
    void preExecute();

protected:
    virtual void executeAction();

private slots:
    void handleTriggered();

private:
    QString _description;
};
