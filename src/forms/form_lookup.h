#pragma once

#include <host/error.h>
#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// The result of looking for a document's form, which is looked for once.
struct FormLookup {
    bool done = false;
    Ref<Form> form;
    /// The code that every call sets; `NoError` leaves the thread's code alone.
    std::uint32_t code = Host::NoError;
};

/// The form of a document of `objects` objects. The first call looks for it. Throws
/// `std::bad_alloc`; the next call then looks again.
[[nodiscard]] Ref<Form> lookUpForm(Document& document, std::uint64_t objects, FormLookup& lookup);

} // namespace Libraries::Files::PDF
