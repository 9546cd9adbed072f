// The box at the end of the error path, and its friendly sister.
// SPDX-License-Identifier: MIT

#include "ks_critical-box.h"

#include "ks_debug.h"
#include "ks_gui.h"
#include "ks_help.h"
#include "ks_product.h"
#include "ks_string.h"

#include <QMessageBox>

#include <dzapp.h>

namespace kst {
namespace daz {

namespace {

std::string MakeBody(std::string_view heading, std::string_view message)
{
    return fmt::format("<p><b>{}</b></p>\n<p>{}</p>", heading, message);
}

void ShowBox(QMessageBox::Icon icon, const std::string& title, const std::string& body, QWidget* parent)
{
    QMessageBox box(icon, str::ToQ(title), str::ToQ(body), QMessageBox::Ok,
                    parent ? parent : dzApp->getDialogParent());
    box.setTextFormat(Qt::RichText);
    box.exec();
}

} // namespace

void CriticalBox(std::string_view heading, std::string_view message, QWidget* parent, bool log)
{
    gui::AssertGuiThread();
    const std::string version = MakeVersionStringOnly();
    if (log)
        Debug::Log("Critical error message box in {} {}: {}: {}", product::TITLE, version, heading, message);
    ShowBox(QMessageBox::Critical, fmt::format("Error {} {} {}", str::EM_DASH, product::TITLE, version),
            MakeBoxBody(heading, message), parent);
}

void InfoBox(std::string_view heading, std::string_view message, QWidget* parent)
{
    gui::AssertGuiThread();
    ShowBox(QMessageBox::Information, fmt::format("{} {}", product::TITLE, MakeVersionStringOnly()),
            MakeBody(heading, message), parent);
}

std::string MakeBoxBody(std::string_view heading, std::string_view message)
{
    return MakeBody(str::MakeSentence(heading), str::MakeSentence(message));
}

} // namespace daz
} // namespace kst
