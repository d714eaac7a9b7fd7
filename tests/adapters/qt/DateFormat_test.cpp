#include "adapters/qt/DateFormat.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFont>

#include <algorithm>
#include <chrono>
#include <utility>

namespace dunmora::test {

namespace {

std::chrono::sys_seconds localTime(int year, int month, int day, int hour, int minute)
{
    const QDateTime time(QDate(year, month, day), QTime(hour, minute));
    return std::chrono::sys_seconds(std::chrono::seconds(time.toSecsSinceEpoch()));
}

TEST(DateFormat, WritesTheWholeYear)
{
    const auto time = localTime(2023, 11, 14, 22, 13);

    for (const auto& [locale, expected] :
         {std::pair(QLocale(QLocale::English, QLocale::UnitedStates),
                    QStringLiteral("11/14/2023 10:13 PM")),
          std::pair(QLocale(QLocale::German, QLocale::Germany), QStringLiteral("14.11.2023 22:13")),
          std::pair(QLocale(QLocale::Japanese, QLocale::Japan), QStringLiteral("2023/11/14 22:13")),
          std::pair(QLocale::c(), QStringLiteral("14 Nov 2023 22:13:00"))}) {
        // Some versions of the locale data separate the day from the hour differently.
        auto text = DateFormat(locale).text(time).replace(QChar(0x202F), u' ');
        EXPECT_EQ(text.remove(u','), expected);
    }
}

TEST(DateFormat, WritesTheYearOnceInEveryLocale)
{
    for (const auto& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        const auto whole = DateFormat(locale).text(localTime(2031, 5, 6, 7, 8));
        const auto year = locale.toString(QDate(2031, 5, 6), QStringLiteral("yyyy"));

        EXPECT_TRUE(whole.contains(year)) << locale.name().toStdString();
        EXPECT_EQ(whole.count(year), 1) << locale.name().toStdString();
    }
}

TEST(DateFormat, NoTextIsWiderThanTheGreatestWidth)
{
    const QFontMetrics metrics{QFont()};
    for (const auto language : {QLocale::English, QLocale::German, QLocale::Persian, QLocale::C}) {
        const DateFormat format{QLocale(language)};
        const int greatest = format.greatestWidth(metrics);
        int widest = 0;
        for (int day = 0; day < 730; ++day) {
            for (const int hour : {0, 9, 12, 20}) {
                const auto time = localTime(2008, 1, 1, hour, 48) + std::chrono::days(day);
                widest = std::max(widest, metrics.horizontalAdvance(format.text(time)));
            }
        }

        EXPECT_LE(widest, greatest) << language;
        EXPECT_GT(2 * widest, greatest) << language;
    }
}

}  // namespace

}  // namespace dunmora::test
