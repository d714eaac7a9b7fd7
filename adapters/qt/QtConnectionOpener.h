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
    /// How long a server may take to send its next byte.
    static constexpr std::chrono::milliseconds kUsualTimeout = std::chrono::seconds(60);

    /// A QCoreApplication must exist.
    explicit QtConnectionOpener(std::chrono::milliseconds timeout = kUsualTimeout)
        : timeout_(timeout)
    {
    }
    /// Cancels every transfer in progress.
    ~QtConnectionOpener() override;
    QtConnectionOpener(const QtConnectionOpener&) = delete;
    QtConnectionOpener& operator=(const QtConnectionOpener&) = delete;

    std::shared_ptr<Connection> openConnection(const std::string& url,
                                               ConnectionDelegate& delegate) override;

private:
    std::chrono::milliseconds timeout_;
    // Keeps each transfer alive until it ends, even if the caller drops it.
    std::vector<std::shared_ptr<QtConnection>> transfers_;
};

}  // namespace dunmora
