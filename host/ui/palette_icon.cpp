// Icons that go with the look.
// SPDX-License-Identifier: MIT

#include "openhost/palette_icon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>

namespace openhost {

namespace {

class PaletteIconEngine : public QIconEngine {
public:
    explicit PaletteIconEngine(IconPainting painting) : _painting(std::move(painting)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        _painting(*painter, rect, QGuiApplication::palette(),
                  mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, state);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new PaletteIconEngine(_painting); }

private:
    IconPainting _painting;
};

} // namespace

QIcon MakePaletteIcon(IconPainting painting)
{
    return QIcon(new PaletteIconEngine(std::move(painting)));
}

} // namespace openhost
