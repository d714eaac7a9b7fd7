#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace dunmora {

/// Follows the desktop's light or dark colour scheme, which Qt itself does only since version 6.5.
/// The scheme comes from the desktop portal (org.freedesktop.portal.Settings,
/// org.freedesktop.appearance).
///
/// Thread: the main thread, once a QApplication exists. Errors: none; without a portal the windows
/// keep the colours that Qt gives them.
class DesktopColorScheme final : public QObject {
    Q_OBJECT

public:
    /// Applies the current scheme; waits a quarter of a second for the portal at most.
    DesktopColorScheme();

private Q_SLOTS:
    static void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

}  // namespace dunmora
