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

/// The harm that re-encoding did to a stream because it looks at Filter alone.
enum class FilterLoss : std::uint8_t {
    Replaced,  ///< a filter of another name is gone
    Predictor, ///< a predictor is left without its filter, or has got one that it never had
};

/// The data of a document. Reading fills it; all other stages work on it.
struct DocumentState {
    /// The stripe that the document was loaded from. Stream data is read from it on demand.
    Ref<Interfaces::Stripe> source;
    /// The views of the source hold this lock while they read.
    Ref<Host::Mon> monitor;
    std::string lineEnding = "\n";
    PdfVersion version = PdfVersion::Unsupported;
    bool modified = false;
    Ref<Dictionary> trailer;
    std::uint64_t xrefOffset = 0;
    std::uint32_t xrefFirstId = 0;
    ObjectTable objects;
    /// Things met on reading that are lost in writing.
    Losses losses;
    /// The streams, by number, that re-encoding has harmed.
    std::map<std::uint32_t, FilterLoss> filterLosses;
    /// Whether to write numbers as they were read.
    bool faithfulNumbers = false;
    /// The number of the next object that is appended. Copying never gives numbers back.
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
