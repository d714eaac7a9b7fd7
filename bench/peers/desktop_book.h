#pragma once

namespace dunmora::bench {

/// The id of the address book that desktop_book fills and ebook_read reads.
constexpr auto kBook = "benchmark";

}  // namespace dunmora::bench
