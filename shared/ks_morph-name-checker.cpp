// Warning that a morph's name is taken, while it is typed.
// SPDX-License-Identifier: MIT

#include "ks_morph-name-checker.h"

#include "ks_critical-box.h"
#include "ks_gui.h"
#include "ks_gui_style.h"
#include "ks_morphlist.h"
#include "ks_string.h"

#include <optional>
#include <utility>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

namespace kst {

namespace {

const int checkDelay = 100; // milliseconds
const char* const failureHeading = "Unhandled exception in morph name handler";

} // namespace

class MorphNameChecker::State {
public:
    DzNode* pNode = nullptr;
    std::unique_ptr<MorphList> pMorphs;
    std::optional<MorphInfo> existingMorph; ///< has the name
};

MorphNameChecker::MorphNameChecker(QLineEdit& nameEdit, QLabel& warning, QCheckBox& overwrite,
                                   std::function<void()> onChange)
    : _nameEdit(nameEdit), _warning(warning), _overwrite(overwrite), _onChange(std::move(onChange)),
      _pState(new State)
{
    gui::ConnectLineEditTextChanged(nameEdit, this, SLOT(slotMorphNameLineEditTextChanged(const QString&)));
    gui::ConnectCheckBoxStateChanged(overwrite, this, SLOT(slotOverwriteExistingCheckBoxChanged(int)));
    setMorphExistsWarningVisible(false);
}

MorphNameChecker::~MorphNameChecker() = default;

void MorphNameChecker::onSingleSceneNodeSelected(DzNode* node)
{
    if (node == _pState->pNode)
        return;
    std::unique_ptr<MorphList> pMorphs(node ? new MorphList(*node) : nullptr);
    _pState->pNode = node;
    _pState->pMorphs = std::move(pMorphs);
    checkIfMorphExists();
}

void MorphNameChecker::checkIfMorphExists()
{
    std::shared_ptr<MorphInfo> match;
    const std::string name = str::ToStd(_nameEdit.text());
    if (_pState->pMorphs && !name.empty())
        match = _pState->pMorphs->findMorphByName(name);
    if (!match && !_pState->existingMorph)
        return;
    if (match)
        _pState->existingMorph = *match;
    else
        _pState->existingMorph.reset();
    setMorphExistsWarningVisible(match != nullptr);
    _onChange();
}

bool MorphNameChecker::canWriteToMorph() const
{
    return !_pState->existingMorph || _overwrite.isChecked();
}

void MorphNameChecker::setMorphExistsWarningVisible(bool visible)
{
    _warning.setVisible(visible);
    _overwrite.setVisible(visible);
    if (visible)
        gui::MakeLabelForegroundOrange(_warning);
}

void MorphNameChecker::slotMorphNameLineEditTextChanged(const QString&)
{
    QTimer::singleShot(checkDelay, this, SLOT(slotMorphNameLineEditTextChangedDelayed()));
}

void MorphNameChecker::slotMorphNameLineEditTextChangedDelayed()
{
    daz::CallOutermost(failureHeading, nullptr, [this] { checkIfMorphExists(); });
}

void MorphNameChecker::slotOverwriteExistingCheckBoxChanged(int)
{
    daz::CallOutermost(failureHeading, nullptr, _onChange);
}

} // namespace kst
