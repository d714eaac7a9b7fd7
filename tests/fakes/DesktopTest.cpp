#include "tests/fakes/DesktopTest.h"

#include "engine/ContactsParser.h"
#include "ui/AppData.h"
#include "update/UpdateController.h"

namespace dunmora::test {

namespace {

void resetSharedState()
{
    AppData::app().setProgress(nullptr);
    UpdateController::endUpdater();
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

DesktopTest::DesktopTest() = default;
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
