// Names of files and of others within sentences.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QString>
#include <QStringList>

namespace desktop {

/// As the system writes paths, in quotation marks.
inline QString Quoted(const QString& path)
{
    return QStringLiteral("\u201C%1\u201D").arg(QDir::toNativeSeparators(path));
}

/// In quotation marks, and only the first ones of many.
QString Enumerated(const QStringList& names);

} // namespace desktop
