#pragma once

#include "host/monitor.h"
#include "packed/losses.h"
#include "state/object_table.h"

#include <host/stripe.h>
#include <pdf/values.h>
#include <pdf/version.h>

#include <cstdint>
#include <map>
#include <string>

namespace Libraries::Files::PDF {

/// What re-encoding a stream by its Filter alone did to it.
enum class FilterLoss : std::uint8_t {
    Replaced,  ///< a filter of another name is gone
    Predictor, ///< a predictor is left without its filter, or has got one that it never had
};

/// All that a document is. Reading fills it, everything else works on it.
struct DocumentState {
    /// What the document was loaded from; stream data is read from it on demand.
    Ref<Interfaces::Stripe> source;
    /// Held by the views of the source while they read from it.
    Ref<Host::Mon> monitor;
    std::string lineEnding = "\n";
    PdfVersion version = PdfVersion::Unsupported;
    bool modified = false;
    Ref<Dictionary> trailer;
    std::uint64_t xrefOffset = 0;
    std::uint32_t xrefFirstId = 0;
    ObjectTable objects;
    /// What was met on reading that does not come back once it was written.
    Losses losses;
    /// The streams, by number, of which re-encoding took away more than it knows.
    std::map<std::uint32_t, FilterLoss> filterLosses;
    /// Whether numbers are written as they were read.
    bool faithfulNumbers = false;
    /// The number of the next object that is appended; numbers are never given back.
    std::uint32_t nextObjectId = 0;

    /// The slot of the object that `ref` refers to; null where there is none.
    [[nodiscard]] const ObjectTable::Slot* find(const ObjectRef& ref) const noexcept {
        return objects.find(ref.id(), ref.generation());
    }

    /// A higher version counts as a change; a lower one is ignored.
    void raiseVersion(PdfVersion higher) noexcept {
        if (higher <= version) return;
        version = higher;
        modified = true;
    }
};

} // namespace Libraries::Files::PDF
