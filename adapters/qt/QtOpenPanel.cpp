#include "adapters/qt/QtOpenPanel.h"

#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/PortalFileDialog.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtPath.h"
#include "text/DisplayText.h"

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

/// The folder selected in one of the dialog's file lists, or else the folder that it shows.
QString chosenFolder(const QFileDialog& dialog)
{
    for (const auto* const view : dialog.findChildren<QAbstractItemView*>()) {
        if (qobject_cast<QFileSystemModel*>(view->model()) == nullptr) {
            continue;
        }
        const auto selected = view->selectionModel()->selectedIndexes();
        if (!selected.isEmpty()) {
            auto path = selected.front().data(QFileSystemModel::FilePathRole).toString();
            if (QFileInfo(path).isDir()) {
                return path;
            }
        }
    }
    return dialog.directory().absolutePath();
}

QString titleOf(OpenPanel::Kind kind)
{
    return kind == OpenPanel::Kind::File ? QStringLiteral("Open Address Book")
                                         : QStringLiteral("Open Folder of vCard Files");
}

/// Reports a missing file in an alert of ours: Qt's own message box would keep the main window from
/// closing.
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
                QtAlert::runModal(sessions_,
                                  {quotedPath(pathOf(file)) + " does not exist.", "", "OK",
                                   std::nullopt, std::nullopt, AlertStyle::Failure});
                return;
            }
        }
        QFileDialog::accept();
    }

private:
    ModalSessions& sessions_;
};

}  // namespace

std::optional<std::filesystem::path> QtOpenPanel::runModal(Kind kind,
                                                           const std::filesystem::path& folder)
{
    const auto start = startFolder({folder, lastFolder_}, QStandardPaths::HomeLocation);
    const auto portalKind =
        kind == Kind::File ? PortalFileDialog::Kind::OpenFile : PortalFileDialog::Kind::OpenFolder;
    const auto result =
        PortalFileDialog(sessions_, bus_).runModal({portalKind, titleOf(kind), start});
    switch (result.end) {
    case PortalFileDialog::End::Chosen:
        lastFolder_ = result.path.parent_path();
        return result.path;
    case PortalFileDialog::End::Cancelled:
        return std::nullopt;
    case PortalFileDialog::End::Unavailable:
        break;
    }
    return runOwnDialog(kind, start);
}

std::optional<std::filesystem::path> QtOpenPanel::runOwnDialog(Kind kind,
                                                               const std::filesystem::path& start)
{
    const bool isForFiles = kind == Kind::File;
    FileDialog dialog(sessions_, titleOf(kind), textOf(start));
    // A native dialog would have no button for folders and its own idea of modality.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    // Otherwise the dialog lets the user rename and delete files and whole folders.
    dialog.setOption(QFileDialog::ReadOnly);
    dialog.setWindowModality(Qt::NonModal);
    dialog.setFileMode(isForFiles ? QFileDialog::ExistingFile : QFileDialog::Directory);
    dialog.setNameFilters(
        {QStringLiteral("vCard files (*.vcf *.vcard)"), QStringLiteral("All files (*)")});

    std::optional<std::filesystem::path> choice;
    QPushButton openFolder(QStringLiteral("Open This &Folder"));
    // Without a button box the panel still opens files.
    if (auto* const buttons = dialog.findChild<QDialogButtonBox*>();
        isForFiles && buttons != nullptr) {
        buttons->addButton(&openFolder, QDialogButtonBox::ActionRole);
    }
    QObject::connect(&openFolder, &QPushButton::clicked, &dialog, [&] {
        choice = pathOf(chosenFolder(dialog));
        dialog.reject();
    });
    QObject::connect(&dialog, &QFileDialog::fileSelected, &dialog,
                     [&](const QString& file) { choice = pathOf(file); });
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&] { sessions_.end(dialog); });
    sessions_.run(dialog);

    if (choice) {
        lastFolder_ = pathOf(dialog.directory().absolutePath());
    }
    return choice;
}

}  // namespace dunmora
