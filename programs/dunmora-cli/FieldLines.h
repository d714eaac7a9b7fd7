#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Values on lines of their own, each after its title, for a terminal that is too narrow for a
/// table. Long values continue on further lines. All texts must be safe to display and stay valid.
/// Thread: any; one call at a time. Errors: none.
class FieldLines final {
public:
    enum class Break {
        WhereNeeded,
        /// The value starts on a new line when it does not fit beside its title, and is never
        /// broken: it is there to be copied.
        Never,
    };

    /// `margin` comes before each line.
    FieldLines(std::size_t width, std::string_view margin) : width_(width), margin_(margin) {}

    /// Empty values are not shown. `begin` and `end` are control sequences around each line's part
    /// of the value.
    void add(std::string_view title, std::string_view value, Break breaks,
             std::string_view begin = {}, std::string_view end = {});

    /// Appends the lines; `mark` replaces the first line's margin.
    void append(std::string& out, std::string_view mark) const;

private:
    struct Field {
        std::string_view title;
        std::string_view value;
        Break breaks;
        std::string_view begin;
        std::string_view end;
    };

    static void appendValue(std::string& out, const Field& field, std::string_view text);

    std::size_t width_;
    std::string_view margin_;
    std::vector<Field> fields_;
};

}  // namespace dunmora
