#pragma once

#include "adapters/eds/ContactService.h"
#include "platform/CardRestorer.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora {

/// Adds people to the service's books as far as possible, and counts and names the outcomes.
///
/// Changes and replaces nobody who is there: a uid that is taken by another card is a failure.
/// After a failed addition, finds out who is in the book and tries the others one by one. Gives up
/// on a book that keeps refusing, and continues with the next one. Tries nothing more after a
/// timeout.
///
/// Thread: one at a time. Errors: none.
class EdsRestoration final {
public:
    using Time = std::chrono::steady_clock::time_point;
    using People = std::vector<ContactText>;

    /// `service` must outlive the restoration. `pictures` is the folder in which the service keeps
    /// the pictures of local books; `now` is the clock.
    EdsRestoration(ContactService& service, std::filesystem::path pictures, CardRestorer::Mode mode,
                   std::function<Time()> now = std::chrono::steady_clock::now)
        : service_(service), pictures_(std::move(pictures)), mode_(mode), now_(std::move(now))
    {
    }

    /// Adds these people to a book that was just read. Somebody without a uid gets one. Returns
    /// those who are not there afterwards, or may not be.
    People restore(const ServiceBook& book, const BookContent& content, People people);

    /// Names people whose book cannot be used. The reason is the end of a sentence.
    void fail(const People& people, const std::string& reason);

    Restoration result() const { return result_; }

private:
    People peopleToAdd(const ServiceBook& book, const BookContent& content, People people);
    void addBatch(const ServiceBook& book, const People& batch);
    void handleFailure(const ServiceBook& book, const People& batch, const AdditionResult& result);
    bool isSame(const ServiceBook& book, const std::string& stored, const ContactText& added) const;
    bool isHopeless() const;
    void leave(const ContactText& person, const std::string& reason);
    void leaveUnknown(const ContactText& person, const std::string& reason);

    ContactService& service_;
    std::filesystem::path pictures_;
    CardRestorer::Mode mode_;
    std::function<Time()> now_;
    Restoration result_;
    // A call has timed out.
    bool hasStopped_ = false;
    // The members below are about the current book.
    bool isGivenUp_ = false;
    std::size_t refusalsInARow_ = 0;
    Time lastSuccess_;
    People left_;
};

}  // namespace dunmora
