#include "adapters/qt/QtOpenPanel.h"

#include "adapters/qt/AlertDialog.h"
#include "tests/adapters/qt/QtTest.h"
#include "tests/fakes/TemporaryFolder.h"

#include <QAbstractItemView>
#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <filesystem>
#include <functional>
#include <optional>

namespace dunmora::test {

namespace {

class QtOpenPanelTest : public QtTest {
protected:
    QtOpenPanelTest()
    {
        write(folder.path() / "book.vcf", "");
        write(folder.path() / "book.txt", "");
        std::filesystem::create_directory(folder.path() / "cards");
    }

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
    choose(const std::function<void(QFileDialog& dialog)>& user,
           OpenPanel::Kind kind = OpenPanel::Kind::File)
    {
        soon([&] {
            auto& dialog = shownDialog();
            dialog.setDirectory(QString::fromStdString(folder.path().string()));
            user(dialog);
        });
        return panel.runModal(kind, "");
    }

    /// Returns the folder in which the panel starts for this one.
    std::filesystem::path startFor(const std::filesystem::path& start)
    {
        QString shown;
        soon([&] {
            shown = shownDialog().directory().absolutePath();
            press(shownDialog(), Qt::Key_Escape);
        });
        panel.runModal(OpenPanel::Kind::File, start);
        return shown.toStdString();
    }

    static QPushButton& folderButton(QFileDialog& dialog)
    {
        for (auto* const button : dialog.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("Open This &Folder")) {
                return *button;
            }
        }
        throw std::runtime_error("no button opens the folder");
    }

    const TemporaryFolder folder;
    // Not connected to a desktop that shows its own dialog.
    QtOpenPanel panel{application.sessions(), QDBusConnection(QStringLiteral("none"))};
};

TEST_F(QtOpenPanelTest, ChoosesNothingWhenCancelled)
{
    EXPECT_EQ(choose([](QFileDialog& dialog) { press(dialog, Qt::Key_Escape); }), std::nullopt);
    EXPECT_EQ(choose([](QFileDialog& dialog) { pressCloseControl(dialog); }), std::nullopt);
}

TEST_F(QtOpenPanelTest, ChoosesAFile)
{
    const auto choice = choose([](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(QStringLiteral("book.vcf"));
        press(dialog, Qt::Key_Return);
    });

    EXPECT_EQ(choice, folder.path() / "book.vcf");
}

TEST_F(QtOpenPanelTest, ChoosesTheFolderShown)
{
    const auto choice = choose([](QFileDialog& dialog) { click(folderButton(dialog)); });

    EXPECT_EQ(choice, folder.path());
}

TEST_F(QtOpenPanelTest, ChoosesTheSelectedFolder)
{
    const auto choice = choose([](QFileDialog& dialog) {
        auto& view = *dialog.findChild<QAbstractItemView*>(QStringLiteral("listView"));
        const auto cards = [&] {
            const auto* const model = view.model();
            for (int row = 0; row < model->rowCount(view.rootIndex()); ++row) {
                const auto index = model->index(row, 0, view.rootIndex());
                if (index.data().toString() == QStringLiteral("cards")) {
                    return index;
                }
            }
            return QModelIndex();
        };
        // The dialog reads the folder on another thread.
        handleEventsUntil([&] { return cards().isValid(); });
        view.setCurrentIndex(cards());
        click(folderButton(dialog));
    });

    EXPECT_EQ(choice, folder.path() / "cards");
}

TEST_F(QtOpenPanelTest, ReportsAMissingFileAndLetsOtherWindowsClose)
{
    for (const auto* const name : {"gone.vcf", "/gone/gone.vcf", "gone"}) {
        QString reported;
        const QWidget* qtModal = nullptr;
        const auto choice = choose([&](QFileDialog& dialog) {
            soon([&] {
                qtModal = QApplication::activeModalWidget();
                auto* const alert = dialog.findChild<AlertDialog*>();
                reported = alert->findChild<QLabel*>(QStringLiteral("message"))->text();
                EXPECT_EQ(alert->findChild<QLabel*>(QStringLiteral("sign"))->accessibleName(),
                          QStringLiteral("Error"));
                press(*alert, Qt::Key_Return);
            });
            dialog.findChild<QLineEdit*>()->setText(QString::fromLatin1(name));
            press(dialog, Qt::Key_Return);
            handleEvents();
            EXPECT_TRUE(dialog.isVisible());
            press(dialog, Qt::Key_Escape);
        });
        EXPECT_EQ(reported.toStdString(),
                  "“" + (folder.path() / name).string() + "” does not exist.");
        EXPECT_EQ(qtModal, nullptr);
        EXPECT_EQ(choice, std::nullopt);
    }
}

TEST_F(QtOpenPanelTest, DeletesAndRenamesNothing)
{
    write(folder.path() / "cards" / "card.vcf", "");

    choose([this](QFileDialog& dialog) {
        auto& view = *dialog.findChild<QAbstractItemView*>(QStringLiteral("listView"));
        const auto* const model = view.model();
        handleEventsUntil([&] { return model->rowCount(view.rootIndex()) == 2; });
        for (int row = 0; row < 2; ++row) {
            const auto index = model->index(row, 0, view.rootIndex());
            EXPECT_FALSE(index.flags().testFlag(Qt::ItemIsEditable));
            view.setCurrentIndex(index);
            // Confirms any question that the deletion asks.
            soon([] {
                if (auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                    box->done(QMessageBox::Yes);
                }
            });
            // The entry of the context menu.
            auto* const deletion = dialog.findChild<QAction*>(QStringLiteral("qt_delete_action"));
            deletion->setEnabled(true);
            deletion->trigger();
            handleEvents();
        }
        press(dialog, Qt::Key_Escape);
    });

    EXPECT_TRUE(std::filesystem::exists(folder.path() / "book.vcf"));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "cards" / "card.vcf"));
}

