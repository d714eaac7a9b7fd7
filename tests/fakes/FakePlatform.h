#pragma once

#include "platform/Alert.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/FakeUserDefaults.h"

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// Records every alert and presses the default button, unless the test chooses another.
class RecordingAlert final : public Alert {
public:
    int runModal(const AlertContent& content) override;

    std::vector<AlertContent> shown;
    /// What the user does; returns the number of the button pressed.
    std::function<int(const AlertContent& content)> onRunModal =
        [](const AlertContent& /*content*/) { return kDefaultButton; };
};

/// Records every URL and page that it is asked to open.
class RecordingWorkspace final : public Workspace {
public:
    bool openURL(const std::string& url) override;
    void openWebPage(const std::string& url) override;
    bool openLocalPage(const std::filesystem::path& page) override;
    std::string webHost(const std::string& url) const override;

    std::vector<std::string> opened;
    std::vector<std::string> openedPages;
    std::vector<std::filesystem::path> openedLocalPages;
    /// Whether a program accepts local pages.
    bool hasBrowser = true;
    /// The hosts of web pages that it may open, by their URLs.
    std::map<std::string, std::string> webHosts;
    /// Called with the URL of each web page.
    std::function<void(const std::string& url)> onOpenWebPage = [](const std::string& /*url*/) {};
};

class FakeBundle final : public Bundle {
public:
    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const override;

    std::optional<std::string> version = "0.1";
    std::optional<std::string> updateHost = "update.dunmora.invalid";
};

/// A fake for every port, installed as the platform during its lifetime.
struct FakePlatform {
    FakePlatform();
    ~FakePlatform();
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    FakeAddressBook addressBook;
    FakeUserDefaults userDefaults;
    RecordingAlert alert;
    RecordingWorkspace workspace;
    FakeBundle bundle;
    Platform platform{&addressBook, userDefaults, alert, workspace, bundle, &addressBook};
};

}  // namespace dunmora::test
