#pragma once

#include "decoder.h"
#include "libqpdf.h"
#include "scan.h"
#include "source.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Import {

/// What a document's own structure takes once it is decoded, found out before libqpdf keeps all of
/// it in memory: a few bytes of a cross-reference or object stream (ISO 32000-1, 7.5.7 and 7.5.8)
/// may stand for gigabytes, and each value takes libqpdf some hundred bytes. Whatever goes beyond
/// the limits, or could make libqpdf read the same thing again and again, throws `Failed`.
class Expansion {
public:
    /// How much all of them together may hold.
    struct Limits {
        std::uint64_t bytes;   ///< of what each filter gives
        std::uint64_t entries; ///< of cross-reference streams
        std::uint64_t values;  ///< in object streams
    };

    Expansion(std::shared_ptr<Source> source, const Limits& limits);

    /// To be called before libqpdf opens the source. Looks at every dictionary in the file that may
    /// be one of a cross-reference stream: which of them libqpdf reads is up to the document.
    void measureXrefStreams();

    /// To be called before an object of the opened document is asked for.
    void measureObjectStreams(QPDF& document);

private:
    using Entries = std::map<QPDFObjGen, QPDFXRefEntry>;

    [[nodiscard]] std::string slice(std::uint64_t start, std::uint64_t end);
    [[nodiscard]] bool mentionsXref();
    void measureXrefStream(std::uint64_t start);
    [[nodiscard]] bool measureAlone(std::uint64_t start, std::uint64_t end);
    void countRepeated();
    void checkReferences(const Entries& entries, const QPDFXRefEntry& stream);
    void measureObjectStream(QPDFObjectHandle stream);
    std::uint64_t decode(QPDFObjectHandle& stream, Pipeline* next);

    std::shared_ptr<Source> source_;
    Limits left_;
    Limits largest_ = {};      // of one cross-reference stream
    std::uint64_t header_ = 0; // where the document's offsets are counted from
    std::uint64_t scanned_;    // how much more of the source may be looked at for such
    Decoder decoder_;
};

} // namespace Libraries::Files::PDF::Import
