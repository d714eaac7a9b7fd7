#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <optional>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // A process that ends at once is tried in one that begins anew: Qt does not survive a fork.
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    // No screen, and nobody's home: Qt keeps what a file dialog has shown. A process that such a
    // test begins anew lives in the same one, because its end clears nothing away.
    std::optional<dunmora::test::TemporaryFolder> home;
    if (!qEnvironmentVariableIsSet("DUNMORA_TEST_HOME")) {
        const auto folder = QByteArray::fromStdString(home.emplace().path().string());
        for (const char* const name :
             {"DUNMORA_TEST_HOME", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
            qputenv(name, folder);
        }
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
