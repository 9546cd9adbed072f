// Warning that a morph's name is taken, while it is typed.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

#include <QObject>

class DzNode;
class QCheckBox;
class QLabel;
class QLineEdit;

namespace kst {

/// Watches the line edit of a morph's name. While a morph of the selected node has that name, a warning label
/// and a check box for overwriting it are shown. The widgets, whose texts are the form's, are borrowed and
/// must live as long as the checker; the node and its morphs as long as it is selected here.
class MorphNameChecker : public QObject {
    Q_OBJECT

public:
    /// Hides label and check box.
    /// @param onChange  called after each check that found a morph, or lost the one found before, and when
    ///                  the check box changes; what it throws there is shown in the critical box
    MorphNameChecker(QLineEdit& nameEdit, QLabel& warning, QCheckBox& overwrite,
                     std::function<void()> onChange);
    ~MorphNameChecker() override;

    /// Takes the node's morphs as they are now; the same node again does nothing.
    /// @param node  null for none
    /// @throws Exception  as MorphList; what the change callback throws
    void onSingleSceneNodeSelected(DzNode* node);
    /// Looks the name up at once; it must match exactly.
    void checkIfMorphExists();
    /// Whether no morph has the name, or the user wants it overwritten.
    bool canWriteToMorph() const;
    void setMorphExistsWarningVisible(bool visible);

private slots:
    void slotMorphNameLineEditTextChanged(const QString& text);
    void slotMorphNameLineEditTextChangedDelayed();
    void slotOverwriteExistingCheckBoxChanged(int state);

private:
    class State;
    QLineEdit& _nameEdit;
    QLabel& _warning;
    QCheckBox& _overwrite;
    std::function<void()> _onChange;
    std::unique_ptr<State> _pState;
};

} // namespace kst
