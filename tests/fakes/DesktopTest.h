#pragma once

#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dunmora::test {

/// Resets the program's shared instances to the state of a new process, before and after a test.
class FreshSharedState final {
public:
    FreshSharedState();
    ~FreshSharedState();
    FreshSharedState(const FreshSharedState&) = delete;
    FreshSharedState& operator=(const FreshSharedState&) = delete;
};

/// A test of a program with windows. All threads have ended before its members are destroyed.
class DesktopTest : public testing::Test {
public:
    DesktopTest();
    ~DesktopTest() override;
    DesktopTest(const DesktopTest&) = delete;
    DesktopTest& operator=(const DesktopTest&) = delete;

protected:
    using Calls = std::vector<std::string>;

    void TearDown() override;

    /// The calls that windows and controls have received so far.
    Calls calls() const;

    FakePlatform platform_;
    FakeDesktop desktop_;
    FakeApplication& application_ = desktop_.application;
    FakeInterfaceLoader& loader_ = desktop_.interfaceLoader;
    CallLog& log_ = desktop_.interfaceLoader.log;
    /// The window of the shared updater, which is a new one in each test.
    FakeInterface* updateWindow_ = nullptr;

private:
    FreshSharedState freshSharedState_;
};

}  // namespace dunmora::test
