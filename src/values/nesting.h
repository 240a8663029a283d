#pragma once

namespace Libraries::Files::PDF {

/// Counts the levels of a recursive walk, so that no input can exhaust the stack.
class Nesting {
public:
    /// The depth of every walk: reading, serializing, cloning, text form, equality, change.
    static constexpr unsigned limit = 512;

    explicit Nesting(unsigned& depth) noexcept : depth_(depth) { ++depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth_; }

    [[nodiscard]] bool tooDeep() const noexcept { return depth_ > limit; }

private:
    unsigned& depth_;
};

/// The depth of walks that are virtual operations of values, which have no parameter for it.
inline unsigned& walkDepth() noexcept {
    thread_local unsigned depth = 0;
    return depth;
}

} // namespace Libraries::Files::PDF
