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

/// A server of one address book (RFC 6352) on this machine's loopback, with whatever trouble a test
/// wants. It knows what the desktop's service asks, and no more.
///
/// Thread: any.
class CardDavServer final {
public:
    CardDavServer();
    ~CardDavServer();
    CardDavServer(const CardDavServer&) = delete;
    CardDavServer& operator=(const CardDavServer&) = delete;

    std::uint16_t port() const { return port_; }

    /// Puts a card into the book, new or in the place of the one with this uid.
    void put(const std::string& uid, const std::string& card);
    std::map<std::string, std::string> cards() const;

    /// Lets everybody only read. To be said before the book is opened.
    void forbidChanges();

    /// Wants a password from now on, which nobody knows.
    void lockOut();

    /// Does not listen any more, and drops whoever is connected; what they have asked for is not
    /// done.
    void goAway();
    /// Listens again, on the same port.
    void comeBack();

    /// Answers the removals after the next so many with this status, and removes nobody.
    void refuseRemovals(int status, std::size_t after = 0);
    /// Removes whom it is asked to, and drops whoever has asked instead of answering.
    void loseAnswersToRemovals();
    /// Keeps whoever asks for a removal waiting until they are let go on.
    void holdRemovals();
    /// Waits until somebody waits for a removal.
    void awaitHeldRemoval() const;
    void letGo();

    /// The uids of the people whose removal was asked for, one for each request, whatever became
    /// of it.
    std::vector<std::string> removals() const;

    /// Waits until the book has been listed since it last came back or was changed here. Whatever
    /// the service had in mind to do first, it has done by then.
    void awaitListing() const;

private:
    struct Card {
        std::string text;
        std::size_t version;
    };
    struct Request {
        std::string method;
        std::string path;
        /// With names in small letters.
        std::map<std::string, std::string> headers;
        std::string body;
    };
    struct Answer {
        /// Without one nothing is answered.
        int status = 200;
        std::string body;
    };
    struct Visitor {
        int socket;
        std::thread thread;
    };

    void listen();
    void serve(int listener);
    void talk(int socket);
    Answer answer(const Request& request);
    Answer list(const Request& request);
    Answer report(const Request& request) const;
    Answer remove(const Request& request, std::unique_lock<std::mutex>& lock);

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

    std::uint16_t port_ = 0;
    int listener_ = -1;
    std::thread serving_;
    std::list<Visitor> visitors_;
};

}  // namespace dunmora::test
