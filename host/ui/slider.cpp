// What the sliders have in common.
// SPDX-License-Identifier: MIT

#include "dzslider.h"

#include "openhost/plain_tip.h"
#include "slider_access.h"
#include "slider_picture.h"
#include "slider_text.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

constexpr int leastDrag = 3; ///< pixels; a shaking hand means a click

} // namespace

struct DzSlider::Impl {
    explicit Impl(DzSlider& owner, const QString& text, bool whole)
        : slider(owner), label(text), isWhole(whole)
    {
    }

    DzSlider& slider;
    QString label;
    bool isWhole;
    bool isLabelVisible = true, isTextVisible = true, isTextEditable = false, isFullLengthEdit = false;
    bool isClamped = false, asPercent = false, isRestorable = true, isIndeterminate = false;
    double number = 0.0, min = 0.0, max = 1.0, defaultNumber = 0.0, step = 0.0;

    bool isHovered = false;
    bool isPressed = false; ///< the left button went down here
    bool isDragging = false;
    QPoint pressedAt;
    QPoint draggedTo;
    double pressedNumber = 0.0;
    double draggedNumber =
        0.0; ///< neither rounded nor kept within limits, so that the handle follows the hand
    bool pressedIndeterminate = false;
    int wheelRest = 0;           ///< of a notch, for wheels that turn more finely
    QLineEdit* editor = nullptr; ///< a child, made when it is first needed
    bool isTyping = false;
    openhost::Quantity quantity = openhost::Quantity::Plain;

    openhost::NumberStyle style() const { return {isWhole, asPercent, max - min, quantity}; }
    QString format(double value) const { return openhost::FormatNumber(value, style()); }

    /// Of the bar; a range of nothing has all values at its left end.
    double fraction(double value) const
    {
        return max > min ? std::clamp((value - min) / (max - min), 0.0, 1.0) : 0.0;
    }

    QString widestText() const
    {
        // Of all usual limits those of places go furthest; sliders of any usual ones shall line up.
        QString widest =
            quantity == openhost::Quantity::Plain ? QStringLiteral("-10000.0") : format(-10000.0);
        const QFontMetrics metrics = slider.fontMetrics();
        for (const double value : {min, max, number, defaultNumber}) {
            const QString text = format(value);
            if (metrics.horizontalAdvance(text) > metrics.horizontalAdvance(widest))
                widest = text;
        }
        return widest;
    }

    openhost::SliderLook look() const
    {
        openhost::SliderLook look;
        look.label = isLabelVisible ? label : QString();
        if (isTextVisible) {
            look.text = slider.getText();
            look.widestText = widestText();
        }
        look.fraction = fraction(number);
        look.origin = fraction(defaultNumber);
        look.isIndeterminate = isIndeterminate;
        look.isTextEditable = isTextEditable;
        look.isHovered = isHovered;
        look.isPressed = isPressed;
        return look;
    }

    openhost::SliderParts parts() const { return openhost::LayOutSlider(slider, look()); }

    /// After a change of what is shown, and so perhaps of the room it needs.
    void relay()
    {
        slider.updateGeometry();
        slider.update();
        placeEditor();
    }

    /// A user's gesture stays within the limits, unless the value lay beyond them already.
    double withinReach(double wanted, double from) const
    {
        return std::clamp(wanted, std::min(min, from), std::max(max, from));
    }

    /// One change by the user that has no middle.
    void changeOnce(double wanted)
    {
        emit slider.editStart();
        slider.setNumber(wanted);
        emit slider.editEnd();
    }

    void stepBy(double steps)
    {
        const double wanted = number + steps * slider.step();
        changeOnce(withinReach(wanted, number));
    }

    void drag(const QPoint& position, bool isFine)
    {
        constexpr double fine = 0.1;
        const double way = (position.x() - draggedTo.x()) * (isFine ? fine : 1.0);
        draggedTo = position;
        draggedNumber += way / openhost::HandleTravel(parts(), slider) * (max - min);
        slider.setNumber(withinReach(draggedNumber, pressedNumber));
    }

