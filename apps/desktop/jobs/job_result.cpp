// Looking at what a conversion of the list of jobs has made.
// SPDX-License-Identifier: MIT

#include "job_result.h"

#include "../quoted.h"

#include <dzfloatproperty.h>
#include <dzmorph.h>
#include <dznode.h>
#include <dzobject.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <dzundostack.h>

#include <QCoreApplication>
#include <QMessageBox>

namespace desktop {

void ShowResult(QWidget& window, const QStringList& dials)
{
    const DzNode* const node = dzScene->getPrimarySelection();
    const DzObject* const object = node && node->getSkeleton() ? node->getSkeleton()->getObject() : nullptr;
    QStringList missing;
    dzUndoStack->beginHold();
    for (const QString& dial : dials) {
        auto* const morph = object ? qobject_cast<DzMorph*>(object->findModifier(dial)) : nullptr;
        if (morph)
            morph->getValueChannel()->setValue(1.0f);
        else
            missing.append(Quoted(dial));
    }
    dzUndoStack->accept(QCoreApplication::translate("desktop", "Show New Morphs"));
    if (!missing.isEmpty())
        QMessageBox::information(
            &window, QCoreApplication::translate("desktop", "Open Result"),
            QCoreApplication::translate("desktop",
                                        "The figure does not have %1. The library that the morphs were "
                                        "saved into may be none of your content folders.")
                .arg(missing.join(QStringLiteral(", "))));
}

} // namespace desktop
