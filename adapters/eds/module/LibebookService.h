#pragma once

#include "adapters/eds/ContactService.h"

#include <libebook/libebook.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace dunmora {

/// Evolution Data Server, through libebook.
///
/// Every call runs on its own thread and is abandoned after a time limit.
class LibebookService final : public ContactService {
public:
    LibebookService() = default;
    ~LibebookService() override = default;
    LibebookService(const LibebookService&) = delete;
    LibebookService& operator=(const LibebookService&) = delete;

    bool isAvailable() override;
    std::vector<ServiceBook> books() override;
    std::vector<BookContent> read(const std::vector<std::string>& books) override;
    BookContent find(const std::string& book, const std::vector<std::string>& people) override;
    RemovalResult remove(const std::string& book, const std::vector<std::string>& people) override;
    AdditionResult add(const std::string& book, const std::vector<std::string>& cards) override;

private:
    /// A book, and the connection to it once it is open.
    struct Connection {
        std::shared_ptr<ESource> source;
        std::shared_ptr<EClient> client;
        /// Whether the server may have carried out a change without a reply, or may do so later.
        /// The desktop's copy does not show which.
        bool isUncertain = false;
    };

    struct Listed;
    struct Read;
    struct Removed;
    struct Added;

    static Listed list(GCancellable* cancellable);
    static Read readAll(const Connection& connection, GCancellable* cancellable);
    static Read findSome(const Connection& connection, const std::vector<std::string>& people,
                         GCancellable* cancellable);
    static Removed removeSome(const Connection& connection, const std::vector<std::string>& people,
                              GCancellable* cancellable);
    static Added addSome(const Connection& connection, const std::vector<std::string>& cards,
                         GCancellable* cancellable);

    // Keeps the connection to the session bus and its settings alive.
    std::shared_ptr<GDBusConnection> bus_;
    std::map<std::string, Connection> connections_;
};

}  // namespace dunmora
