#pragma once

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
