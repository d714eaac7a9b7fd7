#pragma once

#include "tests/oracle/OraclePerson.h"

#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// The folder of other programs' cards: the environment's DUNMORA_VCARDS, else the build's. They
/// are not ours to give away, so that a machine may well have none.
std::filesystem::path realCardFolder();

/// Every file of cards in that folder, sorted.
std::vector<std::filesystem::path> realCardFiles();

/// The name that golden.tsv has for a file: `folder@name`.
std::string nameOf(const std::filesystem::path& file);

/// A disagreement in which the oracle is wrong, or knows less.
struct AcceptedDifference {
    std::string_view file;
    std::string_view where;
    std::string_view reason;
};

/// Takes note of every difference that is met, and fails the test for one that is not accepted, or
/// that is accepted but was not met.
class DifferenceList final {
public:
    explicit DifferenceList(std::span<const AcceptedDifference> accepted) : accepted_(accepted) {}

    void add(const std::string& file, const std::vector<Difference>& differences);
    void failForThoseNotMet() const;

private:
    std::span<const AcceptedDifference> accepted_;
    std::set<std::string> met_;
};

}  // namespace dunmora::test
