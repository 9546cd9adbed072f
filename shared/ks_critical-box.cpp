// The box at the end of the error path.
// SPDX-License-Identifier: MIT

#include "shared/ks_critical-box.h"

#include "shared/ks_debug.h"
#include "shared/ks_help.h"
#include "shared/ks_product.h"
#include "shared/ks_string.h"

#include <QMessageBox>

#include <dzapp.h>

namespace kst {
namespace daz {

void CriticalBox(std::string_view heading, std::string_view message, QWidget* parent, bool log)
{
    const std::string version = MakeVersionStringOnly();
    if (log)
        Debug::Log("Critical error message box in {} {}: {}: {}", product::TITLE, version, heading, message);
    const std::string title = fmt::format("Error {} {} {}", str::EM_DASH, product::TITLE, version);
    const std::string body =
        fmt::format("<p><b>{}</b></p>\n<p>{}</p>", str::MakeSentence(heading), str::MakeSentence(message));
    QMessageBox box(QMessageBox::Critical, str::ToQ(title), str::ToQ(body), QMessageBox::Ok,
                    parent ? parent : dzApp->getDialogParent());
    box.setTextFormat(Qt::RichText);
    box.exec();
}

} // namespace daz
} // namespace kst
