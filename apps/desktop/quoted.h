// Names of files within sentences.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QString>

namespace desktop {

/// As the system writes paths, in quotation marks.
inline QString Quoted(const QString& path)
{
    return QStringLiteral("\u201C%1\u201D").arg(QDir::toNativeSeparators(path));
}

} // namespace desktop
