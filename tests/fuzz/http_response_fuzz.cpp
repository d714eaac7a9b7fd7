#include "adapters/http/HttpResponseReader.h"
#include "platform/PlatformError.h"
#include "tests/fuzz/Requirement.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

using dunmora::HttpResponseReader;
using dunmora::test::require;
using Close = HttpResponseReader::Close;

/// Reads a response in pieces of this size. Returns its head and body; nothing when it is rejected.
std::optional<std::string> read(std::string_view bytes, std::size_t pieceSize,
                                Close close = Close::Complete)
{
    HttpResponseReader reader;
    std::string read;
    try {
        for (std::size_t at = 0; at < bytes.size(); at += pieceSize) {
            reader.receive(bytes.substr(at, pieceSize));
            read += reader.takeBody();
            // A copy continues where the original was.
            const auto copy = reader;
            reader = copy;
        }
        reader.receiveEnd(close);
    } catch (const dunmora::PlatformError&) {
        return std::nullopt;
    }
    require(reader.isComplete() && reader.head().has_value(), "a complete response has no head");
    require(reader.head()->status >= 200 && reader.head()->status <= 999,
            "the response is not final");
    return std::to_string(reader.head()->status) + reader.head()->location + "\n" + read +
           reader.takeBody();
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string response(data, data + size);
    const auto whole = read(response, std::max<std::size_t>(size, 1));

    require(!whole || whole->size() <= response.size() + 8, "the result is longer than the input");
    const auto cut = read(response, std::max<std::size_t>(size, 1), Close::Incomplete);
    require(!cut || cut == whole, "the result depends on how the connection was closed");
    require(read(response, 1) == whole, "the result depends on the size of the pieces");
    require(read(response, 7) == whole, "the result depends on the size of the pieces");
    return 0;
}
