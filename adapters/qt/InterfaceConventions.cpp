#include "adapters/qt/InterfaceConventions.h"

#include "adapters/qt/FooterLayout.h"
#include "adapters/qt/Symbols.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialogButtonBox>
#include <QIcon>
#include <QKeySequence>
#include <QMetaEnum>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStyle>
#include <QWidget>

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

void applyMinimumSize(QWidget& widget)
{
    if (has(widget, "minimumLines")) {
        widget.setMinimumHeight(widget.fontMetrics().lineSpacing() *
                                widget.property("minimumLines").toInt());
    }
    if (has(widget, "minimumColumns")) {
        widget.setMinimumWidth(widget.fontMetrics().averageCharWidth() *
                               widget.property("minimumColumns").toInt());
    }
}

/// The screen size left for a window inside its frame, estimated because the window manager has not
/// created the frame yet.
QSize availableSizeWithinFrame(const QWidget& window)
{
    const auto& style = *window.style();
    const int edge = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
    const int title = style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    return window.screen()->availableSize() - QSize(2 * edge, title + edge);
}

void applyInitialSize(QWidget& window)
{
    if (has(window, "initialColumns")) {
        const auto metrics = window.fontMetrics();
        const QSize wanted(metrics.averageCharWidth() * window.property("initialColumns").toInt(),
                           metrics.lineSpacing() * window.property("initialLines").toInt());
        window.resize(wanted.boundedTo(availableSizeWithinFrame(window)));
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
    applyInitialSize(window);
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
