#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace dunmora::test {

/// Another program that uses the desktop's address books. It caches nothing. Errors:
/// std::runtime_error.
class OtherClient final {
public:
    OtherClient();
    ~OtherClient();
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    /// Creates an address book; the desktop itself stores books of the kind "local".
    void makeBook(const std::string& uid, const std::string& name,
                  const std::string& kind = "local");

    /// Adds the book of the server on this loopback port to the desktop, and waits until the
    /// service has read it.
    void makeServerBook(const std::string& uid, const std::string& name, std::uint16_t port);

    /// Removes a book from the desktop.
    void removeBook(const std::string& uid);

    /// Closes a server's book once the service is connected to its server, and waits until the
    /// service, which closes unused books, has disconnected.
    void close(const std::string& book);

    /// Asks the service to update its copy from the server.
    void refresh(const std::string& book);

    /// Waits until the service reports that it has lost a book's server.
    static void awaitLoss(const std::string& book);

    /// Makes the service report that it has lost a book's server, as it does when the network goes
    /// down.
    static void loseServer(const std::string& book);
    /// The same again and again, because an answer of the server makes the service report that it
    /// is connected.
    static void keepLosingServer(const std::string& book, const std::atomic<bool>& isDone);
    /// Makes the service report that it is connected to a book's server, as it does after the
    /// process that was connected is killed.
    static void claimServer(const std::string& book);

    void add(const std::string& book, const std::vector<std::string>& cards);
    void remove(const std::string& book, const std::vector<std::string>& uids);
    /// Replaces the card with the same uid, as an editor does; the service gives it a new
    /// modification date.
    void edit(const std::string& book, const std::string& card);

    /// The uids of all contacts, in the service's order.
    std::vector<std::string> uids(const std::string& book);
    /// The cards of all contacts, byte for byte as they are stored, by their uids.
    std::map<std::string, std::string> cards(const std::string& book);

private:
    class Connection;
    Connection& connection(const std::string& book);

    std::map<std::string, std::unique_ptr<Connection>> connections_;
};

}  // namespace dunmora::test
