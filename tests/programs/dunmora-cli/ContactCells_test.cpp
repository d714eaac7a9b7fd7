#include "programs/dunmora-cli/ContactCells.h"

#include "engine/ContactRecord.h"
#include "text/DisplayText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

namespace {

ContactRecord recordNamed(std::string_view firstName, std::string_view uid)
{
    ContactRecord record;
    record.setObject(firstName, kContactFirstName);
    record.setObject(uid, kContactUid);
    return record;
}

std::size_t columnOf(std::string_view key)
{
    return static_cast<std::size_t>(
        std::find_if(kTableColumns.begin(), kTableColumns.end(),
                     [&](const ContactField* field) { return field->key == key; }) -
        kTableColumns.begin());
}

TEST(ContactCells, ReturnsTheCellsOfEachPersonInTurn)
{
    const std::vector<ContactRecord> records{recordNamed("Ann", "1"), recordNamed("Zoë", "2"),
                                             recordNamed("B\ten", "3"), recordNamed("李", "ü"),
                                             recordNamed("Eve", "5")};
    ContactCells cells(nullptr);

    for (const auto& record : records) {
        cells.add(record);
    }

    const std::array<std::string_view, 5> names{"Ann", "Zoë", "B␉en", "李", "Eve"};
    const std::array<std::string_view, 5> uids{"1", "2", "3", "ü", "5"};
    const std::array<std::size_t, 5> widths{3, 3, 4, 2, 3};
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto row = cells.next(records[i]);
        EXPECT_EQ(row[columnOf(kContactFirstName)].text, names[i]);
        EXPECT_EQ(row[columnOf(kContactFirstName)].width, widths[i]);
        EXPECT_EQ(row[columnOf(kContactUid)].text, uids[i]);
        EXPECT_EQ(row[columnOf(kContactUid)].width, 1U);
        EXPECT_EQ(row[columnOf(kContactNickname)].text, "");
    }
}

TEST(ContactCells, KeepsTheCellsOfALongTable)
{
    constexpr std::size_t kPeople = 20'000;
    ContactCells cells(nullptr);
    const auto recordOf = [](std::size_t i) {
        return recordNamed("Zoë" + std::string(i % 50, 'x'), "ü" + std::to_string(i));
    };
    for (std::size_t i = 0; i < kPeople; ++i) {
        cells.add(recordOf(i));
    }

    for (std::size_t i = 0; i < kPeople; ++i) {
        const auto record = recordOf(i);
        const auto row = cells.next(record);
        ASSERT_EQ(row[columnOf(kContactFirstName)].text, record.text(kContactFirstName)) << i;
        ASSERT_EQ(row[columnOf(kContactUid)].text, record.text(kContactUid)) << i;
    }
}

TEST(ContactCells, MeasuresTheWidestCellOfEachColumn)
{
    ContactCells cells(nullptr);

    cells.add(recordNamed("Zoë", "1"));
    cells.add(recordNamed("李李李", "22"));
    cells.add(recordNamed("Ann", ""));

    EXPECT_EQ(cells.widest()[columnOf(kContactFirstName)], 6U);
    EXPECT_EQ(cells.widest()[columnOf(kContactUid)], 2U);
    EXPECT_EQ(cells.widest()[columnOf(kContactLastName)], 0U);
}

TEST(ContactCells, ShowsTheBeginningOfALongText)
{
    const auto record = recordNamed(std::string(kMaxShownBytes + 1, 'a'), "1");
    ContactCells cells(nullptr);

    cells.add(record);

    const auto cell = cells.next(record)[columnOf(kContactFirstName)];
    EXPECT_EQ(cell.text, std::string(kMaxShownBytes, 'a') + "…");
    EXPECT_EQ(cell.width, kMaxShownBytes + 1);
}

TEST(ContactCells, ShowsTheTimeOfAPersonWhoHasOne)
{
    auto record = recordNamed("Ann", "1");
    record.setObject(std::chrono::sys_seconds(std::chrono::days(365)), kContactModified);
    const auto without = recordNamed("Ben", "2");
    ContactCells cells(nullptr);

    cells.add(record);
    cells.add(without);

    constexpr std::string_view kForm = "1971-01-01 00:00";
    const auto cell = cells.next(record)[columnOf(kContactModified)];
    EXPECT_EQ(cell.text.size(), kForm.size());
    EXPECT_EQ(cell.width, kForm.size());
    EXPECT_EQ(cells.next(without)[columnOf(kContactModified)].text, "");
    EXPECT_EQ(cells.widest()[columnOf(kContactModified)], kForm.size());
}

}  // namespace

}  // namespace dunmora
