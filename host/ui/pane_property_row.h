// One property in a list of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"
#include <QIcon>
#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QToolButton;

namespace openhost {

class PropertyEditor;

/// A star as high as the widget's text, filled for a favourite.
QIcon Star(bool isFilled);
/// For a button that can be checked.
QIcon OnOffStar();

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
    /// Something was done to the property that the user is to know.
    void told(const QString& text);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private slots:
    void letGo();
    void setFavorite(bool onOff);
    void resetDial();
    void memorizeDial();
    void restoreDial();
    void editLimits();
    void toggleLock();

private:
    void showMenu(const QPoint& place);
    void addStar(QHBoxLayout& layout);

    QPointer<DzProperty> _property;
    PropertyEditor* _editor;
    QToolButton* _star = nullptr;
    bool _isPicked = false;
};

} // namespace openhost
