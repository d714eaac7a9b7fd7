#include "engine/ContactRecord.h"

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

constexpr auto kTextKeys = [] {
    ContactRecord::Texts keys;
    std::transform(kTextFields.begin(), kTextFields.end(), keys.begin(),
                   [](const ContactField* field) { return field->key; });
    return keys;
}();

/// The position of the key in `kTextKeys`; their number for every other key.
std::size_t textIndex(std::string_view key)
{
    return static_cast<std::size_t>(std::find(kTextKeys.begin(), kTextKeys.end(), key) -
                                    kTextKeys.begin());
}

}  // namespace

ContactRecord::ContactRecord(const Texts& texts)
{
    std::size_t size = 0;
    for (const auto text : texts) {
        size += text.size();
    }
    texts_.reserve(size);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts_ += texts[i];
        textEnds_[i] = static_cast<std::uint32_t>(texts_.size());
    }
}

std::optional<ContactValue> ContactRecord::objectForKey(std::string_view key) const
{
    if (const auto index = textIndex(key); index < kTextKeys.size()) {
        return textAt(index);
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
    if (text != nullptr && index < kTextKeys.size()) {
        Texts texts;
        for (std::size_t i = 0; i < kTextKeys.size(); ++i) {
            texts[i] = i == index ? *text : textAt(i);
        }
        ContactRecord changed(texts);
        texts_ = std::move(changed.texts_);
        textEnds_ = changed.textEnds_;
    } else if (date != nullptr && key == kContactModified) {
        modified_ = *date;
    } else if (flag != nullptr && key == kContactCheck) {
        check_ = *flag;
    }
}

std::string_view ContactRecord::text(std::string_view key) const
{
    const auto index = textIndex(key);
    return index < kTextKeys.size() ? textAt(index) : std::string_view();
}

std::string_view ContactRecord::textAt(std::size_t index) const
{
    const auto begin = textBegin(index);
    return std::string_view(texts_).substr(begin, textEnds_[index] - begin);
}

}  // namespace dunmora