    /// A click on the bar is one step towards it.
    void click(const QPoint& position)
    {
        const openhost::SliderParts where = parts();
        if (where.text.contains(position))
            slider.openEditor();
        else if (where.bar.contains(position) && max > min)
            stepBy(openhost::FractionAt(position.x(), where, slider) < fraction(number) ? -1.0 : 1.0);
    }

    void cancelDrag()
    {
        isPressed = isDragging = false;
        slider.setNumber(pressedNumber);
        slider.setIndeterminate(pressedIndeterminate);
        emit slider.editCancelled();
    }

    void placeEditor()
    {
        if (!isTyping)
            return;
        const QRect text = parts().text;
        editor->setGeometry(isFullLengthEdit || text.isNull() ? slider.rect() : text);
    }

    /// Ends typing. The editor loses the focus by that, which asks for this again.
    void closeEditor(bool accept)
    {
        if (!isTyping)
            return;
        isTyping = false;
        const QString typed = editor->text();
        double value = 0.0;
        const QString refusal = accept ? openhost::ParseNumber(typed, style(), value) : QString();
        if (editor->hasFocus())
            slider.setFocus(Qt::OtherFocusReason);
        editor->hide();
        if (!accept || !refusal.isEmpty()) {
            emit slider.editCancelled();
            tell(refusal);
            return;
        }
        // The text is rounded: left as it was, it shall not round the value too.
        if (typed != format(number) || isIndeterminate)
            slider.setNumber(value);
        if (isClamped && (value < min || value > max))
            tell(DzSlider::tr("The dial goes from %1 to %2.").arg(format(min), format(max)));
        emit slider.editEnd();
    }

    /// Return on what is no number leaves it to be put right.
    bool isRefused()
    {
        double value = 0.0;
        const QString refusal = openhost::ParseNumber(editor->text(), style(), value);
        tell(refusal);
        return !refusal.isEmpty();
    }

