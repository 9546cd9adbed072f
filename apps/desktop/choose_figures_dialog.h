// Choosing what is to be converted, and to what.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;

namespace openhost {
class ContentScan;
} // namespace openhost

namespace desktop {

class FigureList;

/// The figures of the content folders appear while they are being looked for.
class ChooseFiguresDialog : public QDialog {
    Q_OBJECT

public:
    explicit ChooseFiguresDialog(QWidget* parent);
    ~ChooseFiguresDialog() override;

    QString sourceFile() const;
    QString targetFile() const;

private slots:
    void takeFound();
    void updateButton();
    void acceptChoice();

private:
    QString stateText() const;

    FigureList* _source;
    FigureList* _target;
    QLabel* _state;
    QPushButton* _convert;
    std::size_t _taken = 0; ///< of the scan's files
    std::unique_ptr<openhost::ContentScan> _scan;
};

} // namespace desktop
