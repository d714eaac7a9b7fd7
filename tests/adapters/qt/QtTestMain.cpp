#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLocale>

/// Windows without a display, in a locale and a style that are the same everywhere.
int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setStyle(QStringLiteral("Fusion"));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const QApplication application(argumentCount, arguments);
    QAccessible::setActive(true);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
