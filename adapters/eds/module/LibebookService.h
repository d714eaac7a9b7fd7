#pragma once

#include "adapters/eds/ContactService.h"

#include <libebook/libebook.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace dunmora {

/// Evolution Data Server, reached through libebook.
///
/// Every question is asked on a thread of its own and given up after a time.
class LibebookService final : public ContactService {
public:
    LibebookService() = default;
    ~LibebookService() override = default;
    LibebookService(const LibebookService&) = delete;
    LibebookService& operator=(const LibebookService&) = delete;

    bool isThere() override;
    std::vector<ServiceBook> books() override;
    std::vector<BookContent> read(const std::vector<std::string>& books) override;
    BookContent find(const std::string& book, const std::vector<std::string>& people) override;
    RemovalAnswer remove(const std::string& book, const std::vector<std::string>& people) override;

private:
    /// One book and the connection to it, if there is one already.
    struct Connection {
        std::shared_ptr<ESource> source;
        std::shared_ptr<EClient> client;
        /// Whether a removal was asked for that a server may have done, or may do yet. The
        /// desktop's copy does not tell.
        bool isUncertain = false;
    };

    struct Listed;
    struct Read;
    struct Removed;

    static Listed list(GCancellable* cancellable);
    static Read readAll(const Connection& connection, GCancellable* cancellable);
    static Read findSome(const Connection& connection, const std::vector<std::string>& people,
                         GCancellable* cancellable);
    static Removed removeSome(const Connection& connection, const std::vector<std::string>& people,
                              GCancellable* cancellable);

    // Keeps the connection to the session bus, with what was set for it.
    std::shared_ptr<GDBusConnection> bus_;
    std::map<std::string, Connection> connections_;
};

}  // namespace dunmora
