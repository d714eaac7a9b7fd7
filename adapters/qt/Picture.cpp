#include "adapters/qt/Picture.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace dunmora {

namespace {

/// What cards contain. Other formats of Qt, such as SVG, do far more than to show a photo.
constexpr std::array kFormats{"jpeg", "png", "gif", "webp", "bmp"};
/// Takes some hundredths of a second to decode.
constexpr qint64 kMaxPixels = 24'000'000;
constexpr qsizetype kMaxBytes = qsizetype{16} * 1024 * 1024;
/// Sharp at the height of a few lines, on a screen with small pixels, too.
constexpr QSize kThumbnail(256, 256);

}  // namespace

QImage decodedPicture(std::string_view bytes)
{
    const auto size = static_cast<qsizetype>(bytes.size());
    if (bytes.empty() || size > kMaxBytes) {
        return {};
    }
    auto data = QByteArray::fromRawData(bytes.data(), size);
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (std::find(kFormats.begin(), kFormats.end(), reader.format()) == kFormats.end()) {
        return {};
    }
    const auto full = reader.size();
    if (!full.isValid() || full.isEmpty() || qint64{full.width()} * full.height() > kMaxPixels) {
        return {};
    }
    if (full.width() > kThumbnail.width() || full.height() > kThumbnail.height()) {
        reader.setScaledSize(full.scaled(kThumbnail, Qt::KeepAspectRatio).expandedTo({1, 1}));
    }
    return reader.read();
}

}  // namespace dunmora
