// What stands in a corner of the view while figures are compared.
// SPDX-License-Identifier: MIT

#include "comparison_panel.h"

#include "color_bar.h"
#include "compared_figures.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>

#include <algorithm>

namespace desktop {

namespace {

QString Millimetres(double centimetres)
{
    return ComparisonPanel::tr("%1 mm").arg(
        QString::number(app::millimetresPerCentimetre * centimetres, 'f', 2));
}

QString NumbersOf(const DifferenceAnswer& answer, double top)
{
    const app::ColorScale scale{top};
    std::size_t beyond = 0, all = 0;
    for (const std::vector<float>& distances : answer.distances) {
        all += distances.size();
        beyond += static_cast<std::size_t>(
            std::count_if(distances.begin(), distances.end(), [&scale](float distance) {
                return std::isfinite(distance) && scale.position(distance) > 1.0;
            }));
    }
    const QString unknown =
        answer.unknown == 0
            ? QString()
            : ComparisonPanel::tr("%1 vertices could not be measured, in grey.").arg(answer.unknown);
    if (answer.unknown == all)
        return all == 0 ? ComparisonPanel::tr("There is nothing to measure.") : unknown;
    QString text = ComparisonPanel::tr("Mean %1, p95 %2, max %3")
                       .arg(Millimetres(answer.summary.mean), Millimetres(answer.summary.p95),
                            Millimetres(answer.summary.max));
    text += QLatin1Char('\n');
    text += beyond == 0 ? ComparisonPanel::tr("Nothing lies beyond the scale.")
                        : ComparisonPanel::tr("%1 of %2 vertices lie beyond the scale, in blue-green.")
                              .arg(beyond)
                              .arg(all);
    return unknown.isEmpty() ? text : text + QLatin1Char('\n') + unknown;
}

QComboBox* MakeChoice(const char* objectName)
{
    auto* const choice = new QComboBox;
    choice->setObjectName(QLatin1String(objectName));
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(14);
    return choice;
}

} // namespace

ComparisonPanel::ComparisonPanel(QWidget& view, ComparedFigures& figures)
    : Overlay(view, Qt::AlignBottom | Qt::AlignLeft), _figures(figures),
      _source(MakeChoice("ComparedSource")), _result(MakeChoice("ComparedResult"))
{
    setObjectName(QStringLiteral("ComparisonPanel"));
    setPreferredSize(QSize(42 * fontMetrics().averageCharWidth(), 0));
    setAccessibleName(tr("Compared figures"));
    auto* const grid = new QGridLayout(this);
    const int margin = fontMetrics().height() / 2;
    grid->setContentsMargins(margin, margin, margin, margin);
    auto* const resultTitle = new QLabel(tr("Result"));
    auto* const sourceTitle = new QLabel(tr("Source"));
    resultTitle->setBuddy(_result);
    sourceTitle->setBuddy(_source);
    _result->setAccessibleName(tr("Result"));
    _source->setAccessibleName(tr("Source"));
    grid->addWidget(sourceTitle, 0, 0);
    grid->addWidget(_source, 0, 1);
    grid->addWidget(resultTitle, 1, 0);
    grid->addWidget(_result, 1, 1);
    grid->setColumnStretch(1, 1);
    _difference = makeDifference();
    grid->addWidget(_difference, 2, 0, 1, 2);
    connect(_source, SIGNAL(activated(int)), SLOT(chooseSource(int)));
    connect(_result, SIGNAL(activated(int)), SLOT(chooseResult(int)));
    connect(&_figures, SIGNAL(changed()), SLOT(showFigures()));
    showFigures();
}

QWidget* ComparisonPanel::makeDifference()
{
    auto* const part = new QWidget;
    auto* const grid = new QGridLayout(part);
    grid->setContentsMargins(0, 0, 0, 0);
    _bar = new ColorBar(part);
    _isAutomatic = new QCheckBox(tr("Automatic"));
    _isAutomatic->setToolTip(tr("Ends the scale at a round number that hardly any place exceeds."));
    _isAutomatic->setAccessibleDescription(_isAutomatic->toolTip());
    _isAutomatic->setObjectName(QStringLiteral("DifferenceScaleAutomatic"));
    _isAutomatic->setChecked(true);
    _top = new QDoubleSpinBox;
    _top->setObjectName(QStringLiteral("DifferenceScale"));
    _top->setAccessibleName(tr("End of the scale"));
    _top->setDecimals(3); // an automatic end may be 0.015
    _top->setRange(0.01, 10000.0);
    _top->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    _top->setSuffix(tr(" mm"));
    _top->setKeyboardTracking(false);
    _top->setEnabled(false);
    _numbers = new QLabel;
    _numbers->setObjectName(QStringLiteral("DifferenceNumbers"));
    _numbers->setWordWrap(true);
    _numbers->setMinimumHeight(3 * fontMetrics().lineSpacing());
    _numbers->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    _numbers->setTextInteractionFlags(Qt::TextSelectableByMouse);
    grid->addWidget(_bar, 0, 0, 1, 2);
    grid->addWidget(_isAutomatic, 1, 0);
    grid->addWidget(_top, 1, 1);
    grid->addWidget(_numbers, 2, 0, 1, 2);
    connect(_isAutomatic, SIGNAL(toggled(bool)), SLOT(changeScale()));
    connect(_top, SIGNAL(valueChanged(double)), SLOT(changeScale()));
    return part;
}

void ComparisonPanel::showDifference(bool isShown)
{
    _difference->setVisible(isShown);
    takeCorner();
}

double ComparisonPanel::topFor(const DifferenceAnswer& answer) const
{
    return _isAutomatic->isChecked() ? answer.scale.topMm : _top->value();
}

void ComparisonPanel::showAnswer(const DifferenceAnswer& answer)
{
    if (!answer.trouble.isEmpty()) {
        showText(tr("The difference could not be measured: %1.").arg(answer.trouble));
        return;
    }
    const double top = topFor(answer);
    const QSignalBlocker blocker(_top);
    if (_isAutomatic->isChecked())
        _top->setValue(top);
    _bar->setTop(top);
    showText(NumbersOf(answer, top));
}

void ComparisonPanel::showText(const QString& text)
{
    _numbers->setText(text);
    takeCorner();
}

void ComparisonPanel::changeScale()
{
    _top->setEnabled(!_isAutomatic->isChecked());
    emit scaleChanged();
}

void ComparisonPanel::showFigures()
{
    for (QComboBox* const choice : {_source, _result}) {
        choice->clear();
        for (const QPointer<DzSkeleton>& figure : _figures.all())
            choice->addItem(figure ? figure->getLabel() : QString());
        DzSkeleton* const chosen = choice == _source ? _figures.source() : _figures.result();
        choice->setCurrentIndex(chosen ? _figures.all().indexOf(chosen) : -1);
    }
    takeCorner();
}

void ComparisonPanel::chooseSource(int index)
{
    _figures.setSource(_figures.all().value(index));
}

void ComparisonPanel::chooseResult(int index)
{
    _figures.setResult(_figures.all().value(index));
}

} // namespace desktop
