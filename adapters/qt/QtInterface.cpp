#include "adapters/qt/QtInterface.h"

#include "adapters/qt/InterfaceShortcuts.h"
#include "adapters/qt/MessageView.h"
#include "adapters/qt/ModalSessions.h"
#include "adapters/qt/QtButton.h"
#include "adapters/qt/QtCheckBox.h"
#include "adapters/qt/QtCommand.h"
#include "adapters/qt/QtDetailsView.h"
#include "adapters/qt/QtMenu.h"
#include "adapters/qt/QtProgressIndicator.h"
#include "adapters/qt/QtTableView.h"
#include "adapters/qt/QtText.h"
#include "adapters/qt/QtTextField.h"
#include "adapters/qt/QtView.h"
#include "adapters/qt/QtWindow.h"
#include "adapters/qt/RememberedText.h"
#include "adapters/qt/RememberedWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDropEvent>
#include <QFile>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QScopedValueRollback>
#include <QTableView>
#include <QThread>
#include <QUrl>

#include <map>
#include <stdexcept>
#include <string>
#include <utility>

namespace dunmora {

namespace {

/// The outlets of one kind, each created on first use.
template <typename Outlet, typename Widget>
class Outlets final {
public:
    Outlet& of(Widget& widget)
    {
        auto& outlet = outlets_[&widget];
        if (!outlet) {
            outlet = std::make_unique<Outlet>(widget);
        }
        return *outlet;
    }

private:
    std::map<const Widget*, std::unique_ptr<Outlet>> outlets_;
};

/// The local files and folders that are dropped; none if anything else is among them.
std::vector<std::filesystem::path> droppedPaths(const QDropEvent& event)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& url : event.mimeData()->urls()) {
        if (!url.isLocalFile()) {
            return {};
        }
        paths.emplace_back(QFile::encodeName(url.toLocalFile()).toStdString());
    }
    return paths;
}

}  // namespace

/// The parts of an interface. Created, used and deleted on the main thread.
class QtInterface::Content final : public QObject {
public:
    Content(std::unique_ptr<QWidget> widget, ModalSessions& sessions)
        : sessions_(sessions),
          widget_(std::move(widget)),
          shortcuts(shortcutsIn(*widget_)),
          window(*widget_, sessions, closeRequest())
    {
        findCommands();
        widget_->installEventFilter(this);
    }

    /// Returns null if there is none.
    template <typename Widget>
    Widget* find(std::string_view outlet) const
    {
        return widget_->findChild<Widget*>(toQString(outlet));
    }

    template <typename Widget>
    Widget& widgetNamed(std::string_view outlet) const
    {
        auto* const widget = find<Widget>(outlet);
        if (widget == nullptr) {
            throw std::logic_error("the interface " + widget_->objectName().toStdString() +
                                   " has no " + Widget::staticMetaObject.className() + " named " +
                                   std::string(outlet));
        }
        return *widget;
    }

    /// The table, with the filter bar and the filter named after it.
    QtTableView& tableNamed(std::string_view outlet)
    {
        auto& widget = widgetNamed<QTableView>(outlet);
        auto& table = tables_[&widget];
        if (!table) {
            const auto name = widget.objectName();
            table = std::make_unique<QtTableView>(
                widget, widget_->findChild<QWidget*>(name + QStringLiteral("FilterBar")),
                widget_->findChild<QLineEdit*>(name + QStringLiteral("Filter")));
        }
        return *table;
    }

    QtMenu& menuNamed(std::string_view outlet)
    {
        auto& widget = widgetNamed<QMenu>(outlet);
        auto& menu = menus_[&widget];
        if (!menu) {
            menu = std::make_unique<QtMenu>(widget, [this] { return sessions_.blocks(*widget_); });
        }
        return *menu;
    }

    bool hasCommand(std::string_view name) const { return commands_.find(name) != commands_.end(); }

    QtCommand& commandNamed(std::string_view name)
    {
        const auto found = commands_.find(name);
        if (found == commands_.end()) {
            throw std::logic_error("the interface " + widget_->objectName().toStdString() +
                                   " has no command named " + std::string(name));
        }
        return found->second;
    }

