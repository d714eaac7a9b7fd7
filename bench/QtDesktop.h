#pragma once

#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtInterfaceLoader.h"
#include "adapters/qt/QtOpenPanel.h"
#include "platform/Desktop.h"
#include "tests/fakes/QuietDesktop.h"

#include <QApplication>
#include <QEvent>

namespace dunmora::bench {

/// The ports of a measurement with real windows and no network, installed as the desktop as long as
/// it lives.
///
/// Thread: the main thread, under a QApplication.
struct QtDesktop {
    QtDesktop() { Desktop::install(desktop); }
    ~QtDesktop() { handleEvents(); }
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;

    /// Handles what waits, drawing and the end of closed windows included.
    static void handleEvents()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    QtApplication application{*qobject_cast<QApplication*>(QCoreApplication::instance())};
    QtInterfaceLoader interfaceLoader{application.sessions()};
    QtOpenPanel openPanel{application.sessions()};
    test::QuietConnectionOpener connectionOpener;
    Desktop desktop{application, interfaceLoader, openPanel, connectionOpener};
};

}  // namespace dunmora::bench
