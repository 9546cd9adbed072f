// A notice that goes away by itself.
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

#include <QMessageBox>

namespace kst {

/// Shows a text without waiting for the user and deletes itself when its time is over. Make it with new and
/// never delete it.
class TimedNoticeBox : public QMessageBox {
    Q_OBJECT

public:
    /// Shown and painted when this returns.
    /// @param text  rich text, shown as a heading
    TimedNoticeBox(QWidget* parent, std::string_view text, int milliseconds);
    ~TimedNoticeBox() override;

private slots:
    void slotDelayedDelete();
};

} // namespace kst
