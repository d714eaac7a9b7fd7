#include "adapters/vcard/HardLinks.h"

#include "text/DisplayText.h"

#include <set>
#include <system_error>
#include <utility>

namespace dunmora {

std::string hardLinkRemark(const std::vector<std::filesystem::path>& names, std::uintmax_t links)
{
    if (links <= 1) {
        return {};
    }
    // A symbolic link is not a link of its target, so it counts as the name that it leads to.
    std::set<std::filesystem::path> own;
    for (const auto& name : names) {
        std::error_code error;
        auto resolved = std::filesystem::canonical(name, error);
        if (error) {
            return {};
        }
        own.insert(std::move(resolved));
    }
    if (links <= own.size()) {
        return {};
    }
    const auto others = links - own.size();
    return quotedPath(names.front()) +
           (others == 1
                ? " has another hard link outside this address book. People deleted here stay in "
                  "it."
                : " has " + std::to_string(others) +
                      " other hard links outside this address book. People deleted here stay in "
                      "them.");
}

}  // namespace dunmora
