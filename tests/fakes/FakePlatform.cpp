#include "tests/fakes/FakePlatform.h"

namespace dunmora::test {

int RecordingAlert::runModal(const AlertContent& content)
{
    shown.push_back(content);
    return onRunModal(content);
}

bool RecordingWorkspace::openURL(const std::string& url)
{
    opened.push_back(url);
    return true;
}

void RecordingWorkspace::openWebPage(const std::string& url)
{
    openedPages.push_back(url);
    onOpenWebPage(url);
}

bool RecordingWorkspace::openLocalPage(const std::filesystem::path& page)
{
    openedLocalPages.push_back(page);
    return hasBrowser;
}

std::string RecordingWorkspace::webHost(const std::string& url) const
{
    const auto found = webHosts.find(url);
    return found == webHosts.end() ? std::string() : found->second;
}

std::optional<std::string> FakeBundle::objectForInfoDictionaryKey(std::string_view key) const
{
    if (key == "CFBundleVersion") {
        return version;
    }
    return key == "DunmoraUpdateHost" ? updateHost : std::nullopt;
}

FakePlatform::FakePlatform()
{
    Platform::install(platform);
}

FakePlatform::~FakePlatform() = default;

}  // namespace dunmora::test
