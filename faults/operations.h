#pragma once

#include "support/failing_stripe.h"

#include <host/memory_stripe.h>
#include <host/ref.h>
#include <pdf/document.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// What is done while allocations and calls of stripes fail.
namespace Faults {

using Host::Ref;
using Libraries::Files::PDF::Document;
using Libraries::Files::PDF::Stream;

/// The sample document: its pages stand in the root of their tree or, `nested`, one of them twice
/// below a node.
[[nodiscard]] std::string sampleBytes(std::string_view content, bool nested = false);

/// A document under test and what an operation made of it.
struct Subject {
    explicit Subject(bool nested);

    void open();

    Ref<Interfaces::Stripe> source;
    Ref<Support::FailingStripe> failing;
    Ref<Document> document;
    Ref<Document> foreign;
    Ref<Stream> stream;
    Ref<Interfaces::Stripe> result;
    Ref<Support::FailingStripe> failingTarget;
    Ref<Interfaces::Stripe> target;
};

/// Fails as the operation did that gave false: with the thread's code.
void require(bool done);

/// What an operation does to the document.
enum class Does : std::uint32_t {
    Changes,       ///< a failure leaves what is written as it was
    ChangesInPart, ///< a failure leaves the pages' contents, but a second attempt may fail
    Opens          ///< it makes the document; a failure leaves none
};

struct Operation {
    const char* name;
    void (*run)(Subject&);         ///< fails by what `Result::value` throws
    std::set<std::uint32_t> codes; ///< that a failure may have, beside `OutOfMemory`
    Does does = Does::Changes;
    bool nested = false; ///< the document's page tree is
    bool isTool = false; ///< it leaves the thread's code alone, and logs no error
};

/// What documents, forms and values do themselves.
[[nodiscard]] std::vector<Operation> documentOperations();
/// What tools do.
[[nodiscard]] std::vector<Operation> toolOperations();

} // namespace Faults