    void setDropHandler(QtCommand& command, DropHandler handler)
    {
        dropCommand_ = &command;
        dropHandler_ = std::move(handler);
        widget_->setAcceptDrops(true);
    }

    void remember(const std::shared_ptr<WindowMemory>& memory)
    {
        if (!RememberedWindow::isRemembered(*widget_)) {
            return;
        }
        remembered_ = std::make_unique<RememberedWindow>(*widget_, memory);
        for (const auto* const widget : widget_->findChildren<QTableView*>()) {
            if (RememberedWindow::isRemembered(*widget)) {
                rememberColumns(widget->objectName().toStdString());
            }
        }
    }

    /// Closes the window without calling any handler or delegate.
    void detach()
    {
        for (auto& [name, command] : commands_) {
            command.setHandler({});
        }
        menus_.clear();
        dropHandler_ = {};
        window.setDelegate(nullptr);
        window.close();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return watched == widget_.get() && handleDrag(static_cast<QDropEvent&>(*event));
        default:
            return false;
        }
    }

private:
    QtWindow::CloseRequest closeRequest()
    {
        const auto name = widget_->property("closeCommand").toString().toStdString();
        if (name.empty()) {
            return {};
        }
        return [this, name] {
            if (!sessions_.blocks(*widget_)) {
                commandNamed(name).use(nullptr);
            }
        };
    }

    void rememberColumns(const std::string& tableName)
    {
        auto& table = tableNamed(tableName);
        const auto key = tableName + ".columns";
        table.setChosenWidths(widthsIn(remembered_->text(key)));
        table.onChosenWidths([this, key](const ColumnWidths& widths) {
            remembered_->change(key, widthsText(widths));
        });
    }

    void findCommands()
    {
        // Direct children only: some widgets have their own actions.
        for (auto* const action :
             widget_->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (!action->objectName().isEmpty()) {
                addAction(*action, commands_[action->objectName().toStdString()]);
            }
        }
        for (auto* const button : widget_->findChildren<QAbstractButton*>()) {
            const auto name = button->property("command").toString().toStdString();
            if (!name.empty()) {
                addButton(*button, commands_[name]);
            }
        }
    }

    void addAction(QAction& action, QtCommand& command)
    {
        command.addAction(action);
        if (action.property("forFocus").toBool()) {
            command.setHandler([this, &action](View*) { pressInFocus(action.shortcut()); });
        }
        const bool isAlwaysUsable = action.property("alwaysUsable").toBool();
        connect(&action, &QAction::triggered, this, [this, &command, isAlwaysUsable] {
            command.restoreCheckMarks();
            if (isAlwaysUsable || !sessions_.blocks(*widget_)) {
                command.use(nullptr);
            }
        });
    }

    /// Presses the keys in the widget that has the keyboard focus.
    void pressInFocus(const QKeySequence& keys)
    {
        auto* const focused = widget_->focusWidget();
        // If the widget does not know the keys, Qt uses the command again.
        if (focused != nullptr && !keys.isEmpty() && !isPressing_) {
            const QScopedValueRollback guard(isPressing_, true);
            QKeyEvent press(QEvent::KeyPress, keys[0].key(), keys[0].keyboardModifiers());
            QCoreApplication::sendEvent(focused, &press);
        }
    }

    void addButton(QAbstractButton& button, QtCommand& command)
    {
        command.addButton(button);
        // `clicked` is emitted for the user's clicks, not for a state that the program sets.
        connect(&button, &QAbstractButton::clicked, this, [this, &button, &command] {
            if (!sessions_.blocks(*widget_)) {
                command.use(&outletOf(button));
            }
        });
    }

    /// The same object that a controller gets for the outlet.
    View& outletOf(QAbstractButton& button)
    {
        if (auto* const box = qobject_cast<QCheckBox*>(&button)) {
            return checkBoxes.of(*box);
        }
        return buttons.of(button);
    }

    bool handleDrag(QDropEvent& event)
    {
        auto paths = droppedPaths(event);
        if (!dropHandler_ || paths.empty() || !dropCommand_->isUsable()) {
            event.ignore();
            return true;
        }
        event.setDropAction(Qt::CopyAction);
        event.accept();
        if (event.type() == QEvent::Drop) {
            // The program that the files come from waits until this event is handled.
            QMetaObject::invokeMethod(
                this, [this, dropped = std::move(paths)] { drop(dropped); }, Qt::QueuedConnection);
        }
        return true;
    }

    void drop(const std::vector<std::filesystem::path>& paths) const
    {
        const auto handler = dropHandler_;
        if (handler && dropCommand_->isUsable() && !sessions_.blocks(*widget_)) {
            handler(paths);
        }
    }

    ModalSessions& sessions_;
    std::map<std::string, QtCommand, std::less<>> commands_;
    QtCommand* dropCommand_ = nullptr;
    DropHandler dropHandler_;
    bool isPressing_ = false;
    // Outlives the outlets below, which refer to its widgets.
    std::unique_ptr<QWidget> widget_;
    std::unique_ptr<RememberedWindow> remembered_;
    std::map<const QTableView*, std::unique_ptr<QtTableView>> tables_;
    std::map<const QMenu*, std::unique_ptr<QtMenu>> menus_;

