#include "review/SubstituteName.h"

#include "engine/ContactRecord.h"
#include "platform/CardSource.h"
#include "platform/PersonCard.h"
#include "platform/PlatformError.h"
#include "review/PropertyTexts.h"
#include "text/DisplayText.h"
#include "text/WhiteSpace.h"

#include <algorithm>
#include <string_view>

namespace dunmora {

bool hasBlankName(const ContactRecord& contact)
{
    return std::all_of(kTextFields.begin(), kTextFields.end(), [&](const ContactField* field) {
        return field->kind != FieldKind::Name || showsNothing(contact.text(field->key));
    });
}

std::string substituteName(const PersonCard& card)
{
    for (const std::string_view name : {"FN", "ORG", "EMAIL", "TEL"}) {
        for (const auto& property : card.properties) {
            if (property.name != name || property.binary) {
                continue;
            }
            const auto text = propertyValue(property);
            if (!showsNothing(text)) {
                return withFoldedWhiteSpace(shownText(text));
            }
        }
    }
    return {};
}

std::string substituteName(const ContactRecord& contact, const CardSource* cards)
{
    if (cards == nullptr || !hasBlankName(contact)) {
        return {};
    }
    try {
        const auto card = cards->card(contact.text(kContactUid));
        return card ? substituteName(*card) : std::string();
    } catch (const PlatformError&) {
        return {};
    }
}

}  // namespace dunmora
