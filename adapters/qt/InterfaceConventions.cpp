#include "adapters/qt/InterfaceConventions.h"

#include "adapters/qt/FooterLayout.h"
#include "adapters/qt/ScreenFit.h"
#include "adapters/qt/Symbols.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialogButtonBox>
#include <QIcon>
#include <QKeySequence>
#include <QMainWindow>
#include <QMetaEnum>
#include <QPushButton>
#include <QSplitter>
#include <QWidget>

#include <algorithm>
#include <stdexcept>

namespace dunmora {

namespace {

/// Returns the enumerator that a property of an interface file names; the property must exist.
template <typename Enum>
Enum namedValue(const QObject& object, const char* property)
{
    const auto name = object.property(property).toByteArray();
    bool isKnown = false;
    const int value = QMetaEnum::fromType<Enum>().keyToValue(name.constData(), &isKnown);
    if (!isKnown) {
        throw std::logic_error(std::string("an interface file has an unknown ") + property + ": " +
                               name.toStdString());
    }
    return static_cast<Enum>(value);
}

bool has(const QObject& object, const char* property)
{
    return object.property(property).isValid();
}

template <typename ActionOrButton>
void applyIcon(ActionOrButton& object)
{
    QIcon icon;
    if (has(object, "symbol")) {
        icon = symbolIcon(object.property("symbol").toString());
    }
    if (has(object, "themeIcon")) {
        icon = QIcon::fromTheme(object.property("themeIcon").toString(), icon);
    }
    if (!icon.isNull()) {
        object.setIcon(icon);
    }
}

void applyShortcut(QAction& action)
{
    if (has(action, "standardKey")) {
        action.setShortcuts(namedValue<QKeySequence::StandardKey>(action, "standardKey"));
    }
}

void applyFont(QWidget& widget)
{
    if (has(widget, "fontScale")) {
        auto font = widget.font();
        font.setPointSizeF(font.pointSizeF() * widget.property("fontScale").toDouble());
        widget.setFont(font);
    }
}

/// Leaves some of the screen for what is around the widget.
void applyMinimumSize(QWidget& widget)
{
    const auto most = spaceWithinFrame(widget) * 9 / 10;
    if (has(widget, "minimumLines")) {
        widget.setMinimumHeight(
            std::min(widget.fontMetrics().lineSpacing() * widget.property("minimumLines").toInt(),
                     most.height()));
    }
    if (has(widget, "minimumColumns")) {
        widget.setMinimumWidth(std::min(widget.fontMetrics().averageCharWidth() *
                                            widget.property("minimumColumns").toInt(),
                                        most.width()));
    }
}

void applyInitialSize(QWidget& window)
{
    if (has(window, "initialColumns")) {
        const auto metrics = window.fontMetrics();
        const QSize wanted(metrics.averageCharWidth() * window.property("initialColumns").toInt(),
                           metrics.lineSpacing() * window.property("initialLines").toInt());
        window.resize(wanted.boundedTo(spaceWithinFrame(window)));
    }
}

void applyShares(QSplitter& splitter)
{
    const auto shares = splitter.property("initialShares").toString().split(QLatin1Char(' '));
    QList<int> sizes;
    for (const auto& share : shares) {
        splitter.setStretchFactor(static_cast<int>(sizes.size()), share.toInt());
        // Only their proportions count, but sizes below the least are enlarged first.
        constexpr int kLarge = 1000;
        sizes.push_back(share.toInt() * kLarge);
    }
    splitter.setSizes(sizes);
}

void applyCommands(const QDialogButtonBox& box)
{
    for (auto* const button : box.buttons()) {
        const bool accepts = box.buttonRole(button) == QDialogButtonBox::AcceptRole;
        // Some styles add icons that say less than the text.
        button->setIcon({});
        button->setProperty("command", box.property(accepts ? "acceptCommand" : "rejectCommand"));
        if (auto* const pushButton = qobject_cast<QPushButton*>(button)) {
            pushButton->setDefault(accepts);
        }
    }
}

}  // namespace

void applyConventions(QWidget& window)
{
    for (auto* const action : window.findChildren<QAction*>()) {
        applyShortcut(*action);
        applyIcon(*action);
    }
    for (auto* const button : window.findChildren<QAbstractButton*>()) {
        applyIcon(*button);
    }
    for (auto* const widget : window.findChildren<QWidget*>()) {
        applyFont(*widget);
        applyMinimumSize(*widget);
    }
    for (auto* const widget : window.findChildren<QWidget*>()) {
        if (has(*widget, "footer")) {
            // The widget owns its layout.
            new FooterLayout(*widget);
        }
    }
    letMenusScroll(window);
    applyInitialSize(window);
    if (qobject_cast<QMainWindow*>(&window) != nullptr) {
        limitMinimumSize(window);
    }
    for (auto* const splitter : window.findChildren<QSplitter*>()) {
        if (has(*splitter, "initialShares")) {
            applyShares(*splitter);
        }
    }
    for (const auto* const box : window.findChildren<QDialogButtonBox*>()) {
        if (has(*box, "acceptCommand")) {
            applyCommands(*box);
        }
    }
}

}  // namespace dunmora
