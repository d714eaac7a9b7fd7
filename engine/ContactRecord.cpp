#include "engine/ContactRecord.h"

#include <algorithm>
#include <cstring>

namespace dunmora {

ContactRecord::ContactRecord(const Texts& texts)
{
    const auto ends = endsOf(texts);
    setTexts(texts, ends, new char[memoryFor(ends)]);
    data_.ownsTexts = true;
}

ContactRecord::ContactRecord(const Texts& texts, TextArena& arena)
{
    const auto ends = endsOf(texts);
    setTexts(texts, ends, arena.allocate(memoryFor(ends)));
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
        setModified(*date);
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

ContactRecord::TextEnds ContactRecord::endsOf(const Texts& texts)
{
    TextEnds ends{};
    std::size_t end = 0;
    for (std::size_t place = 0; place < texts.size(); ++place) {
        end += texts[place].size();
        ends[place] = end;
    }
    return ends;
}

ContactRecord::TextEnds ContactRecord::longTextEnds() const
{
    TextEnds ends;
    std::memcpy(&ends, data_.texts - sizeof(ends), sizeof(ends));
    return ends;
}

void ContactRecord::setTexts(const Texts& texts, const TextEnds& ends, char* memory)
{
    data_.hasLongTexts = areLong(ends);
    if (data_.hasLongTexts) {
        std::memcpy(memory, &ends, sizeof(ends));
        memory += sizeof(ends);
    } else {
        std::transform(ends.begin(), ends.end(), data_.textEnds.begin(),
                       [](std::size_t end) { return static_cast<std::uint16_t>(end); });
    }
    data_.texts = memory;
    for (const auto text : texts) {
        memory = std::copy(text.begin(), text.end(), memory);
    }
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
        delete[](data_.hasLongTexts ? data_.texts - sizeof(TextEnds) : data_.texts);
        data_.ownsTexts = false;
    }
}

}  // namespace dunmora
