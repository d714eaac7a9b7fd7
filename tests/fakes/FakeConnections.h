#pragma once

#include "platform/Connection.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// A transfer that the test drives.
class FakeConnection final : public Connection {
public:
    FakeConnection(std::string requested, ConnectionDelegate& delegate);

    void cancel() override;

    void respond();
    void deliver(std::string_view bytes);
    /// Returns the URL to request instead, as the delegate chose it.
    std::string redirect(const std::string& to);
    void fail(const std::string& description);
    void finish();

    /// A whole transfer with this body.
    void reply(std::string_view body);

    std::string url;
    bool isCancelled = false;

private:
    ConnectionDelegate& delegate_;
};

/// Opens connections that the test drives; with `opensNone`, fails to open any.
class FakeConnections final : public ConnectionOpener {
public:
    std::shared_ptr<Connection> openConnection(const std::string& url,
                                               ConnectionDelegate& delegate) override;

    FakeConnection& last() { return *opened.back(); }

    std::vector<std::shared_ptr<FakeConnection>> opened;
    bool opensNone = false;
    /// Called before a connection is opened.
    std::function<void()> onOpen = [] {};
};

}  // namespace dunmora::test
