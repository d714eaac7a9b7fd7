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
constexpr const char* kCheckBox = "QCheckBox";
constexpr QLatin1String kKey("color-scheme");
// The portal's numbers: 0 is no preference, 2 is light.
constexpr uint kPrefersDark = 1;
// A portal that has to be started first must not keep the window from the user: its answer is
// followed when it comes.
constexpr auto kPatience = std::chrono::milliseconds(250);

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

/// Greys of the Fusion style turned over; the contrast of text to ground is at least 7 to 1, and
/// 3 to 1 for what is disabled.
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

/// What the style makes the outline of an empty box of, by darkening it, has to be seen on the dark
/// window.
QPalette outlined(QPalette palette)
{
    palette.setColor(QPalette::Window, QColor(0xa8, 0xa8, 0xae));
    return palette;
}

void apply(const QDBusVariant& value)
{
    // Styles of a desktop bring its colours along; Fusion is what stands where there is none.
    if (QApplication::style()->name() != QLatin1String("fusion")) {
        return;
    }
    // No palette of ours: what the platform would show.
    QApplication::setPalette(QPalette());
    QApplication::setPalette(QPalette(), kCheckBox);
    if (value.variant().toUInt() == kPrefersDark && !isDark(QApplication::palette())) {
        QApplication::setPalette(darkPalette());
        QApplication::setPalette(outlined(darkPalette()), kCheckBox);
    }
}

void applyAnswer(const QDBusPendingCall& answer)
{
    const auto reply = answer.reply();
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        // Read wraps the value in one more variant than the signal does.
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
    // Qt looks for the types of a slot by name, and of this one it knows the name only when
    // somebody has used it: without, it refuses the connection.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));

    auto read = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    read << QString(kGroup) << QString(kKey);
    auto* const question = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(question, &QDBusPendingCallWatcher::finished, this, [question] {
        applyAnswer(*question);
        question->deleteLater();
    });
    // A window that is first shown in one and then in the other would blink.
    QEventLoop loop;
    connect(question, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(kPatience, &loop, &QEventLoop::quit);
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
