#include "programs/dunmora-cli/UidLists.h"

#include "adapters/posix/StreamContent.h"
#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/StandardInput.h"
#include "text/Ascii.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace dunmora {

namespace {

// Some millions of uids.
constexpr std::uintmax_t kLargestList = 256U << 20U;

void appendUids(std::vector<std::string>& uids, std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    while (!text.empty()) {
        auto line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (line.find_first_not_of(kWhiteSpace) != std::string_view::npos) {
            uids.emplace_back(line);
        }
    }
}

}  // namespace

std::vector<std::string> readUidLists(std::span<const std::string> files, bool quiet,
                                      const CliEnvironment& environment)
{
    std::vector<std::string> uids;
    for (const auto& file : files) {
        if (file == kStandardInput) {
            reportExpectedInput("UIDs, one per line", quiet, environment);
            appendUids(uids, environment.readStandardInput(kLargestList));
        } else {
            appendUids(uids, readStreamAt(file, kLargestList).view());
        }
    }
    return uids;
}

}  // namespace dunmora
