// Where the scene is looked at from.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>
#include <QPointer>

class Dz3DViewport;

namespace desktop {

/// Front, back, sides, top, three-quarter and face. The first ones turn the camera about what it looks at;
/// the last one looks at the head of the selected figure, or of the first one.
class ViewpointsMenu : public QMenu {
    Q_OBJECT

public:
    /// @param view  borrowed; may go first
    explicit ViewpointsMenu(Dz3DViewport& view);

private slots:
    void look(QAction* entry);

private:
    void lookAtFace();

    QPointer<Dz3DViewport> _view;
};

/// The same as buttons in the upper right corner of the view.
/// @param view  owns them
QWidget* MakeViewButtons(QWidget& view, const ViewpointsMenu& menu);

} // namespace desktop
