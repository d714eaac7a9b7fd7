#pragma once

#include "platform/NumberFormat.h"

#include <QLocale>

namespace dunmora {

/// Writes numbers as Qt does in a locale.
class QtNumberFormat final : public NumberFormat {
public:
    explicit QtNumberFormat(const QLocale& locale = QLocale()) : locale_(locale) {}

    std::string grouped(std::size_t number) const override;

private:
    QLocale locale_;
};

}  // namespace dunmora
