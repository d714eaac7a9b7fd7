#include "tests/fakes/CallLog.h"

namespace dunmora::test {

void CallLog::add(const std::string& call)
{
    const std::lock_guard guard(mutex_);
    calls_.push_back(prefix() + call);
}

std::vector<std::string> CallLog::calls() const
{
    const std::lock_guard guard(mutex_);
    return calls_;
}

void CallLog::clear()
{
    const std::lock_guard guard(mutex_);
    calls_.clear();
}

}  // namespace dunmora::test
