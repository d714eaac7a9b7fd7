#pragma once

#include "base/ContactFields.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class CardSource;
class ContactRecord;

/// The columns of a table of people. The check mark has none. The uid comes last: it is the widest
/// and needs no padding there.
inline constexpr auto kTableColumns = [] {
    std::array<const ContactField*, kContactFields.size() - 1> columns{};
    std::size_t count = 0;
    for (const auto& field : kContactFields) {
        if (field.kind != FieldKind::Uid && field.kind != FieldKind::Check) {
            columns[count++] = &field;
        }
    }
    columns[count] = &contactField(kContactUid);
    return columns;
}();

/// The place of each of `kTableColumns` in a record's texts (`textPlace`).
inline constexpr auto kTextPlaces = [] {
    std::array<std::size_t, kTableColumns.size()> places{};
    for (std::size_t i = 0; i < places.size(); ++i) {
        places[i] = textPlace(kTableColumns[i]->key);
    }
    return places;
}();

/// A width for each of `kTableColumns`, in columns of a terminal.
using ColumnWidths = std::array<std::size_t, kTableColumns.size()>;

/// A cell of a table: a text that is safe to display, and the columns of a terminal that it takes.
struct ContactCell {
    std::string_view text;
    std::size_t width = 0;
};

/// A cell for each of `kTableColumns`.
using ContactRow = std::array<ContactCell, kTableColumns.size()>;

/// The cells of the people of a table, which are needed twice, first to measure the columns and
/// then to print them. They are created once: texts that are in the record as they are shown are
/// not kept, all others are.
///
/// Thread: as `CardSource`. Errors: none.
class ContactCells final {
public:
    /// `cards` names people whose names are blank and may be null.
    explicit ContactCells(const CardSource* cards) : cards_(cards) {}

    /// Creates the cells of the next person.
    void add(const ContactRecord& record);

    /// The width of the widest cell in each column; 0 for a column without any content.
    const ColumnWidths& widest() const { return widest_; }

    /// Returns the cells of the next person, from the first one on: of each record that was added,
    /// in the same order. Views of the record and of this object.
    ContactRow next(const ContactRecord& record);

private:
    struct KeptCell {
        std::uint32_t size;
        std::uint32_t width;
    };
    // A bit for each column.
    using KeptColumns = std::uint8_t;
    static_assert(kTableColumns.size() <= 8);

    std::string& blockForText();

    const CardSource* cards_;
    ColumnWidths widest_{};
    std::vector<KeptColumns> kept_;
    // The kept cells, one person after another, and their texts in blocks. Nothing is copied, and
    // so in memory twice, when a long table grows.
    std::deque<KeptCell> cells_;
    std::deque<std::string> blocks_;
    // What `next` reads next; of `cells_` it is the first one.
    std::size_t nextPerson_ = 0;
    std::size_t nextBlock_ = 0;
    std::size_t nextText_ = 0;
};

}  // namespace dunmora
