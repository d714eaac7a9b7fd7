#include "adapters/vcard/ListMembers.h"

#include "adapters/vcard/CardProperties.h"
#include "text/Ascii.h"

#include <algorithm>

namespace dunmora {

namespace {

/// The part of a UID that identifies a person: programs write the same UUID with and without
/// "urn:uuid:" (RFC 4122), in capitals and small letters.
std::string memberKey(std::string_view uid)
{
    constexpr std::string_view kScheme = "urn:uuid:";
    constexpr std::size_t kUuidSize = 36;
    uid = trimmed(uid);
    if (equalsIgnoringCase(uid.substr(0, kScheme.size()), kScheme)) {
        uid.remove_prefix(kScheme.size());
    }
    std::string key(uid);
    if (uid.size() == kUuidSize &&
        uid.find_first_not_of("0123456789abcdefABCDEF-") == std::string_view::npos) {
        std::transform(key.begin(), key.end(), key.begin(), toLowerAscii);
    }
    return key;
}

}  // namespace

void ListMembers::add(std::string_view card, CardReader::Text kind)
{
    const auto properties = readProperties(card, kind);
    if (!properties) {
        return;
    }
    const auto list = names_.size();
    auto& name = names_.emplace_back();
    for (const auto& property : *properties) {
        if (property.components.empty()) {
            continue;
        }
        const auto& value = property.components.front();
        if (property.name == "FN" && name.empty()) {
            name = value;
        } else if (property.name == "MEMBER" || property.name == "X-ADDRESSBOOKSERVER-MEMBER") {
            auto& lists = lists_[memberKey(value)];
            if (lists.empty() || lists.back() != list) {
                lists.push_back(list);
            }
        }
    }
}

std::vector<std::string> ListMembers::listsOf(const std::vector<CardProperty>& person) const
{
    std::vector<std::string> names;
    const auto uid = std::find_if(person.begin(), person.end(), [](const CardProperty& property) {
        return property.name == "UID" && !property.components.empty();
    });
    if (lists_.empty() || uid == person.end()) {
        return names;
    }
    const auto lists = lists_.find(memberKey(uid->components.front()));
    if (lists != lists_.end()) {
        for (const auto list : lists->second) {
            names.push_back(names_[list]);
        }
    }
    return names;
}

}  // namespace dunmora
