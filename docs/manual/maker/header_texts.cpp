// What the host's headers say of classes and methods.
// SPDX-License-Identifier: MIT

#include "header_texts.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace manual {

namespace {

QStringList LinesOf(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + name.toStdString());
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

/// Of a declaration, which may take several lines: the name before its arguments.
QString NameIn(const QString& declaration)
{
    static const QRegularExpression called(QStringLiteral("(\\w+)\\("));
    return called.match(declaration).captured(1);
}

} // namespace

HeaderTexts::HeaderTexts(const QStringList& folders)
{
    for (const QString& folder : folders)
        for (const QFileInfo& header : QDir(folder).entryInfoList({QStringLiteral("*.h")}))
            read(header.filePath());
}

void HeaderTexts::keep(const QString& name, const QString& text)
{
    // Of methods with one name the first that has a comment speaks for all.
    if (!text.isEmpty() && !_texts.contains(name))
        _texts.insert(name, text.simplified());
}

void HeaderTexts::read(const QString& header)
{
    static const QRegularExpression classBegins(QStringLiteral("^class (?:\\w+ )?(\\w+) (?:final )?[:{]"));
    const QString mark = QStringLiteral("///");
    QString className, above, declaration;
    for (const QString& line : LinesOf(header)) {
        const QString text = line.trimmed();
        if (text.startsWith(mark)) {
            above += text.mid(text.startsWith(mark + QLatin1Char('<')) ? mark.size() + 1 : mark.size()) +
                     QLatin1Char(' ');
            continue;
        }
        if (const auto begins = classBegins.match(line); begins.hasMatch()) {
            className = begins.captured(1);
            keep(className, above);
            declaration.clear();
            above.clear();
            continue;
        }
        declaration += text + QLatin1Char(' ');
        const bool isWhole = text.contains(QLatin1Char(';')) || text.endsWith(QLatin1Char('}'));
        if (!isWhole && !text.isEmpty() && !text.endsWith(QLatin1Char(':')) &&
            !text.startsWith(QLatin1String("Q_")))
            continue;
        if (isWhole) {
            const int behind = declaration.indexOf(mark + QLatin1Char('<'));
            keep(className + QStringLiteral("::") + NameIn(declaration.left(behind)),
                 behind < 0 ? above : above + declaration.mid(behind + mark.size() + 1));
        }
        if (isWhole || !text.startsWith(QLatin1String("Q_INVOKABLE"))) {
            declaration.clear();
            above.clear();
        }
    }
}

} // namespace manual
