#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <optional>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Death tests start a new process: Qt does not survive a fork.
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    // No display, and a temporary home, because Qt stores the history of file dialogs. The process
    // of a death test shares its parent's home, because it exits without removing its own.
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
