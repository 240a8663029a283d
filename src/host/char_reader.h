#pragma once

#include "host/cursor.h"

#include <string>
#include <string_view>

namespace Host {

/// Reads lines through a cursor. A line ends at LF, CR or CR LF; the last one may lack an ending.
class CharReader {
public:
    explicit CharReader(Cursor& cursor) noexcept : cursor_(cursor) {}

    /// Reads the next line without its ending and leaves the cursor just behind the ending. False
    /// at the end of the data and for a fault of the cursor.
    [[nodiscard]] bool readLine();

    /// The line last read.
    [[nodiscard]] std::string_view line() const noexcept { return line_; }

private:
    Cursor& cursor_;
    std::string line_;
};

} // namespace Host
