#include <host/lock.h>

#include <memory>
#include <mutex>
#include <new>

namespace Host {

namespace {

using Mutex = std::recursive_mutex;

Mutex& mutexIn(unsigned char* storage) noexcept {
    return *std::launder(reinterpret_cast<Mutex*>(storage));
}

} // namespace

Lock::Lock() noexcept {
    static_assert(sizeof(Mutex) <= sizeof(mutex_) && alignof(Mutex) <= alignof(Lock));
    new (mutex_) Mutex();
}

Lock::~Lock() {
    std::destroy_at(&mutexIn(mutex_));
}

void Lock::lock() {
    mutexIn(mutex_).lock();
}

void Lock::unlock() noexcept {
    mutexIn(mutex_).unlock();
}

} // namespace Host
