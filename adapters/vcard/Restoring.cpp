#include "adapters/vcard/Restoring.h"

#include "platform/PlatformError.h"

#include <algorithm>
#include <iterator>

namespace dunmora {

void Restoring::lockFoldersOf(const LockedFile& file)
{
    for (const auto* paths : {&file.targets(), &file.links()}) {
        for (const auto& path : *paths) {
            folders_.lock(path.parent_path());
        }
    }
}

void Restoring::lockFoldersOf(const NewNames& names)
{
    for (const auto& target : names.targets) {
        folders_.lock(target.parent_path());
    }
    for (const auto& link : names.links) {
        folders_.lock(link.path.parent_path());
    }
}

void Restoring::add(Step step)
{
    steps_.push_back(std::move(step));
}

Restoring::Outcome Restoring::commit()
{
    Outcome outcome;
    auto& result = outcome.result;
    auto& isDone = outcome.isDone;
    isDone.assign(steps_.size(), true);
    for (const auto step : changed_) {
        isDone[step] = false;
    }
    if (!changed_.empty()) {
        std::size_t committed = 0;
        try {
            changes_.commit([&](std::size_t i) {
                isDone[changed_[i]] = true;
                ++committed;
            });
        } catch (const PlatformError& error) {
            if (committed == 0) {
                throw;
            }
            // Nobody is missing when only an old file could not be deleted.
            (committed == changed_.size() ? result.remarks : result.failures)
                .emplace_back(error.what());
        }
    }
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        if (isDone[i]) {
            result.restored += steps_[i].restored;
            result.present += steps_[i].present;
            std::move(steps_[i].remarks.begin(), steps_[i].remarks.end(),
                      std::back_inserter(result.remarks));
        }
    }
    return outcome;
}

}  // namespace dunmora
