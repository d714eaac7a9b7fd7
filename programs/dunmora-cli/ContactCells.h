#pragma once

#include "base/ContactFields.h"
#include "engine/ContactRecord.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

class CardSource;

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

/// A person's cells in the order of `kTableColumns`, safe to display.
struct ContactCells {
    std::array<std::string_view, kTableColumns.size()> texts;

    /// Reads the person's cells; views of the record or of this object. `cards` names people whose
    /// names are blank and may be null.
    void read(const ContactRecord& record, const CardSource* cards);

private:
    std::array<std::string, kTableColumns.size()> buffers_;
};

}  // namespace dunmora
