#include "tests/fakes/FakeDesktop.h"

namespace dunmora::test {

std::optional<std::filesystem::path> FakeSavePanel::runModal(const std::string& name,
                                                             const std::filesystem::path& folder)
{
    names.push_back(name);
    folders.push_back(folder);
    return choice;
}

std::optional<std::filesystem::path> FakeOpenPanel::runModal(Kind kind,
                                                             const std::filesystem::path& folder)
{
    kinds.push_back(kind);
    folders.push_back(folder);
    return choice;
}

FakeDesktop::FakeDesktop()
{
    Desktop::install(desktop);
}

FakeDesktop::~FakeDesktop() = default;

}  // namespace dunmora::test
