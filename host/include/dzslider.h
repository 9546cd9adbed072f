// What the sliders have in common.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QWidget>

#include <memory>

/// A labelled bar with the value's text beside it. Dragging it (finely with Shift), a click on it, the arrow
/// keys and, with the focus, the wheel change the value within the limits; where the text is editable, a
/// click on it, Return or F2 opens a line for typing. Alt+click and the context menu restore the default.
///
/// A user's change is bracketed by editStart() and either editEnd() or editCancelled(); a program's is not.
class DzSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString label READ getLabel WRITE setLabel)
    Q_PROPERTY(bool labelVisible READ isLabelVisible WRITE setShowLabel)
    Q_PROPERTY(bool textVisible READ isTextVisible WRITE setTextVisible)
    Q_PROPERTY(bool textEditable READ isTextEditable WRITE setTextEditable)
    Q_PROPERTY(bool clamped READ isClamped WRITE setClamped)
    Q_PROPERTY(bool displayAsPercent READ isDisplayedAsPercent WRITE setDisplayAsPercent)
    Q_PROPERTY(bool fullLengthEdit READ isFullLengthEdit WRITE setFullLengthEdit)
    Q_PROPERTY(bool restorable READ isRestorable WRITE setRestorable)
    Q_PROPERTY(bool indeterminate READ isIndeterminate WRITE setIndeterminate)

public:
    ~DzSlider() override;

    QString getLabel() const;
    void setLabel(const QString& label);
    bool isLabelVisible() const;
    /// Shown unless switched off; an empty label takes no room.
    void setShowLabel(bool onOff);

    bool isTextVisible() const;
    /// Whether the value stands beside the bar; on at first.
    void setTextVisible(bool onOff);
    bool isTextEditable() const;
    /// Whether the value may be typed; off at first.
    void setTextEditable(bool onOff);
    bool isFullLengthEdit() const;
    /// Whether the line for typing covers the whole slider and not the value's text alone; off at first.
    void setFullLengthEdit(bool onOff);

    bool isClamped() const;
    /// Whether every value obeys the limits; off at first. Switching it on clamps the value at once.
    void setClamped(bool onOff);
    bool isDisplayedAsPercent() const;
    /// Whether 1 shows, and is typed, as 100 %; off at first.
    void setDisplayAsPercent(bool onOff);
    bool isRestorable() const;
    /// Whether the user may restore the default value; on at first.
    void setRestorable(bool onOff);
    bool isIndeterminate() const;
    /// Shows dashes, for several values at once. The next value that is set ends it and counts as a change.
    void setIndeterminate(bool onOff);

    /// The value as it is shown, such as "42.0%".
    QString getText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    /// As if the user had done it.
    void restoreDefault();

signals:
    void editStart();
    void editEnd();
    void editCancelled();

protected:
    /// @param isWhole  the value is a whole number
    DzSlider(QWidget* parent, const QString& label, bool isWhole);

    /// The numbers behind the typed interfaces of the subclasses.
    double number() const;
    double minimum() const;
    double maximum() const;
    double defaultNumber() const;
    double step() const;
    /// What is no finite number leaves everything as it is.
    void setNumber(double number);
    void setLimits(double one, double other);
    void setDefaultNumber(double number);
    /// Zero and less: a hundredth of the range, or 1 for whole numbers.
    void setStep(double step);

    /// The nearest number that the subclass's type can hold.
    virtual double nearest(double number) const = 0;
    /// Emits the subclass's signal.
    virtual void reportChange() = 0;

    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private slots:
    void openEditor();

private:
    struct Impl;
    friend class DzSliderAccess;
    std::unique_ptr<Impl> _impl;
};
