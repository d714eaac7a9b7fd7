#include "programs/dunmora-cli/DeletionMarks.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/CommandError.h"
#include "text/DisplayText.h"

#include <cstddef>
#include <unordered_set>
#include <vector>

namespace dunmora {

namespace {

using Records = std::vector<ContactRecord*>;

/// The records of the people with these uids. Errors: CommandError for a uid that nobody has.
Records recordsOf(ContactsParser& engine, std::span<const std::string> uids)
{
    Records records;
    records.reserve(uids.size());
    for (const auto& uid : uids) {
        records.push_back(engine.contacts().find(uid));
        if (records.back() == nullptr) {
            throw CommandError(ExitCode::WrongUse, "Nobody has the uid " + quotedText(uid) + ".");
        }
    }
    return records;
}

}  // namespace

void applyMarks(ContactsParser& engine, std::span<const std::string> check,
                std::span<const std::string> uncheck)
{
    const auto checked = recordsOf(engine, check);
    const auto unchecked = recordsOf(engine, uncheck);
    const std::unordered_set<const ContactRecord*> both(checked.begin(), checked.end());
    for (std::size_t i = 0; i < unchecked.size(); ++i) {
        if (both.contains(unchecked[i])) {
            throw CommandError(ExitCode::WrongUse,
                               quotedText(uncheck[i]) + " is to be both checked and unchecked.");
        }
    }
    for (auto* const record : checked) {
        record->setObject(true, kContactCheck);
    }
    for (auto* const record : unchecked) {
        record->setObject(false, kContactCheck);
    }
}

}  // namespace dunmora
