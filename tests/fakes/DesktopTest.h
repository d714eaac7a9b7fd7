#pragma once

#include "engine/ContactsParser.h"
#include "tests/fakes/FakeDesktop.h"
#include "tests/fakes/FakePlatform.h"
#include "ui/AppData.h"
#include "update/UpdateController.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dunmora::test {

/// Gives a test the program's shared instances as a new process has them, and leaves them so.
class FreshSharedState final {
public:
    FreshSharedState() { empty(); }
    ~FreshSharedState() { empty(); }
    FreshSharedState(const FreshSharedState&) = delete;
    FreshSharedState& operator=(const FreshSharedState&) = delete;

private:
    static void empty()
    {
        AppData::app().setProgress(nullptr);
        UpdateController::endUpdater();
        ContactsParser::parser().reset();
        ContactsParser::parser().contacts().clear();
    }
};

/// A test of a program with windows. No thread runs any more when its members go.
class DesktopTest : public testing::Test {
protected:
    using Calls = std::vector<std::string>;

    void TearDown() override { application_.runUntilIdle(); }

    /// What was done to windows and controls so far.
    Calls calls() const { return log_.calls(); }

    FakePlatform platform_;
    FakeDesktop desktop_;
    FakeApplication& application_ = desktop_.application;
    FakeInterfaceLoader& loader_ = desktop_.interfaceLoader;
    CallLog& log_ = desktop_.interfaceLoader.log;

private:
    FreshSharedState freshSharedState_;
};

}  // namespace dunmora::test
