#include "adapters/vcard/VCardAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"
#include "tests/oracle/CardSplitter.h"
#include "tests/oracle/EVCardOracle.h"
#include "tests/oracle/RealCards.h"

#include <gtest/gtest.h>

#include <array>

namespace dunmora::test {

namespace {

constexpr std::string_view kShiftJis = "requires valid UTF-8 before it applies CHARSET";

// Where EVCard differs; the reason is what EVCard does.
constexpr std::array<AcceptedDifference, 21> kAccepted{{
    {"android-vcard@tests__res__raw__v21_japanese_1.vcf", "0 lastName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_japanese_2.vcf", "0 firstName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_japanese_2.vcf", "0 lastName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_japanese_3.vcf", "0 firstName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_japanese_3.vcf", "0 lastName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_multiple_entry.vcf", "0 lastName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_multiple_entry.vcf", "1 lastName", kShiftJis},
    {"android-vcard@tests__res__raw__v21_multiple_entry.vcf", "2 lastName", kShiftJis},
    {"android-vcard@tests__res__raw__v30_japanese.vcf", "0 firstName", kShiftJis},
    {"android-vcard@tests__res__raw__v30_japanese.vcf", "0 lastName", kShiftJis},
    {"ical4j-vcard@src__test__resources__samples__vcard-vCards-SAP.vcf", "1 phones",
     "drops bytes that are not UTF-8 without a CHARSET"},
    {"ical4j-vcard@src__test__resources__samples__vcard-vCards-SAP.vcf", "4 lastName",
     "drops bytes that are not UTF-8 without a CHARSET"},
    {"ical4j-vcard@src__test__resources__samples__vcard-vCards-SAP.vcf", "9 lastName",
     "drops bytes that are not UTF-8 without a CHARSET"},
    {"ical4j-vcard@src__test__resources__samples__vcard-vCards-SAP.vcf", "14 firstName",
     "drops bytes that are not UTF-8 without a CHARSET"},
    {"ical4j-vcard@src__test__resources__samples__vcard-vCards-SAP.vcf", "14 lastName",
     "drops bytes that are not UTF-8 without a CHARSET"},
    {"ical4j-vcard@src__test__resources__samples__vcard-vCards-SAP.vcf", "19 lastName",
     "drops bytes that are not UTF-8 without a CHARSET"},
    {"nuovo-vcard-parser@Example.vcf", "0 phones", "loses the types of TYPE=HOME,TYPE=VOICE"},
    {"nuovo-vcard-parser@Example3.0.vcf", "0 phones", "loses the types of TYPE=HOME,TYPE=VOICE"},
    {"qoobaa-vcard@test__fixtures__ex_bdays.vcard", "people", "reads a card without a property"},
    {"qoobaa-vcard@test__fixtures__multiple_occurences_of_type.vcard", "0 firstName",
     "removes blanks where a 2.1 line is folded"},
    {"qoobaa-vcard@test__fixtures__nickname0.vcard", "people", "reads a card without a property"},
}};

std::vector<OraclePerson> readFileWithEVCard(const std::filesystem::path& file)
{
    std::vector<OraclePerson> people;
    for (const auto& card : splitCards(convertedToUtf8(contentOf(file)))) {
        if (auto person = readWithEVCard(card)) {
            people.push_back(std::move(*person));
        }
    }
    return people;
}

}  // namespace

TEST(EVCardCards, AreReadAsEVCardReadsThem)
{
    if (!std::filesystem::is_directory(realCardFolder())) {
        GTEST_SKIP() << "There are no real cards in " << realCardFolder()
                     << "; name another folder in DUNMORA_VCARDS.";
    }
    DifferenceList list(kAccepted);

    for (const auto& file : realCardFiles()) {
        VCardAddressBook book(file);
        list.add(nameOf(file),
                 differences(book.readPeople(), readFileWithEVCard(file), LabelCase::Exact));
    }

    list.failForUnseen();
}

}  // namespace dunmora::test
