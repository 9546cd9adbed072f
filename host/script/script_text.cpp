// The code of scripts.
// SPDX-License-Identifier: MIT

#include "script_text.h"

#include "base/errors.h"
#include "base/reason.h"
#include "script_limits.h"
#include "script_reach.h"

#include <QFileInfo>

#include <cerrno>

namespace openhost {

QString ReadScript(const QString& name)
{
    ThrowIfOutOfReach(name.toStdString());
    if (QFileInfo(name).isDir())
        throw base::IoError("cannot read {}: {}", name.toStdString(), base::ReasonOf(EISDIR));
    QFile file(name);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    if (isOpen && file.size() > longestScriptFile)
        throw base::IoError("cannot read {}: {} bytes are too much for a script, which can read {}",
                            name.toStdString(), file.size(), longestScriptFile);
    const QByteArray text = isOpen ? file.readAll() : QByteArray();
    if (!isOpen || file.error() != QFileDevice::NoError)
        throw base::IoError("cannot read {}: {}", name.toStdString(), file.errorString().toStdString());
    // The toolkit takes a NUL in an array for its end.
    return QString::fromUtf8(text.constData(), text.size());
}

std::optional<CodeFault> FindFault(const QString& code)
{
    // The engine takes a NUL for the end of the text, and would run what stands before it as if all were
    // well.
    const int place = code.indexOf(QChar(QChar::Null));
    if (place < 0)
        return std::nullopt;
    const QStringRef before = code.leftRef(place);
    return CodeFault{before.count(QLatin1Char('\n')) + 1,
                     QStringLiteral("character %1 is a NUL, which no script can hold")
                         .arg(place - before.lastIndexOf(QLatin1Char('\n')))};
}

} // namespace openhost
