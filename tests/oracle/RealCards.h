#pragma once

#include "tests/oracle/OraclePerson.h"

#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// Returns the folder with cards of other programs: DUNMORA_VCARDS from the environment or else
/// from the build. They are not redistributable, so the folder may be missing.
std::filesystem::path realCardFolder();

/// Returns every file of cards in that folder, sorted.
std::vector<std::filesystem::path> realCardFiles();

/// Returns the name of a file in golden.tsv: `folder@name`.
std::string nameOf(const std::filesystem::path& file);

/// A difference in which the oracle is wrong or incomplete.
struct AcceptedDifference {
    std::string_view file;
    std::string_view where;
    std::string_view reason;
};

/// Fails the test for every difference that is not accepted, and for every accepted one that did
/// not occur.
class DifferenceList final {
public:
    explicit DifferenceList(std::span<const AcceptedDifference> accepted) : accepted_(accepted) {}

    void add(const std::string& file, const std::vector<Difference>& differences);
    void failForUnseen() const;

private:
    std::span<const AcceptedDifference> accepted_;
    std::set<std::string> seen_;
};

}  // namespace dunmora::test
