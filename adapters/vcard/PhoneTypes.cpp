#include "adapters/vcard/PhoneTypes.h"

#include "adapters/vcard/PropertyTypes.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>

namespace dunmora {

void PhoneTypes::add(std::string_view types)
{
    while (!types.empty()) {
        addOne(takeType(types));
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
    } else if (!unknown_ && !type.empty() && isLabelType(type)) {
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
