// A check box for a name of any length.
// SPDX-License-Identifier: MIT

#pragma once

#include <QCheckBox>
#include <QString>

/// Shows the name just as it is, on several lines when it is long; text() is the whole name on one line, its
/// ampersands doubled so that none is a mnemonic.
class GntNameBox : public QCheckBox {
public:
    GntNameBox(const QString& name, QWidget* parent);
    ~GntNameBox() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The name as it is drawn in the present font, ampersands doubled.
    QString lines() const;

    const QString _name;
};
