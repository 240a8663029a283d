#include "host/char_reader.h"

#include <algorithm>

namespace Host {

bool CharReader::readLine() {
    line_.clear();
    for (;;) {
        const int code = cursor_.next();
        if (code == Cursor::end) return !line_.empty() && !cursor_.failed();
        if (code == '\n') return true;
        if (code == '\r') break;
        line_.push_back(static_cast<char>(code));
        const std::string_view ahead = cursor_.ahead();
        const std::size_t run = std::min(ahead.find_first_of("\r\n"), ahead.size());
        line_.append(ahead, 0, run);
        cursor_.skip(run);
    }
    const int next = cursor_.next();
    if (next != Cursor::end && next != '\n') cursor_.back();
    return !cursor_.failed();
}

} // namespace Host
