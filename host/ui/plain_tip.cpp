// Names in tool tips.
// SPDX-License-Identifier: MIT

#include "openhost/plain_tip.h"

#include <QTextDocument>

namespace openhost {

QString PlainTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace openhost
