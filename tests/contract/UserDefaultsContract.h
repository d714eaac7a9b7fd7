#pragma once

#include "platform/UserDefaults.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

namespace dunmora::test {

/// What every `UserDefaults` must do. `Store` is where one adapter keeps preferences:
/// `startProgram` gives the `UserDefaults` of a program that starts now, and `refuseWrites` and
/// `takeWrites` decide whether anything can be stored.
template <typename Store>
class UserDefaultsContract : public testing::Test {
protected:
    Store store_;
    std::unique_ptr<UserDefaults> defaults_ = store_.startProgram();
    std::unique_ptr<UserDefaults> other_ = store_.startProgram();
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, HasNothingUnderAKeyThatWasNeverSet)
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

TYPED_TEST_P(UserDefaultsContract, GivesTheValueSetLast)
{
    for (const bool value : {true, false, true}) {
        this->defaults_->setBool("filterHome", value);

        EXPECT_EQ(this->defaults_->boolForKey("filterHome"), value);
    }
}

TYPED_TEST_P(UserDefaultsContract, TakesAnyTextAsAKey)
{
    const auto keys = {"filterHome", "filterhome", "",    "a=b",     " blank ", "[General]",
                       ";comment",   "two\nlines", "%3D", "Größe/ü", "\"\\",    "a/b"};
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

TYPED_TEST_P(UserDefaultsContract, GivesTheNextProgramWhatWasSet)
{
    this->defaults_->setBool("filterHome", true);
    this->defaults_->setBool("filterFirstname", false);
    EXPECT_TRUE(this->defaults_->synchronize());

    const auto next = this->store_.startProgram();

    EXPECT_TRUE(next->boolForKey("filterHome"));
    EXPECT_TRUE(next->hasValue("filterFirstname"));
    EXPECT_FALSE(next->boolForKey("filterFirstname"));
}

TYPED_TEST_P(UserDefaultsContract, ShowsARunningProgramWhatAnotherHasSetWhenItSynchronizes)
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

TYPED_TEST_P(UserDefaultsContract, LetsTheLastOfTwoProgramsDecideOneKey)
{
    this->defaults_->setBool("filterHome", true);
    this->defaults_->synchronize();
    this->other_->setBool("filterHome", false);
    this->other_->synchronize();

    this->defaults_->synchronize();

    EXPECT_TRUE(this->defaults_->hasValue("filterHome"));
    EXPECT_FALSE(this->defaults_->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, HoldsAValueThatCannotBeStoredUntilTheProgramEnds)
{
    this->store_.refuseWrites();

    this->defaults_->setBool("filterHome", true);

    EXPECT_FALSE(this->defaults_->synchronize());
    EXPECT_TRUE(this->defaults_->boolForKey("filterHome"));
    EXPECT_FALSE(this->store_.startProgram()->hasValue("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, StoresWhatCouldNotBeStoredAsSoonAsItCan)
{
    this->store_.refuseWrites();
    this->defaults_->setBool("filterHome", true);
    this->defaults_->synchronize();
    this->store_.takeWrites();

    EXPECT_TRUE(this->defaults_->synchronize());

    EXPECT_TRUE(this->store_.startProgram()->boolForKey("filterHome"));
}

TYPED_TEST_P(UserDefaultsContract, PrefersWhatWasSetHereToWhatIsStoredAsLongAsItIsUnsaved)
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

TYPED_TEST_P(UserDefaultsContract, LosesNoKeyOfThreadsThatSetAndReadAtOnce)
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
    UserDefaultsContract, HasNothingUnderAKeyThatWasNeverSet, KeepsAStoredFalseApartFromAnAbsentKey,
    GivesTheValueSetLast, TakesAnyTextAsAKey, GivesTheNextProgramWhatWasSet,
    ShowsARunningProgramWhatAnotherHasSetWhenItSynchronizes, KeepsTheKeysThatTwoProgramsSetInTurn,
    LetsTheLastOfTwoProgramsDecideOneKey, HoldsAValueThatCannotBeStoredUntilTheProgramEnds,
    StoresWhatCouldNotBeStoredAsSoonAsItCan, PrefersWhatWasSetHereToWhatIsStoredAsLongAsItIsUnsaved,
    LosesNoKeyOfThreadsThatSetAndReadAtOnce);

}  // namespace dunmora::test
