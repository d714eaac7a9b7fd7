#include "adapters/qt/FooterLayout.h"

#include "adapters/qt/NoticeButton.h"

#include <QAbstractButton>
#include <QFontMetrics>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <numeric>

namespace dunmora {

namespace {

/// Enough for "Unchecked 2 people."
constexpr int kLettersOfTheRest = 24;

bool isButton(const QLayoutItem& item)
{
    return qobject_cast<const QAbstractButton*>(item.widget()) != nullptr;
}

bool takesTheRest(const QLayoutItem& item)
{
    return item.widget()->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
}

/// A label that takes the rest always wants the same: the lines must not change whenever its text
/// does.
int wantedWidth(const QLayoutItem& item)
{
    if (takesTheRest(item)) {
        return item.widget()->fontMetrics().averageCharWidth() * kLettersOfTheRest;
    }
    const auto* const notice = dynamic_cast<const NoticeButton*>(item.widget());
    return notice == nullptr ? item.sizeHint().width() : notice->leastSentenceWidth();
}

/// A label may lose its whole text.
int leastWidth(const QLayoutItem& item)
{
    return isButton(item) ? item.widget()->minimumSizeHint().width() : 0;
}

int heightOf(const std::vector<QLayoutItem*>& line)
{
    int height = 0;
    for (const auto* const item : line) {
        height = std::max(height, item->sizeHint().height());
    }
    return height;
}

}  // namespace

FooterLayout::FooterLayout(QWidget& parent)
{
    std::unique_ptr<QLayout> replaced(parent.layout());
    setContentsMargins(replaced->contentsMargins());
    setSpacing(replaced->spacing());
    while (auto* const item = replaced->takeAt(0)) {
        if (item->widget() == nullptr) {
            delete item;
        } else {
            items_.emplace_back(item);
        }
    }
    // A widget has one layout.
    replaced.reset();
    parent.setLayout(this);
}

void FooterLayout::addItem(QLayoutItem* item)
{
    items_.emplace_back(item);
}

int FooterLayout::count() const
{
    return static_cast<int>(items_.size());
}

QLayoutItem* FooterLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FooterLayout::takeAt(int index)
{
    if (itemAt(index) == nullptr) {
        return nullptr;
    }
    const auto at = items_.begin() + index;
    auto* const item = at->release();
    items_.erase(at);
    return item;
}

int FooterLayout::heightForWidth(int width) const
{
    const auto margins = contentsMargins();
    int height = margins.top() + margins.bottom();
    const auto lines = linesIn(width - margins.left() - margins.right());
    for (const auto& line : lines) {
        height += heightOf(line) + (&line == &lines.front() ? 0 : spacing());
    }
    return height;
}

QSize FooterLayout::sizeHint() const
{
    const auto lines = linesIn(QLAYOUTSIZE_MAX);
    const int width = lines.empty() ? 0 : widthOf(lines.front());
    const auto margins = contentsMargins();
    return {width + margins.left() + margins.right(), heightForWidth(QLAYOUTSIZE_MAX)};
}

QSize FooterLayout::minimumSize() const
{
    const auto margins = contentsMargins();
    int width = margins.left() + margins.right();
    for (const auto& item : items_) {
        if (!item->isEmpty() && isButton(*item)) {
            width += leastWidth(*item) + spacing();
        }
    }
    return {width, heightForWidth(QLAYOUTSIZE_MAX)};
}

void FooterLayout::setGeometry(const QRect& place)
{
    QLayout::setGeometry(place);
    auto rest = place.marginsRemoved(contentsMargins());
    for (const auto& line : linesIn(rest.width())) {
        placeLine(line, {rest.topLeft(), QSize(rest.width(), heightOf(line))});
        rest.setTop(rest.top() + heightOf(line) + spacing());
    }
}

std::vector<FooterLayout::Items> FooterLayout::linesIn(int width) const
{
    Items all;
    for (const auto& item : items_) {
        if (!item->isEmpty()) {
            all.push_back(item.get());
        }
    }
    if (all.empty()) {
        return {};
    }
    const auto firstButton =
        std::find_if(all.begin(), all.end(), [](const auto* item) { return isButton(*item); });
    if (widthOf(all) <= width || firstButton == all.begin() || firstButton == all.end()) {
        return {all};
    }
    return {Items(all.begin(), firstButton), Items(firstButton, all.end())};
}

int FooterLayout::widthOf(const Items& line) const
{
    return std::accumulate(line.begin(), line.end(), -spacing(), [this](int sum, const auto* item) {
        return sum + wantedWidth(*item) + spacing();
    });
}

void FooterLayout::placeLine(const Items& line, const QRect& place) const
{
    std::vector<int> widths(line.size());
    std::transform(line.begin(), line.end(), widths.begin(),
                   [](const auto* item) { return wantedWidth(*item); });
    int spare = place.width() - widthOf(line);
    for (std::size_t i = 0; i < line.size() && spare > 0; ++i) {
        if (!takesTheRest(*line[i])) {
            const int gained = std::min(spare, line[i]->sizeHint().width() - widths[i]);
            widths[i] += gained;
            spare -= gained;
        }
    }
    for (auto i = line.size(); i-- > 0;) {
        if (spare > 0 && takesTheRest(*line[i])) {
            widths[i] += spare;
            spare = 0;
        } else if (spare < 0) {
            // A button shows either enough of its title or its shortest one.
            const int gained =
                isButton(*line[i]) ? widths[i] - leastWidth(*line[i]) : std::min(widths[i], -spare);
            widths[i] -= gained;
            spare += gained;
        }
    }
    int x = place.left();
    for (std::size_t i = 0; i < line.size(); ++i) {
        const QRect itemPlace(x, place.top(), widths[i], place.height());
        line[i]->setGeometry(
            QStyle::visualRect(parentWidget()->layoutDirection(), place, itemPlace));
        x += widths[i] + spacing();
    }
}

}  // namespace dunmora
