// The program as it is released, except that its first argument is the update service, or empty for
// a build without one:
//
//     dunmora_for_update_tests HOST[:PORT] [ARGUMENT]...

#include "adapters/bundle/BuildBundle.h"
#include "programs/dunmora/RunDunmora.h"

#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace {

class TestBundle final : public dunmora::Bundle {
public:
    explicit TestBundle(std::string updateHost) : updateHost_(std::move(updateHost)) {}

    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const override
    {
        if (key == "DunmoraUpdateHost") {
            return updateHost_.empty() ? std::nullopt : std::optional(updateHost_);
        }
        return build_.objectForInfoDictionaryKey(key);
    }

private:
    dunmora::BuildBundle build_;
    std::string updateHost_;
};

}  // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::cerr << "dunmora_for_update_tests: which update service?\n";
        return EXIT_FAILURE;
    }
    TestBundle bundle(argv[1]);
    argv[1] = argv[0];
    return dunmora::runDunmora(argc - 1, argv + 1, bundle);
}
