#include "update/UpdateReply.h"

#include "tests/fuzz/Requirement.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace {

using namespace dunmora;
using test::require;

std::vector<std::string_view> pieces(std::string_view text)
{
    std::vector<std::string_view> found;
    for (;;) {
        const auto end = text.find('\n');
        found.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return found;
        }
        text.remove_prefix(end + 1);
    }
}

}  // namespace

// The input's first line is the running version, the rest the reply.
// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(data, data + size);
    const auto end = input.find('\n');
    const std::string running = input.substr(0, end);
    const std::string body = end == std::string::npos ? "" : input.substr(end + 1);

    const double current = versionNumber(running);
    require(std::isfinite(current), "a version is not a finite number");
    require(versionNumber(" \t" + running) == current, "blanks before a version change it");
    require(versionNumber(running + "/") == current, "text after a version changes it");

    const auto reply = judgeUpdateReply(body, running);
    const auto lines = pieces(body);
    if (std::holds_alternative<UnreadableReply>(reply)) {
        return 0;
    }
    require(lines.size() == 3, "a reply without exactly three lines was accepted");
    const bool isNewer = versionNumber(lines[0]) > current;
    if (const auto* const newer = std::get_if<NewerVersion>(&reply)) {
        require(isNewer, "an older version was offered");
        require(newer->downloadUrl == lines[1], "the address is not the second line");
        require(newer->message == lines[2], "the message is not the third line");
    } else {
        require(!isNewer, "a newer version was not offered");
        require(std::get<UpToDate>(reply).downloadUrl == lines[1],
                "the address is not the second line");
    }
    return 0;
}
