#pragma once

#include "platform/WindowMemory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

namespace dunmora::test {

/// What every `WindowMemory` must do. `Store` is the storage of one adapter: `startProgram` returns
/// the `WindowMemory` of a newly started program.
template <typename Store>
class WindowMemoryContract : public testing::Test {
protected:
    Store store_;
    std::unique_ptr<WindowMemory> memory_ = store_.startProgram();
};

TYPED_TEST_SUITE_P(WindowMemoryContract);

TYPED_TEST_P(WindowMemoryContract, HasNoTextsOfAWindowThatStoredNone)
{
    EXPECT_EQ(this->memory_->load("NeverStored"), WindowMemory::Texts());
}

TYPED_TEST_P(WindowMemoryContract, KeepsTextsForTheNextProgram)
{
    const WindowMemory::Texts texts{
        {"size", "1280 800"}, {"place", "-20 0"}, {"table.columns", "fname:120 a_b:30"}};

    this->memory_->store("Kept", texts);

    EXPECT_EQ(this->store_.startProgram()->load("Kept"), texts);
}

TYPED_TEST_P(WindowMemoryContract, ReplacesOnlyTheTextsThatAreStoredAgain)
{
    this->memory_->store("Replaced", {{"size", "1 2"}, {"place", "3 4"}});
    this->store_.startProgram()->store("Replaced", {{"size", "5 6"}, {"columns", "a:7"}});

    EXPECT_EQ(this->memory_->load("Replaced"),
              (WindowMemory::Texts{{"size", "5 6"}, {"place", "3 4"}, {"columns", "a:7"}}));
}

TYPED_TEST_P(WindowMemoryContract, KeepsTheWindowsApart)
{
    this->memory_->store("One", {{"size", "1 2"}});
    this->memory_->store("Two", {{"size", "3 4"}});

    EXPECT_EQ(this->memory_->load("One"), (WindowMemory::Texts{{"size", "1 2"}}));
    EXPECT_EQ(this->memory_->load("Two"), (WindowMemory::Texts{{"size", "3 4"}}));
}

TYPED_TEST_P(WindowMemoryContract, LosesNoTextWhenThreadsStoreAtOnce)
{
    constexpr int kStores = 20;
    const auto storeAll = [this](const std::string& prefix) {
        for (int i = 0; i < kStores; ++i) {
            this->memory_->store("Shared", {{prefix + std::to_string(i), "1"}});
        }
    };

    std::thread other(storeAll, "ann");
    storeAll("ben");
    other.join();

    EXPECT_EQ(this->memory_->load("Shared").size(), 2U * kStores);
}

REGISTER_TYPED_TEST_SUITE_P(WindowMemoryContract, HasNoTextsOfAWindowThatStoredNone,
                            KeepsTextsForTheNextProgram, ReplacesOnlyTheTextsThatAreStoredAgain,
                            KeepsTheWindowsApart, LosesNoTextWhenThreadsStoreAtOnce);

}  // namespace dunmora::test
