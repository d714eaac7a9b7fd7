#include "programs/dunmora-cli/DeletionWarnings.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/GroupWarnings.h"
#include "review/UniqueProperties.h"
#include "text/TextHash.h"

#include <string_view>
#include <unordered_map>

namespace dunmora {

DeletionWarnings deletionWarnings(const ContactsParser& engine, std::span<const std::string> uids,
                                  const GroupWarnings& warnings, const UniqueProperties& cards)
{
    DeletionWarnings result{lastCopyUids(engine, warnings).size(),
                            warnings.checkedPeopleWhoShareOnlyEmptyFields(),
                            cards.count(),
                            {}};
    std::unordered_map<std::string_view, std::size_t, TextHash> rows;
    for (std::size_t row = 0; row < engine.duplicates().size(); ++row) {
        rows.emplace(engine.duplicates()[row], row);
    }
    for (const auto& uid : uids) {
        auto& person = result.rows.emplace_back(DeletionWarnings::Row{uid, {}, false, {}});
        const auto found = rows.find(uid);
        if (found == rows.end()) {
            // Without a duplicate it is the only copy.
            person.warnings.push_back(GroupWarning::LosesEveryCopy);
            continue;
        }
        for (const auto warning :
             {GroupWarning::LosesEveryCopy, GroupWarning::SharesOnlyEmptyFields}) {
            if (warnings.hasWarning(found->second, warning)) {
                person.warnings.push_back(warning);
            }
        }
        person.holdsSomethingUnique = cards.has(found->second);
        person.onlyHere = cards.onlyHere(found->second);
    }
    return result;
}

}  // namespace dunmora
