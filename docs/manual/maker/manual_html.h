// The manual as one page for browsers.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace manual {

struct PageParts {
    QString version;      ///< of the product, such as "1.0.5"
    QStringList chapters; ///< Markdown files, in order; each begins with its heading of level 1
    QString pictures;     ///< the folder that the Markdown's picture names are relative to
    QString frame;        ///< folder of what stands around the text: manual.html, manual.css and manual.js
};

/// Writes one file that needs no others: contents, a search, and the chapters with their pictures inside.
/// @throws std::runtime_error  something cannot be read or written, or a chapter that is spoken of is not
/// there
void WriteManualPage(const QString& file, const PageParts& parts);

} // namespace manual
