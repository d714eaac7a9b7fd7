#include "adapters/macos/FrameworkCall.h"

#include "platform/PlatformError.h"
#include "tests/adapters/macos/AddressesBook.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <thread>

namespace dunmora::test {
namespace {

/// How the work on the framework's thread ended, as a text.
std::string endOf(const std::function<void()>& work)
{
    try {
        callFramework("The book", work);
    } catch (const PlatformError& error) {
        return error.what();
    } catch (const std::bad_alloc&) {
        return "no memory";
    } catch (const std::logic_error& error) {
        return std::string("a fault: ") + error.what();
    }
    return "done";
}

TEST(FrameworkCall, WaitsForTheWork)
{
    bool isDone = false;

    EXPECT_EQ(endOf([&] { isDone = true; }), "done");

    EXPECT_TRUE(isDone);
}

TEST(FrameworkCall, UsesOneThreadForAllCalls)
{
    std::thread::id first;
    std::thread::id second;

    callFramework("The book", [&] { first = std::this_thread::get_id(); });
    std::thread([&] {
        callFramework("The book", [&] { second = std::this_thread::get_id(); });
    }).join();

    EXPECT_EQ(first, second);
    EXPECT_NE(first, std::this_thread::get_id());
}

TEST(FrameworkCall, TurnsObjectiveCExceptionsIntoPlatformErrors)
{
    EXPECT_EQ(endOf([] { raiseInObjectiveC("No such record."); }),
              "The book reported an error: No such record.");
}

TEST(FrameworkCall, PutsTheReasonOnOneLine)
{
    EXPECT_EQ(endOf([] { raiseInObjectiveC("Two\nlines.\n"); }),
              "The book reported an error: Two lines.");
}

TEST(FrameworkCall, UsesTheNameOfAnExceptionWithoutAReason)
{
    EXPECT_EQ(endOf([] { raiseInObjectiveC(""); }),
              "The book reported an error: NSGenericException.");
}

TEST(FrameworkCall, PassesCppExceptionsThroughUnchanged)
{
    EXPECT_EQ(endOf([] { throw PlatformError("Not there."); }), "Not there.");
    EXPECT_EQ(endOf([] { throw std::bad_alloc(); }), "no memory");
    EXPECT_EQ(endOf([] { throw std::logic_error("odd"); }), "a fault: odd");
}

TEST(FrameworkCall, WorksAfterAFailure)
{
    for (int i = 0; i < 100; ++i) {
        endOf([] { raiseInObjectiveC("No such record."); });
        endOf([] { throw PlatformError("Not there."); });
    }

    EXPECT_EQ(endOf([] {}), "done");
}

TEST(FrameworkCall, KeepsNestedCallsApart)
{
    std::string inner;

    const auto outer = endOf([&] {
        try {
            callObjectiveC("The person", [] { raiseInObjectiveC("No such record."); });
        } catch (const PlatformError& error) {
            inner = error.what();
        }
        raiseInObjectiveC("No such book.");
    });

    EXPECT_EQ(inner, "The person reported an error: No such record.");
    EXPECT_EQ(outer, "The book reported an error: No such book.");
}

TEST(FrameworkCall, RunsDestructors)
{
    // An Objective-C exception must unwind the C++ frames on its way to the handler.
    bool isTidied = false;
    struct Tidy {
        bool& isTidied;
        explicit Tidy(bool& flag) : isTidied(flag) {}
        ~Tidy() { isTidied = true; }
        Tidy(const Tidy&) = delete;
        Tidy& operator=(const Tidy&) = delete;
    };

    endOf([&] {
        const Tidy tidy{isTidied};
        raiseInObjectiveC("No such record.");
    });

    EXPECT_TRUE(isTidied);
}

}  // namespace
}  // namespace dunmora::test
