// Modal windows where nobody can answer them.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QDialog;

namespace openhost {

/// An event filter for an application without a display: a modal dialog that opens is written to the log and
/// answered at once with what closing it means, so that nothing waits for a click.
class HeadlessDialogs : public QObject {
    Q_OBJECT
public:
    explicit HeadlessDialogs(QObject* parent) : QObject(parent) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace openhost
