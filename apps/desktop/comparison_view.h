// Two figures against each other in the view: the difference in colours, and side by side.
// SPDX-License-Identifier: MIT

#pragma once

#include "compared_figures.h"
#include "difference_work.h"

#include <QObject>
#include <QPointer>

#include <memory>

class Dz3DViewport;
class QAction;

namespace desktop {

class ComparisonPanel;
class ShapeChanges;

/// Costs nothing as long as neither is chosen. Ends by itself when there are no two figures any more.
class ComparisonView : public QObject {
    Q_OBJECT

public:
    /// @param view  borrowed; may go first
    explicit ComparisonView(Dz3DViewport& view);
    ~ComparisonView() override;

    QAction* differenceEntry() const { return _difference; }
    QAction* sideBySideEntry() const { return _sideBySide; }
    /// The two figures are in the view as if they stood in one place.
    bool isSideBySide() const;

signals:
    /// What is in the view has another place in it.
    void placesChanged();

private slots:
    void handleFigures();
    void handleToggled();
    void measure();
    void showAnswer(std::shared_ptr<const desktop::DifferenceAnswer> answer);
    void recolor();

private:
    void divide();
    void showPanel();
    void beginDifference();
    void endDifference();

    QPointer<Dz3DViewport> _view;
    ComparedFigures _figures;
    QPointer<DzSkeleton> _left, _right; ///< side by side in the view; null for none
    QPointer<ComparisonPanel> _panel;   ///< the view's; made when first needed
    QAction* _difference;
    QAction* _sideBySide;
    DifferenceWork _work;
    std::unique_ptr<ShapeChanges> _changes;                  ///< while the difference is shown
    std::shared_ptr<const DifferenceQuestion> _asked;        ///< the latest one; null for none
    std::vector<QPointer<DzNode>> _askedNodes, _askedOthers; ///< of each of its surfaces
    std::shared_ptr<const DifferenceAnswer> _answer;         ///< null for none that is shown
};

} // namespace desktop
