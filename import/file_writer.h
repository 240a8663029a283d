#pragma once

#include "libqpdf.h"
#include "opening.h"
#include "output.h"
#include "stream_data.h"
#include "value_writer.h"

#include <pdf/import.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Libraries::Files::PDF::Import {

/// Writes a document as a file that the library reads: one object after the other, each as soon as
/// it is known what it is, so that one at a time is in memory.
class FileWriter {
public:
    FileWriter(QPDF& document, Source& source, Output& output, const Options& options);

    void write();

private:
    void numberTrailer();
    void writeHeader();
    void writeObject(std::uint32_t number);
    void writeStream(QPDFObjectHandle& stream);
    void writeTable();

    QPDF& document_;
    Source& source_;
    Output& output_;
    StreamData streamData_;
    Numbering numbering_;
    ValueWriter values_;
    Repairs repairs_;
    Entries trailer_;
    std::uint64_t shared_; // how much more may be written of what streams share
    std::vector<std::uint64_t> offsets_;
    std::string text_;
};

} // namespace Libraries::Files::PDF::Import
