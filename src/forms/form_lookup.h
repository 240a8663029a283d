#pragma once

#include <host/error.h>
#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// What came of looking for a document's form, once and for all.
struct FormLookup {
    bool done = false;
    Ref<Form> form;
    /// What every call reports; `NoError` leaves the thread's code as it is.
    std::uint32_t code = Host::NoError;
};

/// The form of a document of `objects` objects, looked up where that was not done yet. Throws
/// `std::bad_alloc`, with nothing remembered.
[[nodiscard]] Ref<Form> lookUpForm(Document& document, std::uint64_t objects, FormLookup& lookup);

} // namespace Libraries::Files::PDF
