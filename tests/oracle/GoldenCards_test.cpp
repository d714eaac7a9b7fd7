#include "adapters/vcard/VCardAddressBook.h"
#include "tests/oracle/Golden.h"
#include "tests/oracle/RealCards.h"

#include <gtest/gtest.h>

#include <array>

namespace dunmora::test {

namespace {

constexpr std::string_view kShiftJis =
    "the file was converted to UTF-8 as windows-1252; its texts are Shift_JIS";

// Where ez-vcard differs; the reason is what ez-vcard gets wrong.
constexpr std::array<AcceptedDifference, 18> kAccepted{{
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
    {"android-vcard@tests__res__raw__v21_nest.vcf", "people",
     "treats a card inside a card as part of it without AGENT"},
    {"evolution-data-server@tests__libebook__vcard__8.vcf", "people", "reads a card without END"},
    {"evolution-data-server@tests__libebook__vcard__9.vcf", "people", "reads a card without END"},
    {"kcontacts@autotests__data__vcard9.vcf", "0 lastName",
     "the file was read as windows-1252, because it folds inside a character; it is UTF-8"},
    {"libical@test-data__test.vcf", "0 phones",
     "keeps TYPE=\"work,cell,foo\" as one type, quotation marks included"},
    {"qoobaa-vcard@test__fixtures__ex_bdays.vcard", "people", "reads a card without a property"},
    {"qoobaa-vcard@test__fixtures__multiple_occurences_of_type.vcard", "0 firstName",
     "removes blanks where a 2.1 line is folded"},
    {"qoobaa-vcard@test__fixtures__nickname0.vcard", "people", "reads a card without a property"},
}};

}  // namespace

TEST(GoldenCards, AreReadAsEzVcardReadThem)
{
    const auto golden = readGolden(realCardFolder() / "golden.tsv");
    if (golden.empty()) {
        GTEST_SKIP() << "There are no real cards with a golden.tsv in " << realCardFolder()
                     << "; name another folder in DUNMORA_VCARDS.";
    }
    DifferenceList list(kAccepted);

    for (const auto& file : realCardFiles()) {
        const auto found = golden.find(nameOf(file));
        if (found == golden.end()) {
            ADD_FAILURE() << nameOf(file) << " is not in golden.tsv";
            continue;
        }
        VCardAddressBook book(file);
        // ez-vcard converts types to lower case.
        list.add(found->first, differences(book.readPeople(), found->second, LabelCase::Ignored));
    }

    list.failForUnseen();
}

}  // namespace dunmora::test
