#include "tests/oracle/EVCardOracle.h"

#include <libebook-contacts/libebook-contacts.h>

#include <cstring>
#include <map>
#include <memory>

namespace dunmora::test {

namespace {

/// Suppresses GLib's log: EVCard prints every card that it cannot read in full.
void silenceLog()
{
    static const auto kInstalled = [] {
        g_log_set_default_handler([](const gchar*, GLogLevelFlags, const gchar*, gpointer) {},
                                  nullptr);
        return true;
    }();
    static_cast<void>(kInstalled);
}

std::vector<std::string> valuesOf(EVCardAttribute* attribute)
{
    std::vector<std::string> values;
    for (const auto* node = e_vcard_attribute_get_values_decoded(attribute); node != nullptr;
         node = node->next) {
        const auto* value = static_cast<const GString*>(node->data);
        values.emplace_back(value->str, value->len);
    }
    return values;
}

std::string wholeText(EVCardAttribute* attribute)
{
    std::string text;
    bool first = true;
    for (const auto& value : valuesOf(attribute)) {
        text += first ? value : ";" + value;
        first = false;
    }
    return text;
}

bool hasName(EVCardAttribute* attribute, const char* name)
{
    return g_ascii_strcasecmp(e_vcard_attribute_get_name(attribute), name) == 0;
}

std::string groupOf(EVCardAttribute* attribute)
{
    const auto* group = e_vcard_attribute_get_group(attribute);
    const std::unique_ptr<gchar, decltype(&g_free)> lowered(
        g_ascii_strdown(group == nullptr ? "" : group, -1), g_free);
    return lowered.get();
}

std::vector<std::string> typesOf(EVCardAttribute* attribute)
{
    std::vector<std::string> types;
    for (const auto* node = e_vcard_attribute_get_params(attribute); node != nullptr;
         node = node->next) {
        auto* parameter = static_cast<EVCardAttributeParam*>(node->data);
        if (g_ascii_strcasecmp(e_vcard_attribute_param_get_name(parameter), EVC_TYPE) != 0) {
            continue;
        }
        for (const auto* value = e_vcard_attribute_param_get_values(parameter); value != nullptr;
             value = value->next) {
            types.emplace_back(static_cast<const char*>(value->data));
        }
    }
    return types;
}

/// Returns the first attribute of this name, or null; EVCard keeps the order of the card.
EVCardAttribute* firstNamed(const std::vector<EVCardAttribute*>& attributes, const char* name)
{
    for (auto* attribute : attributes) {
        if (hasName(attribute, name)) {
            return attribute;
        }
    }
    return nullptr;
}

std::string firstText(const std::vector<EVCardAttribute*>& attributes, const char* name)
{
    auto* attribute = firstNamed(attributes, name);
    return attribute == nullptr ? "" : wholeText(attribute);
}

std::vector<OraclePhone> phonesOf(const std::vector<EVCardAttribute*>& attributes)
{
    std::map<std::string, std::string> labels;
    for (auto* attribute : attributes) {
        if (hasName(attribute, "X-ABLabel")) {
            labels.emplace(groupOf(attribute), wholeText(attribute));
        }
    }
    std::vector<OraclePhone> phones;
    for (auto* attribute : attributes) {
        if (hasName(attribute, EVC_TEL)) {
            const auto group = groupOf(attribute);
            phones.push_back({expectedLabel(typesOf(attribute), group.empty() ? "" : labels[group]),
                              withoutScheme(wholeText(attribute))});
        }
    }
    return phones;
}

bool isGroup(const std::vector<EVCardAttribute*>& attributes)
{
    const auto isGroupBy = [&](const char* name) {
        return g_ascii_strcasecmp(firstText(attributes, name).c_str(), "group") == 0;
    };
    return isGroupBy("KIND") || isGroupBy("X-ADDRESSBOOKSERVER-KIND");
}

std::string converted(std::string_view bytes, const char* from)
{
    gsize length = 0;
    const std::unique_ptr<gchar, decltype(&g_free)> text(
        g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", from, nullptr, &length,
                  nullptr),
        g_free);
    return text == nullptr ? std::string(bytes) : std::string(text.get(), length);
}

}  // namespace

std::optional<OraclePerson> readWithEVCard(const std::string& card)
{
    silenceLog();
    const std::unique_ptr<EVCard, decltype(&g_object_unref)> vcard(
        e_vcard_new_from_string(card.c_str()), g_object_unref);
    std::vector<EVCardAttribute*> attributes;
    for (const auto* node = e_vcard_get_attributes(vcard.get()); node != nullptr;
         node = node->next) {
        attributes.push_back(static_cast<EVCardAttribute*>(node->data));
    }
    if (isGroup(attributes)) {
        return std::nullopt;
    }
    OraclePerson person;
    person.uid = firstText(attributes, EVC_UID);
    person.nickname = firstText(attributes, EVC_NICKNAME);
    auto* name = firstNamed(attributes, EVC_N);
    auto components = name == nullptr ? std::vector<std::string>() : valuesOf(name);
    components.resize(2);
    setNames(person, components[1], components[0], firstText(attributes, EVC_FN));
    person.phones = phonesOf(attributes);
    return person;
}

std::string convertedToUtf8(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xFE")) {
        return converted(bytes.substr(2), "UTF-16LE");
    }
    if (bytes.starts_with("\xFE\xFF")) {
        return converted(bytes.substr(2), "UTF-16BE");
    }
    if (bytes.size() >= 2 && bytes[0] == '\0') {
        return converted(bytes, "UTF-16BE");
    }
    if (bytes.size() >= 2 && bytes[1] == '\0') {
        return converted(bytes, "UTF-16LE");
    }
    return std::string(bytes);
}

}  // namespace dunmora::test
