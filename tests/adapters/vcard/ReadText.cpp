#include "tests/adapters/vcard/ReadText.h"

#include <string_view>
#include <utility>

namespace dunmora::test {

ReadText::ReadText(std::string text, CardReader::Text kind) : text_(std::move(text))
{
    reader_.read(text_, kind, cards_);
}

std::string ReadText::card(std::size_t index) const
{
    const auto& range = cards_.ranges.at(index);
    return text_.substr(range.begin, range.end - range.begin);
}

Texts ReadText::phones(std::size_t index) const
{
    Texts texts;
    for (const auto& phone : cards_.people.at(index).phones.value_or(PhoneList())) {
        texts.push_back(std::string(phone.label.value_or("-")) + "=" + std::string(phone.value));
    }
    return texts;
}

Texts ReadText::firstNames() const
{
    Texts names;
    for (const auto& person : cards_.people) {
        names.emplace_back(person.firstName.value_or("-"));
    }
    return names;
}

std::string card(const std::string& version, const std::string& properties)
{
    return "BEGIN:VCARD\r\nVERSION:" + version + "\r\n" + properties + "END:VCARD\r\n";
}

std::string card30(const std::string& properties)
{
    return card("3.0", properties);
}

std::string card21(const std::string& properties)
{
    return card("2.1", properties);
}

std::string named(const std::string& firstName)
{
    return card30("N:;" + firstName + ";;;\r\n");
}

std::string joined(const Texts& lines, const std::string& end)
{
    std::string text;
    for (const auto& line : lines) {
        text.append(line).append(end);
    }
    return text;
}

}  // namespace dunmora::test
