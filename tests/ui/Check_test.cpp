#include "ui/Check.h"

#include "tests/fakes/FakeInterface.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

TEST(Check, ChecksTheBox)
{
    CallLog log;
    FakeCheckBox box("box", log);

    Check(box, true);

    EXPECT_EQ(box.state(), CheckState::On);
}

TEST(Check, UnchecksTheBox)
{
    CallLog log;
    FakeCheckBox box("box", log);

    Check(box, false);

    EXPECT_EQ(box.state(), CheckState::Off);
}

}  // namespace
}  // namespace dunmora::test
