#pragma once

/// @file
/// Steps in processes of their own, so that what each takes is that of the step alone.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <type_traits>

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

/// What `work` gives, a plain value, in a process of its own; nothing where that was stopped.
template <class Value, class Work>
std::optional<Value> toldApart(Work work) {
    static_assert(std::is_trivially_copyable_v<Value>);
    int ends[2];
    if (::pipe(ends) != 0) return std::nullopt;
    const bool done = apart([&] {
        const Value told = work();
        return ::write(ends[1], &told, sizeof told) == sizeof told;
    });
    Value told;
    const bool whole = done && ::read(ends[0], &told, sizeof told) == sizeof told;
    ::close(ends[0]);
    ::close(ends[1]);
    return whole ? std::optional(told) : std::nullopt;
}

} // namespace Benchmarks
