#include "programs/dunmora-cli/DeletionMarks.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/CommandError.h"
#include "text/DisplayText.h"
#include "text/TextHash.h"

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
            throw CommandError(ExitCode::WrongUse, "Nobody has the uid " + quotedText(uid) + ".");
        }
    }
}

}  // namespace

void applyMarks(ContactsParser& engine, std::span<const std::string> check,
                std::span<const std::string> uncheck)
{
    insistOnKnown(engine, check);
    insistOnKnown(engine, uncheck);
    const std::unordered_set<std::string_view, TextHash> checked(check.begin(), check.end());
    for (const auto& uid : uncheck) {
        if (checked.contains(uid)) {
            throw CommandError(ExitCode::WrongUse,
                               quotedText(uid) + " is to be both checked and unchecked.");
        }
    }
    for (const auto& uid : check) {
        mark(engine, uid, true);
    }
    for (const auto& uid : uncheck) {
        mark(engine, uid, false);
    }
}

}  // namespace dunmora
