#pragma once

#include "adapters/bundle/BuildBundle.h"
#include "platform/Bundle.h"
#include "tests/adapters/qt/LoopbackServer.h"

#include <optional>
#include <string>
#include <string_view>

namespace dunmora::bench {

/// An update service on this computer that has nothing new, and the bundle that names it.
class UpdateService final : public Bundle {
public:
    UpdateService() { server_.respondWith(test::httpResponse(200, "0.1\n\n")); }

    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const override
    {
        if (key == "DunmoraUpdateHost") {
            const auto url = server_.url("");
            return url.substr(url.rfind('/') + 1);
        }
        return build_.objectForInfoDictionaryKey(key);
    }

    /// Whether a request has been replied to and its connection closed.
    bool hasReplied() const { return !server_.requests.empty() && server_.last == nullptr; }

private:
    BuildBundle build_;
    test::LoopbackServer server_;
};

}  // namespace dunmora::bench
