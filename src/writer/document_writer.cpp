#include "values/failure.h"
#include "values/scalars.h"
#include "writer/output.h"
#include "writer/serializer.h"
#include "writer/writer.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// The text form of an object, for messages.
Ref<Host::String> textOf(const ObjectTable::Slot& slot) noexcept {
    return identityText(slot.id(), slot.generation());
}

std::string_view headerOf(PdfVersion version) noexcept {
    switch (version) {
    case PdfVersion::V1_0:
        return "%PDF-1.0";
    case PdfVersion::V1_1:
        return "%PDF-1.1";
    case PdfVersion::V1_2:
        return "%PDF-1.2";
    case PdfVersion::V1_3:
        return "%PDF-1.3";
    case PdfVersion::V1_4:
        return "%PDF-1.4";
    case PdfVersion::V1_5:
        return "%PDF-1.5";
    case PdfVersion::V1_6:
        return "%PDF-1.6";
    case PdfVersion::V1_7:
        return "%PDF-1.7";
    case PdfVersion::V2_0:
        return "%PDF-2.0";
    default:
        return {};
    }
}

class DocumentWriter {
public:
    DocumentWriter(DocumentState& state, Interfaces::Stripe& target) noexcept
        : state_(state), output_(target), serializer_(output_, state) {}

    bool write() {
        const bool written = writeHeader() && writeObjects() && writeXrefAndTrailer();
        // What was produced before a failure belongs into the target, as far as it takes it.
        if (!written) output_.flush();
        return written;
    }

private:
    bool writeHeader();
    bool writeObjects();
    bool writeObject(const ObjectTable::Slot& slot, bool last);
    bool writeXrefAndTrailer();
    bool writeXref();
    bool writeTrailer(std::uint64_t xrefOffset);
    bool writeXrefLine(std::uint64_t offset, std::uint64_t generation, std::string_view kind);

    bool writeLine(std::string_view line);
    /// As `writeLine`, and lets everything go out, so that a fault is told from a later step's.
    bool sendLine(std::string_view line);
    /// Ends the line that began at offset `start`.
    bool endLine(std::uint64_t start);
    /// Of a value, or of the object of a slot.
    template <class Source>
    bool writeValue(const Source& source);
    [[nodiscard]] std::uint64_t entryCount() const noexcept { return offsets_.size() + 1; }

    DocumentState& state_;
    Output output_;
    Serializer serializer_;
    std::vector<std::uint64_t> offsets_; // of the objects
};

bool DocumentWriter::writeLine(std::string_view line) {
    const std::uint64_t start = output_.offset();
    output_.append(line);
    return endLine(start);
}

bool DocumentWriter::sendLine(std::string_view line) {
    if (!writeLine(line)) return false;
    return output_.flush() || refuse("Failed to write string of length ", line.size());
}

bool DocumentWriter::endLine(std::uint64_t start) {
    const std::uint64_t length = output_.offset() - start;
    if (!output_.release()) return refuse("Failed to write string of length ", length);
    if (state_.lineEnding.size() > 2) {
        Host::log(Host::SysLogFilter::global, LogLevel::Error,
                  "ASSERT CONDITION _lineEnding->length() <= 2 FAILED IN LINE ",
                  static_cast<unsigned>(__LINE__), ", FUNCTION ",
                  "Libraries::Files::PDF::DocumentObj::writeLine");
    }
    return output_.append(state_.lineEnding) || refuse("Failed to write line ending");
}

template <class Source>
bool DocumentWriter::writeValue(const Source& source) {
    const std::uint64_t start = output_.offset();
    if (!serializer_.write(source)) return refuse("Failed to convert value to buffer");
    const std::uint64_t size = output_.offset() - start;
    return output_.release() || refuse("Failed to write buffer of size ", size);
}

bool DocumentWriter::writeHeader() {
    const std::string_view header = headerOf(state_.version);
    if (header.empty()) {
        report(LogLevel::Warning, "PDF version can not be converted to string ", state_.version);
        report(LogLevel::Error, "Failed to convert version to string: ", state_.version);
        return fail(VersionNotWritten, "Failed to write PDF version");
    }
    if (!sendLine(header)) return fail(VersionNotWritten, "Failed to write PDF version");
    return true;
}

