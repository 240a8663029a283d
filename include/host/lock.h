#pragma once

/// @file
/// A lock that costs its users no header of the standard library.

#include <host/export.h>

namespace Host {

/// Recursive lock: the thread that holds it may take it again, and gives it back as often.
class FILES_PDF_EXPORT Lock {
public:
    /// Nobody holds it.
    Lock() noexcept;
    /// Nobody may hold it any more.
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// Waits until no other thread holds it.
    void lock();
    /// For the thread that holds it.
    void unlock() noexcept;

private:
    // A `std::recursive_mutex`, which src/host/lock.cpp makes and takes apart.
    alignas(8) unsigned char mutex_[48];
};

} // namespace Host
