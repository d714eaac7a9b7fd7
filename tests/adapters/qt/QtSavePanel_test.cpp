#include "adapters/qt/QtSavePanel.h"

#include "adapters/qt/AlertDialog.h"
#include "tests/adapters/qt/QtTest.h"
#include "tests/fakes/TemporaryFolder.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>

#include <filesystem>
#include <functional>
#include <optional>

namespace dunmora::test {

namespace {

class QtSavePanelTest : public QtTest {
protected:
    static QFileDialog& shownDialog()
    {
        for (auto* const window : QApplication::topLevelWidgets()) {
            if (auto* const found = qobject_cast<QFileDialog*>(window);
                found != nullptr && found->isVisible()) {
                return *found;
            }
        }
        throw std::runtime_error("no panel is shown");
    }

    /// Shows the panel in the folder, acts as the user, and returns the choice.
    std::optional<std::filesystem::path>
    choose(const std::function<void(QFileDialog& dialog)>& user)
    {
        soon([&] {
            auto& dialog = shownDialog();
            dialog.setDirectory(QString::fromStdString(folder.path().string()));
            user(dialog);
        });
        return panel.runModal("Removed People.vcf", "");
    }

    static void type(QFileDialog& dialog, const char* name)
    {
        dialog.findChild<QLineEdit*>()->setText(QString::fromUtf8(name));
        press(dialog, Qt::Key_Return);
    }

    const TemporaryFolder folder;
    // Not connected to a desktop that shows its own dialog.
    QtSavePanel panel{application.sessions(), QDBusConnection(QStringLiteral("none"))};
};

TEST_F(QtSavePanelTest, ProposesAName)
{
    const auto choice = choose([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>()->text(), QStringLiteral("Removed People.vcf"));
        press(dialog, Qt::Key_Return);
    });

    EXPECT_EQ(choice, folder.path() / "Removed People.vcf");
}

TEST_F(QtSavePanelTest, ChoosesNothingWhenCancelled)
{
    EXPECT_EQ(choose([](QFileDialog& dialog) { press(dialog, Qt::Key_Escape); }), std::nullopt);
}

TEST_F(QtSavePanelTest, AddsTheEndingOfTheFormat)
{
    EXPECT_EQ(choose([](QFileDialog& dialog) { type(dialog, "removed"); }),
              folder.path() / "removed.vcf");
}

TEST_F(QtSavePanelTest, StartsInTheFolderGiven)
{
    soon([] { press(shownDialog(), Qt::Key_Return); });

    EXPECT_EQ(panel.runModal("Removed People.vcf", folder.path()),
              folder.path() / "Removed People.vcf");
}

TEST_F(QtSavePanelTest, NeverChoosesAFileThatExists)
{
    write(folder.path() / "old.vcf", "old");

    QString reported;
    const auto choice = choose([&](QFileDialog& dialog) {
        soon([&] {
            auto* const alert = dialog.findChild<AlertDialog*>();
            reported = alert->findChild<QLabel*>(QStringLiteral("message"))->text();
            EXPECT_EQ(alert->findChild<QLabel*>(QStringLiteral("sign"))->accessibleName(),
                      QStringLiteral("Error"));
            press(*alert, Qt::Key_Return);
        });
        type(dialog, "old.vcf");
        handleEvents();
        EXPECT_TRUE(dialog.isVisible());
        press(dialog, Qt::Key_Escape);
    });

    EXPECT_EQ(reported.toStdString(), "“" + (folder.path() / "old.vcf").string() +
                                          "” already exists. Choose another name or folder.");
    EXPECT_EQ(choice, std::nullopt);
}

}  // namespace

}  // namespace dunmora::test
