#pragma once

#include "platform/Connection.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {

/// A transfer that goes as the test says.
class FakeConnection final : public Connection {
public:
    FakeConnection(std::string requested, ConnectionDelegate& delegate)
        : url(std::move(requested)), delegate_(delegate)
    {
    }

    void cancel() override { isCancelled = true; }

    void respond() { delegate_.didReceiveResponse(*this); }
    void deliver(std::string_view bytes) { delegate_.didReceiveData(*this, bytes); }
    std::string redirect(const std::string& to) { return delegate_.willSendRequest(*this, to); }
    void fail(const std::string& description) { delegate_.didFailWithError(*this, description); }
    void finish() { delegate_.connectionDidFinishLoading(*this); }

    /// A whole transfer with this body.
    void reply(std::string_view body)
    {
        respond();
        deliver(body);
        finish();
    }

    std::string url;
    bool isCancelled = false;

private:
    ConnectionDelegate& delegate_;
};

/// Opens connections that wait for the test, or none.
class FakeConnections final : public ConnectionOpener {
public:
    std::shared_ptr<Connection> openConnection(const std::string& url,
                                               ConnectionDelegate& delegate) override
    {
        onOpen();
        if (opensNone) {
            return nullptr;
        }
        return opened.emplace_back(std::make_shared<FakeConnection>(url, delegate));
    }

    FakeConnection& last() { return *opened.back(); }

    std::vector<std::shared_ptr<FakeConnection>> opened;
    bool opensNone = false;
    /// Called before a connection is opened.
    std::function<void()> onOpen = [] {};
};

}  // namespace dunmora::test
