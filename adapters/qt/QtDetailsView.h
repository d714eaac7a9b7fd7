#pragma once

#include "adapters/qt/DetailsDelegate.h"
#include "adapters/qt/DetailsModel.h"
#include "platform/DetailsView.h"

#include <QListView>
#include <QPointer>

#include <vector>

namespace dunmora {

/// A list view that shows a card's details, or titled lines of another kind: its dynamic property
/// `withoutVerdicts` gives the space of the verdicts to the titles.
class QtDetailsView final : public QObject, public DetailsView {
public:
    /// The widget may be destroyed first; then nothing happens.
    explicit QtDetailsView(QListView& widget);
    ~QtDetailsView() override;
    QtDetailsView(const QtDetailsView&) = delete;
    QtDetailsView& operator=(const QtDetailsView&) = delete;

    void setHidden(bool hidden) override;
    void setLines(std::vector<DetailsLine> lines) override;

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void selectFirst() const;
    void copyCurrentValue() const;

    QPointer<QListView> widget_;
    DetailsModel model_;
    DetailsDelegate delegate_;
};

}  // namespace dunmora
