#pragma once

#include <utility>

namespace Host {

/// Takes back what was done so far, when it goes, whatever the reason; unless it was told that all
/// went well. Taking back must not throw.
template <class Undo>
class OnFailure {
public:
    explicit OnFailure(Undo undo) noexcept : undo_(std::move(undo)) {}
    OnFailure(const OnFailure&) = delete;
    OnFailure& operator=(const OnFailure&) = delete;
    ~OnFailure() {
        if (armed_) undo_();
    }

    /// All went well, or so `done` says; gives that.
    bool keep(bool done = true) noexcept {
        armed_ = armed_ && !done;
        return done;
    }

private:
    Undo undo_;
    bool armed_ = true;
};

} // namespace Host
