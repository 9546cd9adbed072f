// Bookmarks, links and the author's name in a PDF, which the toolkit's writer leaves out.
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QRectF>
#include <QString>

#include <vector>

namespace manual {

/// Where a reader's jump ends.
struct PdfPlace {
    int page;   ///< of the file, from 0
    double top; ///< points above the page's lower edge
};

struct PdfBookmark {
    QString text;
    int level; ///< 1 is the outermost
    PdfPlace place;
};

struct PdfLink {
    int page;   ///< that it stands on, from 0
    QRectF box; ///< points; y is counted upwards from the page's lower edge
    PdfPlace target;
};

struct PdfNavigation {
    QString author;
    QByteArray language; ///< such as "en"
    std::vector<PdfBookmark> bookmarks;
    std::vector<PdfLink> links;
};

/// The same file with what the navigation says; bookmarks below the outermost are folded at first.
/// @param bytes  of a PDF
/// @throws std::runtime_error  they are none, or the navigation names a page that it does not have
QByteArray WithNavigation(const QByteArray& bytes, const PdfNavigation& navigation);

} // namespace manual
