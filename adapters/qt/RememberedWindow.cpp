#include "adapters/qt/RememberedWindow.h"

#include "adapters/qt/RememberedText.h"
#include "adapters/qt/ScreenFit.h"
#include "adapters/qt/WindowPlacement.h"

#include <QAction>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QSplitter>
#include <QWidget>

#include <algorithm>
#include <array>
#include <utility>

namespace dunmora {

namespace {

constexpr auto kSize = "size";
constexpr auto kPlace = "place";
constexpr auto kMaximized = "maximized";
constexpr auto kYes = "true";
constexpr auto kNo = "false";

std::string nameOf(const QObject& object)
{
    return object.objectName().toStdString();
}

std::string sizesKey(const QSplitter& splitter)
{
    return nameOf(splitter) + ".sizes";
}

std::string checkedKey(const QAction& action)
{
    return nameOf(action) + ".checked";
}

std::string checkedText(const QAction& action)
{
    return action.isChecked() ? kYes : kNo;
}

}  // namespace

RememberedWindow::RememberedWindow(QWidget& window, const std::shared_ptr<WindowMemory>& memory,
                                   std::chrono::milliseconds calm)
    : window_(window), known_(memory->load(nameOf(window))), writer_(memory, nameOf(window))
{
    calm_.setSingleShot(true);
    calm_.setInterval(calm);
    connect(&calm_, &QTimer::timeout, this, [this] { store(); });
    restorePlacement();
    for (auto* const splitter : window.findChildren<QSplitter*>()) {
        if (isRemembered(*splitter)) {
            restoreSizes(*splitter);
            connect(splitter, &QSplitter::splitterMoved, this, [this, splitter] {
                const auto list = splitter->sizes();
                const std::vector<int> sizes(list.begin(), list.end());
                change(sizesKey(*splitter), numbersText(sizes));
            });
        }
    }
    for (auto* const action : window.findChildren<QAction*>()) {
        if (isRemembered(*action)) {
            commands_.push_back(action);
            connect(action, &QAction::toggled, this, [this] { calm_.start(); });
        }
    }
    window.installEventFilter(this);
}

bool RememberedWindow::isRemembered(const QObject& part)
{
    return part.property("remembered").toBool();
}

std::string RememberedWindow::text(std::string_view key) const
{
    const auto found = known_.find(key);
    return found != known_.end() ? found->second : "";
}

void RememberedWindow::change(const std::string& key, const std::string& text)
{
    note(key, text);
    calm_.start();
}

bool RememberedWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &window_) {
        return false;
    }
    switch (event->type()) {
    case QEvent::Show:
        if (!std::exchange(wasShown_, true)) {
            restoreCheckMarks();
        }
        calm_.start();
        break;
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::WindowStateChange:
        calm_.start();
        break;
    default:
        break;
    }
    return false;
}

void RememberedWindow::restorePlacement()
{
    auto wanted = window_.size();
    const auto size = numbersIn(text(kSize), 2);
    if (size && size->front() > 0 && size->back() > 0) {
        wanted = QSize(size->front(), size->back());
    }
    QScreen* screen = nullptr;
    QRect place;
    if (const auto corner = numbersIn(text(kPlace), 2)) {
        place = QRect(QPoint(corner->front(), corner->back()), wanted);
        screen = QGuiApplication::screenAt(place.center());
    }
    if (screen != nullptr) {
        window_.setScreen(screen);
    }
    window_.resize(wanted.boundedTo(spaceWithinFrame(window_)));
    // Off every screen, it is for the window manager to find a place.
    if (screen != nullptr) {
        const auto area = screen->availableGeometry();
        place.setSize(window_.size());
        if (!area.contains(place)) {
            // Room for its frame, too, whose size is only an estimate.
            place.setSize(window_.size() + area.size() - spaceWithinFrame(window_));
        }
        window_.move(movedInto(area, place).topLeft());
    }
    if (text(kMaximized) == kYes) {
        window_.setWindowState(window_.windowState() | Qt::WindowMaximized);
    }
}

void RememberedWindow::restoreSizes(QSplitter& splitter) const
{
    const auto sizes =
        numbersIn(text(sizesKey(splitter)), static_cast<std::size_t>(splitter.count()));
    if (!sizes || std::any_of(sizes->begin(), sizes->end(), [](int size) { return size <= 0; })) {
        return;
    }
    // Only their proportions count, but sizes below the least are enlarged first.
    constexpr int kLarge = 10;
    QList<int> shares;
    for (const int size : *sizes) {
        shares.push_back(size * kLarge);
    }
    splitter.setSizes(shares);
}

/// Uses the commands as the user would, because their handlers keep the check marks.
void RememberedWindow::restoreCheckMarks()
{
    for (auto* const action : commands_) {
        const auto key = checkedKey(*action);
        const auto wanted = text(key);
        if ((wanted == kYes || wanted == kNo) && wanted != checkedText(*action)) {
            action->trigger();
        }
        known_.insert_or_assign(key, checkedText(*action));
    }
}

/// What the window manager and the user have made of the window.
WindowMemory::Texts RememberedWindow::placement() const
{
    const auto state = window_.windowState();
    if (!window_.isVisible() || state.testAnyFlags(Qt::WindowMinimized | Qt::WindowFullScreen)) {
        return {};
    }
    if (state.testFlag(Qt::WindowMaximized)) {
        return {{kMaximized, kYes}};
    }
    const std::array size{window_.width(), window_.height()};
    const std::array place{window_.x(), window_.y()};
    return {{kMaximized, kNo}, {kSize, numbersText(size)}, {kPlace, numbersText(place)}};
}

void RememberedWindow::note(const std::string& key, const std::string& text)
{
    if (auto& known = known_[key]; known != text) {
        known = text;
        changes_.insert_or_assign(key, text);
    }
}

/// Stores the changes. Called only when there has been none for a moment: while a window is being
/// maximized it may have its new size before it is known to be maximized.
void RememberedWindow::store()
{
    if (!wasShown_) {
        return;
    }
    const auto current = placement();
    const bool isFirst = !current.empty() && !std::exchange(wasPlaced_, true);
    for (const auto& [key, text] : current) {
        if (isFirst) {
            // The window manager's choice, or what was restored.
            known_.insert_or_assign(key, text);
        } else {
            note(key, text);
        }
    }
    for (const auto* const action : commands_) {
        note(checkedKey(*action), checkedText(*action));
    }
    writer_.write(std::exchange(changes_, {}));
}

}  // namespace dunmora
