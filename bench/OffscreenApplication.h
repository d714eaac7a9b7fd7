#pragma once

#include <QApplication>
#include <QLatin1String>

#include <iostream>

namespace dunmora::bench {

/// A Qt application without a display, in a style that is the same everywhere.
class OffscreenApplication final {
public:
    OffscreenApplication(int& argc, char** argv) : application_(prepared(argc), argv) {}

private:
    /// Sets up what must precede the application.
    static int& prepared(int& argc)
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(
            [](QtMsgType /*type*/, const QMessageLogContext& /*place*/, const QString& text) {
                // The offscreen platform prints many warnings.
                if (!text.startsWith(QLatin1String("This plugin does not support"))) {
                    std::cerr << text.toStdString() << '\n';
                }
            });
        QApplication::setStyle(QStringLiteral("Fusion"));
        return argc;
    }

    QApplication application_;
};

}  // namespace dunmora::bench
