// One property in a list of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"
#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QToolButton;

namespace openhost {

class PropertyEditor;

/// An editor, with a star for favourites. A property that goes away leaves a row that does nothing.
class PropertyRow : public QWidget {
    Q_OBJECT
public:
    PropertyRow(DzProperty& property, QWidget* parent);
    ~PropertyRow() override;

    DzProperty* property() const { return _property; } ///< null when it is gone
    void setPicked(bool onOff);
    /// The label above what it names, for a narrow list.
    void setStacked(bool onOff);

    /// The height that rows of every kind fit into, in pixels.
    static int HeightFor(const QWidget& widget, bool isStacked);

signals:
    /// Pressed with the mouse, anywhere.
    void picked(Qt::KeyboardModifiers modifiers);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private slots:
    void letGo();
    void setFavorite(bool onOff);

private:
    void addStar(QHBoxLayout& layout);

    QPointer<DzProperty> _property;
    PropertyEditor* _editor;
    QToolButton* _star = nullptr;
    bool _isPicked = false;
};

} // namespace openhost
