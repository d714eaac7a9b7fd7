#include "adapters/macos/MacRestoration.h"

#include "adapters/macos/FrameworkBook.h"
#include "adapters/macos/FrameworkCall.h"
#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/BackupRestoration.h"
#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/ComparableCard.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"
#include "text/TextHash.h"
#include "text/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <unordered_set>
#include <utility>

namespace dunmora {

namespace {

/// What the framework may have called the person of a card: it writes its own uid as X-ABUID, or
/// the beginning of it as UID.
std::vector<std::string> uidsOf(std::string_view card, const std::string& uid)
{
    std::vector<std::string> uids;
    if (const auto properties = readProperties(card, CardReader::Text::Utf8)) {
        for (const auto& property : *properties) {
            if (property.name == "X-ABUID" && !property.components.empty()) {
                uids.push_back(property.components.front());
            }
        }
    }
    if (!uid.empty()) {
        uids.push_back(uid);
        uids.push_back(uid + ":ABPerson");
    }
    return uids;
}

std::string notRestored(const MacCard& person, const std::string& reason)
{
    return quotedText(person.name) + " was not restored: " + reason;
}

}  // namespace

std::vector<MacCard> readMacBackup(std::string_view backup, Restoration& result)
{
    const auto file = cardFileOf("backup", backup);
    const AddedCards cards(file);
    if (cards.all().empty()) {
        throw PlatformError("The backup contains no people.");
    }
    std::vector<MacCard> people;
    for (const auto& added : cards.all()) {
        const auto text = converted(added.bytes, cards.encoding(), FileEncoding::Bytes);
        if (text && isUtf8(*text)) {
            people.push_back(
                {uidsOf(*text, std::string(added.uid())), *text + "\r\n", added.name(), {}});
        } else {
            result.failures.push_back(
                notRestored({{}, {}, added.name(), {}}, "its card is not UTF-8."));
        }
    }
    noteWhatIsNotRestored(cards, result);
    return people;
}

MacRestoration::People
MacRestoration::restore(People people, const std::function<bool(const std::string& uid)>& canBeBack,
                        CardRestorer::Mode mode)
{
    std::unordered_set<std::string, TextHash> wanted;
    for (const auto& person : people) {
        wanted.insert(person.uids.begin(), person.uids.end());
    }
    auto byUid =
        cardsThere([&](const std::string& uid) { return wanted.contains(uid) || canBeBack(uid); });
    // The cards of those who are there under another uid.
    std::unordered_multiset<std::string, TextHash> others;
    for (const auto& [uid, text] : byUid) {
        if (!wanted.contains(uid)) {
            others.insert(text);
        }
    }
    std::unordered_set<std::string, TextHash> withoutUid;
    People missing;
    for (auto& person : people) {
        const auto text = comparableCard(person.card);
        const auto uid = std::find_if(person.uids.begin(), person.uids.end(),
                                      [&](const auto& each) { return byUid.contains(each); });
        if (uid != person.uids.end()) {
            if (byUid.at(*uid) == text) {
                ++result_.present;
            } else {
                fail(person, "its UID belongs to another card in the address book.");
            }
            continue;
        }
        for (const auto& each : person.uids) {
            byUid.emplace(each, text);
        }
        const bool isRepeated = person.uids.empty() && !withoutUid.insert(text).second;
        const auto same = others.find(text);
        if (isRepeated || same != others.end()) {
            if (!isRepeated) {
                others.erase(same);
            }
            ++result_.present;
        } else {
            missing.push_back(std::move(person));
        }
    }
    if (mode == CardRestorer::Mode::DryRun) {
        result_.restored = missing.size();
    } else {
        add(std::move(missing));
    }
    return std::move(left_);
}

/// The cards of the people with these uids, in a form to compare.
MacRestoration::Texts
MacRestoration::cardsThere(const std::function<bool(const std::string& uid)>& isWanted) const
{
    constexpr std::size_t kPeoplePerPool = 256;
    Texts texts;
    for (std::size_t begin = 0; begin < book_.size(); begin += kPeoplePerPool) {
        const auto end = std::min(begin + kPeoplePerPool, book_.size());
        callObjectiveC(kMacBookTitle, [&] {
            for (auto i = begin; i < end; ++i) {
                if (const auto uid = book_.uid(i); isWanted(uid)) {
                    texts.emplace(uid, comparableCard(book_.vCard(i).value_or("")));
                }
            }
        });
    }
    return texts;
}

void MacRestoration::add(People people)
{
    People added;
    bool isUncertain = false;
    for (auto& person : people) {
        // Any exit from here on leaves additions in the framework, unless it is reset.
        stranded_ = true;
        std::optional<FrameworkCard> card;
        std::string reason = "macOS does not accept the card.";
        try {
            callObjectiveC(kMacBookTitle, [&] { card = book_.add(person.card); });
        } catch (const PlatformError& error) {
            // The framework may have the person all the same: a save makes that final.
            isUncertain = true;
            reason = error.what();
        }
        if (!card) {
            fail(person, reason);
            continue;
        }
        added_.push_back(card->person.uid);
        if (comparableCard(card->vCard.value_or("")) != comparableCard(person.card)) {
            result_.remarks.push_back("macOS changed the card of " + quotedText(person.name) +
                                      " when it was restored.");
        }
        for (const auto& group : person.groups) {
            result_.remarks.push_back(quotedText(person.name) +
                                      " was restored, but is not in the group " +
                                      quotedText(group) + " any more.");
        }
        added.push_back(std::move(person));
    }
    if (added.empty() && !isUncertain) {
        stranded_ = false;
        return;
    }
    saveOrUndo();
    result_.restored = added.size();
}

void MacRestoration::saveOrUndo()
{
    std::string failure = std::string(kMacBookTitle) + " could not be saved.";
    try {
        callObjectiveC(kMacBookTitle, [&] {
            if (book_.save()) {
                failure.clear();
            }
        });
    } catch (const PlatformError& error) {
        failure = error.what();
    }
    if (failure.empty()) {
        stranded_ = false;
        return;
    }
    // The next save would add them, although they count as missing.
    callObjectiveC(kMacBookTitle, [&] { stranded_ = !book_.removeAdded(); });
    throw PlatformError(failure + " Nobody was restored.");
}

void MacRestoration::fail(const MacCard& person, const std::string& reason)
{
    result_.failures.push_back(notRestored(person, reason));
    left_.push_back(person);
}

}  // namespace dunmora
