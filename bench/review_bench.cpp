#include "bench/BenchPlatform.h"
#include "engine/ContactsParser.h"
#include "platform/CardSource.h"
#include "review/DuplicateGroups.h"
#include "review/GroupWarnings.h"
#include "review/UniqueProperties.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::bench {

namespace {

/// The main thread's work with the groups of a review in which everyone has a copy.
class EveryoneTwice {
public:
    explicit EveryoneTwice(const benchmark::State& state, Twice twice = Twice::Everyone)
        : platform_(static_cast<std::size_t>(state.range(0)), twice)
    {
        engine.load();
        engine.findDupes();
    }

private:
    BenchPlatform platform_;

public:
    ContactsParser engine;
};

void findGroups(benchmark::State& state)
{
    const auto review = std::make_unique<EveryoneTwice>(state);

    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(duplicateGroups(review->engine).size());
    }
}

void countWarnings(benchmark::State& state)
{
    const auto review = std::make_unique<EveryoneTwice>(state);
    GroupWarnings warnings;

    while (state.KeepRunning()) {
        warnings.update(review->engine);
    }
}

/// Edits all rows in one operation.
void followEdits(benchmark::State& state)
{
    const auto review = std::make_unique<EveryoneTwice>(state);
    GroupWarnings warnings;
    warnings.update(review->engine);
    std::vector<std::size_t> rows(review->engine.duplicates().size());
    std::iota(rows.begin(), rows.end(), 0U);
    bool on = false;

    while (state.KeepRunning()) {
        state.PauseTiming();
        for (const auto& uid : review->engine.duplicates()) {
            review->engine.contacts().find(uid)->setObject(on, kContactCheck);
        }
        on = !on;
        state.ResumeTiming();
        warnings.rowsEdited(review->engine, rows);
    }
}

/// Cards of ten properties, of which each person's copies share all but two.
class BigCards final : public CardSource {
public:
    std::string cards(std::span<const Person* const> /*people*/) const override { return {}; }

    std::optional<PersonCard> card(std::string_view uid) const override
    {
        const auto own = std::string(uid);
        const auto add = [](PersonCard& card, std::string_view name, std::string value) {
            card.properties.push_back({std::string(name), {}, {std::move(value)}, {}});
        };
        PersonCard card;
        card.source = source_;
        card.properties.push_back({"N", {}, {"Lee", "Ann", "Marie", "Dr.", ""}, {}});
        card.properties.push_back({"ADR", {}, {"", "", "1 Main St", "Springfield"}, {}});
        add(card, "FN", "Dr. Ann Marie Lee");
        add(card, "ORG", "Acme");
        add(card, "TEL", "+1 212 555 0100");
        add(card, "TEL", "212 555 0101");
        add(card, "EMAIL", "ann.lee@example.org");
        add(card, "EMAIL", own + "@example.org");
        add(card, "NOTE", "The note of " + own);
        add(card, "UID", own);
        return card;
    }

private:
    PersonSource source_{"memory", "memory"};
};

/// The cards of a review, in groups of two or in one.
class ReviewedCards {
public:
    ReviewedCards(const benchmark::State& state, Twice twice) : review_(state, twice)
    {
        read();
        rows.resize(review_.engine.duplicates().size());
        std::iota(rows.begin(), rows.end(), 0U);
    }

    void read() { unique_.read(review_.engine, &cards_); }

    void check(std::span<const std::size_t> edited, bool on)
    {
        for (const auto row : edited) {
            const auto& uid = review_.engine.duplicates()[row];
            review_.engine.contacts().find(uid)->setObject(on, kContactCheck);
        }
    }

    void follow(std::span<const std::size_t> edited) { unique_.rowsEdited(review_.engine, edited); }

    std::vector<std::size_t> rows;

private:
    EveryoneTwice review_;
    BigCards cards_;
    UniqueProperties unique_;
};

/// A worker's work after a search.
template <Twice kTwice>
void readCards(benchmark::State& state)
{
    const auto review = std::make_unique<ReviewedCards>(state, kTwice);

    while (state.KeepRunning()) {
        review->read();
    }
}

/// Select All, Space.
template <Twice kTwice>
void followCardsOfAll(benchmark::State& state)
{
    const auto review = std::make_unique<ReviewedCards>(state, kTwice);
    bool on = false;

    while (state.KeepRunning()) {
        state.PauseTiming();
        review->check(review->rows, on);
        on = !on;
        state.ResumeTiming();
        review->follow(review->rows);
    }
}

/// Space in one row while all the others are checked: the worst case, because it changes what is
/// kept for its whole group.
template <Twice kTwice>
void followCardsOfOne(benchmark::State& state)
{
    const auto review = std::make_unique<ReviewedCards>(state, kTwice);
    review->check(review->rows, true);
    review->follow(review->rows);
    const auto one = std::span<const std::size_t>(review->rows).last(1);
    bool on = false;

    while (state.KeepRunning()) {
        review->check(one, on);
        on = !on;
        review->follow(one);
    }
}

BENCHMARK(findGroups)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(countWarnings)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(followEdits)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readCards<Twice::Everyone>)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readCards<Twice::OnePerson>)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(followCardsOfAll<Twice::Everyone>)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(followCardsOfAll<Twice::OnePerson>)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(followCardsOfOne<Twice::Everyone>)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(followCardsOfOne<Twice::OnePerson>)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace dunmora::bench
