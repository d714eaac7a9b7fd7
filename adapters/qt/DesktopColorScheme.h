#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace dunmora {

/// Shows the windows in the desktop's choice of light or dark, now and whenever it changes, where
/// Qt's own platform theme does not: Qt learns of that choice in version 6.5 only. The choice comes
/// from the desktop portal (org.freedesktop.portal.Settings, org.freedesktop.appearance).
///
/// Thread: the main thread, after the QApplication was made. Errors: none; without a portal the
/// windows stay as Qt makes them.
class DesktopColorScheme final : public QObject {
    Q_OBJECT

public:
    DesktopColorScheme();

private Q_SLOTS:
    static void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

}  // namespace dunmora
