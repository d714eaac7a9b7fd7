#include "adapters/qt/QtOpenPanel.h"

#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/QtAlert.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QPushButton>
#include <QStandardPaths>

#include <string>

namespace dunmora {

namespace {

/// The folder that is selected in the dialog, else the one whose files it shows.
QString shownFolder(const QFileDialog& dialog)
{
    // Both of the dialog's views share one selection.
    const auto* const view = dialog.findChild<QAbstractItemView*>(QStringLiteral("listView"));
    const auto selected = view->selectionModel()->selectedIndexes();
    if (!selected.isEmpty()) {
        auto path = selected.front().data(QFileSystemModel::FilePathRole).toString();
        if (QFileInfo(path).isDir()) {
            return path;
        }
    }
    return dialog.directory().absolutePath();
}

std::filesystem::path pathOf(const QString& text)
{
    return QFile::encodeName(text).toStdString();
}

QString textOf(const std::filesystem::path& path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

/// Qt's file dialog, which would tell of a file that is not there in a box that keeps the main
/// window from closing.
class FileDialog final : public QFileDialog {
public:
    FileDialog(ModalSessions& sessions, const QString& title, const QString& folder)
        : QFileDialog(sessions.front(), title, folder), sessions_(sessions)
    {
    }

    void accept() override
    {
        for (const auto& file : selectedFiles()) {
            if (!QFileInfo::exists(file)) {
                QtAlert::runModal(sessions_, {"“" + file.toStdString() + "” does not exist.", "",
                                              "OK", std::nullopt});
                return;
            }
        }
        QFileDialog::accept();
    }

private:
    ModalSessions& sessions_;
};

}  // namespace

std::optional<std::filesystem::path> QtOpenPanel::runModal()
{
    const auto start = folder_.empty()
                           ? QStandardPaths::writableLocation(QStandardPaths::HomeLocation)
                           : textOf(folder_);
    FileDialog dialog(sessions_, QStringLiteral("Open Address Book"), start);
    // The desktop's own dialogs know no button of ours and are modal in their own way.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    // It would delete files and whole folders, and rename them: the user is here to open one.
    dialog.setOption(QFileDialog::ReadOnly);
    dialog.setWindowModality(Qt::NonModal);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(
        {QStringLiteral("vCard files (*.vcf *.vcard)"), QStringLiteral("All files (*)")});

    std::optional<std::filesystem::path> choice;
    auto* const openFolder =
        dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))
            ->addButton(QStringLiteral("Open This &Folder"), QDialogButtonBox::ActionRole);
    QObject::connect(openFolder, &QPushButton::clicked, &dialog, [&] {
        choice = pathOf(shownFolder(dialog));
        dialog.reject();
    });
    QObject::connect(&dialog, &QFileDialog::fileSelected, &dialog,
                     [&](const QString& file) { choice = pathOf(file); });
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&] { sessions_.end(dialog); });
    sessions_.run(dialog);

    if (choice) {
        folder_ = pathOf(dialog.directory().absolutePath());
    }
    return choice;
}

}  // namespace dunmora
