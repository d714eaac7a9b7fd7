#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLocale>

/// Runs without a display, in the same locale and style everywhere.
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
