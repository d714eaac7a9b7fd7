#include "adapters/qt/DateFormat.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace dunmora {

DateFormat::DateFormat(const QLocale& locale)
    : locale_(locale), format_(locale.dateTimeFormat(QLocale::ShortFormat))
{
    format_.replace(QRegularExpression(QStringLiteral("y+")), QStringLiteral("yyyy"));
}

QString DateFormat::text(std::chrono::sys_seconds time) const
{
    return locale_.toString(QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count()),
                            format_);
}

int DateFormat::greatestWidth(const QFontMetrics& metrics) const
{
    int width = 0;
    for (int month = 1; month <= 12; ++month) {
        for (const int hour : {10, 22}) {
            const QDateTime time(QDate(2000, month, 20), QTime(hour, 0), Qt::UTC);
            width = std::max(width, metrics.horizontalAdvance(locale_.toString(time, format_)));
        }
    }
    return width;
}

}  // namespace dunmora
