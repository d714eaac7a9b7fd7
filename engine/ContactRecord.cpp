#include "engine/ContactRecord.h"

#include <algorithm>

namespace dunmora {

namespace {

std::size_t sizeOf(const ContactRecord::Texts& texts)
{
    std::size_t size = 0;
    for (const auto text : texts) {
        size += text.size();
    }
    return size;
}

}  // namespace

ContactRecord::ContactRecord(const Texts& texts)
{
    setTexts(texts, new char[sizeOf(texts)]);
    data_.ownsTexts = true;
}

ContactRecord::ContactRecord(const Texts& texts, TextArena& arena)
{
    setTexts(texts, arena.allocate(sizeOf(texts)));
}

ContactRecord::ContactRecord(const ContactRecord& other) : ContactRecord(other.texts())
{
    copyRest(other);
}

ContactRecord& ContactRecord::operator=(const ContactRecord& other)
{
    if (this != &other) {
        *this = ContactRecord(other);
    }
    return *this;
}

ContactRecord& ContactRecord::operator=(ContactRecord&& other) noexcept
{
    if (this != &other) {
        release();
        data_ = std::exchange(other.data_, Data());
    }
    return *this;
}

std::optional<ContactValue> ContactRecord::objectForKey(std::string_view key) const
{
    if (const auto place = textPlace(key); place < kTextFields.size()) {
        return textAt(place);
    }
    if (key == kContactModified && data_.hasModified) {
        return data_.modified;
    }
    if (key == kContactCheck && data_.hasCheck) {
        return data_.isChecked;
    }
    return std::nullopt;
}

void ContactRecord::setObject(const ContactValue& value, std::string_view key)
{
    const auto place = textPlace(key);
    const auto* text = std::get_if<std::string_view>(&value);
    const auto* date = std::get_if<std::chrono::sys_seconds>(&value);
    const auto* flag = std::get_if<bool>(&value);
    if (text != nullptr && place < kTextFields.size()) {
        auto newTexts = texts();
        newTexts[place] = *text;
        ContactRecord changed(newTexts);
        changed.copyRest(*this);
        *this = std::move(changed);
    } else if (date != nullptr && key == kContactModified) {
        data_.modified = *date;
        data_.hasModified = true;
    } else if (flag != nullptr && key == kContactCheck) {
        setChecked(*flag);
    }
}

std::string_view ContactRecord::text(std::string_view key) const
{
    const auto place = textPlace(key);
    return place < kTextFields.size() ? textAt(place) : std::string_view();
}

ContactRecord::Texts ContactRecord::texts() const
{
    Texts texts;
    for (std::size_t place = 0; place < texts.size(); ++place) {
        texts[place] = textAt(place);
    }
    return texts;
}

void ContactRecord::setTexts(const Texts& texts, char* memory)
{
    auto* end = memory;
    for (std::size_t place = 0; place < texts.size(); ++place) {
        end = std::copy(texts[place].begin(), texts[place].end(), end);
        data_.textEnds[place] = static_cast<std::uint32_t>(end - memory);
    }
    data_.texts = memory;
}

void ContactRecord::copyRest(const ContactRecord& other)
{
    data_.modified = other.data_.modified;
    data_.hasModified = other.data_.hasModified;
    data_.hasCheck = other.data_.hasCheck;
    data_.isChecked = other.data_.isChecked;
}

void ContactRecord::release() noexcept
{
    if (data_.ownsTexts) {
        delete[] data_.texts;
        data_.ownsTexts = false;
    }
}

}  // namespace dunmora
