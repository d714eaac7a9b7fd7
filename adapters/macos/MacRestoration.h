#pragma once

#include "platform/CardRestorer.h"
#include "text/TextHash.h"

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

class FrameworkBook;

/// A person who is to be put back into the Mac's address book.
struct MacCard {
    /// The uids that the person may have had there; empty when unknown.
    std::vector<std::string> uids;
    /// In UTF-8.
    std::string card;
    /// What to call the person in a message; it can be anything.
    std::string name;
    /// The names of the groups that the person was in. A card does not hold them.
    std::vector<std::string> groups;
};

/// The people of a backup. Names in the result what else the backup contains.
/// Thread: any. Errors: PlatformError when there are no people in it.
std::vector<MacCard> readMacBackup(std::string_view backup, Restoration& result);

/// Adds people to the framework's address book and saves it once.
///
/// The framework gives everyone it adds a new uid. So somebody is there already if a person with
/// the same card is, whatever their uid; each person of the book counts for one card only.
///
/// Thread: the framework's, within one call.
class MacRestoration final {
public:
    using People = std::vector<MacCard>;

    /// `book` must be new. `stranded` is set while the framework holds additions that are not
    /// saved; both must outlive the restoration.
    MacRestoration(FrameworkBook& book, std::atomic<bool>& stranded)
        : book_(book), stranded_(stranded)
    {
    }

    /// Adds those of the people who are not there. Somebody there whose uid is none of theirs is
    /// compared with them only if `canBeBack` returns true for it. Returns those who could not be
    /// added. Errors: PlatformError when nobody was added.
    People restore(People people, const std::function<bool(const std::string& uid)>& canBeBack,
                   CardRestorer::Mode mode);

    const Restoration& result() const { return result_; }
    /// The uids of the people who were added.
    const std::vector<std::string>& added() const { return added_; }

private:
    using Texts = std::unordered_map<std::string, std::string, TextHash>;

    Texts cardsThere(const std::function<bool(const std::string& uid)>& isWanted) const;
    void add(People people);
    void saveOrUndo();
    void fail(const MacCard& person, const std::string& reason);

    FrameworkBook& book_;
    std::atomic<bool>& stranded_;
    Restoration result_;
    std::vector<std::string> added_;
    People left_;
};

}  // namespace dunmora
