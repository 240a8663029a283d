#pragma once

#include "libqpdf.h"
#include "source.h"

#include <memory>
#include <string_view>

namespace Libraries::Files::PDF::Import {

/// The document in `source` as libqpdf has it, its objects still unread. Throws `Failed`, with the
/// code of what libqpdf gave up for.
[[nodiscard]] std::shared_ptr<QPDF> load(const std::shared_ptr<Source>& source,
                                         std::string_view password);

/// Hands what libqpdf repaired since the last call on to the log. Throws `std::bad_alloc` where an
/// object was lost because memory did not suffice, which libqpdf takes for damage.
class Repairs {
public:
    explicit Repairs(QPDF& document) : document_(document) {}

    void report();
    /// Says how many there were beyond those that were reported.
    void finish() const;

private:
    QPDF& document_;
    std::size_t count_ = 0;
};

} // namespace Libraries::Files::PDF::Import
