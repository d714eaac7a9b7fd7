#include "tests/faults/Fault.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace dunmora::test {

namespace {

struct KindName {
    std::string_view name;
    Fault::Kind kind;
    bool hasPath;
    bool hasNumber;
    bool hasContent;
};

using Kind = Fault::Kind;

constexpr std::array kKinds{
    KindName{"fail", Kind::Fail, false, true, false},
    KindName{"fail-after", Kind::FailAfter, false, true, false},
    KindName{"cut", Kind::Cut, false, true, false},
    KindName{"cut-randomly", Kind::CutRandomly, false, true, false},
    KindName{"kill", Kind::Kill, false, false, false},
    KindName{"append", Kind::Append, true, false, true},
    KindName{"replace", Kind::Replace, true, false, true},
    KindName{"remove", Kind::Remove, true, false, false},
    KindName{"overwrite", Kind::Overwrite, true, true, true},
    KindName{"hold", Kind::Hold, true, false, true},
    KindName{"release", Kind::Release, false, false, false},
};

std::string next(std::span<const std::string>& arguments)
{
    if (arguments.empty()) {
        throw std::invalid_argument("a fault is incomplete");
    }
    const auto& argument = arguments.front();
    arguments = arguments.subspan(1);
    return argument;
}

}  // namespace

Fault parseFault(std::span<const std::string>& arguments)
{
    Fault fault;
    fault.call = next(arguments);
    const auto occurrence = next(arguments);
    fault.occurrence = std::stoi(occurrence);
    fault.isRepeated = occurrence.ends_with('+');
    const auto name = next(arguments);
    const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(),
                                          [&](const KindName& one) { return one.name == name; });
    if (kind == kKinds.end()) {
        throw std::invalid_argument("no such fault: " + name);
    }
    fault.kind = kind->kind;
    fault.path = kind->hasPath ? next(arguments) : "";
    fault.number = kind->hasNumber ? std::stol(next(arguments)) : 0;
    fault.content = kind->hasContent ? next(arguments) : "";
    return fault;
}

}  // namespace dunmora::test
