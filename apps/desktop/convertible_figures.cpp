// Which files bring a figure that can be converted, or that is converted to.
// SPDX-License-Identifier: MIT

#include "convertible_figures.h"

#include "openhost/content_files.h"
#include "sample_content/figure_kinds.h"

#include <QByteArray>

namespace desktop {

namespace {

/// What names materials and pictures may stand before the figure.
constexpr int farEnough = 8 << 20;

QByteArray DataFileOf(const content::FigureKindInfo& kind)
{
    const std::string& path = kind.figurePath;
    return QByteArray::fromStdString(path.substr(path.rfind('/'))).toLower();
}

} // namespace

QString FigureBroughtBy(const QString& file, const QString& type)
{
    if (type != QLatin1String("character") && type != QLatin1String("figure"))
        return QString();
    const QByteArray text = openhost::HeadOf(file, farEnough).toLower();
    const content::FigureKindInfo* first = nullptr;
    int place = text.size();
    for (const content::FigureKindInfo& kind : content::FigureKinds()) {
        const int found = text.indexOf(DataFileOf(kind));
        if (found >= 0 && found < place) {
            place = found;
            first = &kind;
        }
    }
    return first ? QString::fromStdString(first->label) : QString();
}

bool IsTarget(const QString& figure)
{
    return figure == QString::fromStdString(content::InfoOf(content::FigureKind::Genesis9).label);
}

} // namespace desktop