TEST_F(QtOpenPanelTest, OffersVCardFilesFirst)
{
    choose([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.selectedNameFilter(), QStringLiteral("vCard files (*.vcf *.vcard)"));
        EXPECT_EQ(dialog.nameFilters().size(), 2);
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtOpenPanelTest, CanBeUsedWithoutAMouse)
{
    choose([](QFileDialog& dialog) {
        auto& button = folderButton(dialog);
        EXPECT_TRUE(button.focusPolicy() & Qt::TabFocus);
        QStringList mnemonics;
        for (const auto* const other : dialog.findChildren<QPushButton*>()) {
            mnemonics.push_back(QKeySequence::mnemonic(other->text()).toString());
        }
        for (const auto* const label : dialog.findChildren<QLabel*>()) {
            mnemonics.push_back(QKeySequence::mnemonic(label->text()).toString());
        }
        EXPECT_EQ(mnemonics.count(QKeySequence::mnemonic(button.text()).toString()), 1);
        press(dialog, Qt::Key_Escape);
    });
}

TEST_F(QtOpenPanelTest, StartsInTheFolderOfTheLastChoice)
{
    choose([](QFileDialog& dialog) { click(folderButton(dialog)); });

    EXPECT_EQ(startFor(""), folder.path());
}

TEST_F(QtOpenPanelTest, StartsInTheFolderGivenIfThatExists)
{
    choose([](QFileDialog& dialog) { click(folderButton(dialog)); });

    EXPECT_EQ(startFor(folder.path() / "cards"), folder.path() / "cards");
    EXPECT_EQ(startFor(folder.path() / "gone"), folder.path());
}

TEST_F(QtOpenPanelTest, LetsTheUserLookForAFolder)
{
    const auto choice = choose(
        [](QFileDialog& dialog) {
            EXPECT_THROW(folderButton(dialog), std::runtime_error);
            dialog.findChild<QLineEdit*>()->setText(QStringLiteral("cards"));
            press(dialog, Qt::Key_Return);
        },
        OpenPanel::Kind::Folder);

    EXPECT_EQ(choice, folder.path() / "cards");
}

}  // namespace

}  // namespace dunmora::test
