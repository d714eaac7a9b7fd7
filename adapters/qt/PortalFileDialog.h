#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <filesystem>
#include <optional>

class QDBusMessage;

namespace dunmora {

class ModalSessions;

/// The file dialog of the desktop itself, which the desktop portal shows
/// (org.freedesktop.portal.FileChooser). Qt 6.4 offers it only to programs that leave their whole
/// look to the portal's platform theme, and waits forever for a portal that has ended.
///
/// Thread: the main thread, once a QApplication exists. Errors: none.
class PortalFileDialog final : public QObject {
    Q_OBJECT

public:
    /// The portal's dialog for opening chooses files or folders, never both.
    enum class Kind { OpenFile, OpenFolder, SaveFile };

    struct Question {
        Kind kind;
        QString title;
        /// Where the dialog starts; must be absolute.
        std::filesystem::path folder;
        /// The name proposed for a new file.
        QString name = {};
    };

    enum class End {
        Chosen,
        Cancelled,
        /// The desktop shows no such dialog, or failed to.
        Unavailable,
    };

    struct Result {
        End end;
        /// What the user has chosen.
        std::filesystem::path path = {};
    };

    /// `sessions` must outlive the dialog; `bus` is the session's bus and may be disconnected.
    PortalFileDialog(ModalSessions& sessions, QDBusConnection bus);

    /// Shows the dialog once and handles events until it ends. The user's input to this program is
    /// blocked; a click or Escape in the main window offers to give the dialog up. A reply that
    /// does not name one local file or folder is reported to the user and counts as cancelled.
    Result runModal(const Question& question);

private:
    Q_SLOT void respond(const QDBusMessage& response);
    Q_SLOT void disconnected();
    void call(const Question& question);
    void close();
    void finish(const Result& result);

    ModalSessions& sessions_;
    QDBusConnection bus_;
    /// The portal's object for this dialog.
    QString request_;
    /// The window that appears when the user cannot find the dialog; null while none is prepared.
    QWidget* helpWindow_ = nullptr;
    std::optional<Result> result_;
    bool hasResponded_ = false;
    /// Whether the user has been in another window than ours, such as the dialog, since the call.
    bool hasLeft_ = false;
};

}  // namespace dunmora
