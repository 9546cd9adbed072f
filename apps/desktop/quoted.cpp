// Names of files and of others within sentences.
// SPDX-License-Identifier: MIT

#include "quoted.h"

#include <QCoreApplication>

namespace desktop {

QString Enumerated(const QStringList& names)
{
    const int shown = names.size() > 6 ? 5 : names.size();
    QStringList quoted;
    for (int i = 0; i < shown; ++i)
        quoted.append(QStringLiteral("\u201C%1\u201D").arg(names[i]));
    QString all = quoted.join(QLatin1String(", "));
    if (shown < names.size())
        all += QCoreApplication::translate("desktop", " and %1 more").arg(names.size() - shown);
    return all;
}

} // namespace desktop
