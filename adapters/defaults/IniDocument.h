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
/// `[name]`. Boolean values are those before the first section and under `[General]`; a named
/// section has texts. Lines that are not set, and a byte-order mark, are kept byte for byte,
/// because they belong to the user and to other programs.
///
/// Keys and names of sections consist of ASCII letters, digits, `_`, `-` and `.`. The case of a
/// section's name does not matter.
///
/// Thread: one at a time. Errors: none.
class IniDocument final {
public:
    using Values = std::map<std::string, bool, std::less<>>;
    using Texts = std::map<std::string, std::string, std::less<>>;

    /// Returns nullopt when the text is not an INI file.
    static std::optional<IniDocument> parsed(std::string_view text);

    /// The values read as Booleans: "true" and "yes" in any case and every number except zero are
    /// true, everything else is false. The last line with a key counts.
    Values values() const;

    /// Writes the value as "true" or "false". Returns whether the document has changed.
    bool set(std::string_view key, bool value);

    /// The texts in this section, without comments and quotes. The last line with a key counts.
    Texts textsIn(std::string_view section) const;

    /// Writes a text of printable ASCII characters without `;`, `#` and quotes, and without blanks
    /// at its ends. Adds the section if there is none. Returns whether the document has changed.
    bool setText(std::string_view section, std::string_view key, std::string_view text);

    std::string text() const;

private:
    struct Line {
        // Includes the line end.
        std::string text;
        // The index of its section's name.
        std::size_t section = 0;
        std::optional<std::string> key;
    };

    IniDocument();
    bool append(std::string_view text);
    bool isIn(std::string_view section, const Line& line) const;
    std::size_t endOf(std::string_view section) const;
    std::size_t addSection(std::string_view name);

    // The byte-order mark, or empty.
    std::string_view mark_;
    // The names of the sections. The first is that of the lines before the first section.
    std::vector<std::string> sections_;
    std::vector<Line> lines_;
};

}  // namespace dunmora
