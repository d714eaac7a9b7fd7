#pragma once

#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {

/// An engine of its own on an address book in memory.
class ContactsParserTest : public testing::Test {
protected:
    using Uids = std::vector<std::string>;
    using Lines = std::vector<std::string>;

    void bookHolds(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
    }

    void loadAndFind(std::vector<FakePerson> people)
    {
        bookHolds(std::move(people));
        engine_.load();
        engine_.findDupes();
    }

    std::string key(const FakePerson& contact)
    {
        bookHolds({contact});
        engine_.load();
        return engine_.keyForContact(*engine_.contacts().find(contact.uid));
    }

    Uids checkedUids() const
    {
        Uids uids;
        for (const auto& contact : engine_.contacts()) {
            if (contact.value.isChecked()) {
                uids.emplace_back(contact.key);
            }
        }
        return uids;
    }

    Uids contactUids() const
    {
        Uids uids;
        for (const auto& contact : engine_.contacts()) {
            uids.emplace_back(contact.key);
        }
        return uids;
    }

    Uids uidsInGroup(std::string_view key) const
    {
        Uids uids;
        if (const auto group = engine_.contactGroups().find(key)) {
            for (const auto uid : *group) {
                uids.emplace_back(uid);
            }
        }
        return uids;
    }

    FakePlatform platform_;
    Settings& settings_ = Settings::settings();
    ContactsParser engine_;
};

}  // namespace dunmora::test
