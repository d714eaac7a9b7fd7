#pragma once

#include "platform/AddressBook.h"
#include "platform/Alert.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <array>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

namespace dunmora::bench {

/// How many of a book's people have a copy; with OnePerson, all are copies of the same one.
enum class Twice { OneInTen, Everyone, OnePerson };

/// People in memory, each with two numbers. Listing them costs nothing, so that only the engine is
/// measured. Does not support removals.
class MemoryAddressBook final : public AddressBook {
public:
    MemoryAddressBook(std::size_t count, Twice twice)
    {
        const std::size_t period = twice == Twice::Everyone ? 2 : 11;
        for (std::size_t i = 0; i < count; ++i) {
            const auto copied = i % period == period - 1 ? i - 1 : i;
            const auto who = twice == Twice::OnePerson ? 0 : copied;
            auto& texts = texts_.emplace_back(
                std::array{"uid-" + std::to_string(i), "First" + std::to_string(who),
                           "Last" + std::to_string(who), "+1 555 " + std::to_string(who)});
            auto& phones = phones_.emplace_back(std::array<LabelledPhone, 2>{
                {{"_$!<Home>!$_", texts[3]}, {"_$!<Mobile>!$_", texts[3]}}});
            people_.push_back({texts[0], texts[1], texts[2], {}, {}, PhoneList(phones), &source_});
        }
    }

    std::span<const Person> readPeople() override { return people_; }
    std::span<const Person> people() override { return people_; }
    void checkWritable(std::span<const std::string> /*uids*/) const override {}
    void removeRecord(const Person& /*person*/) override { refuse(); }
    void save() override { refuse(); }
    ReadingNotes notes() const override { return {}; }

private:
    [[noreturn]] static void refuse()
    {
        throw PlatformError("This address book cannot be changed.");
    }

    PersonSource source_{"memory", "memory"};
    // Deques, because their elements do not move: the people are views into them.
    std::deque<std::array<std::string, 4>> texts_;
    std::deque<std::array<LabelledPhone, 2>> phones_;
    std::vector<Person> people_;
};

/// Unchanged preferences.
class UnsetUserDefaults final : public UserDefaults {
public:
    bool hasValue(std::string_view /*key*/) const override { return false; }
    bool boolForKey(std::string_view /*key*/) const override { return false; }
    void setBool(std::string_view /*key*/, bool /*value*/) override {}
    bool synchronize() override { return true; }
};

class SilentAlert final : public Alert {
public:
    int runModal(const AlertContent& /*content*/) override { return kDefaultButton; }
};

class ClosedWorkspace final : public Workspace {
public:
    bool openURL(const std::string& /*url*/) override { return false; }
    void openWebPage(const std::string& /*url*/) override {}
    bool openLocalPage(const std::filesystem::path& /*page*/) override { return false; }
    std::string webHost(const std::string& /*url*/) const override { return {}; }
};

class EmptyBundle final : public Bundle {
public:
    std::optional<std::string> objectForInfoDictionaryKey(std::string_view /*key*/) const override
    {
        return std::nullopt;
    }
};

/// The ports of a benchmark: a book in memory, and others that do nothing.
struct BenchPlatform {
    explicit BenchPlatform(std::size_t people, Twice twice = Twice::OneInTen)
        : addressBook(people, twice)
    {
        Platform::install(platform);
    }
    ~BenchPlatform() = default;
    BenchPlatform(const BenchPlatform&) = delete;
    BenchPlatform& operator=(const BenchPlatform&) = delete;

    MemoryAddressBook addressBook;
    UnsetUserDefaults userDefaults;
    SilentAlert alert;
    ClosedWorkspace workspace;
    EmptyBundle bundle;
    Platform platform{&addressBook, userDefaults, alert, workspace, bundle};
};

}  // namespace dunmora::bench
