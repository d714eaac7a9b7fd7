// Runs a program with faults in its system calls:
//
//     inject_faults LOG record|quiet [--fault CALL OCCURRENCE KIND VALUE...]... -- PROGRAM
//     ARGUMENT...
//
// Faults are described in Fault.h. The log has one line for each event, its fields separated by
// tabs: "call", name, occurrence, result and target of each call (if recorded); "fault" and the
// index of a fault that happened, and "done" or "none", if another program found no file to change;
// "end" and how the program ended.

#include "tests/faults/Fault.h"
#include "tests/faults/OtherPrograms.h"
#include "tests/faults/TracedProgram.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

constexpr int kSkip = 77;
constexpr int kFailed = 2;

struct Task {
    std::string log;
    bool isRecorded = false;
    std::vector<Fault> faults;
    std::vector<std::string> command;
};

Task parse(std::span<const std::string> arguments)
{
    if (arguments.size() < 4) {
        throw std::invalid_argument("too few arguments");
    }
    Task task;
    task.log = arguments[0];
    task.isRecorded = arguments[1] == "record";
    arguments = arguments.subspan(2);
    while (!arguments.empty() && arguments.front() == "--fault") {
        arguments = arguments.subspan(1);
        task.faults.push_back(parseFault(arguments));
    }
    if (arguments.size() < 2 || arguments.front() != "--") {
        throw std::invalid_argument("the program is missing");
    }
    task.command.assign(arguments.begin() + 1, arguments.end());
    return task;
}

/// One run of the program.
class Injection final {
public:
    explicit Injection(Task task) : task_(std::move(task)), log_(task_.log) {}

    int run()
    {
        TracedProgram program(task_.command);
        if (!program.canTrace()) {
            return kSkip;
        }
        while (auto call = program.nextCall()) {
            name_ = nameOf(*call);
            occurrence_ = ++occurrences_[name_];
            const auto target = task_.isRecorded ? targetOf(program.process(), *call) : "";
            const auto result = inject(program, *call);
            if (task_.isRecorded) {
                log_ << "call\t" << name_ << '\t' << occurrence_ << '\t' << result << '\t' << target
                     << '\n';
            }
            if (!program.end().empty()) {
                break;
            }
        }
        others_.finish();
        log_ << "end\t" << program.end() << '\n';
        return log_.flush() ? 0 : kFailed;
    }

private:
    /// Makes the faults of this call happen and finishes it. Returns its result.
    long inject(TracedProgram& program, const StartedCall& call)
    {
        int error = 0;
        for (std::size_t i = 0; i < task_.faults.size(); ++i) {
            const auto& fault = task_.faults[i];
            const bool isNow = fault.isRepeated ? occurrence_ >= fault.occurrence
                                                : occurrence_ == fault.occurrence;
            if (fault.call != name_ || !isNow) {
                continue;
            }
            bool isDone = true;
            switch (fault.kind) {
            case Fault::Kind::Kill:
                program.kill();
                break;
            case Fault::Kind::Fail:
                program.failCall(static_cast<int>(fault.number));
                break;
            case Fault::Kind::FailAfter:
                error = static_cast<int>(fault.number);
                break;
            case Fault::Kind::Cut:
                program.setSize(call, static_cast<std::uint64_t>(fault.number));
                break;
            case Fault::Kind::CutRandomly:
                program.setSize(call, randomSize(fault, call.arguments[2]));
                break;
            default:
                isDone = others_.act(fault);
                break;
            }
            log_ << "fault\t" << i << '\t' << (isDone ? "done" : "none") << '\n';
            if (fault.kind == Fault::Kind::Kill) {
                return 0;
            }
            if (fault.kind == Fault::Kind::Fail) {
                return -fault.number;
            }
        }
        const auto result = program.finishCall();
        if (result && error != 0) {
            program.setError(error);
        }
        return result.value_or(0);
    }

    std::uint64_t randomSize(const Fault& fault, std::uint64_t size)
    {
        if (size == 0) {
            return 0;
        }
        auto& generator =
            generators_.try_emplace(&fault, static_cast<unsigned long>(fault.number)).first->second;
        return 1 + generator() % size;
    }

    Task task_;
    std::ofstream log_;
    OtherPrograms others_;
    std::map<std::string, int> occurrences_;
    std::map<const Fault*, std::mt19937> generators_;
    std::string name_;
    int occurrence_ = 0;
};

}  // namespace
}  // namespace dunmora::test

int main(int count, char** arguments)
{
    using namespace dunmora::test;
    try {
        const std::vector<std::string> all(arguments + 1, arguments + count);
        return Injection(parse(all)).run();
    } catch (const std::exception& error) {
        std::cerr << "inject_faults: " << error.what() << '\n';
        return kFailed;
    }
}
