#include "adapters/qt/DesktopColorScheme.h"

#include <QApplication>
#include <QColor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QLatin1String>
#include <QPalette>
#include <QStyle>
#include <QTimer>

#include <chrono>

namespace dunmora {

namespace {

constexpr QLatin1String kService("org.freedesktop.portal.Desktop");
constexpr QLatin1String kPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String kInterface("org.freedesktop.portal.Settings");
constexpr QLatin1String kGroup("org.freedesktop.appearance");
constexpr QLatin1String kKey("color-scheme");
// The portal's values: 0 is no preference, 1 is dark, 2 is light.
constexpr uint kPrefersDark = 1;
// A portal that is still starting must not delay the window; a later reply is applied as well.
constexpr auto kReplyTimeout = std::chrono::milliseconds(250);

constexpr const char* kCheckBox = "QCheckBox";

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

/// The greys of the Fusion style inverted. The contrast of text to background is at least 7:1, and
/// 3:1 for disabled text.
QPalette darkPalette()
{
    const QColor window(0x2b, 0x2b, 0x2e);
    const QColor base(0x1f, 0x1f, 0x22);
    const QColor text(0xec, 0xec, 0xee);
    const QColor disabledText(0x8c, 0x8c, 0x92);
    const QColor highlight(0x2f, 0x6f, 0xc4);
    QPalette palette(QColor(0x3a, 0x3a, 0x3f), window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x27, 0x2b));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3f));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::BrightText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, disabledText);
    }
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9a, 0xa0));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4a, 0x50));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, disabledText);
    palette.setColor(QPalette::Link, QColor(0x7a, 0xb4, 0xff));
    palette.setColor(QPalette::LinkVisited, QColor(0xc0, 0x9a, 0xf0));
    return palette;
}

/// Lightens the colour from which Fusion derives the outline of an unchecked box, which would
/// otherwise be invisible on a dark window.
QPalette withVisibleOutline(QPalette palette)
{
    palette.setColor(QPalette::Window, QColor(0xa8, 0xa8, 0xae));
    return palette;
}

void apply(const QDBusVariant& value)
{
    // The styles of desktops have their own colours; Fusion is the fallback without a desktop.
    if (QApplication::style()->name() != QLatin1String("fusion")) {
        return;
    }
    // Back to the platform's own palette.
    QApplication::setPalette(QPalette());
    QApplication::setPalette(QPalette(), kCheckBox);
    if (value.variant().toUInt() == kPrefersDark && !isDark(QApplication::palette())) {
        QApplication::setPalette(darkPalette());
        QApplication::setPalette(withVisibleOutline(darkPalette()), kCheckBox);
    }
}

void applyReply(const QDBusPendingCall& call)
{
    const auto reply = call.reply();
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        // Unlike the signal, Read wraps the value in a second variant.
        const auto outer = reply.arguments().constFirst().value<QDBusVariant>();
        apply(outer.variant().value<QDBusVariant>());
    }
}

}  // namespace

DesktopColorScheme::DesktopColorScheme()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    // Qt looks up a slot's parameter types by name and rejects the connection if one is not
    // registered yet.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));

    auto read = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    read << QString(kGroup) << QString(kKey);
    auto* const call = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [call] {
        applyReply(*call);
        call->deleteLater();
    });
    // Otherwise the window would appear in one scheme and flash into the other.
    QEventLoop loop;
    connect(call, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(kReplyTimeout, &loop, &QEventLoop::quit);
    loop.exec();
}

void DesktopColorScheme::settingChanged(const QString& group, const QString& key,
                                        const QDBusVariant& value)
{
    if (group == kGroup && key == kKey) {
        apply(value);
    }
}

}  // namespace dunmora
