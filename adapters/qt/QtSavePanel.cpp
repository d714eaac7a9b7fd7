#include "adapters/qt/QtSavePanel.h"

#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/QtPath.h"
#include "adapters/qt/QtText.h"
#include "text/DisplayText.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace dunmora {

namespace {

/// Reports a file that exists in an alert of ours: Qt's own message box would offer to replace it,
/// and keep the main window from closing.
class FileDialog final : public QFileDialog {
public:
    FileDialog(ModalSessions& sessions, const QString& folder)
        : QFileDialog(sessions.front(), QStringLiteral("Save Removed People"), folder),
          sessions_(sessions)
    {
    }

    void accept() override
    {
        for (const auto& file : selectedFiles()) {
            const QFileInfo info(file);
            if (info.isDir()) {
                break;
            }
            if (info.exists() || info.isSymLink()) {
                QtAlert::runModal(
                    sessions_,
                    {quotedPath(pathOf(file)) + " already exists. Choose another name or folder.",
                     "", "OK", std::nullopt, std::nullopt, AlertStyle::Failure});
                return;
            }
        }
        QFileDialog::accept();
    }

private:
    ModalSessions& sessions_;
};

}  // namespace

std::optional<std::filesystem::path> QtSavePanel::runModal(const std::string& name,
                                                           const std::filesystem::path& folder)
{
    const auto start = startFolder({folder, lastFolder_}, QStandardPaths::DocumentsLocation);
    FileDialog dialog(sessions_, textOf(start));
    // As in QtOpenPanel: a native dialog would have its own idea of modality.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setWindowModality(Qt::NonModal);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QStringLiteral("vcf"));
    dialog.setNameFilters(
        {QStringLiteral("vCard files (*.vcf *.vcard)"), QStringLiteral("All files (*)")});
    dialog.selectFile(toQString(name));

    std::optional<std::filesystem::path> choice;
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
