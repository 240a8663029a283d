#pragma once

/// @file
/// A lock. Its users need no header of the standard library.

#include <host/export.h>

namespace Host {

/// Recursive lock: the thread that holds it may take it again, and releases it as often.
class FILES_PDF_EXPORT Lock {
public:
    /// Makes a lock that nobody holds.
    Lock() noexcept;
    /// Nobody may hold the lock any more.
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// Takes the lock. Waits as long as another thread holds it.
    void lock();
    /// Releases the lock, which the calling thread holds.
    void unlock() noexcept;

private:
    // Room for the `std::recursive_mutex` that src/host/lock.cpp puts here.
    alignas(8) unsigned char mutex_[48];
};

} // namespace Host
