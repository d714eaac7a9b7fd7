#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/CardReader.h"
#include "bench/big_book.h"

#include <benchmark/benchmark.h>

namespace dunmora::bench {

namespace {

/// Parses a book that is already in memory.
void readCards(benchmark::State& state)
{
    const auto text = bigBook({.cards = static_cast<std::size_t>(state.range(0))});

    while (state.KeepRunning()) {
        CardReader reader;
        CardReader::Cards cards;
        reader.read(text, CardReader::Text::Bytes, cards);
        benchmark::DoNotOptimize(cards.people.size());
    }

    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(readCards)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// Reads everyone's whole card, one call for each.
void readWholeCards(benchmark::State& state)
{
    const auto text = bigBook({.cards = static_cast<std::size_t>(state.range(0))});
    CardReader reader;
    CardReader::Cards cards;
    reader.read(text, CardReader::Text::Bytes, cards);

    while (state.KeepRunning()) {
        for (const auto& range : cards.ranges) {
            benchmark::DoNotOptimize(
                readProperties(std::string_view(text).substr(range.begin, range.end - range.begin),
                               CardReader::Text::Bytes));
        }
    }

    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(readWholeCards)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace dunmora::bench
