#include "adapters/eds/module/LibebookService.h"

#include "adapters/eds/module/BookConnection.h"
#include "adapters/eds/module/BoundedCall.h"
#include "adapters/eds/module/ContactQuery.h"
#include "adapters/eds/module/GlibError.h"
#include "adapters/eds/module/GlibOwned.h"
#include "adapters/eds/module/SessionBus.h"
#include "platform/PlatformError.h"

#include <chrono>
#include <optional>
#include <utility>

namespace dunmora {

namespace {

using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

// `ContactService` limits the sums: listing and reading the books; finding a batch, removing it and
// finding it again; adding a batch and finding it.
constexpr seconds kListingLimit(5);
constexpr seconds kReadingLimit(9);
constexpr seconds kFindingLimit(4);
constexpr seconds kRemovalLimit(6);
constexpr seconds kAdditionLimit(6);
constexpr seconds kPresenceLimit(2);

constexpr auto kNoBook = "The service no longer lists the book.";
constexpr auto kServerLost =
    "Its server can no longer be reached. The people may still be deleted there later.";
constexpr auto kServerLostBeforeAddition =
    "Its server can no longer be reached. The people may still be added there later.";
constexpr auto kUncertain =
    "What its server has done is unknown until the address book is reloaded.";

BookContent timedOut()
{
    BookContent content;
    content.failure = kNoReply;
    content.hasTimedOut = true;
    return content;
}

}  // namespace

struct LibebookService::Listed {
    std::string failure;
    std::shared_ptr<GDBusConnection> bus;
    std::vector<ServiceBook> books;
    std::map<std::string, Connection> connections;
};

struct LibebookService::Read {
    BookContent content;
    std::shared_ptr<EClient> client;
};

struct LibebookService::Removed {
    RemovalResult result;
    std::shared_ptr<EClient> client;
};

struct LibebookService::Added {
    AdditionResult result;
    std::shared_ptr<EClient> client;
};

bool LibebookService::isAvailable()
{
    if (!hasSessionBus()) {
        return false;
    }
    struct Reply {
        bool isAvailable;
        std::shared_ptr<GDBusConnection> bus;
    };
    BoundedCall<Reply> call([](GCancellable* cancellable) {
        GlibError error;
        const auto bus = connectToBus(cancellable, error);
        return Reply{bus && canStartService(*bus, cancellable), bus};
    });
    const auto reply = call.resultBefore(Clock::now() + kPresenceLimit);
    bus_ = reply ? reply->bus : nullptr;
    return reply && reply->isAvailable;
}

LibebookService::Listed LibebookService::list(GCancellable* cancellable)
{
    Listed listed;
    GlibError error;
    listed.bus = connectToBus(cancellable, error);
    if (!listed.bus) {
        listed.failure =
            (error.isClosed() ? "" : "There is no session bus (D-Bus). ") + error.sentence();
        return listed;
    }
    // Without the service the library reports success and no books.
    if (!canStartService(*listed.bus, cancellable)) {
        listed.failure = kNotInstalled;
        return listed;
    }
    const auto registry = owned(e_source_registry_new_sync(cancellable, error.place()));
    if (!registry) {
        listed.failure = error.sentence();
        return listed;
    }
    if (!isServiceRunning(*listed.bus, cancellable)) {
        listed.failure = "Evolution Data Server cannot be started.";
        return listed;
    }
    GList* const sources =
        e_source_registry_list_enabled(registry.get(), E_SOURCE_EXTENSION_ADDRESS_BOOK);
    for (auto* item = sources; item != nullptr; item = item->next) {
        auto* const source = E_SOURCE(item->data);
        const auto uid = stringOf(e_source_get_uid(source));
        listed.books.push_back({uid, stringOf(e_source_get_display_name(source)), kindOf(*source)});
        listed.connections[uid].source = owned(E_SOURCE(g_object_ref(source)));
    }
    g_list_free_full(sources, g_object_unref);
    return listed;
}

std::vector<ServiceBook> LibebookService::books()
{
    const std::string about = "The desktop's address books cannot be reached: ";
    connections_.clear();
    if (!hasSessionBus()) {
        throw PlatformError(about + "There is no session bus (D-Bus).");
    }
    BoundedCall<Listed> call(&LibebookService::list);
    auto listed = call.resultBefore(Clock::now() + kListingLimit);
    if (!listed) {
        throw PlatformError(about + kNoReply);
    }
    if (!listed->failure.empty()) {
        throw PlatformError(about + listed->failure);
    }
    bus_ = listed->bus;
    connections_ = std::move(listed->connections);
    return std::move(listed->books);
}

LibebookService::Read LibebookService::readAll(const Connection& connection,
                                               GCancellable* cancellable)
{
    Read read;
    GlibError error;
    read.client = connectTo(*connection.source, cancellable, error);
    if (!read.client ||
        !queryPeople(*read.client, kEverybody, read.content.people, cancellable, error)) {
        read.content.failure = error.sentence();
        read.content.hasTimedOut = error.isNoReply();
        return read;
    }
    read.content.isWritable = e_client_is_readonly(read.client.get()) == FALSE;
    // The service sends removals to a server one by one. More at once gains nothing there, and
    // after a failure it would be unknown which were done. Elsewhere an edit between the check of a
    // batch and its removal is lost; with twenty people that takes hardly longer than with one.
    constexpr std::size_t kManyAtOnce = 20;
    const bool takesMany = !isOnServer(*connection.source) &&
                           e_client_check_capability(read.client.get(), "bulk-removes") != FALSE;
    read.content.batchSize = takesMany ? kManyAtOnce : 1;
    return read;
}

std::vector<BookContent> LibebookService::read(const std::vector<std::string>& books)
{
    const auto deadline = Clock::now() + kReadingLimit;
    std::vector<BoundedCall<Read>> calls;
    calls.reserve(books.size());
    for (const auto& book : books) {
        calls.emplace_back([connection = connections_.at(book)](GCancellable* cancellable) {
            return readAll(connection, cancellable);
        });
    }
    std::vector<BookContent> contents;
    contents.reserve(books.size());
    auto reads = resultsBefore(deadline, calls);
    for (std::size_t i = 0; i < books.size(); ++i) {
        auto& read = reads[i];
        if (!read) {
            contents.push_back(timedOut());
            continue;
        }
        connections_.at(books[i]).client = read->content.failure.empty() ? read->client : nullptr;
        contents.push_back(std::move(read->content));
    }
    return contents;
}

LibebookService::Read LibebookService::findSome(const Connection& connection,
                                                const std::vector<std::string>& people,
                                                GCancellable* cancellable)
{
    Read found;
    GlibError error;
    found.client = connection.client;
    if (found.client && isServed(*connection.source, cancellable) &&
        fetchPeople(*found.client, people, found.content.people, cancellable, error)) {
        return found;
    }
    // The process that serves the book may have ended; connecting starts it again.
    found.content.people.clear();
    found.client = connectTo(*connection.source, cancellable, error);
    if (!found.client ||
        !fetchPeople(*found.client, people, found.content.people, cancellable, error)) {
        found.content.failure = error.sentence();
        found.content.hasTimedOut = error.isNoReply();
    }
    return found;
}

BookContent LibebookService::find(const std::string& book, const std::vector<std::string>& people)
{
    BookContent content;
    const auto known = connections_.find(book);
    if (known == connections_.end()) {
        content.failure = kNoBook;
        return content;
    }
    auto& connection = known->second;
    if (connection.isUncertain) {
        content.failure = kUncertain;
        return content;
    }
    BoundedCall<Read> call([connection, people](GCancellable* cancellable) {
        return findSome(connection, people, cancellable);
    });
    auto found = call.resultBefore(Clock::now() + kFindingLimit);
    if (!found) {
        connection.client = nullptr;
        return timedOut();
    }
    connection.client = found->content.failure.empty() ? found->client : nullptr;
    return std::move(found->content);
}

LibebookService::Removed LibebookService::removeSome(const Connection& connection,
                                                     const std::vector<std::string>& people,
                                                     GCancellable* cancellable)
{
    using Outcome = RemovalResult::Outcome;
    Removed removed;
    GlibError error;
    removed.client =
        connection.client ? connection.client : connectTo(*connection.source, cancellable, error);
    if (!removed.client) {
        removed.result = {error.isNoReply() ? Outcome::NoReply : Outcome::Refused,
                          error.sentence()};
        return removed;
    }
    if (!isServed(*connection.source, cancellable)) {
        removed.result = {Outcome::Refused, kNoServer};
        return removed;
    }
    GSList* uids = nullptr;
    for (const auto& person : people) {
        uids = g_slist_prepend(uids, g_strdup(person.c_str()));
    }
    uids = g_slist_reverse(uids);
    // Without the flag the service would remove the server's current version, not the one it
    // showed.
    const bool isDone =
        e_book_client_remove_contacts_sync(E_BOOK_CLIENT(removed.client.get()), uids,
                                           E_BOOK_OPERATION_FLAG_CONFLICT_FAIL, cancellable,
                                           error.place()) != FALSE;
    g_slist_free_full(uids, g_free);
    if (!isDone) {
        removed.result = {error.isNoSuchPerson()                     ? Outcome::NoSuchPerson
                          : error.isChangedOnServer()                ? Outcome::Changed
                          : error.isNoReply() || error.isReplyLost() ? Outcome::NoReply
                                                                     : Outcome::Refused,
                          error.sentence()};
    } else if (!isServed(*connection.source, cancellable)) {
        // The service also reports success when it has only queued the removal.
        removed.result = {Outcome::NoReply, kServerLost};
    }
    return removed;
}

RemovalResult LibebookService::remove(const std::string& book,
                                      const std::vector<std::string>& people)
{
    // The library treats an empty list as a programming error.
    if (people.empty()) {
        return {};
    }
    const auto known = connections_.find(book);
    if (known == connections_.end()) {
        return {RemovalResult::Outcome::Refused, kNoBook};
    }
    auto& connection = known->second;
    BoundedCall<Removed> call([connection, people](GCancellable* cancellable) {
        return removeSome(connection, people, cancellable);
    });
    auto removed = call.resultBefore(Clock::now() + kRemovalLimit);
    if (!removed) {
        removed = Removed{{RemovalResult::Outcome::NoReply, kNoReply}, nullptr};
    }
    connection.client = removed->client;
    if (removed->result.outcome == RemovalResult::Outcome::NoReply) {
        connection.client = nullptr;
        connection.isUncertain = isOnServer(*connection.source);
    }
    return std::move(removed->result);
}

LibebookService::Added LibebookService::addSome(const Connection& connection,
                                                const std::vector<std::string>& cards,
                                                GCancellable* cancellable)
{
    using Outcome = AdditionResult::Outcome;
    Added added;
    GlibError error;
    added.client =
        connection.client ? connection.client : connectTo(*connection.source, cancellable, error);
    if (!added.client) {
        // Nothing has been sent yet.
        added.result = {Outcome::Refused, error.sentence()};
        return added;
    }
    if (!isServed(*connection.source, cancellable)) {
        added.result = {Outcome::Refused, kNoServer};
        return added;
    }
    GSList* contacts = nullptr;
    for (const auto& card : cards) {
        contacts = g_slist_prepend(contacts, e_contact_new_from_vcard(card.c_str()));
    }
    contacts = g_slist_reverse(contacts);
    GSList* uids = nullptr;
    const bool isDone = e_book_client_add_contacts_sync(E_BOOK_CLIENT(added.client.get()), contacts,
                                                        E_BOOK_OPERATION_FLAG_CONFLICT_FAIL, &uids,
                                                        cancellable, error.place()) != FALSE;
    g_slist_free_full(contacts, g_object_unref);
    g_slist_free_full(uids, g_free);
    if (!isDone) {
        added.result = {error.isExistingPerson()                   ? Outcome::Exists
                        : error.isNoReply() || error.isReplyLost() ? Outcome::NoReply
                                                                   : Outcome::Refused,
                        error.sentence()};
    } else if (!isServed(*connection.source, cancellable)) {
        // The service also reports success when it has only queued the addition.
        added.result = {Outcome::NoReply, kServerLostBeforeAddition};
    }
    return added;
}

AdditionResult LibebookService::add(const std::string& book, const std::vector<std::string>& cards)
{
    // The library treats an empty list as a programming error.
    if (cards.empty()) {
        return {};
    }
    const auto known = connections_.find(book);
    if (known == connections_.end()) {
        return {AdditionResult::Outcome::Refused, kNoBook};
    }
    auto& connection = known->second;
    BoundedCall<Added> call([connection, cards](GCancellable* cancellable) {
        return addSome(connection, cards, cancellable);
    });
    auto added = call.resultBefore(Clock::now() + kAdditionLimit);
    if (!added) {
        added = Added{{AdditionResult::Outcome::NoReply, kNoReply}, nullptr};
    }
    connection.client = added->client;
    if (added->result.outcome == AdditionResult::Outcome::NoReply) {
        connection.client = nullptr;
        connection.isUncertain = isOnServer(*connection.source);
    }
    return std::move(added->result);
}

}  // namespace dunmora
