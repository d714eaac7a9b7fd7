#pragma once

#include "platform/DetailsView.h"

#include <QFont>
#include <QIcon>
#include <QListView>
#include <QStyledItemDelegate>

namespace dunmora {

class DetailsModel;
struct DrawnDetails;

/// Draws the lines of a details view: title, value, and the verdict with its sign, side by side or,
/// in a narrow view, one below the other. What is the same elsewhere is drawn quietly. A heading
/// takes the whole width.
///
/// Thread: the main thread. Errors: none.
class DetailsDelegate final : public QStyledItemDelegate {
public:
    /// Both must outlive the delegate.
    DetailsDelegate(const QListView& list, const DetailsModel& model);

    /// Call this after the view's font or style has changed.
    void metricsChanged();

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    struct Places;

    /// Where the parts of a line are in a view of this width, from its top left corner.
    Places placesOf(const DrawnDetails& line, int width) const;
    QFont fontOf(const DrawnDetails& line) const;
    const QIcon& iconOf(DetailsLine::Sign sign) const;

    const QListView& list_;
    const DetailsModel& model_;
    bool hasVerdicts_;
    QIcon only_;
    QIcon same_;
    QIcon different_;
};

}  // namespace dunmora
