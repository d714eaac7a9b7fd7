#pragma once

#include "platform/DetailsView.h"

#include <QAbstractListModel>
#include <QImage>
#include <QString>

#include <vector>

namespace dunmora {

/// A line of a details view, ready to be drawn.
struct DrawnDetails {
    QString title;
    /// Lines end with U+2028.
    QString value;
    DetailsLine::Sign sign = DetailsLine::Sign::None;
    QString verdict;
    /// Null when the line has no picture or it cannot be decoded.
    QImage picture;
    bool isHeading = false;
};

/// The lines of a details view as a Qt model.
///
/// Thread: the main thread. Errors: none.
class DetailsModel final : public QAbstractListModel {
public:
    /// Keeps the current line and the position when the titles are the same as before.
    void setLines(std::vector<DetailsLine> lines);

    const DrawnDetails& drawn(int row) const { return drawn_[static_cast<std::size_t>(row)]; }
    /// The whole value as the address book holds it.
    QString value(int row) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    DrawnDetails drawnDetails(const DetailsLine& line) const;
    /// Decoding takes long, so a picture that is shown already is reused: after an edit of check
    /// marks it is the same one, and a person's copies often have the same photo.
    QImage picture(const DetailsLine& line) const;

    std::vector<DetailsLine> lines_;
    std::vector<DrawnDetails> drawn_;
};

}  // namespace dunmora
