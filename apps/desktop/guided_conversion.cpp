// A conversion from its beginning: two figures are chosen, loaded and converted.
// SPDX-License-Identifier: MIT

#include "guided_conversion.h"

#include "choose_figures_dialog.h"
#include "quoted.h"

#include <dzaction.h>
#include <dzactionmgr.h>
#include <dzapp.h>
#include <dzbone.h>
#include <dzcontentmgr.h>
#include <dzmainwindow.h>
#include <dzscene.h>
#include <dzskeleton.h>

#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>

namespace desktop {

namespace {

QString Title()
{
    return QCoreApplication::translate("desktop", "Convert a Figure");
}

/// What the file adds is selected. Null where it brings no figure, which is told.
DzSkeleton* LoadFigure(DzMainWindow& window, const QString& file)
{
    dzScene->selectAllNodes(false);
    if (!dzApp->getContentMgr()->openFile(file, true))
        return nullptr; // told already
    DzNode* const node = dzScene->getPrimarySelection();
    DzSkeleton* const figure = node ? node->getSkeleton() : nullptr;
    if (!figure)
        QMessageBox::warning(
            &window, Title(),
            QCoreApplication::translate("desktop", "There is no figure in %1.").arg(Quoted(file)));
    return figure;
}

} // namespace

void GuideConversion(DzMainWindow& window)
{
    DzAction* const convert = window.getActionMgr()->findAction(QStringLiteral("GntConvertFigureAction"));
    if (!convert) {
        QMessageBox::information(&window, Title(),
                                 QCoreApplication::translate(
                                     "desktop", "Conversions come with the plug-in, which is not loaded."));
        return;
    }
    ChooseFiguresDialog dialog(&window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QPointer<DzSkeleton> source = LoadFigure(window, dialog.sourceFile());
    const QPointer<DzSkeleton> target = source ? LoadFigure(window, dialog.targetFile()) : nullptr;
    if (!source || !target)
        return;
    dzScene->selectAllNodes(false);
    source->select();
    target->select();
    convert->trigger();
}

} // namespace desktop
