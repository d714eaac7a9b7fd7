#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace dunmora {

/// One line of labels followed by buttons. In a narrow window the buttons get a line of their own.
/// Long notices are cut. Where even that is too wide, the buttons shrink to their minimum widths,
/// the last one first, and then the labels do.
///
/// Thread: the main thread. Errors: none.
class FooterLayout final : public QLayout {
public:
    /// Takes the widgets of the parent's layout, which it replaces. Spacers are dropped: the label
    /// whose width is ignored gets the rest of its line.
    explicit FooterLayout(QWidget& parent);

    void addItem(QLayoutItem* item) override;
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

    Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& place) override;

private:
    using Items = std::vector<QLayoutItem*>;

    /// The visible items in one or two lines.
    std::vector<Items> linesIn(int width) const;
    int widthOf(const Items& line) const;
    void placeLine(const Items& line, const QRect& place) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace dunmora
