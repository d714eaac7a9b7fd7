#include "review/PersonName.h"

#include "engine/ContactRecord.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"

#include <string_view>

namespace dunmora {

std::string personName(const ContactRecord& contact)
{
    // Line breaks and directional formatting are blank, too.
    const auto visible = [&](std::string_view key) {
        const auto text = contact.text(key);
        const auto shown = shownPart(text);
        if (trimmed(windowText(shown)).empty()) {
            return std::string();
        }
        auto part = std::string(trimmed(shown));
        if (shown.size() < text.size()) {
            part += kEllipsis;
        }
        return part;
    };
    auto name = visible(kContactFirstName);
    const auto last = visible(kContactLastName);
    name += name.empty() || last.empty() ? "" : " ";
    name += last;
    // Once the names are known to be blank, the loop finds another text.
    for (const auto* const field : kTextFields) {
        if (name.empty() && field->kind != FieldKind::Uid) {
            name = visible(field->key);
        }
    }
    return name;
}

}  // namespace dunmora
