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

/// What somebody other than our reader says about a person; "" where they say nothing.
struct OraclePerson {
    std::string uid;
    std::string firstName;
    std::string lastName;
    std::string nickname;
    std::vector<OraclePhone> phones;
};

/// The names that N and FN give: FN counts only where N gives nothing but blanks for either name.
void setNames(OraclePerson& person, std::string_view given, std::string_view family,
              std::string_view formatted);

/// The label that a TEL gets: `types` are its TYPE values and bare parameters as they stand,
/// `customLabel` is the X-ABLabel of its group, unescaped, or "".
std::optional<std::string> expectedLabel(const std::vector<std::string>& types,
                                         const std::string& customLabel);

/// A telephone number without its leading `tel:`.
std::string withoutScheme(std::string_view value);

/// Where two readings disagree: "people", or the person's place and field ("3 lastName").
struct Difference {
    std::string where;
    std::string ours;
    std::string theirs;
};

/// How the labels of an oracle compare that lower-cases what it reads.
enum class LabelCase { Counts, DoesNotCount };

/// Every difference between our reading and an oracle's. A person without a uid in the oracle's
/// eyes may have any in ours. With different numbers of people nothing else is compared.
std::vector<Difference> differences(std::span<const Person> ours,
                                    std::span<const OraclePerson> theirs, LabelCase labelCase);

/// The same for one person, who stands at `place`.
std::vector<Difference> differences(const Person& ours, const OraclePerson& theirs,
                                    std::size_t place, LabelCase labelCase);

/// Writes the difference on one line, for a failing test.
std::string described(const Difference& difference);

}  // namespace dunmora::test
