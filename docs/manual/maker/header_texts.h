// What the host's headers say of classes and methods.
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace manual {

/// The comments that stand above declarations, or behind them.
class HeaderTexts {
public:
    /// @param folders  with headers
    /// @throws std::runtime_error  one cannot be read
    explicit HeaderTexts(const QStringList& folders);

    /// Empty where there is none.
    QString ofClass(const QString& name) const { return _texts.value(name); }
    QString ofMethod(const QString& className, const QString& name) const
    {
        return _texts.value(className + QStringLiteral("::") + name);
    }

private:
    void read(const QString& header);
    void keep(const QString& name, const QString& text);

    QHash<QString, QString> _texts;
};

} // namespace manual
