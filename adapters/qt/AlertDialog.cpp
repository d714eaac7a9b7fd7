#include "adapters/qt/AlertDialog.h"

#include "adapters/qt/QtText.h"
#include "adapters/qt/Symbols.h"
#include "text/DisplayText.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QStyle>
#include <QTextOption>

#include <algorithm>

namespace dunmora {

namespace {

/// A text with more lines or characters than these scrolls.
constexpr int kMaximumLines = 10;
constexpr int kColumns = 72;
constexpr qsizetype kMaximumCharacters = qsizetype{kMaximumLines} * kColumns;
/// Lines of a shorter text wrap at this many average characters.
constexpr int kWrapColumns = 60;

bool isLong(const QString& text)
{
    return text.count(QLatin1Char('\n')) >= kMaximumLines || text.size() > kMaximumCharacters;
}

/// What each of an alert's two texts may take of the screen.
QSize maximumTextSize(const QWidget& widget)
{
    const auto screen = widget.screen()->availableSize();
    return {screen.width() / 2, screen.height() * 2 / 5};
}

/// Wide enough for the longest line, up to the width at which lines wrap, and for the longest word,
/// such as a path.
int textWidth(const QLabel& label)
{
    const auto metrics = label.fontMetrics();
    const int wrapped =
        std::min({metrics.size(0, label.text()).width(), metrics.averageCharWidth() * kWrapColumns,
                  maximumTextSize(label).width()});
    return std::max(wrapped, label.minimumSizeHint().width());
}

QLabel* makeLabel(const QString& text, const QFont& font, QWidget& parent)
{
    auto* const label = new QLabel(&parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    label->setText(text);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFixedWidth(textWidth(*label));
    // The layout asks for the height at the width of its column, which the other text may widen.
    label->setMinimumHeight(label->heightForWidth(label->width()));
    return label;
}

QPlainTextEdit* makeScrollArea(const QString& text, const QFont& font,
                               const QString& accessibleName, QWidget& parent)
{
    auto* const area = new QPlainTextEdit(text, &parent);
    area->setFont(font);
    area->setAccessibleName(accessibleName);
    area->setReadOnly(true);
    area->setTabChangesFocus(true);
    // Breaks a word that is wider than the area.
    area->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    const auto metrics = area->fontMetrics();
    area->setMinimumSize(
        QSize(metrics.averageCharWidth() * kColumns, metrics.lineSpacing() * kMaximumLines)
            .boundedTo(maximumTextSize(parent)));
    area->setMaximumHeight(maximumTextSize(parent).height());
    return area;
}

/// Screen readers read a label's own text; a scroll area needs a name.
QWidget* makeText(const QString& text, const QFont& font, const QString& accessibleName,
                  QWidget& parent)
{
    if (!isLong(text)) {
        auto* const label = makeLabel(text, font, parent);
        const auto size = label->minimumSize();
        if (size.boundedTo(maximumTextSize(parent)) == size) {
            return label;
        }
        // Only the scroll area can break a word, and scroll.
        delete label;
    }
    return makeScrollArea(text, font, accessibleName, parent);
}

/// The icon at the left: the desktop's own, or ours if its theme has none.
struct Sign {
    const char* themeIcon;
    const char* ownIcon;
    /// What a screen reader calls it.
    const char* name;
};

Sign signOf(const AlertContent& content)
{
    if (content.style == AlertStyle::Failure) {
        return {"dialog-error", "loss", "Error"};
    }
    return content.alternateButton ? Sign{"dialog-warning", "doubt", "Question"}
                                   : Sign{"dialog-information", "information", "Information"};
}

/// Gives the dialog the role of an alert, which screen readers announce without being asked.
QAccessibleInterface* accessibleAlert(const QString& /*className*/, QObject* object)
{
    auto* const dialog = qobject_cast<AlertDialog*>(object);
    return dialog == nullptr ? nullptr : new QAccessibleWidget(dialog, QAccessible::AlertMessage);
}

}  // namespace

AlertDialog::AlertDialog(const AlertContent& content, QWidget* parent) : QDialog(parent)
{
    // Qt ignores a factory that is already installed.
    QAccessible::installFactory(accessibleAlert);
    setWindowTitle(QGuiApplication::applicationDisplayName());
    auto* const grid = new QGridLayout(this);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, this);
    grid->setHorizontalSpacing(2 * margin);
    grid->setVerticalSpacing(margin);
    addSign(*grid, content);
    addTexts(*grid, content);
    addButtons(*grid, content);
}

void AlertDialog::addSign(QGridLayout& grid, const AlertContent& content)
{
    const auto sign = signOf(content);
    const auto icon =
        QIcon::fromTheme(QLatin1String(sign.themeIcon), symbolIcon(QLatin1String(sign.ownIcon)));
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    auto* const label = new QLabel(this);
    label->setObjectName(QStringLiteral("sign"));
    label->setAccessibleName(QLatin1String(sign.name));
    label->setPixmap(icon.pixmap(QSize(size, size), devicePixelRatioF()));
    grid.addWidget(label, 0, 0, 2, 1, Qt::AlignTop);
}

void AlertDialog::addTexts(QGridLayout& grid, const AlertContent& content)
{
    const auto message = toQString(windowLines(content.messageText));
    auto messageFont = font();
    messageFont.setBold(!content.informativeText.empty());
    auto* const title = makeText(message, messageFont, windowTitle(), *this);
    title->setObjectName(QStringLiteral("message"));
    grid.addWidget(title, 0, 1);
    if (content.informativeText.empty()) {
        return;
    }
    auto* const details =
        makeText(toQString(windowLines(content.informativeText)), font(), message, *this);
    details->setObjectName(QStringLiteral("details"));
    grid.addWidget(details, 1, 1);
}

void AlertDialog::addButtons(QGridLayout& grid, const AlertContent& content)
{
    auto* const buttons = new QDialogButtonBox(this);
    buttons->setCenterButtons(
        style()->styleHint(QStyle::SH_MessageBox_CenterButtons, nullptr, this) != 0);
    auto* const accept = buttons->addButton(withoutMnemonic(toQString(content.defaultButton)),
                                            QDialogButtonBox::AcceptRole);
    if (content.alternateButton) {
        buttons->addButton(withoutMnemonic(toQString(*content.alternateButton)),
                           QDialogButtonBox::RejectRole);
    }
    if (content.otherButton) {
        const auto* const other = buttons->addButton(
            withoutMnemonic(toQString(*content.otherButton)), QDialogButtonBox::DestructiveRole);
        connect(other, &QPushButton::clicked, this, [this] { done(kOther); });
    }
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    accept->setDefault(true);
    accept->setFocus();
    grid.addWidget(buttons, 2, 0, 1, 2);
}

void AlertDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

}  // namespace dunmora
