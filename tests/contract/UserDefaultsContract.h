#pragma once

#include "platform/UserDefaults.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

namespace dunmora::test {

/// What every `UserDefaults` must do. `Store` is the storage of one adapter: `startProgram` returns
/// the `UserDefaults` of a newly started program; `refuseWrites` and `takeWrites` make writing fail
/// and succeed.
template <typename Store>
class UserDefaultsContract : public testing::Test {
protected:
    Store store_;
    std::unique_ptr<UserDefaults> defaults_ = store_.startProgram();
    std::unique_ptr<UserDefaults> other_ = store_.startProgram();
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, HasNoValueForAKeyThatWasNeverSet)
{
    this->defaults_->setBool("filterHome", true);

    EXPECT_FALSE(this->defaults_->hasValue("filterWork"));
    EXPECT_FALSE(this->defaults_->boolForKey("filterWork"));
}

TYPED_TEST_P(UserDefaultsContract, KeepsAStoredFalseApartFromAnAbsentKey)
{
    this->defaults_->setBool("filterHome", false);

    EXPECT_TRUE(this->defaults_->hasValue("filterHome"));
    EXPECT_FALSE(this->defaults_->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, ReturnsTheLastValueSet)
{
    for (const bool value : {true, false, true}) {
        this->defaults_->setBool("filterHome", value);

        EXPECT_EQ(this->defaults_->boolForKey("filterHome"), value);
    }
}

TYPED_TEST_P(UserDefaultsContract, KeepsSimilarKeysApart)
{
    const auto keys = {"filterHome",  "filterhome",  "filter", "filter-home",
                       "filter_home", "filter.home", "1"};
    for (const auto* key : keys) {
        EXPECT_FALSE(this->defaults_->hasValue(key)) << key;
        this->defaults_->setBool(key, true);
    }
    this->defaults_->synchronize();

    const auto next = this->store_.startProgram();

    for (const auto* key : keys) {
        EXPECT_TRUE(next->boolForKey(key)) << key;
    }
}

TYPED_TEST_P(UserDefaultsContract, KeepsValuesForTheNextProgram)
{
    this->defaults_->setBool("filterHome", true);
    this->defaults_->setBool("filterFirstname", false);
    EXPECT_TRUE(this->defaults_->synchronize());

    const auto next = this->store_.startProgram();

    EXPECT_TRUE(next->boolForKey("filterHome"));
    EXPECT_TRUE(next->hasValue("filterFirstname"));
    EXPECT_FALSE(next->boolForKey("filterFirstname"));
}

TYPED_TEST_P(UserDefaultsContract, LoadsValuesOfOtherProgramsWhenSynchronized)
{
    this->other_->setBool("filterHome", true);
    this->other_->synchronize();

    EXPECT_TRUE(this->defaults_->synchronize());

    EXPECT_TRUE(this->defaults_->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, KeepsTheKeysThatTwoProgramsSetInTurn)
{
    this->defaults_->setBool("filterHome", true);
    this->defaults_->synchronize();
    this->other_->setBool("filterWork", true);
    this->other_->synchronize();
    this->defaults_->setBool("filterMobile", true);
    this->defaults_->synchronize();

    const auto next = this->store_.startProgram();

    EXPECT_TRUE(next->boolForKey("filterHome"));
    EXPECT_TRUE(next->boolForKey("filterWork"));
    EXPECT_TRUE(next->boolForKey("filterMobile"));
}

TYPED_TEST_P(UserDefaultsContract, KeepsTheLastOfTwoProgramsValuesForOneKey)
{
    this->defaults_->setBool("filterHome", true);
    this->defaults_->synchronize();
    this->other_->setBool("filterHome", false);
    this->other_->synchronize();

    this->defaults_->synchronize();

    EXPECT_TRUE(this->defaults_->hasValue("filterHome"));
    EXPECT_FALSE(this->defaults_->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, KeepsAnUnsavedValueUntilTheProgramEnds)
{
    this->store_.refuseWrites();

    this->defaults_->setBool("filterHome", true);

    EXPECT_FALSE(this->defaults_->synchronize());
    EXPECT_TRUE(this->defaults_->boolForKey("filterHome"));
    EXPECT_FALSE(this->store_.startProgram()->hasValue("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, SavesUnsavedValuesOnceWritingSucceeds)
{
    this->store_.refuseWrites();
    this->defaults_->setBool("filterHome", true);
    this->defaults_->synchronize();
    this->store_.takeWrites();

    EXPECT_TRUE(this->defaults_->synchronize());

    EXPECT_TRUE(this->store_.startProgram()->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, PrefersUnsavedValuesToStoredOnes)
{
    this->store_.refuseWrites();
    this->defaults_->setBool("filterHome", true);
    this->defaults_->synchronize();
    this->store_.takeWrites();
    this->other_->setBool("filterHome", false);
    this->other_->setBool("filterWork", true);
    this->other_->synchronize();

    EXPECT_TRUE(this->defaults_->synchronize());

    EXPECT_TRUE(this->defaults_->boolForKey("filterHome"));
    EXPECT_TRUE(this->defaults_->boolForKey("filterWork"));
    EXPECT_TRUE(this->store_.startProgram()->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, StoresValuesThatAreSetTogetherAsOneChange)
{
    constexpr int kRounds = 50;
    std::atomic<bool> done = false;
    const auto storeBoth = [&](UserDefaults& defaults, bool value) {
        for (int i = 0; i < kRounds; ++i) {
            defaults.setBool("filterHome", value);
            defaults.setBool("filterWork", value);
            EXPECT_TRUE(defaults.synchronize());
        }
    };

    std::thread reader([&] {
        const auto third = this->store_.startProgram();
        while (!done) {
            third->synchronize();
            EXPECT_EQ(third->boolForKey("filterHome"), third->boolForKey("filterWork"));
        }
    });
    std::thread writer([&] { storeBoth(*this->other_, false); });
    storeBoth(*this->defaults_, true);
    writer.join();
    done = true;
    reader.join();
}

TYPED_TEST_P(UserDefaultsContract, LosesNoKeyWhenThreadsSetAndReadAtOnce)
{
    constexpr int kSets = 50;
    std::atomic<bool> done = false;
    const auto setAll = [&](const std::string& prefix) {
        for (int i = 0; i < kSets; ++i) {
            this->defaults_->setBool(prefix + std::to_string(i), true);
            this->defaults_->synchronize();
        }
    };
    this->defaults_->setBool("steady", true);

    std::thread reader([&] {
        while (!done) {
            EXPECT_TRUE(this->defaults_->hasValue("steady"));
            EXPECT_TRUE(this->defaults_->boolForKey("steady"));
        }
    });
    std::thread writer(setAll, "ann");
    setAll("ben");
    writer.join();
    done = true;
    reader.join();

    const auto next = this->store_.startProgram();
    for (int i = 0; i < kSets; ++i) {
        EXPECT_TRUE(next->boolForKey("ann" + std::to_string(i))) << i;
        EXPECT_TRUE(next->boolForKey("ben" + std::to_string(i))) << i;
    }
}

REGISTER_TYPED_TEST_SUITE_P(
    UserDefaultsContract, HasNoValueForAKeyThatWasNeverSet, KeepsAStoredFalseApartFromAnAbsentKey,
    ReturnsTheLastValueSet, KeepsSimilarKeysApart, KeepsValuesForTheNextProgram,
    LoadsValuesOfOtherProgramsWhenSynchronized, KeepsTheKeysThatTwoProgramsSetInTurn,
    KeepsTheLastOfTwoProgramsValuesForOneKey, KeepsAnUnsavedValueUntilTheProgramEnds,
    SavesUnsavedValuesOnceWritingSucceeds, PrefersUnsavedValuesToStoredOnes,
    StoresValuesThatAreSetTogetherAsOneChange, LosesNoKeyWhenThreadsSetAndReadAtOnce);

}  // namespace dunmora::test
