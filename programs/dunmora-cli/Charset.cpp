#include "programs/dunmora-cli/Charset.h"

#include "programs/dunmora-cli/TerminalText.h"
#include "text/DisplayText.h"
#include "text/Utf8.h"

#include <iconv.h>

#include <algorithm>
#include <array>

namespace dunmora {

/// A conversion from UTF-8 by the C library's iconv.
class Charset::Conversion final {
public:
    explicit Conversion(const std::string& charset) : handle_(iconv_open(charset.c_str(), "UTF-8"))
    {
    }
    ~Conversion()
    {
        if (isKnown()) {
            iconv_close(handle_);
        }
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    bool isKnown() const
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): POSIX defines failure as this value.
        return handle_ != reinterpret_cast<iconv_t>(-1);
    }

    /// Returns whether the charset has the character.
    bool append(std::string& out, std::string_view character)
    {
        std::string input(character);
        char* in = input.data();
        std::size_t left = input.size();
        std::array<char, 16> output{};
        char* next = output.data();
        std::size_t room = output.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        // The result counts the characters that were replaced by similar ones.
        if (iconv(handle_, &in, &left, &next, &room) != 0 || left > 0) {
            return false;
        }
        iconv(handle_, nullptr, nullptr, &next, &room);
        out.append(output.data(), next);
        return true;
    }

private:
    iconv_t handle_;
};

Charset::Charset(const std::string& name)
{
    isUtf8_ = name == "UTF-8" || name == "utf8" || name == "UTF8" || name == "utf-8";
    if (!isUtf8_) {
        auto conversion = std::make_shared<Conversion>(name);
        conversion_ = conversion->isKnown() ? std::move(conversion) : nullptr;
    }
}

void Charset::appendEncoded(std::string& out, std::string_view character) const
{
    if (conversion_ && conversion_->append(out, character)) {
        return;
    }
    if (character == "“" || character == "”") {
        out += '"';
    } else if (character == kEllipsis) {
        out += '~';
    } else {
        out.append(std::max<std::size_t>(displayWidth(character), 1), '?');
    }
}

std::string Charset::encoded(std::string_view text) const
{
    if (isUtf8_) {
        return std::string(text);
    }
    std::string out;
    for (std::size_t position = 0; position < text.size();) {
        const auto size = utf8CharacterAt(text, position).size;
        const auto character = text.substr(position, size);
        if (size == 1 && static_cast<unsigned char>(character.front()) < 0x80) {
            out += character;
        } else {
            appendEncoded(out, character);
        }
        position += size;
    }
    return out;
}

}  // namespace dunmora
