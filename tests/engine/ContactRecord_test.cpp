#include "engine/ContactRecord.h"

#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace dunmora::test {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr std::array<std::string_view, 7> kTexts = {"uid",  "fname", "lname", "nickname",
                                                    "home", "work",  "mobile"};

TEST(ContactRecord, ReturnsEachTextUnderItsKey)
{
    ContactRecord record;
    for (const auto key : kTexts) {
        record.setObject(key, key);
    }

    for (const auto key : kTexts) {
        EXPECT_EQ(record.objectForKey(key), ContactValue(key));
        EXPECT_EQ(record.text(key), key);
    }
}

TEST(ContactRecord, HasNeitherDateNorMarkBeforeTheyAreStored)
{
    const ContactRecord record;

    EXPECT_EQ(record.objectForKey("modified"), std::nullopt);
    EXPECT_EQ(record.objectForKey("check"), std::nullopt);
    EXPECT_FALSE(record.isChecked());
}

TEST(ContactRecord, KeepsTheDateAndTheMark)
{
    ContactRecord record;
    record.setObject(sys_seconds(seconds(7)), "modified");
    record.setObject(true, "check");

    EXPECT_EQ(record.objectForKey("modified"), ContactValue(sys_seconds(seconds(7))));
    EXPECT_EQ(record.objectForKey("check"), ContactValue(true));
    EXPECT_TRUE(record.isChecked());

    record.setObject(false, "check");

    EXPECT_EQ(record.objectForKey("check"), ContactValue(false));
    EXPECT_FALSE(record.isChecked());
}

TEST(ContactRecord, HasNothingUnderAKeyThatRecordsDoNotHave)
{
    ContactRecord record;
    record.setObject("x", "email");

    EXPECT_EQ(record.objectForKey("email"), std::nullopt);
    EXPECT_EQ(record.text("email"), "");
    EXPECT_EQ(record.text("check"), "");
}

TEST(ContactRecord, HasTheTextsInTheirOrder)
{
    const ContactRecord record(kTexts);

    for (std::size_t place = 0; place < kTexts.size(); ++place) {
        EXPECT_EQ(record.textAt(place), kTexts[place]);
        EXPECT_EQ(record.text(kTexts[place]), kTexts[place]);
    }
}

TEST(ContactRecord, KeepsItsTextsInTheArenaThatItIsGiven)
{
    TextArena arena;
    const auto before = arena.store("before");

    const ContactRecord record(kTexts, arena);

    EXPECT_EQ(record.text("uid").data(), before.data() + before.size());
    EXPECT_EQ(record.text("mobile"), "mobile");
}

TEST(ContactRecord, KeepsTextsOfAnyLength)
{
    // From 65,536 bytes in all, the texts' ends need more than 16 bits.
    for (const std::size_t size : {65'000, 65'535, 65'536, 300'000}) {
        auto texts = kTexts;
        std::size_t others = 0;
        for (const auto text : kTexts) {
            others += text.size();
        }
        const std::string nickname(size - others + kTexts[3].size(), 'n');
        texts[3] = nickname;
        TextArena arena;
        const ContactRecord record(texts, arena);

        const ContactRecord copy(record);  // NOLINT(performance-unnecessary-copy-initialization)
        auto changed = copy;
        changed.setObject("Ann", "fname");

        for (std::size_t place = 0; place < texts.size(); ++place) {
            EXPECT_EQ(record.textAt(place), texts[place]);
            EXPECT_EQ(copy.textAt(place), texts[place]);
            EXPECT_EQ(changed.textAt(place), place == 1 ? "Ann" : texts[place]);
        }

        changed.setObject("", "nickname");

        EXPECT_EQ(changed.text("nickname"), "");
        EXPECT_EQ(changed.text("mobile"), "mobile");
    }
}

TEST(ContactRecord, CanHaveOneOfItsOwnTextsInAnotherField)
{
    TextArena arena;
    ContactRecord record(kTexts, arena);
    record.setObject(true, "check");

    record.setObject(record.text("lname"), "fname");
    record.setObject(record.text("home"), "nickname");

    EXPECT_EQ(record.text("fname"), "lname");
    EXPECT_EQ(record.text("nickname"), "home");
    EXPECT_EQ(record.text("mobile"), "mobile");
    EXPECT_TRUE(record.isChecked());
}

TEST(ContactRecord, OutlivesTheArenaInACopy)
{
    auto arena = std::make_unique<TextArena>();
    auto record = std::make_unique<ContactRecord>(kTexts, *arena);
    record->setObject(sys_seconds(seconds(7)), "modified");
    record->setObject(true, "check");

    const ContactRecord copy(*record);
    ContactRecord assigned;
    assigned = *record;
    record.reset();
    arena.reset();

    for (const auto* each : {&copy, &std::as_const(assigned)}) {
        EXPECT_EQ(each->text("uid"), "uid");
        EXPECT_EQ(each->text("mobile"), "mobile");
        EXPECT_EQ(each->objectForKey("modified"), ContactValue(sys_seconds(seconds(7))));
        EXPECT_EQ(each->objectForKey("check"), ContactValue(true));
    }
}

TEST(ContactRecord, StoresAChangeUnderModified)
{
    ContactRecord record(kTexts);

    record.setModified(sys_seconds(seconds(7)));

    EXPECT_EQ(record.objectForKey("modified"), ContactValue(sys_seconds(seconds(7))));
    EXPECT_EQ(record.text("uid"), "uid");
}

TEST(ContactRecord, IsEmptyAfterItsContentHasMoved)
{
    ContactRecord record(kTexts);
    record.setChecked(true);
    ContactRecord target(kTexts);

    target = std::move(record);
    const ContactRecord last(std::move(target));

    EXPECT_EQ(last.text("lname"), "lname");
    EXPECT_TRUE(last.isChecked());
    // NOLINTBEGIN(bugprone-use-after-move): the class says what is left
    EXPECT_EQ(record.text("lname"), "");
    EXPECT_EQ(target.objectForKey("check"), std::nullopt);
    // NOLINTEND(bugprone-use-after-move)
}

TEST(ContactRecord, IgnoresAValueOfTheWrongType)
{
    ContactRecord record;
    record.setObject(true, "fname");
    record.setObject("yes", "check");
    record.setObject("today", "modified");

    EXPECT_EQ(record.objectForKey("fname"), ContactValue(std::string_view("")));
    EXPECT_EQ(record.objectForKey("check"), std::nullopt);
    EXPECT_EQ(record.objectForKey("modified"), std::nullopt);
}

}  // namespace
}  // namespace dunmora::test