public:
    const std::vector<Shortcut> shortcuts;
    QtWindow window;
    Outlets<QtView, QWidget> views;
    Outlets<QtButton, QAbstractButton> buttons;
    Outlets<QtCheckBox, QCheckBox> checkBoxes;
    Outlets<QtTextField, QLabel> textFields;
    Outlets<QtTextField, MessageView> messages;
    Outlets<QtProgressIndicator, QProgressBar> progressIndicators;
    Outlets<QtDetailsView, QListView> detailsViews;
};

QtInterface::QtInterface(std::unique_ptr<QWidget> window, ModalSessions& sessions)
    : content_(new Content(std::move(window), sessions))
{
}

QtInterface::~QtInterface()
{
    // Deferred even on the main thread: the caller may be a handler of one of its buttons.
    if (QThread::currentThread() == content_->thread()) {
        content_->detach();
        content_->deleteLater();
        return;
    }
    QMetaObject::invokeMethod(
        content_,
        [content = content_] {
            content->detach();
            content->deleteLater();
        },
        Qt::QueuedConnection);
}

Window& QtInterface::window()
{
    return content_->window;
}

View& QtInterface::view(std::string_view outlet)
{
    return content_->views.of(content_->widgetNamed<QWidget>(outlet));
}

Button& QtInterface::button(std::string_view outlet)
{
    return content_->buttons.of(content_->widgetNamed<QAbstractButton>(outlet));
}

CheckBox& QtInterface::checkBox(std::string_view outlet)
{
    return content_->checkBoxes.of(content_->widgetNamed<QCheckBox>(outlet));
}

TextField& QtInterface::textField(std::string_view outlet)
{
    if (auto* const message = content_->find<MessageView>(outlet)) {
        return content_->messages.of(*message);
    }
    return content_->textFields.of(content_->widgetNamed<QLabel>(outlet));
}

ProgressIndicator& QtInterface::progressIndicator(std::string_view outlet)
{
    return content_->progressIndicators.of(content_->widgetNamed<QProgressBar>(outlet));
}

TableView& QtInterface::tableView(std::string_view outlet)
{
    return content_->tableNamed(outlet);
}

DetailsView& QtInterface::detailsView(std::string_view outlet)
{
    return content_->detailsViews.of(content_->widgetNamed<QListView>(outlet));
}

Menu& QtInterface::menu(std::string_view outlet)
{
    return content_->menuNamed(outlet);
}

Command& QtInterface::command(std::string_view name)
{
    return content_->commandNamed(name);
}

std::vector<Shortcut> QtInterface::shortcuts() const
{
    return content_->shortcuts;
}

bool QtInterface::hasCommand(std::string_view name) const
{
    return content_->hasCommand(name);
}

void QtInterface::setDropHandler(std::string_view command, DropHandler handler)
{
    content_->setDropHandler(content_->commandNamed(command), std::move(handler));
}

void QtInterface::remember(const std::shared_ptr<WindowMemory>& memory)
{
    content_->remember(memory);
}

}  // namespace dunmora
