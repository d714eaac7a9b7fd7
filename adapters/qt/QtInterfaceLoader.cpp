#include "adapters/qt/QtInterfaceLoader.h"

#include "adapters/qt/AccessibleWindow.h"
#include "adapters/qt/ElidedLabel.h"
#include "adapters/qt/InterfaceConventions.h"
#include "adapters/qt/MessageView.h"
#include "adapters/qt/NoticeButton.h"
#include "adapters/qt/QtInterface.h"
#include "adapters/qt/QtText.h"

#include <QAccessible>
#include <QFile>
#include <QUiLoader>
#include <QWidget>

#include <utility>

/// Links the interface files, which nothing else refers to. The macro must be used outside every
/// namespace.
static void linkInterfaceFiles()
{
    Q_INIT_RESOURCE(interfaces);
}

namespace dunmora {

namespace {

/// Creates our own widgets where Qt's would cut off a text, or let the user edit it.
class WidgetLoader final : public QUiLoader {
public:
    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override
    {
        QWidget* widget = nullptr;
        if (className == QLatin1String("QLabel")) {
            widget = new ElidedLabel(parent);
        } else if (className == QLatin1String("QToolButton")) {
            widget = new NoticeButton(parent);
        } else if (className == QLatin1String("QPlainTextEdit")) {
            widget = new MessageView(parent);
        } else {
            return QUiLoader::createWidget(className, parent, name);
        }
        widget->setObjectName(name);
        return widget;
    }
};

}  // namespace

QtInterfaceLoader::QtInterfaceLoader(ModalSessions& sessions)
    : QtInterfaceLoader(sessions, ":/interfaces")
{
    linkInterfaceFiles();
}

QtInterfaceLoader::QtInterfaceLoader(ModalSessions& sessions, std::string folder)
    : sessions_(sessions), folder_(std::move(folder))
{
    // Qt ignores a factory that is already installed.
    QAccessible::installFactory(accessibleWindow);
}

void QtInterfaceLoader::setDropHandler(std::string command, QtInterface::DropHandler handler)
{
    dropCommand_ = std::move(command);
    dropHandler_ = std::move(handler);
}

void QtInterfaceLoader::setWindowMemory(std::shared_ptr<WindowMemory> memory)
{
    memory_ = std::move(memory);
}

std::unique_ptr<Interface> QtInterfaceLoader::load(std::string_view name)
{
    return loadInterface(name);
}

std::unique_ptr<QtInterface> QtInterfaceLoader::loadInterface(std::string_view name) const
{
    QFile file(toQString(folder_ + "/" + std::string(name) + ".ui"));
    if (!file.open(QIODevice::ReadOnly)) {
        return nullptr;
    }
    WidgetLoader loader;
    // Our files contain only Qt's own classes.
    loader.clearPluginPaths();
    std::unique_ptr<QWidget> window(loader.load(&file));
    if (!window) {
        return nullptr;
    }
    applyConventions(*window);
    auto interface = std::make_unique<QtInterface>(std::move(window), sessions_);
    if (dropHandler_ && interface->hasCommand(dropCommand_)) {
        interface->setDropHandler(dropCommand_, dropHandler_);
    }
    if (memory_) {
        interface->remember(memory_);
    }
    return interface;
}

}  // namespace dunmora
