#include "adapters/vcard/DeletionUndo.h"

#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileCreation.h"
#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/CardAppending.h"
#include "adapters/vcard/ForeignFile.h"
#include "adapters/vcard/FreeNames.h"
#include "adapters/vcard/Restoring.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <sys/stat.h>

#include <algorithm>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// The names that lead to the same file as the first one that leads to any file.
std::vector<std::filesystem::path> existing(const std::vector<std::filesystem::path>& names)
{
    std::vector<std::filesystem::path> found;
    std::optional<FileIdentity> identity;
    for (const auto& name : names) {
        struct stat status {};
        if (stat(name.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            identity.value_or(identityOf(status)) == identityOf(status)) {
            identity = identityOf(status);
            found.push_back(name);
        }
    }
    return found;
}

/// The content that the deletion left, with the removed bytes where they were.
Pieces withRemoved(std::string_view content, const RemovedFile& removed)
{
    Pieces pieces;
    std::size_t position = 0;
    for (const auto& [offset, range] : removed.parts) {
        if (offset > position) {
            pieces.push_back(content.substr(position, offset - position));
            position = offset;
        }
        pieces.push_back(
            std::string_view(removed.bytes).substr(range.begin, range.end - range.begin));
    }
    if (position < content.size()) {
        pieces.push_back(content.substr(position));
    }
    return pieces;
}

std::vector<const AddedCards::AddedCard*> missingFrom(const AddedCards& cards)
{
    std::vector<const AddedCards::AddedCard*> missing;
    for (const auto& card : cards.all()) {
        if (!cards.isPresent(card)) {
            missing.push_back(&card);
        }
    }
    return missing;
}

[[noreturn]] void throwUnlikeWritten(const std::filesystem::path& name)
{
    throw PlatformError(quotedPath(name) + " was not changed: its new content could not be read "
                                           "back as it was written.");
}

class Undo final {
public:
    explicit Undo(std::size_t files) : restoring_(files) {}

    void prepare(const RemovedFile& file)
    {
        const auto names = existing(file.names);
        if (names.empty()) {
            createAgain(file);
        } else if (file.isWholeFile) {
            createBeside(file, names.front());
        } else {
            change(file, names);
        }
    }

    Restoring& restoring() { return restoring_; }

private:
    /// The file exists and was not removed.
    void change(const RemovedFile& removed, const std::vector<std::filesystem::path>& names)
    {
        auto locked = LockedFile::open(names);
        restoring_.lockFoldersOf(locked);
        auto& file = files_.emplace_back(names.front(), locked.content());
        locked.expectContent({file.bytes()});
        if (contentHash({file.bytes()}) == removed.after) {
            splice(removed, file, std::move(locked));
        } else {
            append(removed, file, std::move(locked));
        }
    }

    void splice(const RemovedFile& removed, const CardFile& file, LockedFile locked)
    {
        auto content = withRemoved(file.bytes(), removed);
        if (contentHash(content) != removed.before) {
            throwUnlikeWritten(file.names().front());
        }
        auto replacement = std::make_unique<FileReplacement>(std::move(locked), std::move(content));
        if (!replacement->newFile().has(replacement->content())) {
            throwUnlikeWritten(file.names().front());
        }
        restoring_.add({removed.people, 0, {}}, std::move(replacement), file.names().front());
    }

    void append(const RemovedFile& removed, const CardFile& file, LockedFile locked)
    {
        checkTakesCards(file, {});
        const auto removedCards = cardFileOf(removed.names.front(), removed.bytes);
        AddedCards cards(removedCards);
        cards.compareWith(file);
        const auto missing = missingFrom(cards);
        Restoring::Step step{missing.size(), removed.people - missing.size(), {}};
        if (missing.empty()) {
            restoring_.add(std::move(step));
            return;
        }
        const auto& appendix = appendices_.emplace_back(appendixTo(file, cards, missing));
        if (!appendix.unsuitable.empty()) {
            throw PlatformError(quotedPath(file.names().front()) +
                                " was not changed: its encoding is another one now, and it cannot "
                                "hold " +
                                quotedText(appendix.unsuitable.front()->name()) + ".");
        }
        restoring_.add(std::move(step), appended(std::move(locked), file, appendix),
                       file.names().front());
    }

    void createAgain(const RemovedFile& removed)
    {
        if (removed.isWholeFile) {
            create(removed, removed.bytes, {removed.people, 0, {}});
            return;
        }
        create(removed, texts_.emplace_back(byteOrderMarkOf(removed.encoding) + removed.bytes),
               {removed.people,
                0,
                {quotedPath(removed.names.front()) +
                 " no longer existed. It now contains only the people put back."}});
    }

    /// Another file has the name of the removed one.
    void createBeside(const RemovedFile& removed, const std::filesystem::path& taken)
    {
        const auto removedCards = cardFileOf(removed.names.front(), removed.bytes);
        AddedCards cards(removedCards);
        try {
            cards.compareWith({taken, readFile(taken).bytes});
        } catch (const PlatformError&) {
            // Nobody can be found in a file that cannot be read.
        }
        const auto missing = missingFrom(cards);
        Restoring::Step step{missing.size(), removed.people - missing.size(), {}};
        if (missing.empty()) {
            restoring_.add(std::move(step));
        } else if (step.present == 0) {
            create(removed, removed.bytes, std::move(step));
        } else {
            create(removed, texts_.emplace_back(fileOf(missing, removed.encoding)),
                   std::move(step));
        }
    }

    static std::string fileOf(const std::vector<const AddedCards::AddedCard*>& cards,
                              FileEncoding encoding)
    {
        auto text = byteOrderMarkOf(encoding);
        for (const auto* const card : cards) {
            text += card->bytes;
            text += card->lineEnd.empty() ? lineEndIn(encoding) : card->lineEnd;
        }
        return text;
    }

    /// Creates a file under those of the old names that are free, or a new one.
    void create(const RemovedFile& removed, std::string_view content, Restoring::Step step)
    {
        auto names = freeNames(removed.places, step.remarks);
        restoring_.lockFoldersOf(names);
        const auto name = names.targets.front();
        auto creation =
            std::make_unique<FileCreation>(std::move(names), removed.metadata, Pieces{content});
        if (!creation->newFile().has(creation->content())) {
            throwUnlikeWritten(name);
        }
        if (!creation->remarks().empty()) {
            step.remarks.push_back(creation->remarks());
        }
        restoring_.add(std::move(step), std::move(creation), name);
    }

    NewNames freeNames(const NewNames& places, std::vector<std::string>& remarks)
    {
        NewNames names;
        for (const auto& target : places.targets) {
            if (names_.take(target)) {
                names.targets.push_back(target);
            }
        }
        const bool hasAll = names.targets.size() == places.targets.size();
        if (names.targets.empty()) {
            names.targets.push_back(names_.takeLike(places.targets.front()));
            remarks.push_back(quotedPath(places.targets.front()) +
                              " is another file now. Its people are back in " +
                              quotedPath(names.targets.front()) + ".");
        } else if (!hasAll) {
            remarks.push_back(
                quotedPath(names.targets.front()) +
                " is back, but not all of its other names: they are other files now.");
        }
        for (const auto& link : places.links) {
            // Through a name that is another file now, the link would lead to that file.
            std::error_code error;
            if (hasAll && std::filesystem::read_symlink(link.path, error) == link.text) {
                continue;
            }
            if (hasAll && names_.take(link.path)) {
                names.links.push_back(link);
            } else {
                remarks.push_back("The link " + quotedPath(link.path) + " was not created again.");
            }
        }
        return names;
    }

    // The changes refer to these until they have been made.
    std::list<CardFile> files_;
    std::list<Appendix> appendices_;
    std::list<std::string> texts_;
    FreeNames names_;
    Restoring restoring_;
};

}  // namespace

Restoration undo(Deletion& deletion)
{
    Undo undo(deletion.files.size());
    for (const auto& file : deletion.files) {
        undo.prepare(file);
    }
    auto outcome = undo.restoring().commit();
    std::vector<RemovedFile> rest;
    for (std::size_t i = 0; i < deletion.files.size(); ++i) {
        if (!outcome.isDone[i]) {
            rest.push_back(std::move(deletion.files[i]));
        }
    }
    deletion.files = std::move(rest);
    return outcome.result;
}

}  // namespace dunmora
