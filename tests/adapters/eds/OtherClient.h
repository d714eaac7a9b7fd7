#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace dunmora::test {

/// Another program that uses the desktop's address books: whatever it is asked it asks the service
/// anew. Errors: std::runtime_error.
class OtherClient final {
public:
    OtherClient();
    ~OtherClient();
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    /// Makes an address book; the desktop keeps books of the kind "local" itself.
    void makeBook(const std::string& uid, const std::string& name,
                  const std::string& kind = "local");

    /// Makes the book that the server on this port of the loopback holds one of the desktop's, and
    /// waits until the service has read it.
    void makeServerBook(const std::string& uid, const std::string& name, std::uint16_t port);

    /// Takes a book away from the desktop.
    void removeBook(const std::string& uid);

    /// Uses a book that a server keeps no more, and waits until the service, which closes those
    /// that nobody uses, has left the server.
    void close(const std::string& book);

    /// Asks the service to take what a server has.
    void refresh(const std::string& book);

    /// Waits until the service says that it has lost the server of a book.
    static void awaitLoss(const std::string& book);

    /// Lets the service say that it has lost the server of a book, as it does when the network
    /// goes.
    static void loseServer(const std::string& book);
    /// Lets the service say that it has the server of a book, as it does of the last attempt of a
    /// process that was killed.
    static void claimServer(const std::string& book);

    void add(const std::string& book, const std::vector<std::string>& cards);
    void remove(const std::string& book, const std::vector<std::string>& uids);
    /// Puts this card in the place of the one with the same uid, as an editor does; the service
    /// gives it a new date of change.
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
