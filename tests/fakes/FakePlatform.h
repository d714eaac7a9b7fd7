#pragma once

#include "platform/Alert.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/FakeUserDefaults.h"

#include <functional>
#include <string>
#include <vector>

namespace dunmora::test {

/// Writes down every alert and answers with the default button, unless the test says otherwise.
class RecordingAlert final : public Alert {
public:
    int runModal(const AlertContent& content) override
    {
        shown.push_back(content);
        return onRunModal(content);
    }

    std::vector<AlertContent> shown;
    /// What the user does; returns the number of the button pressed.
    std::function<int(const AlertContent& content)> onRunModal =
        [](const AlertContent& /*content*/) { return kDefaultButton; };
};

/// Writes down every URL that it is asked to open.
class RecordingWorkspace final : public Workspace {
public:
    bool openURL(const std::string& url) override
    {
        opened.push_back(url);
        onOpenURL(url);
        return true;
    }

    std::vector<std::string> opened;
    /// Called with each URL.
    std::function<void(const std::string& url)> onOpenURL = [](const std::string& /*url*/) {};
};

class FakeBundle final : public Bundle {
public:
    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const override
    {
        if (key == "CFBundleVersion") {
            return version;
        }
        return key == "DunmoraUpdateHost" ? updateHost : std::nullopt;
    }

    std::optional<std::string> version = "0.1";
    std::optional<std::string> updateHost = "update.dunmora.invalid";
};

/// A fake for every port, installed as the platform as long as it lives.
struct FakePlatform {
    FakePlatform() { Platform::install(platform); }
    ~FakePlatform() = default;
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    FakeAddressBook addressBook;
    FakeUserDefaults userDefaults;
    RecordingAlert alert;
    RecordingWorkspace workspace;
    FakeBundle bundle;
    Platform platform{addressBook, userDefaults, alert, workspace, bundle};
};

}  // namespace dunmora::test
