// Deleting the selection.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzaction.h"

/// Deletes every selected node with its children. Enabled while something is selected.
class DzDeleteAction : public DzAction {
    Q_OBJECT
public:
    DzDeleteAction();
    ~DzDeleteAction();

    QString getActionGroup() const override;
    QString getDefaultMenuPath() const override;
    QKeySequence getDefaultAccel() const override;

protected:
    void executeAction() override;

private slots:
    void updateEnabled();
};
