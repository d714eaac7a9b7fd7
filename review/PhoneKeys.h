#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// By what a telephone number is recognised in another card. Two numbers are the same when one
/// needs a key that the other provides.
struct PhoneKeys {
    std::vector<std::string> needs;
    std::vector<std::string> provides;
};

/// The keys of a number. Two numbers are the same when their digits and extensions are equal, or
/// when one begins with + or 00 and ends in the other's digits without its leading 0, if those are
/// at least seven. White space and the usual punctuation are ignored; a number with anything else
/// in it, such as letters or digits of another script, is the same only as the equal text.
///
/// The keys of a pair are found without comparing all pairs: an international number provides each
/// of its endings, and a national number needs one.
/// Thread: any. Errors: none.
PhoneKeys phoneKeys(std::string_view number);

}  // namespace dunmora
