#include "adapters/qt/Symbols.h"

#include <QApplication>
#include <QByteArray>
#include <QColor>
#include <QFile>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <stdexcept>
#include <utility>

/// Links the icons, which nothing else refers to. The macro must be used outside every namespace.
static void linkIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace dunmora {

namespace {

/// The drawing in this color at this size in device pixels.
QImage render(QByteArray svg, const QColor& textColor, const QSize& size)
{
    const bool followsText = svg.contains("currentColor");
    svg.replace("currentColor", textColor.name().toLatin1());
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    // The name of a color lacks its opacity, in which palettes may dim disabled text.
    painter.setOpacity(followsText ? textColor.alphaF() : 1);
    QSvgRenderer(svg).render(&painter);
    return image;
}

class SymbolEngine final : public QIconEngine {
public:
    explicit SymbolEngine(QByteArray svg) : svg_(std::move(svg)) {}

    QIconEngine* clone() const override { return new SymbolEngine(svg_); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override
    {
        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto textColor = QApplication::palette().color(group, QPalette::WindowText);
        const QSize pixels = square.size() * painter->device()->devicePixelRatioF();
        if (image_.size() != pixels || imageColor_ != textColor) {
            image_ = render(svg_, textColor, pixels);
            imageColor_ = textColor;
        }
        painter->save();
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(square, image_);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return drawn;
    }

private:
    QByteArray svg_;
    // The last drawing: a table paints the same sign in row after row.
    QImage image_;
    QColor imageColor_;
};

}  // namespace

QIcon symbolIcon(const QString& name)
{
    linkIcons();
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::logic_error("there is no symbol named " + name.toStdString());
    }
    // The icon owns its engine.
    return QIcon(new SymbolEngine(file.readAll()));
}

}  // namespace dunmora
