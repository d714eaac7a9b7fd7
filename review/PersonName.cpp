#include "review/PersonName.h"

#include "engine/ContactRecord.h"
#include "review/SubstituteName.h"
#include "text/Ascii.h"
#include "text/DisplayText.h"
#include "text/WhiteSpace.h"

#include <string_view>

namespace dunmora {

std::string personName(const ContactRecord& contact, const CardSource* cards)
{
    const auto visible = [&](std::string_view key) {
        const auto text = contact.text(key);
        return showsNothing(shownPart(text)) ? std::string() : shownText(trimmed(text));
    };
    auto name = visible(kContactFirstName);
    const auto last = visible(kContactLastName);
    name += name.empty() || last.empty() ? "" : " ";
    name += last;
    if (name.empty()) {
        name = visible(kContactNickname);
    }
    if (name.empty()) {
        name = substituteName(contact, cards);
    }
    for (const auto* const field : kTextFields) {
        if (name.empty() && field->kind == FieldKind::Phone) {
            name = visible(field->key);
        }
    }
    return name;
}

}  // namespace dunmora
