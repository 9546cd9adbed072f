// The manual's text as a formatted document.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QFont>
#include <QImage>
#include <QSizeF>
#include <QTextDocument>

#include <memory>
#include <vector>

class QPaintDevice;

namespace manual {

/// Makes one document of the chapters, in order.
/// @param chapters  Markdown files; each begins with its heading of level 1
/// @param pictures  the folder that the pictures' names in the Markdown are relative to
/// @param device    what it will be painted on; borrowed, and must outlive the document
/// @param page      of the text without its margins, in the device's pixels
/// @throws std::runtime_error  a chapter or a picture cannot be read; the text names it
std::unique_ptr<QTextDocument> MakeDocument(const QStringList& chapters, const QDir& pictures,
                                            QPaintDevice& device, const QSizeF& page);

/// Moves to the next page what must not stand alone at a page's end: headings, what introduces a list, and a
/// paragraph's first line. No third of a page stays empty for that: tables are parted, and pictures made
/// smaller.
void KeepTogether(QTextDocument& document);

/// @throws std::runtime_error  it cannot be read; the text names it
QImage ReadPicture(const QString& path);

/// Of one of the block's lines, from the document's left upper corner; empty where it has no such line.
QRectF LineBox(const QTextDocument& document, const QTextBlock& block, int line);

/// A place in the text that refers to a chapter, such as "chapter 4".
struct Mention {
    int chapter;
    QRectF box; ///< from the document's left upper corner
};

/// In the order of the text. What a line's end parts has its first half only.
std::vector<Mention> FindMentions(const QTextDocument& document);

/// The page that the block's first line stands on, from 0.
int PageOf(const QTextDocument& document, const QTextBlock& block);

/// The manual's letters.
QFont Letters(double points, QFont::Weight weight = QFont::Normal);

/// 1 is a chapter's; 0 is no heading.
int HeadingLevel(const QTextBlock& block);

} // namespace manual