    /// In place, and to screen readers.
    void tell(const QString& sentence)
    {
        if (editor)
            editor->setAccessibleDescription(sentence);
        if (sentence.isEmpty())
            return;
        QToolTip::showText(slider.mapToGlobal(QPoint(0, slider.height())), openhost::PlainTip(sentence),
                           &slider);
        QAccessibleEvent alert(isTyping ? static_cast<QWidget*>(editor) : &slider, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
};

void DzSliderAccess::setQuantity(DzSlider& slider, openhost::Quantity quantity)
{
    slider._impl->quantity = quantity;
    slider._impl->relay();
}

DzSlider::DzSlider(QWidget* parent, const QString& label, bool isWhole)
    : QWidget(parent), _impl(new Impl(*this, label, isWhole))
{
    openhost::MakeSlidersAccessible();
    setObjectName(label);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

DzSlider::~DzSlider() = default;

QString DzSlider::getLabel() const
{
    return _impl->label;
}
void DzSlider::setLabel(const QString& label)
{
    _impl->label = label;
    _impl->relay();
}
bool DzSlider::isLabelVisible() const
{
    return _impl->isLabelVisible;
}
void DzSlider::setShowLabel(bool onOff)
{
    _impl->isLabelVisible = onOff;
    _impl->relay();
}
bool DzSlider::isTextVisible() const
{
    return _impl->isTextVisible;
}
void DzSlider::setTextVisible(bool onOff)
{
    _impl->isTextVisible = onOff;
    _impl->relay();
}
bool DzSlider::isTextEditable() const
{
    return _impl->isTextEditable;
}
void DzSlider::setTextEditable(bool onOff)
{
    _impl->isTextEditable = onOff;
    if (!onOff)
        _impl->closeEditor(false);
    _impl->relay();
}
bool DzSlider::isFullLengthEdit() const
{
    return _impl->isFullLengthEdit;
}
void DzSlider::setFullLengthEdit(bool onOff)
{
    _impl->isFullLengthEdit = onOff;
    _impl->relay();
}
bool DzSlider::isClamped() const
{
    return _impl->isClamped;
}
void DzSlider::setClamped(bool onOff)
{
    _impl->isClamped = onOff;
    setLimits(_impl->min, _impl->max);
}
bool DzSlider::isDisplayedAsPercent() const
{
    return _impl->asPercent;
}
void DzSlider::setDisplayAsPercent(bool onOff)
{
    _impl->asPercent = onOff;
    _impl->relay();
}
bool DzSlider::isRestorable() const
{
    return _impl->isRestorable;
}
void DzSlider::setRestorable(bool onOff)
{
    _impl->isRestorable = onOff;
}
bool DzSlider::isIndeterminate() const
{
    return _impl->isIndeterminate;
}
void DzSlider::setIndeterminate(bool onOff)
{
    _impl->isIndeterminate = onOff;
    _impl->relay();
}

QString DzSlider::getText() const
{
    return _impl->isIndeterminate ? QStringLiteral("--") : _impl->format(_impl->number);
}

QSize DzSlider::sizeHint() const
{
    return openhost::SliderSizeHint(*this, _impl->look());
}
QSize DzSlider::minimumSizeHint() const
{
    return openhost::SliderMinimumSize(*this, _impl->look());
}

void DzSlider::restoreDefault()
{
    _impl->changeOnce(_impl->defaultNumber);
}

double DzSlider::number() const
{
    return _impl->number;
}
double DzSlider::minimum() const
{
    return _impl->min;
}
double DzSlider::maximum() const
{
    return _impl->max;
}
double DzSlider::defaultNumber() const
{
    return _impl->defaultNumber;
}

double DzSlider::step() const
{
    if (_impl->step > 0.0)
        return _impl->step;
    return _impl->isWhole ? 1.0 : (_impl->max - _impl->min) / 100.0;
}

void DzSlider::setNumber(double number)
{
    if (!std::isfinite(number))
        return;
    const double wanted = nearest(_impl->isClamped ? std::clamp(number, _impl->min, _impl->max) : number);
    if (wanted == _impl->number && !_impl->isIndeterminate)
        return;
    _impl->number = wanted;
    _impl->isIndeterminate = false;
    _impl->relay();
    QAccessibleValueChangeEvent changed(this, wanted);
    QAccessible::updateAccessibility(&changed);
    reportChange();
}

void DzSlider::setLimits(double one, double other)
{
    if (!std::isfinite(one) || !std::isfinite(other))
        return;
    _impl->min = std::min(one, other);
    _impl->max = std::max(one, other);
    _impl->relay();
    // Several values at once stay so.
    if (_impl->isClamped && !_impl->isIndeterminate)
        setNumber(_impl->number);
}

void DzSlider::setDefaultNumber(double number)
{
    if (!std::isfinite(number))
        return;
    _impl->defaultNumber = number;
    _impl->relay();
}

void DzSlider::setStep(double step)
{
    if (std::isfinite(step))
        _impl->step = std::max(0.0, step);
}

void DzSlider::openEditor()
{
    if (!_impl->isTextEditable || !isEnabled() || _impl->isTyping)
        return;
    if (!_impl->editor) {
        _impl->editor = new QLineEdit(this);
        _impl->editor->setAlignment(Qt::AlignRight);
        _impl->editor->setLayoutDirection(Qt::LeftToRight);
        _impl->editor->installEventFilter(this);
    }
    emit editStart();
    _impl->isTyping = true;
    QLineEdit& editor = *_impl->editor;
    editor.setAccessibleName(accessibleName().isEmpty() ? _impl->label : accessibleName());
    editor.setText(_impl->isIndeterminate ? QString() : getText());
    editor.selectAll();
    _impl->placeEditor();
    editor.show();
    editor.setFocus(Qt::OtherFocusReason);
}

bool DzSlider::eventFilter(QObject* object, QEvent* event)
{
    if (object != _impl->editor)
        return QWidget::eventFilter(object, event);
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
        _impl->closeEditor(true);
        return false;
    }
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    const int key = isKey ? static_cast<QKeyEvent*>(event)->key() : 0;
    const bool accepts = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!accepts && key != Qt::Key_Escape)
        return QWidget::eventFilter(object, event);
    // These keys would also press a button of the dialog around.
    event->accept();
    if (event->type() == QEvent::KeyPress && !(accepts && _impl->isRefused()))
        _impl->closeEditor(accepts);
    return true;
}

bool DzSlider::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        _impl->isHovered = event->type() == QEvent::HoverEnter;
        update();
    }
    return QWidget::event(event);
}

