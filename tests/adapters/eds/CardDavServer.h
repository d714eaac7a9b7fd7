#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace dunmora::test {

/// A CardDAV server (RFC 6352) with one address book, on the loopback interface, with the faults
/// that the test sets. It handles only the requests that the desktop's service sends.
///
/// Thread: any.
class CardDavServer final {
public:
    CardDavServer();
    ~CardDavServer();
    CardDavServer(const CardDavServer&) = delete;
    CardDavServer& operator=(const CardDavServer&) = delete;

    std::uint16_t port() const { return port_; }

    /// Adds a card to the book, or replaces the one with this uid.
    void put(const std::string& uid, const std::string& card);
    std::map<std::string, std::string> cards() const;

    /// Makes the book read-only. Call it before the book is opened.
    void forbidChanges();

    /// Requires a password from now on (401), which no client has.
    void lockOut();

    /// Stops listening and drops all connections; their pending requests are not carried out.
    void goAway();
    /// Listens again, on the same port.
    void comeBack();

    // The faults below concern removals and additions.

    /// After this many more changes, responds to each with this status and changes nothing.
    void refuseChanges(int status, std::size_t after = 0);
    /// Carries out changes, but drops the connection instead of responding.
    void loseRepliesToChanges();
    /// Holds back changes until `letGo`.
    void holdChanges();
    /// Waits until a change is held.
    void awaitHeldChange() const;
    void letGo();

    /// The uids of the people to be removed, one per request, whatever its outcome.
    std::vector<std::string> removals() const;
    /// The same for people to be added or changed.
    std::vector<std::string> additions() const;

    /// Waits until the book has been listed after it last came back or was changed here. The
    /// service has sent everything that it had queued by then.
    void awaitListing() const;

private:
    struct Card {
        std::string text;
        std::size_t version;
    };
    struct Request {
        std::string method;
        std::string path;
        /// The names are in lower case.
        std::map<std::string, std::string> headers;
        std::string body;
    };
    struct Response {
        /// 0 sends no response.
        int status = 200;
        std::string body;
        std::string etag;
    };
    struct Visitor {
        int socket;
        std::thread thread;
    };

    void listen();
    void serve(int listener);
    void talk(int socket);
    Response respond(const Request& request);
    Response list(const Request& request);
    Response report(const Request& request) const;
    Response get(const Request& request) const;
    Response remove(const Request& request, std::unique_lock<std::mutex>& lock);
    Response store(const Request& request, std::unique_lock<std::mutex>& lock);
    int fault(std::unique_lock<std::mutex>& lock);

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::map<std::string, Card> cards_;
    std::size_t version_ = 1;
    bool isReadOnly_ = false;
    bool isLocked_ = false;
    bool isAway_ = false;
    bool isHolding_ = false;
    bool isLosingAnswers_ = false;
    std::size_t held_ = 0;
    int refusal_ = 0;
    std::size_t refusedAfter_ = 0;
    bool wasListed_ = false;
    std::vector<std::string> removals_;
    std::vector<std::string> additions_;

    std::uint16_t port_ = 0;
    int listener_ = -1;
    std::thread serving_;
    std::list<Visitor> visitors_;
};

}  // namespace dunmora::test
