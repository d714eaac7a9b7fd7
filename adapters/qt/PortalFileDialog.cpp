#include "adapters/qt/PortalFileDialog.h"

#include "adapters/qt/AlertDialog.h"
#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/PortalFilter.h"
#include "adapters/qt/QtAlert.h"
#include "adapters/qt/WindowPlacement.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QGuiApplication>
#include <QLatin1String>
#include <QRandomGenerator>
#include <QVariantMap>
#include <QWidget>

#include <string>
#include <string_view>
#include <utility>

namespace dunmora {

namespace {

constexpr QLatin1String kService("org.freedesktop.portal.Desktop");
constexpr QLatin1String kPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String kFileChooser("org.freedesktop.portal.FileChooser");
constexpr QLatin1String kRequest("org.freedesktop.portal.Request");
// The portal replies before it shows the dialog, but it may have to be started first.
constexpr int kReplyTimeoutInMilliseconds = 3000;

// The portal's codes for the end of a dialog. Any other may be a failure, but some desktops also
// send it when the user closes the dialog's window.
constexpr uint kChosen = 0;
constexpr uint kCancelled = 1;

/// The name of the main window for the portal, which keeps its dialog above that window; empty
/// where Qt has none, as on Wayland.
QString parentHandle()
{
    auto* const window = mainWindow();
    if (window == nullptr || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {};
    }
    return QStringLiteral("x11:") + QString::number(window->winId(), 16);
}

/// The file of this machine at the URI; empty for any other (RFC 8089).
std::filesystem::path localPath(const QString& uri)
{
    auto rest = uri.toUtf8();
    for (const auto* const prefix : {"file://localhost/", "file:///", "file:/"}) {
        if (rest.startsWith(prefix)) {
            rest.remove(0, static_cast<qsizetype>(std::string_view(prefix).size()) - 1);
            // Not QUrl, which loses bytes that are not UTF-8.
            const auto path = QByteArray::fromPercentEncoding(rest);
            const bool isPath = !path.contains('\0') && !path.startsWith("//");
            return isPath ? std::filesystem::path(path.toStdString()) : std::filesystem::path();
        }
    }
    return {};
}

QVariantMap optionsFor(const PortalFileDialog::Question& question, const QString& token)
{
    using Kind = PortalFileDialog::Kind;
    QVariantMap options{{QStringLiteral("handle_token"), token}, {QStringLiteral("modal"), true}};
    if (question.kind == Kind::OpenFolder) {
        options.insert(QStringLiteral("directory"), true);
    } else {
        options.insert(QStringLiteral("filters"), QVariant::fromValue(vCardPortalFilters()));
    }
    if (question.kind == Kind::SaveFile) {
        options.insert(QStringLiteral("current_name"), question.name);
    }
    // The portal expects the zero byte at the end.
    const auto folder = question.folder.string();
    options.insert(QStringLiteral("current_folder"),
                   QByteArray(folder.c_str(), static_cast<qsizetype>(folder.size()) + 1));
    return options;
}

}  // namespace

PortalFileDialog::PortalFileDialog(ModalSessions& sessions, QDBusConnection bus)
    : sessions_(sessions), bus_(std::move(bus))
{
}

PortalFileDialog::Result PortalFileDialog::runModal(const Question& question)
{
    if (!bus_.isConnected()) {
        return {End::Unavailable};
    }
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) { hasLeft_ |= state != Qt::ApplicationActive; });
    AlertDialog help({"The desktop's file dialog is open.",
                      "If you cannot find it, use Dunmora's own dialog instead.", "Use Own Dialog",
                      "Cancel"},
                     sessions_.front());
    helpWindow_ = &help;
    connect(&help, &QDialog::finished, this, [this](int code) {
        finish({code == QDialog::Accepted ? End::Unavailable : End::Cancelled});
    });
    call(question);
    sessions_.runHidden(help);
    helpWindow_ = nullptr;

    if (!hasResponded_) {
        close();
    }
    if (result_->end == End::Chosen && result_->path.empty()) {
        QtAlert::runModal(sessions_, {"The desktop's file dialog did not return a single file or "
                                      "folder on this computer.",
                                      "", "OK", std::nullopt, std::nullopt, AlertStyle::Failure});
        return {End::Cancelled};
    }
    return *result_;
}

void PortalFileDialog::call(const Question& question)
{
    const auto token = QStringLiteral("dunmora%1").arg(QRandomGenerator::global()->generate());
    const auto sender = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    request_ = kPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
    // Before the call, whose reply the response may overtake.
    bus_.connect(kService, request_, kRequest, QStringLiteral("Response"), this,
                 SLOT(respond(QDBusMessage)));
    bus_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(disconnected()));
    auto* const owner =
        new QDBusServiceWatcher(kService, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*service*/, const QString& oldOwner) {
                // It has no old owner while it starts.
                if (!oldOwner.isEmpty()) {
                    finish({End::Unavailable});
                }
            });

    const bool isNew = question.kind == Kind::SaveFile;
    auto message = QDBusMessage::createMethodCall(kService, kPath, kFileChooser,
                                                  isNew ? QStringLiteral("SaveFile")
                                                        : QStringLiteral("OpenFile"));
    message << parentHandle() << question.title << optionsFor(question, token);
    auto* const reply =
        new QDBusPendingCallWatcher(bus_.asyncCall(message, kReplyTimeoutInMilliseconds), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        if (reply->isError()) {
            finish({End::Unavailable});
        }
    });
}

void PortalFileDialog::respond(const QDBusMessage& response)
{
    hasResponded_ = true;
    const auto arguments = response.arguments();
    bool isCode = false;
    const auto code = arguments.value(0).toUInt(&isCode);
    if (isCode && code == kChosen) {
        const auto results = qdbus_cast<QVariantMap>(arguments.value(1));
        const auto uris = results.value(QStringLiteral("uris")).toStringList();
        finish({End::Chosen, uris.size() == 1 ? localPath(uris.front()) : std::filesystem::path()});
    } else if (isCode && (code == kCancelled || hasLeft_)) {
        finish({End::Cancelled});
    } else {
        // Nobody can have closed a dialog without ever being there.
        finish({End::Unavailable});
    }
}

void PortalFileDialog::disconnected()
{
    finish({End::Unavailable});
}

/// Tells the portal that nobody waits for the dialog any more. A portal that replied too late would
/// show it after all.
void PortalFileDialog::close()
{
    bus_.send(
        QDBusMessage::createMethodCall(kService, request_, kRequest, QStringLiteral("Close")));
}

void PortalFileDialog::finish(const Result& result)
{
    if (!result_) {
        result_ = result;
        sessions_.end(*helpWindow_);
    }
}

}  // namespace dunmora
