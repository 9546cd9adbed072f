// The menu actions of the plug-in.
// SPDX-License-Identifier: MIT

#include "gnt_actions.h"

#include "gnt_convert-figure.h"
#include "ks_critical-box.h"
#include "ks_exception.h"
#include "ks_manual.h"
#include "ks_product.h"
#include "ks_string.h"

#include <QKeySequence>
#include <QWidget>

#include <dzapp.h>

namespace {

/// The outermost frame of a conversion: what is no std::exception ends the process here.
void ConvertSelected(QWidget* parent) noexcept
{
    try {
        GntConverter::Exec_X(parent);
    } catch (const kst::CanceledException&) {
        // The user knows.
    } catch (const std::exception& error) {
        kst::daz::CriticalBox("Could not convert figure", error.what(), parent, true);
    }
}

} // namespace

GntActionBase::GntActionBase(const QString& text, const QString& description) : DzAction(text, description) {}
GntActionBase::~GntActionBase() = default;

QString GntActionBase::getActionGroup() const
{
    return kst::str::ToQ(kst::product::TITLE);
}

QString GntActionBase::getDefaultMenuPath() const
{
    return QLatin1String("Co&nvert");
}

GntConvertFigureAction::GntConvertFigureAction()
    : GntActionBase(
          QLatin1String("Convert selected Genesis 3 / 8 / 8.1 &figure..."),
          QLatin1String(
              "Converts the morphs in the selected Genesis 3/8/8.1 figure to the selected G9 figure."))
{
}

GntConvertFigureAction::~GntConvertFigureAction() = default;

QKeySequence GntConvertFigureAction::getDefaultAccel() const
{
    return QKeySequence(Qt::CTRL + Qt::ALT + Qt::Key_C);
}

void GntConvertFigureAction::executeAction()
{
    ConvertSelected(dzApp->getDialogParent());
}

GntOpenManualAction::GntOpenManualAction()
    : GntActionBase(QLatin1String("Open Gantrel PDF manual"),
                    QLatin1String("Opens the PDF user manual for Kestrom's Gantrel"))
{
}

GntOpenManualAction::~GntOpenManualAction() = default;

void GntOpenManualAction::executeAction()
{
    kst::daz::OpenPluginManual("Gantrel for Genesis 9");
}
