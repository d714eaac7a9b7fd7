#include "adapters/qt/Symbols.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <gtest/gtest.h>

#include <stdexcept>

namespace dunmora::test {

namespace {

constexpr QSize kSize(24, 24);

QImage drawn(const char* name, QIcon::Mode mode = QIcon::Normal)
{
    return symbolIcon(QLatin1String(name)).pixmap(kSize, mode).toImage();
}

bool isEmpty(const QImage& image)
{
    QImage nothing(image.size(), image.format());
    nothing.fill(Qt::transparent);
    return image == nothing;
}

bool hasColor(const QImage& image, const QColor& color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

TEST(Symbols, AreDrawnAtTheRequestedSize)
{
    for (const auto* const name :
         {"about", "close", "delete", "different", "doubt", "find", "information", "loss", "only",
          "open", "quit", "reload", "same"}) {
        const auto image = drawn(name);
        EXPECT_EQ(image.size(), kSize) << name;
        EXPECT_FALSE(isEmpty(image)) << name;
    }
}

TEST(Symbols, AreDrawnInTheDevicePixelsOfTheScreen)
{
    constexpr qreal kRatio = 2;
    const auto icon = symbolIcon(QStringLiteral("delete"));

    const auto image = icon.pixmap(kSize, kRatio).toImage();

    EXPECT_EQ(image.size(), kSize * kRatio);
    EXPECT_NE(image.convertToFormat(QImage::Format_ARGB32),
              drawn("delete").scaled(image.size()).convertToFormat(QImage::Format_ARGB32));
}

TEST(Symbols, AreSharpWhenPaintedOnAScreenWithSmallPixels)
{
    constexpr qreal kRatio = 2;
    QImage screen(kSize * kRatio, QImage::Format_ARGB32_Premultiplied);
    screen.fill(Qt::transparent);
    screen.setDevicePixelRatio(kRatio);

    QPainter painter(&screen);
    symbolIcon(QStringLiteral("delete")).paint(&painter, QRect(QPoint(), kSize));
    painter.end();

    screen.setDevicePixelRatio(1);
    const auto sharp = symbolIcon(QStringLiteral("delete")).pixmap(kSize * kRatio).toImage();
    EXPECT_EQ(screen.convertToFormat(QImage::Format_ARGB32),
              sharp.convertToFormat(QImage::Format_ARGB32));
}

TEST(Symbols, FollowThePalette)
{
    const auto before = QApplication::palette();
    auto palette = before;
    palette.setColor(QPalette::Active, QPalette::WindowText, Qt::green);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, Qt::blue);
    QApplication::setPalette(palette);

    EXPECT_TRUE(hasColor(drawn("delete"), Qt::green));
    EXPECT_TRUE(hasColor(drawn("delete", QIcon::Disabled), Qt::blue));

    QApplication::setPalette(before);
}

TEST(Symbols, UseFixedColorsForWarnings)
{
    EXPECT_NE(drawn("loss"), drawn("doubt"));
    EXPECT_TRUE(hasColor(drawn("loss"), QColor(0xd1, 0x34, 0x38)));
    EXPECT_TRUE(hasColor(drawn("doubt"), QColor(0xf2, 0xb0, 0x1e)));
    EXPECT_TRUE(hasColor(drawn("only"), QColor(0x7b, 0x4b, 0xc4)));
    EXPECT_EQ(drawn("loss"), drawn("loss", QIcon::Selected));
}

TEST(Symbols, RejectUnknownNames)
{
    EXPECT_THROW(symbolIcon(QStringLiteral("nothing")), std::logic_error);
}

}  // namespace dunmora::test
