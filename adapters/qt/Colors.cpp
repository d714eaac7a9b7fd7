#include "adapters/qt/Colors.h"

namespace dunmora {

QColor mixed(const QColor& ground, const QColor& ink, double share)
{
    const auto mix = [share](float from, float to) {
        return from + (to - from) * static_cast<float>(share);
    };
    return QColor::fromRgbF(mix(ground.redF(), ink.redF()), mix(ground.greenF(), ink.greenF()),
                            mix(ground.blueF(), ink.blueF()));
}

}  // namespace dunmora
