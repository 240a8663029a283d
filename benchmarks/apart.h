#pragma once

/// @file
/// Steps in processes of their own, so that what each takes is that of the step alone.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace Benchmarks {

/// The largest resident size of this process so far.
inline double peakBytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

/// Whether `step` succeeded, in a process of its own.
template <class Step>
bool apart(Step step) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const bool done = step();
        std::fflush(nullptr);
        ::_exit(done ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

} // namespace Benchmarks
