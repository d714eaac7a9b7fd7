#pragma once

#include "platform/Person.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

struct OraclePhone {
    std::optional<std::string> label;
    std::string value;
};

/// A person as another reader, or the generator, sees it; missing texts are empty.
struct OraclePerson {
    std::string uid;
    std::string firstName;
    std::string lastName;
    std::string nickname;
    std::vector<OraclePhone> phones;
};

/// Sets the names from N and FN; FN is used only when both names in N are blank.
void setNames(OraclePerson& person, std::string_view given, std::string_view family,
              std::string_view formatted);

/// Returns the label of a TEL. `types` are its TYPE values and bare parameters, unchanged;
/// `customLabel` is the unescaped X-ABLabel of its group, or empty.
std::optional<std::string> expectedLabel(const std::vector<std::string>& types,
                                         const std::string& customLabel);

/// Returns a phone number without a leading `tel:`.
std::string withoutScheme(std::string_view value);

/// A disagreement between two readers. `where` is "people", or the index of a person and a field
/// ("3 lastName").
struct Difference {
    std::string where;
    std::string ours;
    std::string theirs;
};

/// How to compare the case of labels; some oracles convert them to lower case.
enum class LabelCase { Exact, Ignored };

/// Returns every difference between our reader and an oracle. Where the oracle has no uid, ours may
/// be anything. When the numbers of people differ, nothing else is compared.
std::vector<Difference> differences(std::span<const Person> ours,
                                    std::span<const OraclePerson> theirs, LabelCase labelCase);

/// Compares one person, whose index is `place`.
std::vector<Difference> differences(const Person& ours, const OraclePerson& theirs,
                                    std::size_t place, LabelCase labelCase);

/// Describes the difference on one line for a failure message.
std::string described(const Difference& difference);

}  // namespace dunmora::test
