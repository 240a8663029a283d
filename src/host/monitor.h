#pragma once

#include <host/ref.h>

#include <mutex>

namespace Host {

/// Counted lock, for several users of one thing.
class Mon final : public RefCount {
public:
    [[nodiscard]] static Ref<Mon> create() noexcept { return make<Mon>(); }

    void lock() { mutex_.lock(); }
    void unlock() { mutex_.unlock(); }

private:
    std::recursive_mutex mutex_;
};

} // namespace Host
