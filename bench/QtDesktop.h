#pragma once

#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtInterfaceLoader.h"
#include "adapters/qt/QtNumberFormat.h"
#include "adapters/qt/QtOpenPanel.h"
#include "adapters/qt/QtSavePanel.h"
#include "adapters/qt/QtTextFolding.h"
#include "platform/Desktop.h"
#include "tests/fakes/QuietDesktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QEvent>

namespace dunmora::bench {

/// The ports of a benchmark with real windows and no network; installs itself as the desktop for
/// its lifetime.
///
/// Thread: the main thread, under a QApplication.
struct QtDesktop {
    QtDesktop() { Desktop::install(desktop); }
    ~QtDesktop() { handleEvents(); }
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;

    /// Handles all pending events, including drawing and deleting closed windows.
    static void handleEvents()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    QtApplication application{*qobject_cast<QApplication*>(QCoreApplication::instance())};
    QtInterfaceLoader interfaceLoader{application.sessions()};
    // Not connected: a benchmark shows nothing on the desktop.
    QDBusConnection bus{QStringLiteral("none")};
    QtOpenPanel openPanel{application.sessions(), bus};
    QtSavePanel savePanel{application.sessions(), bus};
    test::QuietConnectionOpener connectionOpener;
    QtTextFolding textFolding;
    QtNumberFormat numberFormat;
    Desktop desktop{application, interfaceLoader, openPanel,   connectionOpener,
                    textFolding, savePanel,       numberFormat};
};

}  // namespace dunmora::bench
