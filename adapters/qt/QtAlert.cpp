#include "adapters/qt/QtAlert.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/QtApplication.h"
#include "adapters/qt/QtText.h"
#include "adapters/qt/Symbols.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStringList>
#include <QStyle>

#include <algorithm>
#include <limits>
#include <string_view>

namespace dunmora {

namespace {

/// As many lines as a text may have before it is shown in an area that scrolls.
constexpr int kLines = 10;
constexpr int kColumns = 72;
/// As wide as the lines of a shorter text may be before they are broken.
constexpr int kBrokenAt = 60;
constexpr qsizetype kCharacters = qsizetype{kLines} * kColumns;

/// The text with its lines, each of which may name a file or a person and is safe to show.
QString shownText(std::string_view text)
{
    QStringList lines;
    while (true) {
        const auto end = text.find('\n');
        auto line = text.substr(0, end);
        if (end != std::string_view::npos && line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines << oneLineText(line, std::numeric_limits<std::size_t>::max());
        if (end == std::string_view::npos) {
            return lines.join(QLatin1Char('\n'));
        }
        text.remove_prefix(end + 1);
    }
}

bool isLong(const QString& text)
{
    return text.count(QLatin1Char('\n')) >= kLines || text.size() > kCharacters;
}

/// Puts the text where the box has its informative text, in an area that scrolls.
void addScrollableText(QMessageBox& box, const QString& text)
{
    auto* const area = new QPlainTextEdit(text, &box);
    area->setReadOnly(true);
    area->setTabChangesFocus(true);
    area->setAccessibleName(box.text());
    const auto metrics = area->fontMetrics();
    area->setMinimumSize(metrics.averageCharWidth() * kColumns, metrics.lineSpacing() * kLines);

    auto* const grid = qobject_cast<QGridLayout*>(box.layout());
    const auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    grid->addWidget(area, row + 1, column);
}

/// Left to itself, the box breaks its informative text as narrow as its buttons are.
void setTextWidth(QMessageBox& box, const QString& text)
{
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    const auto metrics = label->fontMetrics();
    const int wanted = metrics.size(0, text).width();
    label->setMinimumWidth(std::min({wanted, metrics.averageCharWidth() * kBrokenAt,
                                     box.screen()->availableSize().width() / 2}));
}

/// Makes the message the title of what stands below it.
void emphasizeMessage(QMessageBox& box)
{
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto font = label->font();
    font.setBold(true);
    label->setFont(font);
}

/// The desktop's own sign, or ours where it has none.
void showSign(QMessageBox& box, const QString& themeIcon, const QString& symbol)
{
    const auto icon = QIcon::fromTheme(themeIcon, symbolIcon(symbol));
    const int size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    box.setIconPixmap(icon.pixmap(QSize(size, size), box.devicePixelRatioF()));
}

void showTexts(QMessageBox& box, const AlertContent& content)
{
    box.setWindowTitle(QGuiApplication::applicationDisplayName());
    box.setText(shownText(content.messageText));
    const auto details = shownText(content.informativeText);
    if (isLong(details)) {
        addScrollableText(box, details);
    } else {
        box.setInformativeText(details);
        if (!details.isEmpty()) {
            setTextWidth(box, details);
        }
    }
    if (!details.isEmpty()) {
        emphasizeMessage(box);
    }
    // The box's own setting does not reach the informative text.
    for (auto* const label : box.findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText);
    }
}

}  // namespace

int QtAlert::runModal(const AlertContent& content)
{
    int answer = kAlternateButton;
    application_.performOnMainThread([&] { answer = runModal(application_.sessions(), content); });
    return answer;
}

int QtAlert::runModal(ModalSessions& sessions, const AlertContent& content)
{
    QMessageBox box(sessions.front());
    box.setWindowModality(Qt::NonModal);
    if (content.alternateButton) {
        showSign(box, QStringLiteral("dialog-warning"), QStringLiteral("doubt"));
    } else {
        showSign(box, QStringLiteral("dialog-information"), QStringLiteral("information"));
    }
    showTexts(box, content);

    auto* const yes =
        box.addButton(withoutMnemonic(toQString(content.defaultButton)), QMessageBox::AcceptRole);
    box.setDefaultButton(yes);
    box.setEscapeButton(yes);
    if (content.alternateButton) {
        box.setEscapeButton(box.addButton(withoutMnemonic(toQString(*content.alternateButton)),
                                          QMessageBox::RejectRole));
    }

    QObject::connect(&box, &QDialog::finished, &sessions, [&] { sessions.end(box); });
    sessions.run(box);
    return box.clickedButton() == yes ? kDefaultButton : kAlternateButton;
}

}  // namespace dunmora
