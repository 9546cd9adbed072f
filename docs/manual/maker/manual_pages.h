// The manual's pages: title, contents and text.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace manual {

struct ManualParts {
    QString version;      ///< of the product, such as "1.0.5"
    QStringList chapters; ///< Markdown files, in order
    QString pictures;     ///< the folder that the Markdown's picture names are relative to
};

/// Writes the manual as a PDF of A4 pages. The application must be running.
/// @throws std::runtime_error  something cannot be read or written; the text names it
void WriteManual(const QString& file, const ManualParts& parts);

} // namespace manual
