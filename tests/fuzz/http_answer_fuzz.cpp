#include "adapters/http/HttpAnswerReader.h"
#include "platform/PlatformError.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace {

using dunmora::HttpAnswerReader;

void require(bool holds, const char* what)
{
    if (!holds) {
        static_cast<void>(std::fputs(what, stderr));
        std::abort();
    }
}

/// What is read of an answer that comes in pieces of this size; none when it is refused.
std::optional<std::string> read(std::string_view bytes, std::size_t pieceSize)
{
    HttpAnswerReader reader;
    std::string read;
    try {
        for (std::size_t at = 0; at < bytes.size(); at += pieceSize) {
            reader.take(bytes.substr(at, pieceSize));
            read += reader.takeBody();
        }
        reader.takeEnd();
    } catch (const dunmora::PlatformError&) {
        return std::nullopt;
    }
    require(reader.isComplete() && reader.head().has_value(), "an answer without a head was read");
    require(reader.head()->status >= 200 && reader.head()->status <= 999, "no final answer");
    return std::to_string(reader.head()->status) + reader.head()->location + "\n" + read +
           reader.takeBody();
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string answer(data, data + size);
    const auto whole = read(answer, std::max<std::size_t>(size, 1));

    require(!whole || whole->size() <= answer.size() + 8, "more was read than there is");
    require(read(answer, 1) == whole, "pieces change what is read");
    require(read(answer, 7) == whole, "pieces change what is read");
    return 0;
}
