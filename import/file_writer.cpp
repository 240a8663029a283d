#include "file_writer.h"

#include "report.h"

#include <pdf/errors.h>

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace Libraries::Files::PDF::Import {

namespace {

/// Ten digits tell where an object begins.
constexpr std::uint64_t lastOffset = 9'999'999'999;

/// Dictionaries of streams that had a filter behind a reference may take this many times the
/// source, and this much at least: what streams share is written for each of them.
constexpr std::uint64_t timesShared = 16;
constexpr std::uint64_t leastShared = std::uint64_t{512} << 10;

/// A version as one number, 1.4 as 14; 0 where the text is none.
int versionOf(std::string_view text) noexcept {
    int major = 0;
    int minor = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, major);
    if (parsed.ec != std::errc{} || parsed.ptr == end || *parsed.ptr != '.') return 0;
    if (std::from_chars(parsed.ptr + 1, end, minor).ec != std::errc{}) return 0;
    return std::clamp(major, 0, 9) * 10 + std::clamp(minor, 0, 9);
}

/// The later one of what header and catalog say (7.5.2, 7.7.2): of the versions that there are the
/// one that is nearest.
std::string_view versionText(QPDF& document) {
    static constexpr std::string_view texts[] = {"1.0", "1.1", "1.2", "1.3",
                                                 "1.4", "1.5", "1.6", "1.7"};
    int version = versionOf(document.getPDFVersion());
    QPDFObjectHandle later = document.getRoot().getKey("/Version");
    if (later.isName()) version = std::max(version, versionOf(later.getName().substr(1)));
    return version >= 20 ? "2.0" : texts[std::clamp(version - 10, 0, 7)];
}

/// What a trailer may hold that says how the former file was stored (7.5.5, 7.5.8).
constexpr const char* storageKeys[] = {"/DecodeParms", "/Encrypt", "/Filter", "/Index", "/Length",
                                       "/Prev",        "/Size",    "/Type",   "/W",     "/XRefStm"};

} // namespace

FileWriter::FileWriter(QPDF& document, Source& source, Output& output, const Options& options)
    : document_(document),
      source_(source),
      output_(output),
      streamData_(source, options),
      values_(numbering_),
      repairs_(document),
      shared_(timesShared * std::min(source.size(), UINT64_MAX / 64) + leastShared) {}

void FileWriter::write() {
    writeHeader();
    numberTrailer();
    for (std::uint32_t number = 1; number <= numbering_.count(); ++number) {
        writeObject(number);
        repairs_.report();
    }
    writeTable();
    output_.flush();
    repairs_.finish();
}

void FileWriter::writeHeader() {
    output_.append("%PDF-");
    output_.append(versionText(document_));
    // Four bytes that tell programs which move files that this is no text (7.5.2).
    output_.append("\n%\xE2\xE3\xCF\xD3\n");
}

void FileWriter::numberTrailer() {
    trailer_ = document_.getTrailer().getDictAsMap();
    for (const char* key : storageKeys)
        trailer_.erase(key);
    static_cast<void>(numbering_.of(trailer_.at("/Root")));
    values_.appendTrailer(text_, trailer_);
}

void FileWriter::writeObject(std::uint32_t number) {
    offsets_.push_back(output_.offset());
    text_ = std::to_string(number) + " 0 obj\n";
    QPDFObjectHandle object = numbering_.object(number);
    if (object.isStream()) {
        writeStream(object);
    } else {
        values_.append(text_, object);
    }
    text_ += "\nendobj\n";
    source_.check();
    output_.append(text_);
}

void FileWriter::writeStream(QPDFObjectHandle& stream) {
    Entries entries = stream.getDict().getDictAsMap();
    const auto data = streamData_.read(stream, entries);
    entries["/Length"] = QPDFObjectHandle::newInteger(static_cast<long long>(data.size()));
    values_.append(text_, std::move(entries));
    if (streamData_.inlined()) {
        if (text_.size() > shared_) fail(LimitExceeded, "streams share too large filters");
        shared_ -= text_.size();
    }
    text_ += "\nstream\n";
    output_.append(text_);
    output_.append(data);
    text_ = "\nendstream";
}

void FileWriter::writeTable() {
    const std::uint64_t start = output_.offset();
    if (start > lastOffset) fail(OutOfRange, "the document is too large for a table");
    const std::uint64_t size = offsets_.size() + 1;
    output_.append("xref\n0 " + std::to_string(size) + "\n0000000000 65535 f \n");
    for (const std::uint64_t offset : offsets_) {
        char line[32];
        const int length = std::snprintf(line, sizeof(line), "%010llu 00000 n \n",
                                         static_cast<unsigned long long>(offset));
        output_.append(std::string_view(line, static_cast<std::size_t>(length)));
    }
    trailer_["/Size"] = QPDFObjectHandle::newInteger(static_cast<long long>(size));
    text_ = "trailer\n";
    values_.appendTrailer(text_, trailer_);
    text_ += "\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
    output_.append(text_);
}

} // namespace Libraries::Files::PDF::Import
