#include "adapters/qt/DetailsModel.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QImage>

namespace dunmora::test {

namespace {

DetailsLine photo(Qt::GlobalColor colour, const std::string& verdict = "")
{
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(colour);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "PNG");
    DetailsLine line;
    line.title = "Photo";
    line.verdict = verdict;
    line.picture = file.data().toStdString();
    return line;
}

DetailsLine name()
{
    DetailsLine line;
    line.title = "Name";
    return line;
}

TEST(DetailsModel, DecodesAPictureOnceWhileItIsShown)
{
    DetailsModel model;
    model.setLines({photo(Qt::red)});
    const auto decoded = model.drawn(0).picture;
    ASSERT_FALSE(decoded.isNull());

    model.setLines({name(), photo(Qt::red, "Only here")});

    EXPECT_EQ(model.drawn(1).picture.cacheKey(), decoded.cacheKey());
    EXPECT_TRUE(model.drawn(0).picture.isNull());
}

TEST(DetailsModel, ShowsAnotherPictureInThePlaceOfTheOneBefore)
{
    DetailsModel model;
    model.setLines({name(), photo(Qt::red)});

    model.setLines({name(), photo(Qt::green)});

    EXPECT_EQ(model.drawn(1).picture.pixelColor(0, 0), QColor(Qt::green));
}

}  // namespace

}  // namespace dunmora::test
