// Runs a program and prints what it took: seconds, seconds of processor time (user and system), and
// the most memory it had, in bytes. The program's standard output is discarded.
//
//     measure PROGRAM [ARGUMENT...]
//
// The peak of a new process begins with what its parent holds, so this program holds little: it is
// linked without the C++ library, and the Python script that reads the figures could not do it.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

namespace {

double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

[[noreturn]] void become(char** command)
{
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    execvp(command[0], command);
    perror(command[0]);
    _exit(1);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        fputs("usage: measure PROGRAM [ARGUMENT...]\n", stderr);
        return 2;
    }
    const auto began = now();
    const auto child = fork();
    if (child == 0) {
        become(argv + 1);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child) {
        perror("measure");
        return 1;
    }
    const auto ended = now();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        fprintf(stderr, "measure: %s failed\n", argv[1]);
        return 1;
    }
#ifdef __APPLE__
    constexpr long kUnit = 1;
#else
    constexpr long kUnit = 1024;
#endif
    printf("%.6f %.6f %ld\n", ended - began, seconds(usage.ru_utime) + seconds(usage.ru_stime),
           usage.ru_maxrss * kUnit);
    return 0;
}
