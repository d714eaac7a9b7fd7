#include "engine/ContactRecord.h"

#include <algorithm>

namespace dunmora {

namespace {

constexpr std::array kTextKeys{kContactUid,  kContactFirstName, kContactLastName, kContactNickname,
                               kContactHome, kContactWork,      kContactMobile};

/// The position of the key among the texts; their number for every other key.
std::size_t textIndex(std::string_view key)
{
    return static_cast<std::size_t>(std::find(kTextKeys.begin(), kTextKeys.end(), key) -
                                    kTextKeys.begin());
}

}  // namespace

std::optional<ContactValue> ContactRecord::objectForKey(std::string_view key) const
{
    static_assert(kTextKeys.size() == kTextCount);
    if (const auto index = textIndex(key); index < texts_.size()) {
        return texts_[index];
    }
    if (key == kContactModified && modified_) {
        return *modified_;
    }
    if (key == kContactCheck && check_) {
        return *check_;
    }
    return std::nullopt;
}

void ContactRecord::setObject(const ContactValue& value, std::string_view key)
{
    const auto index = textIndex(key);
    const auto* text = std::get_if<std::string_view>(&value);
    const auto* date = std::get_if<std::chrono::sys_seconds>(&value);
    const auto* flag = std::get_if<bool>(&value);
    if (text != nullptr && index < texts_.size()) {
        texts_[index] = *text;
    } else if (date != nullptr && key == kContactModified) {
        modified_ = *date;
    } else if (flag != nullptr && key == kContactCheck) {
        check_ = *flag;
    }
}

std::string_view ContactRecord::text(std::string_view key) const
{
    const auto index = textIndex(key);
    return index < texts_.size() ? std::string_view(texts_[index]) : std::string_view();
}

}  // namespace dunmora
