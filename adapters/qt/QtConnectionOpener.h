#pragma once

#include "platform/Connection.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace dunmora {

class QtConnection;

/// Opens connections to web servers.
class QtConnectionOpener final : public ConnectionOpener {
public:
    /// How long a server may keep silent.
    static constexpr std::chrono::milliseconds kUsualTimeout = std::chrono::seconds(60);

    /// An application must exist.
    explicit QtConnectionOpener(std::chrono::milliseconds timeout = kUsualTimeout)
        : timeout_(timeout)
    {
    }
    /// Cancels what is under way.
    ~QtConnectionOpener() override;
    QtConnectionOpener(const QtConnectionOpener&) = delete;
    QtConnectionOpener& operator=(const QtConnectionOpener&) = delete;

    std::shared_ptr<Connection> openConnection(const std::string& url,
                                               ConnectionDelegate& delegate) override;

private:
    std::chrono::milliseconds timeout_;
    // A transfer goes on whether or not somebody else holds it.
    std::vector<std::shared_ptr<QtConnection>> underWay_;
};

}  // namespace dunmora
