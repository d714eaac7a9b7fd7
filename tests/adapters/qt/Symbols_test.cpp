#include "adapters/qt/Symbols.h"

#include <QApplication>
#include <QImage>
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

TEST(Symbols, EachIsDrawnInTheSizeWanted)
{
    for (const auto* const name : {"about", "close", "delete", "doubt", "find", "information",
                                   "loss", "open", "quit", "reload"}) {
        const auto image = drawn(name);
        EXPECT_EQ(image.size(), kSize) << name;
        EXPECT_FALSE(isEmpty(image)) << name;
    }
}

TEST(Symbols, HaveTheColorOfTheTexts)
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

TEST(Symbols, OfWarningsAreOfTheirOwnKindAndColor)
{
    EXPECT_NE(drawn("loss"), drawn("doubt"));
    EXPECT_EQ(drawn("loss"), drawn("loss", QIcon::Selected));
}

TEST(Symbols, ThatThereAreNotAreAFault)
{
    EXPECT_THROW(symbolIcon(QStringLiteral("nothing")), std::logic_error);
}

}  // namespace dunmora::test
