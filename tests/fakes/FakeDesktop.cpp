#include "tests/fakes/FakeDesktop.h"

namespace dunmora::test {

std::optional<std::filesystem::path> FakeSavePanel::runModal(const std::string& name)
{
    names.push_back(name);
    return choice;
}

std::optional<std::filesystem::path> FakeOpenPanel::runModal()
{
    return choice;
}

FakeDesktop::FakeDesktop()
{
    Desktop::install(desktop);
}

FakeDesktop::~FakeDesktop() = default;

}  // namespace dunmora::test
