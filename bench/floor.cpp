// The least that any program must do that keeps an address book in memory and knows where its cards
// begin: reads the file, or every file of the folder, into fresh memory and finds each BEGIN:VCARD.
// Other times are given as multiples of this program's.
//
//     floor FILE|FOLDER

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace {

/// The bytes of a file, in memory that nothing has touched before.
class Bytes final {
public:
    explicit Bytes(const std::filesystem::path& path)
    {
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status {};
        if (file < 0 || fstat(file, &status) != 0) {
            throw std::runtime_error("cannot open " + path.string());
        }
        size_ = static_cast<std::size_t>(status.st_size);
        // Not std::vector, which would write to the memory first.
        bytes_ =
            std::make_unique_for_overwrite<Memory::element_type[]>(size_);  // NOLINT(*-c-arrays)
        for (std::size_t done = 0; done < size_;) {
            const auto count = read(file, bytes_.get() + done, size_ - done);
            if (count <= 0) {
                throw std::runtime_error("cannot read " + path.string());
            }
            done += static_cast<std::size_t>(count);
        }
        close(file);
    }

    std::string_view text() const { return {bytes_.get(), size_}; }

private:
    using Memory = std::unique_ptr<char[]>;  // NOLINT(modernize-avoid-c-arrays): sized at run time

    Memory bytes_;
    std::size_t size_ = 0;
};

std::size_t cardsIn(std::string_view text)
{
    constexpr std::string_view kBegin = "BEGIN:VCARD";
    std::size_t cards = 0;
    const auto* const end = text.data() + text.size();
    for (const auto* at = text.data(); at < end; ++cards) {
        const auto* const found = static_cast<const char*>(
            memmem(at, static_cast<std::size_t>(end - at), kBegin.data(), kBegin.size()));
        if (found == nullptr) {
            break;
        }
        at = found + kBegin.size();
    }
    return cards;
}

std::size_t cardsAt(const std::filesystem::path& path)
{
    if (!std::filesystem::is_directory(path)) {
        return cardsIn(Bytes(path).text());
    }
    std::size_t cards = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        cards += cardsIn(Bytes(entry.path()).text());
    }
    return cards;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: floor FILE|FOLDER\n";
        return 2;
    }
    try {
        std::cout << cardsAt(argv[1]) << '\n';
    } catch (const std::exception& error) {
        std::cerr << "floor: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
