#include "tests/fakes/DesktopTest.h"

#include "engine/ContactsParser.h"
#include "ui/AppData.h"
#include "update/UpdateController.h"

#include <memory>
#include <utility>

namespace dunmora::test {

namespace {

/// Replaces the shared updater, which the program never destroys, by one that uses the current
/// desktop.
void replaceUpdater()
{
    auto& shared = UpdateController::updater();
    std::destroy_at(&shared);
    std::construct_at(&shared);
}

void resetSharedState()
{
    AppData::app().setProgress(nullptr);
    ContactsParser::parser().reset();
    ContactsParser::parser().contacts().clear();
}

}  // namespace

FreshSharedState::FreshSharedState()
{
    resetSharedState();
}

FreshSharedState::~FreshSharedState()
{
    resetSharedState();
}

DesktopTest::DesktopTest()
{
    replaceUpdater();
    updateWindow_ = std::exchange(loader_.last, nullptr);
    log_.clear();
}

DesktopTest::~DesktopTest() = default;

void DesktopTest::TearDown()
{
    application_.runUntilIdle();
}

DesktopTest::Calls DesktopTest::calls() const
{
    return log_.calls();
}

}  // namespace dunmora::test
