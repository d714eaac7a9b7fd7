#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// The text of an INI file: one `key=value` per line, comments after `;` and `#`, sections under
/// `[name]`. Only Boolean values before the first section and under `[General]` are read and
/// written. All other lines, and a byte-order mark, are kept byte for byte, because they belong to
/// the user and to other programs.
///
/// Thread: one at a time. Errors: none.
class IniDocument final {
public:
    using Values = std::map<std::string, bool, std::less<>>;

    /// Returns nullopt when the text is not an INI file.
    static std::optional<IniDocument> parsed(std::string_view text);

    /// The values read as Booleans: "true" and "yes" in any case and every number except zero are
    /// true, everything else is false. The last line with a key counts.
    Values values() const;

    /// Writes the value as "true" or "false". The key consists of ASCII letters, digits, `_`, `-`
    /// and `.`. Returns whether the text has changed.
    bool set(std::string_view key, bool value);

    std::string text() const;

private:
    struct Line {
        // Includes the line end.
        std::string text;
        // Set when the line is in the section that is read.
        std::optional<std::string> key;
    };

    IniDocument() = default;
    bool append(std::string_view text);

    // The byte-order mark, or empty.
    std::string_view mark_;
    std::vector<Line> lines_;
    // The index of a new key: after the last line of our section that is not blank.
    std::size_t endOfOurs_ = 0;
    bool inOurSection_ = true;
};

}  // namespace dunmora
