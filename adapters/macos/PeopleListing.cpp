#include "adapters/macos/PeopleListing.h"

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace dunmora {

namespace {

std::optional<std::string_view> viewOf(const std::optional<std::string>& text)
{
    return text ? std::optional<std::string_view>(*text) : std::nullopt;
}

std::vector<LabelledPhone> viewsOf(const std::vector<FrameworkPerson::Phone>& phones)
{
    std::vector<LabelledPhone> views;
    views.reserve(phones.size());
    for (const auto& phone : phones) {
        views.push_back({viewOf(phone.label), phone.value});
    }
    return views;
}

std::optional<std::chrono::sys_seconds>
secondsOf(const std::optional<std::chrono::duration<double>>& time)
{
    return time ? std::optional<std::chrono::sys_seconds>(
                      std::chrono::floor<std::chrono::seconds>(*time))
                : std::nullopt;
}

}  // namespace

PeopleListing::PeopleListing(std::vector<FrameworkPerson> people, const PersonSource& source)
{
    people_.reserve(people.size());
    indexByUid_.reserve(people.size());
    for (auto& person : people) {
        const bool isKnownByUid =
            !person.uid.empty() && indexByUid_.emplace(person.uid, people_.size()).second;
        (isKnownByUid ? people_ : skipped_).push_back(std::move(person));
    }
    phones_.reserve(people_.size());
    views_.reserve(people_.size());
    for (const auto& person : people_) {
        phones_.push_back(person.phones ? viewsOf(*person.phones) : std::vector<LabelledPhone>());
        views_.push_back({person.uid, viewOf(person.firstName), viewOf(person.lastName),
                          viewOf(person.nickname), secondsOf(person.modified),
                          person.phones ? std::optional<PhoneList>(phones_.back()) : std::nullopt,
                          &source});
    }
}

const FrameworkPerson* PeopleListing::find(const Person& view) const
{
    // By address only: a view of a destroyed listing must not be read.
    const std::less<> before;
    if (before(&view, views_.data()) || !before(&view, views_.data() + views_.size())) {
        return nullptr;
    }
    return &people_[static_cast<std::size_t>(&view - views_.data())];
}

const FrameworkPerson* PeopleListing::find(const std::string& uid) const
{
    const auto found = indexByUid_.find(uid);
    return found != indexByUid_.end() ? &people_[found->second] : nullptr;
}

}  // namespace dunmora
