#include "adapters/eds/StoredPictures.h"

#include "adapters/vcard/Lines.h"
#include "adapters/vcard/Property.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <system_error>

namespace dunmora {

namespace {

constexpr std::string_view kFileScheme = "file://";

std::optional<int> digitOf(char c)
{
    constexpr int kTen = 10;
    c = toUpperAscii(c);
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    return c >= 'A' && c <= 'F' ? std::optional(c - 'A' + kTen) : std::nullopt;
}

/// Decodes bytes that are written as the mark and two hexadecimal digits: "%20", "-2F".
std::string decoded(std::string_view text, char mark)
{
    constexpr int kSixteen = 16;
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto high = i + 2 < text.size() ? digitOf(text[i + 1]) : std::nullopt;
        const auto low = high ? digitOf(text[i + 2]) : std::nullopt;
        if (text[i] == mark && low) {
            out += static_cast<char>(*high * kSixteen + *low);
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::string base64(std::string_view bytes)
{
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t kBytes = 3;
    constexpr unsigned kBits = 6;
    constexpr unsigned kMask = 63;
    std::string text;
    text.reserve((bytes.size() + 2) / kBytes * 4);
    for (std::size_t i = 0; i < bytes.size(); i += kBytes) {
        const auto count = std::min(kBytes, bytes.size() - i);
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < kBytes; ++j) {
            bits = bits << 8U | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0U);
        }
        for (std::size_t j = 0; j <= kBytes; ++j) {
            const auto shift = kBits * static_cast<unsigned>(kBytes - j);
            text += j <= count ? kDigits[bits >> shift & kMask] : '=';
        }
    }
    return text;
}

/// Folds a line (RFC 2426 §2.6), and ends it.
std::string folded(std::string_view line)
{
    constexpr std::size_t kWidth = 75;
    std::string out(line.substr(0, kWidth));
    for (auto i = out.size(); i < line.size(); i += kWidth - 1) {
        out += "\r\n ";
        out += line.substr(i, kWidth - 1);
    }
    return out + "\r\n";
}

/// A property that refers to a stored picture.
struct Picture {
    /// "item1.PHOTO;TYPE=JPEG": the property without its value and its VALUE parameter.
    std::string head;
    std::filesystem::path file;
};

/// The picture, if the unfolded property refers to one.
std::optional<Picture> pictureOf(std::string_view property, const std::filesystem::path& folder)
{
    const auto head = headOf(property);
    const auto name = splitName(property.substr(0, head.isComplete ? head.nameEnd : 0)).name;
    const auto value = head.isComplete ? property.substr(head.colon + 1) : std::string_view();
    if (!(equalsIgnoringCase(name, "PHOTO") || equalsIgnoringCase(name, "LOGO")) ||
        !value.starts_with(kFileScheme)) {
        return std::nullopt;
    }
    Picture picture{std::string(property.substr(0, head.nameEnd)),
                    decoded(value.substr(kFileScheme.size()), '%')};
    const auto inFolder = picture.file.lexically_relative(folder);
    constexpr int kBookFolderAndFile = 3;
    if (picture.file != picture.file.lexically_normal() ||
        std::distance(inFolder.begin(), inFolder.end()) != kBookFolderAndFile ||
        *inFolder.begin() == ".." || inFolder.parent_path().filename() != "photos") {
        return std::nullopt;
    }
    bool hasType = false;
    auto parameters = property.substr(head.nameEnd, head.colon - head.nameEnd);
    while (!parameters.empty()) {
        const auto before = parameters;
        const auto parameter = takeParameter(parameters);
        if (!equalsIgnoringCase(parameter.name, "VALUE")) {
            picture.head += before.substr(0, before.size() - parameters.size());
        }
        hasType = hasType || equalsIgnoringCase(parameter.name, "TYPE");
    }
    // The service puts the type into the file's name: "ann_photo-file0.image-2FJPEG".
    constexpr std::string_view kImage = ".image/";
    const auto type = decoded(picture.file.extension().string(), '-');
    if (!hasType && type.starts_with(kImage)) {
        picture.head += ";TYPE=" + type.substr(kImage.size());
    }
    return picture;
}

std::optional<std::string> bytesOf(const std::filesystem::path& file)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(file, error))) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    return stream.bad() || bytes.empty() ? std::nullopt : std::optional(std::move(bytes));
}

/// Whether the text contains the upper-case word in any case.
bool contains(std::string_view text, std::string_view word)
{
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [](char x, char y) { return toUpperAscii(x) == y; }) != text.end();
}

/// Whether the card may contain the address of a picture in the folder.
bool mayHavePictures(std::string_view card, const std::filesystem::path& folder)
{
    return !folder.empty() && (contains(card, "PHOTO") || contains(card, "LOGO"));
}

/// The card with what `replace` returns in place of the lines of each stored picture.
std::string replacing(std::string_view card, const std::filesystem::path& folder,
                      const std::function<std::optional<std::string>(const Picture&)>& replace)
{
    if (!mayHavePictures(card, folder)) {
        return std::string(card);
    }
    std::string out;
    Lines lines(card);
    for (std::size_t begin = 0; begin < card.size();) {
        auto line = lines.at(begin);
        while (line.next < card.size() && isBlank(card[line.next])) {
            line = lines.at(line.next);
        }
        const auto picture = pictureOf(
            unfold(card.substr(begin, line.end - begin), FoldBlank::Remove, SoftBreaks::Keep),
            folder);
        const auto replacement = picture ? replace(*picture) : std::nullopt;
        out += replacement ? *replacement : card.substr(begin, line.next - begin);
        begin = line.next;
    }
    return out;
}

}  // namespace

std::filesystem::path pictureFolder()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): the programs never change the environment
    const char* const data = std::getenv("XDG_DATA_HOME");
    const char* const home = std::getenv("HOME");
    // NOLINTEND(concurrency-mt-unsafe)
    std::filesystem::path folder;
    if (data != nullptr && *data == '/') {
        folder = data;
    } else if (home != nullptr && *home == '/') {
        folder = std::filesystem::path(home) / ".local/share";
    } else {
        return {};
    }
    return (folder / "evolution/addressbook").lexically_normal();
}

std::string withPictures(std::string_view card, const std::filesystem::path& folder)
{
    return replacing(card, folder, [](const Picture& picture) -> std::optional<std::string> {
        const auto bytes = bytesOf(picture.file);
        return bytes ? std::optional(folded(picture.head + ";ENCODING=b:" + base64(*bytes)))
                     : std::nullopt;
    });
}

std::string wholeCard(const ServiceBook& book, std::string_view card,
                      const std::filesystem::path& folder)
{
    return book.kind == kLocalKind ? withPictures(card, folder) : std::string(card);
}

bool mayHavePictures(const ServiceBook& book, std::string_view card,
                     const std::filesystem::path& folder)
{
    return book.kind == kLocalKind && mayHavePictures(card, folder);
}

CardWithoutLostPictures withoutLostPictures(std::string_view card,
                                            const std::filesystem::path& folder)
{
    CardWithoutLostPictures result;
    result.card = replacing(card, folder, [&](const Picture& picture) {
        std::error_code error;
        const bool isLost = !std::filesystem::exists(picture.file, error) && !error;
        result.lost += isLost ? 1 : 0;
        return isLost ? std::optional<std::string>("") : std::nullopt;
    });
    return result;
}

}  // namespace dunmora
