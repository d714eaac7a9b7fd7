#include "adapters/macos/FrameworkCall.h"

#include "adapters/macos/AutoreleasePool.h"
#include "adapters/macos/ExceptionGuard.h"
#include "adapters/macos/FrameworkThread.h"
#include "platform/PlatformError.h"

#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string>

namespace dunmora {

namespace {

/// Work that is called through Objective-C, and the C++ exception that it threw.
struct Call {
    const std::function<void()>& work;
    std::exception_ptr failure;
};

void run(void* context)
{
    auto& call = *static_cast<Call*>(context);
    // Not `...`: on some runtimes that also catches Objective-C exceptions, which are the guard's.
    try {
        call.work();
    } catch (const std::exception&) {
        call.failure = std::current_exception();
    }
}

/// The words as a sentence on one line.
std::string sentence(std::string words)
{
    for (auto& c : words) {
        if ((static_cast<unsigned char>(c) < ' ') || c == '\x7F') {
            c = ' ';
        }
    }
    while (words.ends_with(' ') || words.ends_with('.')) {
        words.pop_back();
    }
    return words + ".";
}

}  // namespace

void callObjectiveC(std::string_view what, const std::function<void()>& work)
{
    Call call{work, nullptr};
    std::optional<std::string> raised;
    {
        const AutoreleasePool pool;
        const std::unique_ptr<char, decltype(&std::free)> words(dunmoraRunCatching(run, &call),
                                                                &std::free);
        if (words) {
            raised = words.get();
        }
    }
    if (call.failure) {
        std::rethrow_exception(call.failure);
    }
    if (raised) {
        throw PlatformError(std::string(what) + " reported an error: " + sentence(*raised));
    }
}

void callFramework(std::string_view what, const std::function<void()>& work)
{
    const std::function<void()> guarded = [&] { callObjectiveC(what, work); };
    Call onThread{guarded, nullptr};
    callObjectiveC(what, [&] { performOnFrameworkThread(run, &onThread); });
    if (onThread.failure) {
        std::rethrow_exception(onThread.failure);
    }
}

}  // namespace dunmora
