// A picker for the property-group path of a new morph.
// SPDX-License-Identifier: MIT

#include "ks_dlg_morph-path.h"

#include "ks_gui_button.h"
#include "ks_gui_style.h"
#include "ks_product.h"
#include "ks_string.h"

#include "ui_ks_dlg_morph-path.h"

#include <algorithm>

#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QList>
#include <QPushButton>

namespace kst {

namespace {

// What the tree shows at least.
const int fewestColumns = 16;
const int fewestLines = 4;

} // namespace

class MorphPathDialog::Impl {
public:
    Ui_MorphPathDialog ui;
    QLabel* pRule = nullptr; ///< shown while the path breaks it
};

MorphPathDialog::MorphPathDialog(QWidget* parent, DzNode& node, std::string_view initialPath,
                                 const char* windowPosKey)
    : MorphPathDialogBase(parent), _pImpl(new Impl)
{
    Ui_MorphPathDialog& ui = _pImpl->ui;
    ui.setupUi(this);
    const int formWidth = width(); // before a remembered one, which may be wider, takes its place
    initCommon("Morph property path", str::ToQ(product::TITLE), QLatin1String(windowPosKey));
    addRule();
    makeRoom(formWidth);
    _pImpl->pRule->hide();
    connectButtonBox(ui.pButtonBox);
    initializePropertyPaths(*ui.pTreeWidgetPropertyPaths, *ui.pledMorphPropertyPath);
    insertPropertyPaths(node, str::ExplodeVector(initialPath, "/", false, false));
    // The tree would make its first item the current one if it got the focus without having one.
    ui.pledMorphPropertyPath->setFocus();
}

MorphPathDialog::~MorphPathDialog() = default;

void MorphPathDialog::addRule()
{
    QLabel* const pRule = new QLabel(propertyPathRule(), this);
    pRule->setObjectName(QLatin1String("plblPathRule"));
    pRule->setWordWrap(true);
    gui::MakeLabelForegroundOrange(*pRule);
    QVBoxLayout& column = *_pImpl->ui.verticalLayout;
    column.insertWidget(column.indexOf(_pImpl->ui.pButtonBox), pRule);
    _pImpl->pRule = pRule;
}

void MorphPathDialog::makeRoom(int formWidth)
{
    const Ui_MorphPathDialog& ui = _pImpl->ui;
    const QFontMetrics metrics = fontMetrics();
    ui.pTreeWidgetPropertyPaths->setMinimumSize(fewestColumns * metrics.averageCharWidth(),
                                                ui.pTreeWidgetPropertyPaths->header()->sizeHint().height() +
                                                    fewestLines * metrics.lineSpacing());
    const QList<QAbstractButton*> buttons = ui.pButtonBox->buttons();
    for (QAbstractButton* const pButton : buttons)
        gui::GiveRoomForText(*pButton);
    const int width = std::max(formWidth, layout()->minimumSize().width());
    setMinimumSize(width, ui.verticalLayout->minimumHeightForWidth(width));
}

std::string MorphPathDialog::getPropertyPathFromLineEdit() const
{
    return str::ToStd(_pImpl->ui.pledMorphPropertyPath->text());
}

void MorphPathDialog::enableDisableWidgets()
{
    const bool isValid = isPropertyPathValid();
    _pImpl->ui.pButtonBox->button(QDialogButtonBox::Ok)->setEnabled(isValid);
    _pImpl->pRule->setVisible(!isValid);
}

} // namespace kst
