#include "programs/dunmora-cli/CardText.h"

#include "programs/dunmora-cli/TableLayout.h"
#include "review/CardLines.h"
#include "review/PropertyTexts.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace dunmora {

namespace {

/// A line for the user before it is aligned; the value may have several lines.
struct Line {
    std::string_view sign;
    std::string title;
    std::string value;
};

/// The lines with the values in one column, and the further lines of a value below its first.
std::string aligned(const std::vector<Line>& lines)
{
    constexpr std::size_t kWidestTitle = 40;
    TableLayout layout(2, kWidestTitle);
    for (const auto& line : lines) {
        layout.measure(0, line.title);
    }
    std::string out;
    for (const auto& line : lines) {
        std::string_view rest = line.value;
        std::string_view title = line.title;
        for (bool hasMore = true; hasMore;) {
            const auto end = rest.find('\n');
            hasMore = end != std::string_view::npos;
            auto text = rest.substr(0, end);
            rest.remove_prefix(hasMore ? end + 1 : rest.size());
            text.remove_suffix(text.ends_with('\r') ? 1 : 0);
            out += line.sign;
            layout.appendCell(out, 0, title);
            layout.appendCell(out, 1, displayText(text));
            TableLayout::endLine(out);
            title = "";
        }
    }
    return out;
}

std::string headingOf(const ShownCard& shown)
{
    return displayText(shown.uid) + " in " + quotedText(shown.card.source.name);
}

std::string base64(std::string_view bytes)
{
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t bits = 0;
        for (std::size_t j = i; j < i + 3; ++j) {
            bits = bits << 8U | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text += i + j > bytes.size() ? '=' : kDigits[bits >> (18 - 6 * j) & 0x3FU];
        }
    }
    return text;
}

/// Builds a JSON document.
class Document final {
public:
    Document(std::string_view addressBook, JsonCharacters characters) : characters_(characters)
    {
        out_ = R"({"schema":1)";
        member("addressBook", addressBook);
    }

    void member(std::string_view name, std::string_view text)
    {
        key(name);
        appendJsonText(out_, text, characters_);
    }

    template <typename Items, typename Append>
    void list(std::string_view name, const Items& items, const Append& append)
    {
        key(name);
        out_ += '[';
        bool first = true;
        for (const auto& item : items) {
            out_ += first ? "" : ",";
            first = false;
            append(item);
        }
        out_ += ']';
    }

    void texts(std::string_view name, const std::vector<std::string>& texts)
    {
        list(name, texts,
             [&](const std::string& text) { appendJsonText(out_, text, characters_); });
    }

    void beginObject() { out_ += '{'; }
    void endObject() { out_ += '}'; }

    std::string finished() { return out_ + "}\n"; }

private:
    void key(std::string_view name)
    {
        out_ += out_.ends_with('{') ? "\"" : ",\"";
        out_ += name;
        out_ += "\":";
    }

    JsonCharacters characters_;
    std::string out_;
};

void append(Document& document, const CardProperty& property)
{
    document.beginObject();
    document.member("property", property.name);
    document.member("label", property.label);
    if (property.binary) {
        document.member("mediaType", property.binary->mediaType);
        document.member("base64", base64(property.binary->bytes));
    } else {
        document.texts("components", property.components);
    }
    document.endObject();
}

/// The lines of the first card that the second one does not have.
std::vector<CardLine> onlyIn(const ShownCard& shown, const ShownCard& compared)
{
    auto lines = cardLines(shown.card, {&compared.card, 1});
    std::erase_if(lines, [](const CardLine& line) { return line.verdict == CardVerdict::Same; });
    return lines;
}

}  // namespace

std::string cardsText(std::span<const ShownCard> cards)
{
    std::string out;
    for (const auto& shown : cards) {
        std::vector<Line> lines;
        for (const auto& property : shown.card.properties) {
            lines.push_back({"  ", displayText(propertyTitle(property)), propertyValue(property)});
        }
        for (const auto& list : shown.card.lists) {
            lines.push_back({"  ", "In the list", list});
        }
        out += out.empty() ? "" : "\n";
        out += headingOf(shown) + '\n' + aligned(lines);
    }
    return out;
}

std::string cardsJson(std::string_view addressBook, std::span<const ShownCard> cards,
                      JsonCharacters characters)
{
    Document document(addressBook, characters);
    document.list("cards", cards, [&](const ShownCard& shown) {
        document.beginObject();
        document.member("uid", shown.uid);
        document.member("source", shown.card.source.address);
        document.texts("lists", shown.card.lists);
        document.list("properties", shown.card.properties,
                      [&](const CardProperty& property) { append(document, property); });
        document.endObject();
    });
    return document.finished();
}

std::string differencesText(const ShownCard& one, const ShownCard& other)
{
    std::vector<Line> lines;
    const auto add = [&](std::string_view sign, const std::vector<CardLine>& unique) {
        for (const auto& line : unique) {
            lines.push_back({sign, displayText(line.title), line.value});
        }
    };
    add("- ", onlyIn(one, other));
    add("+ ", onlyIn(other, one));
    if (lines.empty()) {
        return "Both cards hold the same.\n";
    }
    return "--- " + headingOf(one) + "\n+++ " + headingOf(other) + '\n' + aligned(lines);
}

std::string differencesJson(std::string_view addressBook, const ShownCard& one,
                            const ShownCard& other, JsonCharacters characters)
{
    Document document(addressBook, characters);
    const std::array pairs{std::array{&one, &other}, std::array{&other, &one}};
    document.list("people", pairs, [&](const auto& pair) {
        document.beginObject();
        document.member("uid", pair[0]->uid);
        document.member("source", pair[0]->card.source.address);
        document.list("only_here", onlyIn(*pair[0], *pair[1]), [&](const CardLine& line) {
            document.beginObject();
            document.member("property", line.property);
            document.member("value", line.value);
            document.endObject();
        });
        document.endObject();
    });
    return document.finished();
}

}  // namespace dunmora
