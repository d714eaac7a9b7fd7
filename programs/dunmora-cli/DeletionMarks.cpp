#include "programs/dunmora-cli/DeletionMarks.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/CommandError.h"
#include "review/DuplicateGroups.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace dunmora {

namespace {

void mark(ContactsParser& engine, const std::string& uid, bool checked)
{
    if (auto* const record = engine.contacts().find(uid)) {
        record->setObject(checked, kContactCheck);
    }
}

void insistOnKnown(const ContactsParser& engine, std::span<const std::string> uids)
{
    for (const auto& uid : uids) {
        if (engine.contacts().find(uid) == nullptr) {
            throw CommandError(ExitCode::WrongUse, "Nobody has the uid “" + uid + "”.");
        }
    }
}

/// The uids of those who are checked and in no group of the review.
std::vector<std::string> checkedAlone(const ContactsParser& engine)
{
    const std::unordered_set<std::string_view> duplicates(engine.duplicates().begin(),
                                                          engine.duplicates().end());
    auto uids = checkedUids(engine);
    std::erase_if(uids, [&](const std::string& uid) { return duplicates.contains(uid); });
    return uids;
}

std::string nameOf(const ContactsParser& engine, const std::string& uid)
{
    const auto* const record = engine.contacts().find(uid);
    const std::string first(record->text(kContactFirstName));
    const std::string last(record->text(kContactLastName));
    if (!first.empty() || !last.empty()) {
        return first + (first.empty() || last.empty() ? "" : " ") + last;
    }
    const auto nickname = record->text(kContactNickname);
    return nickname.empty() ? "(no name, uid " + uid + ")" : std::string(nickname);
}

}  // namespace

void applyMarks(ContactsParser& engine, std::span<const std::string> check,
                std::span<const std::string> uncheck)
{
    insistOnKnown(engine, check);
    insistOnKnown(engine, uncheck);
    const std::unordered_set<std::string_view> checked(check.begin(), check.end());
    for (const auto& uid : uncheck) {
        if (checked.contains(uid)) {
            throw CommandError(ExitCode::WrongUse,
                               "“" + uid + "” is given to both --check and --uncheck.");
        }
    }
    for (const auto& uid : check) {
        mark(engine, uid, true);
    }
    for (const auto& uid : uncheck) {
        mark(engine, uid, false);
    }
}

void keepOneCopy(ContactsParser& engine)
{
    for (const auto& group : duplicateGroups(engine)) {
        if (losesEveryCopy(engine, group)) {
            mark(engine, group.uids.front(), false);
        }
    }
    for (const auto& uid : checkedAlone(engine)) {
        mark(engine, uid, false);
    }
}

std::vector<std::string> checkedUids(const ContactsParser& engine)
{
    std::vector<std::string> uids;
    for (const auto& contact : engine.contacts()) {
        if (contact.value.isChecked()) {
            uids.push_back(contact.key);
        }
    }
    return uids;
}

std::vector<std::string> lastCopies(const ContactsParser& engine)
{
    std::vector<std::string> names;
    for (const auto& group : duplicateGroups(engine)) {
        if (losesEveryCopy(engine, group)) {
            names.push_back(nameOf(engine, group.uids.front()));
        }
    }
    for (const auto& uid : checkedAlone(engine)) {
        names.push_back(nameOf(engine, uid));
    }
    return names;
}

std::size_t blankMatches(const ContactsParser& engine)
{
    std::size_t count = 0;
    for (const auto& group : duplicateGroups(engine)) {
        if (sharesOnlyEmptyFields(group.key)) {
            count += static_cast<std::size_t>(
                std::count_if(group.uids.begin(), group.uids.end(), [&](const std::string& uid) {
                    return engine.contacts().find(uid)->isChecked();
                }));
        }
    }
    return count;
}

}  // namespace dunmora
