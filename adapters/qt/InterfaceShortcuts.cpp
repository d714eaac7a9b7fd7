#include "adapters/qt/InterfaceShortcuts.h"

#include "adapters/qt/QtText.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include <algorithm>

namespace dunmora {

namespace {

/// As the platform writes them. Platforms add keys of old keyboards after the first two.
QString textOf(const QList<QKeySequence>& keys)
{
    QStringList texts;
    for (const auto& key : keys.first(std::min<qsizetype>(keys.size(), 2))) {
        texts << key.toString(QKeySequence::NativeText);
    }
    return texts.join(QStringLiteral(", "));
}

QString textOfKeys(const QString& words)
{
    QStringList texts;
    for (const auto& word : words.split(QLatin1Char(' '))) {
        const QKeySequence key(word, QKeySequence::PortableText);
        const bool isKey = !key.isEmpty() && key[0].key() != Qt::Key_unknown;
        texts << (isKey ? key.toString(QKeySequence::NativeText) : word);
    }
    return texts.join(QStringLiteral(", "));
}

Shortcut shortcut(const QString& group, const QString& title, const QString& keys)
{
    return {group.toStdString(), title.toStdString(), keys.toStdString()};
}

void addMenu(const QAction& menu, std::vector<Shortcut>& found)
{
    for (const auto* const action : menu.menu()->actions()) {
        if (!action->shortcuts().isEmpty()) {
            found.push_back(shortcut(withoutMarks(menu.text()), withoutMarks(action->text()),
                                     textOf(action->shortcuts())));
        }
    }
}

void addKeys(const QWidget& widget, std::vector<Shortcut>& found)
{
    const auto group = widget.property("keysTitle").toString();
    for (const auto& line : widget.property("keys").toStringList()) {
        const auto colon = line.indexOf(QLatin1String(": "));
        found.push_back(shortcut(group, line.mid(colon + 2), textOfKeys(line.left(colon))));
    }
}

}  // namespace

std::vector<Shortcut> shortcutsIn(const QWidget& window)
{
    std::vector<Shortcut> found;
    for (const auto* const bar : window.findChildren<QMenuBar*>()) {
        for (const auto* const menu : bar->actions()) {
            addMenu(*menu, found);
        }
    }
    for (const auto* widget = window.nextInFocusChain(); widget != &window;
         widget = widget->nextInFocusChain()) {
        addKeys(*widget, found);
    }
    return found;
}

}  // namespace dunmora
