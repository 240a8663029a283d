#pragma once

#include <utility>

namespace Host {

/// Undoes what was done so far when its scope ends, whatever the reason, unless `keep` was called.
/// Undoing must not throw.
template <class Undo>
class OnFailure {
public:
    explicit OnFailure(Undo undo) noexcept : undo_(std::move(undo)) {}
    OnFailure(const OnFailure&) = delete;
    OnFailure& operator=(const OnFailure&) = delete;
    ~OnFailure() {
        if (armed_) undo_();
    }

    /// Keeps what was done if `done` is true. Gives `done`.
    bool keep(bool done = true) noexcept {
        armed_ = armed_ && !done;
        return done;
    }

private:
    Undo undo_;
    bool armed_ = true;
};

} // namespace Host
