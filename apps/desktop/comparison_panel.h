// What stands in a corner of the view while figures are compared.
// SPDX-License-Identifier: MIT

#pragma once

#include "difference_work.h"
#include "overlay.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;

namespace desktop {

class ColorBar;
class ComparedFigures;

/// Chooses the two figures; for the difference, shows the scale of colours and the numbers.
class ComparisonPanel : public Overlay {
    Q_OBJECT

public:
    /// @param view     whose lower left corner it takes; owns it
    /// @param figures  borrowed; they have to outlive it
    ComparisonPanel(QWidget& view, ComparedFigures& figures);

    void showDifference(bool isShown);
    /// Millimetres at the end of the scale, of the user's or of the answer's own.
    double topFor(const DifferenceAnswer& answer) const;
    void showAnswer(const DifferenceAnswer& answer);
    /// Without an answer.
    void showText(const QString& text);

signals:
    void scaleChanged();

private slots:
    void showFigures();
    void chooseSource(int index);
    void chooseResult(int index);
    void changeScale();

private:
    QWidget* makeDifference();

    ComparedFigures& _figures;
    QComboBox* _source;
    QComboBox* _result;
    QWidget* _difference = nullptr;
    ColorBar* _bar = nullptr;
    QCheckBox* _isAutomatic = nullptr;
    QDoubleSpinBox* _top = nullptr;
    QLabel* _numbers = nullptr;
};

} // namespace desktop