bool DocumentWriter::writeObjects() {
    const std::vector<ObjectTable::Slot>& slots = state_.objects.slots();
    offsets_.reserve(slots.size());
    for (const ObjectTable::Slot& slot : slots) {
        offsets_.push_back(output_.offset());
        if (!writeObject(slot, &slot == &slots.back())) {
            return fail(ObjectNotWritten, "Failed to write object ", textOf(slot));
        }
    }
    return true;
}

bool DocumentWriter::writeObject(const ObjectTable::Slot& slot, bool last) {
    if (slot.touched() && !slot.touchedValue()) {
        return refuse("Object has no value: ", textOf(slot));
    }
    const std::uint64_t start = output_.offset();
    output_.appendNumber(std::uint64_t{slot.id()});
    output_.append(' ');
    output_.appendNumber(std::uint64_t{slot.generation()});
    output_.append(" obj");
    if (!endLine(start)) return refuse("Failed to write header for object ", textOf(slot));
    if (!writeValue(slot)) return refuse("Failed to write value of object ", textOf(slot));
    if (!writeLine({})) return false;
    if (!(last ? sendLine("endobj") : writeLine("endobj"))) {
        return refuse("Failed to write trailer for object ", textOf(slot));
    }
    return true;
}

bool DocumentWriter::writeXrefAndTrailer() {
    const std::uint64_t xrefOffset = output_.offset();
    if (writeXref() && writeTrailer(xrefOffset)) return true;
    return fail(TrailerNotWritten, "Failed to write trailer");
}

bool DocumentWriter::writeXref() {
    if (!writeLine("xref")) return refuse("Failed to write xref keyword");
    const std::uint64_t start = output_.offset();
    output_.appendNumber(std::uint64_t{state_.xrefFirstId});
    output_.append(' ');
    output_.appendNumber(entryCount());
    if (!endLine(start)) return refuse("Failed to write xref header");
    if (!writeXrefLine(0, 65535, " f")) return refuse("Failed to write initial xref line");
    for (std::size_t index = 0; index < offsets_.size(); ++index) {
        const std::uint16_t generation = state_.objects.slots()[index].generation();
        if (!writeXrefLine(offsets_[index], generation, " n")) {
            return refuse("Failed to write xref line");
        }
    }
    return true;
}

bool DocumentWriter::writeXrefLine(std::uint64_t offset, std::uint64_t generation,
                                   std::string_view kind) {
    // Entries are 20 bytes long (ISO 32000-1, 7.5.4), whatever the line ending.
    const std::string_view separator = state_.lineEnding.size() < 2 ? " " : "";
    const std::uint64_t start = output_.offset();
    output_.appendNumber(offset, 10);
    output_.append(' ');
    output_.appendNumber(generation, 5);
    output_.append(kind);
    output_.append(separator);
    return endLine(start);
}

bool DocumentWriter::writeTrailer(std::uint64_t xrefOffset) {
    if (!writeLine("trailer")) return refuse("Failed to write trailer keyword");
    const Ref<Value> size =
        Host::make<NumberObj>(static_cast<std::int64_t>(entryCount()), std::uint64_t{0});
    if (!size || !state_.trailer || !state_.trailer->set("Size"_str, size)) {
        return refuse("Failed to update trailer dictionary Size entry");
    }
    if (!writeValue(Ref<Value>(state_.trailer)))
        return refuse("Failed to write trailer dictionary");
    output_.append(state_.lineEnding);
    if (!writeLine("startxref")) return refuse("Failed to write startxref keyword");
    const std::uint64_t start = output_.offset();
    output_.appendNumber(xrefOffset);
    if (!endLine(start)) return refuse("Failed to write xref offset");
    if (!sendLine("%%EOF")) return refuse("Failed to write EOF marker");
    return true;
}

/// Whether data of the document would be overwritten before it is read.
bool liesIn(const DocumentState& state, const Interfaces::Stripe& target) {
    if (state.source.get() == &target) return true;
    return std::ranges::any_of(state.objects.slots(), [&](const ObjectTable::Slot& slot) {
        const Ref<Value> value = slot.touchedValue();
        const auto* stream = own<StreamObj>(value);
        return stream != nullptr && stream->strmData().get() == &target;
    });
}

} // namespace

bool writeDocument(DocumentState& state, Interfaces::Stripe& target) {
    if (liesIn(state, target)) {
        return fail(InvalidArgument, "A document cannot be written into what its data lies in");
    }
    return DocumentWriter(state, target).write();
}

} // namespace Libraries::Files::PDF
