#include "adapters/vcard/PhoneTypes.h"

#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace dunmora {

namespace {

/// Types that describe how a number is used or how the value is encoded; they give no label.
constexpr std::array<std::string_view, 13> kTypesWithoutLabel{
    "VOICE",  "PREF", "MSG",  "TEXT", "TEXTPHONE", "VIDEO", "INTERNET", "QUOTED-PRINTABLE",
    "BASE64", "B",    "7BIT", "8BIT", "BINARY"};

bool hasNoLabel(std::string_view type)
{
    return std::any_of(kTypesWithoutLabel.begin(), kTypesWithoutLabel.end(),
                       [&](std::string_view each) { return equalsIgnoringCase(type, each); });
}

/// Removes surrounding blanks and quotation marks; a list may have been quoted as a whole.
std::string_view unquoted(std::string_view type)
{
    const auto isAround = [](char c) { return isBlank(c) || c == '"'; };
    while (!type.empty() && isAround(type.front())) {
        type.remove_prefix(1);
    }
    while (!type.empty() && isAround(type.back())) {
        type.remove_suffix(1);
    }
    return type;
}

}  // namespace

void PhoneTypes::add(std::string_view types)
{
    std::size_t begin = 0;
    while (begin <= types.size()) {
        const auto comma = std::min(types.find(',', begin), types.size());
        auto type = unquoted(types.substr(begin, comma - begin));
        // TEL;TYPE=HOME,TYPE=VOICE occurs in real cards.
        if (equalsIgnoringCase(type.substr(0, 5), "TYPE=")) {
            type.remove_prefix(5);
        }
        addOne(type);
        begin = comma + 1;
    }
}

void PhoneTypes::addOne(std::string_view type)
{
    struct Known {
        std::string_view name;
        bool PhoneTypes::*flag;
    };
    static constexpr std::array<Known, 8> kKnown{{{"HOME", &PhoneTypes::home_},
                                                  {"WORK", &PhoneTypes::work_},
                                                  {"CELL", &PhoneTypes::cell_},
                                                  {"FAX", &PhoneTypes::fax_},
                                                  {"PAGER", &PhoneTypes::pager_},
                                                  {"IPHONE", &PhoneTypes::iPhone_},
                                                  {"MAIN", &PhoneTypes::main_},
                                                  {"OTHER", &PhoneTypes::other_}}};
    const auto* known = std::find_if(kKnown.begin(), kKnown.end(), [&](const Known& each) {
        return equalsIgnoringCase(type, each.name);
    });
    if (known != kKnown.end()) {
        this->*known->flag = true;
    } else if (!unknown_ && !type.empty() && !hasNoLabel(type)) {
        unknown_ = equalsIgnoringCase(type.substr(0, 2), "X-") ? type.substr(2) : type;
    }
}

std::optional<std::string_view> PhoneTypes::label() const
{
    if (fax_) {
        return home_ ? "_$!<HomeFAX>!$_" : work_ ? "_$!<WorkFAX>!$_" : "_$!<OtherFAX>!$_";
    }
    if (pager_) {
        return "_$!<Pager>!$_";
    }
    if (iPhone_) {
        return "iPhone";
    }
    if (cell_) {
        return work_ ? "work mobile" : home_ ? "home mobile" : "_$!<Mobile>!$_";
    }
    if (main_) {
        return "_$!<Main>!$_";
    }
    if (home_ || work_) {
        return home_ && work_ ? "home work" : home_ ? "_$!<Home>!$_" : "_$!<Work>!$_";
    }
    if (other_) {
        return "_$!<Other>!$_";
    }
    return unknown_;
}

}  // namespace dunmora
