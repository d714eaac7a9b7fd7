#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// The text of an INI file: one `key=value` a line, `;` and `#` before a comment, sections under
/// `[name]`. Our keys are those before the first section and those under `[General]`, as many
/// programs keep them. Every other line stays byte for byte as it is, and so does a byte-order
/// mark: what other programs and users wrote is theirs, whatever it means.
class IniDocument final {
public:
    using Values = std::map<std::string, bool, std::less<>>;

    /// Missing when the text is no INI file.
    static std::optional<IniDocument> parsed(std::string_view text);

    /// Our keys, each value read as a Boolean: "true" and "yes" in any case and every number but
    /// zero are true, all else is false. Of a key that stands there twice the last one counts.
    Values values() const;

    /// Writes the value as "true" or "false". Returns whether the text has changed.
    bool set(std::string_view key, bool value);

    std::string text() const;

private:
    struct Line {
        // With its line end.
        std::string text;
        // The decoded key when the line is one of ours.
        std::optional<std::string> key;
    };

    IniDocument() = default;
    bool append(std::string_view text);

    // The byte-order mark, or nothing.
    std::string_view mark_;
    std::vector<Line> lines_;
    // Where a key that is new goes: behind the last line that says something in our section.
    std::size_t endOfOurs_ = 0;
    bool inOurSection_ = true;
};

}  // namespace dunmora
