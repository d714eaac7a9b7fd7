#pragma once

#include <QFontMetrics>
#include <QLocale>
#include <QString>

#include <chrono>

namespace dunmora {

/// Writes points in time as the locale does where space is short, but always with the whole year.
///
/// Thread: the main thread. Errors: none.
class DateFormat final {
public:
    explicit DateFormat(const QLocale& locale = QLocale());

    /// In the local time zone.
    QString text(std::chrono::sys_seconds time) const;

    /// No text of a year with four digits is wider than this.
    int greatestWidth(const QFontMetrics& metrics) const;

private:
    QLocale locale_;
    QString format_;
};

}  // namespace dunmora