void DzSlider::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        _impl->closeEditor(false);
        if (_impl->isDragging)
            _impl->cancelDrag();
        _impl->isPressed = false;
    }
    _impl->relay();
    QWidget::changeEvent(event);
}

void DzSlider::contextMenuEvent(QContextMenuEvent* event)
{
    if (!_impl->isRestorable) {
        event->ignore();
        return;
    }
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Restore default"), this, SLOT(restoreDefault()));
    menu->popup(event->globalPos());
}

void DzSlider::keyPressEvent(QKeyEvent* event)
{
    constexpr double page = 10.0;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return _impl->stepBy(-1.0);
    case Qt::Key_Right:
    case Qt::Key_Up:
        return _impl->stepBy(1.0);
    case Qt::Key_PageDown:
        return _impl->stepBy(-page);
    case Qt::Key_PageUp:
        return _impl->stepBy(page);
    case Qt::Key_Home:
        return _impl->changeOnce(_impl->min);
    case Qt::Key_End:
        return _impl->changeOnce(_impl->max);
    case Qt::Key_Escape:
        if (_impl->isDragging)
            return _impl->cancelDrag();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        if (_impl->isTextEditable)
            return openEditor();
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void DzSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || _impl->isPressed)
        return;
    if (event->modifiers() & Qt::AltModifier) {
        if (_impl->isRestorable)
            restoreDefault();
        return;
    }
    _impl->isPressed = true;
    _impl->isDragging = false;
    _impl->pressedAt = event->pos();
    _impl->draggedTo = event->pos();
    _impl->pressedNumber = _impl->draggedNumber = _impl->number;
    _impl->pressedIndeterminate = _impl->isIndeterminate;
    update();
}

void DzSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (!_impl->isPressed)
        return;
    const int way = std::abs(event->pos().x() - _impl->pressedAt.x());
    if (!_impl->isDragging && way < leastDrag)
        return;
    if (!_impl->isDragging) {
        _impl->isDragging = true;
        emit editStart();
    }
    _impl->drag(event->pos(), event->modifiers() & Qt::ShiftModifier);
}

void DzSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !_impl->isPressed)
        return;
    const bool wasClick = !_impl->isDragging;
    _impl->isPressed = _impl->isDragging = false;
    update();
    if (!wasClick)
        emit editEnd();
    else
        _impl->click(event->pos());
}

void DzSlider::mouseDoubleClickEvent(QMouseEvent* event)
{
    // On the bar the second click counts like the first.
    if (_impl->parts().text.contains(event->pos()) && !(event->modifiers() & Qt::AltModifier))
        openEditor();
    else
        mousePressEvent(event);
}

void DzSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    openhost::PaintSlider(painter, *this, _impl->look());
}

void DzSlider::resizeEvent(QResizeEvent* event)
{
    _impl->placeEditor();
    QWidget::resizeEvent(event);
}

void DzSlider::wheelEvent(QWheelEvent* event)
{
    // A list that is scrolled by the wheel shall not change the values that pass below the pointer.
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    constexpr int notch = 120; // eighths of a degree
    const QPoint turned = event->angleDelta();
    _impl->wheelRest += turned.y() != 0 ? turned.y() : -turned.x();
    const int notches = _impl->wheelRest / notch;
    _impl->wheelRest -= notches * notch;
    if (notches != 0)
        _impl->stepBy(notches);
    event->accept();
}
