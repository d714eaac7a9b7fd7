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
        return trimmed(windowText(text)).empty() ? std::string_view() : trimmed(text);
    };
    std::string name(visible(kContactFirstName));
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
