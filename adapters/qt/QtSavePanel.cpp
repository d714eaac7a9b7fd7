#include "adapters/qt/QtSavePanel.h"

#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/PortalFileDialog.h"
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

constexpr auto kSuffix = "vcf";

QString title()
{
    return QStringLiteral("Save Removed People");
}

/// Whether a file exists at the path, which is then reported to the user.
bool isTaken(ModalSessions& sessions, const std::filesystem::path& path)
{
    const QFileInfo info(textOf(path));
    if (!info.exists() && !info.isSymLink()) {
        return false;
    }
    QtAlert::runModal(sessions,
                      {quotedPath(path) + " already exists. Choose another name or folder.", "",
                       "OK", std::nullopt, std::nullopt, AlertStyle::Failure});
    return true;
}

/// Reports a file that exists in an alert of ours: Qt's own message box would offer to replace it,
/// and keep the main window from closing.
class FileDialog final : public QFileDialog {
public:
    FileDialog(ModalSessions& sessions, const QString& folder)
        : QFileDialog(sessions.front(), title(), folder), sessions_(sessions)
    {
    }

    void accept() override
    {
        for (const auto& file : selectedFiles()) {
            if (QFileInfo(file).isDir()) {
                break;
            }
            if (isTaken(sessions_, pathOf(file))) {
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
    auto start = startFolder({folder, lastFolder_}, QStandardPaths::DocumentsLocation);
    while (true) {
        const auto result =
            PortalFileDialog(sessions_, bus_)
                .runModal({PortalFileDialog::Kind::SaveFile, title(), start, toQString(name)});
        if (result.end == PortalFileDialog::End::Unavailable) {
            return runOwnDialog(name, start);
        }
        if (result.end == PortalFileDialog::End::Cancelled) {
            return std::nullopt;
        }
        auto path = result.path;
        if (!path.has_extension()) {
            path.replace_extension(kSuffix);
        }
        start = path.parent_path();
        // The desktop's dialog offers to replace a file.
        if (!isTaken(sessions_, path)) {
            lastFolder_ = start;
            return path;
        }
    }
}

std::optional<std::filesystem::path> QtSavePanel::runOwnDialog(const std::string& name,
                                                               const std::filesystem::path& start)
{
    FileDialog dialog(sessions_, textOf(start));
    // As in QtOpenPanel: a native dialog would have its own idea of modality.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setWindowModality(Qt::NonModal);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QString::fromLatin1(kSuffix));
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
