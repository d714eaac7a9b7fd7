#include "programs/dunmora/SupervisedApplication.h"

#include "base/JobThreads.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "programs/dunmora/FailureText.h"
#include "programs/dunmora/JobObserver.h"

#include <iostream>
#include <utility>

namespace dunmora {

void SupervisedApplication::detachNewThread(std::string_view name, std::function<void()> body)
{
    const std::string thread(name);
    if (running_++ == 0 && observer_ != nullptr) {
        observer_->jobsBegan(thread);
    }
    try {
        application_.detachNewThread(thread,
                                     [this, thread, body = std::move(body)] { run(thread, body); });
    } catch (...) {
        jobEnded(thread, std::current_exception());
    }
}

void SupervisedApplication::run(const std::string& name, const std::function<void()>& body)
{
    std::exception_ptr failure;
    try {
        // The dialog that follows a load shows match fields that other programs have stored since.
        // The fields that the user confirms there must not change during the search and while its
        // rows are shown.
        if (name == kThreadLoadContacts) {
            Platform::current().userDefaults.synchronize();
        }
        body();
    } catch (...) {
        failure = std::current_exception();
    }
    performOnMainThread([&] { jobEnded(name, failure); });
}

void SupervisedApplication::jobEnded(const std::string& name, const std::exception_ptr& failure)
{
    if (failure && observer_ != nullptr) {
        try {
            observer_->jobFailed(name, failure);
        } catch (...) {
            // The count must stay correct even if the windows are in a bad state.
            for (const auto& error : {failure, std::current_exception()}) {
                std::cerr << "dunmora: " << failureText(error, "") << '\n';
            }
        }
    }
    if (--running_ == 0 && observer_ != nullptr) {
        observer_->jobsEnded();
    }
}

}  // namespace dunmora
