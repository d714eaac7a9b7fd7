#include "tests/fakes/FakeConnections.h"

#include <utility>

namespace dunmora::test {

FakeConnection::FakeConnection(std::string requested, ConnectionDelegate& delegate)
    : url(std::move(requested)), delegate_(delegate)
{
}

void FakeConnection::cancel()
{
    isCancelled = true;
}

void FakeConnection::respond()
{
    delegate_.didReceiveResponse(*this);
}

void FakeConnection::deliver(std::string_view bytes)
{
    delegate_.didReceiveData(*this, bytes);
}

std::string FakeConnection::redirect(const std::string& to)
{
    return delegate_.willSendRequest(*this, to);
}

void FakeConnection::fail(const std::string& description)
{
    delegate_.didFailWithError(*this, description);
}

void FakeConnection::finish()
{
    delegate_.connectionDidFinishLoading(*this);
}

void FakeConnection::reply(std::string_view body)
{
    respond();
    deliver(body);
    finish();
}

std::shared_ptr<Connection> FakeConnections::openConnection(const std::string& url,
                                                            ConnectionDelegate& delegate)
{
    onOpen();
    if (opensNone) {
        return nullptr;
    }
    return opened.emplace_back(std::make_shared<FakeConnection>(url, delegate));
}

}  // namespace dunmora::test
