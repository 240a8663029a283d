#include "structures/indirect_objects.h"

#include "structures/flaw.h"

#include <algorithm>
#include <limits>

namespace Libraries::Files::PDF {

namespace {

/// How many times the source's size may be read as objects. A sound file is read once.
constexpr std::uint64_t longestReading = 8;
constexpr std::uint64_t smallSource = std::uint64_t{1} << 20;

} // namespace

IndirectObjects::IndirectObjects(Host::Cursor& cursor, ValueScanner& scanner) noexcept
    : cursor_(cursor),
      scanner_(scanner),
      tokens_(cursor),
      left_(
          std::min(cursor.size(), std::numeric_limits<std::uint64_t>::max() / longestReading / 2) *
              longestReading +
          smallSource),
      dataLeft_(left_) {}

void IndirectObjects::seek(std::uint64_t offset) {
    if (offset >= cursor_.size() - header_) damaged(header_, "an offset leads out of the file");
    cursor_.seek(header_ + offset);
    start_ = cursor_.position();
}

void IndirectObjects::charge() {
    const std::uint64_t end = cursor_.position();
    if (cursor_.failed()) throw Flaw{SourceNotRead, end, "the source cannot be read"};
    const std::uint64_t read = end - std::min(start_, end);
    if (read > left_) throw Flaw{LimitExceeded, end, "objects lie inside each other"};
    left_ -= read;
    start_ = end;
}

IndirectObjects::Head IndirectObjects::readHead() {
    Head head{};
    head.number = tokens_.number("an object's number was expected");
    head.generation = tokens_.number("an object's generation was expected");
    tokens_.keyword("obj", "\"obj\" was expected");
    return head;
}

PackedValue IndirectObjects::readValue() {
    PackedValue value = scanner_.read(cursor_);
    const std::string_view word = tokens_.word();
    if (word == "stream" && value.kind == Value::Type::Dictionary) {
        beginData();
        value.kind = Value::Type::Stream;
        value.streamOffset = cursor_.position();
    } else {
        checkObjectEnd(word);
    }
    charge();
    return value;
}

PackedValue IndirectObjects::readDictionary() {
    const std::uint64_t offset = tokens_.skipSpace();
    const PackedValue value = scanner_.read(cursor_);
    if (value.kind != Value::Type::Dictionary) damaged(offset, "a dictionary was expected");
    charge();
    return value;
}

/// Behind "stream" stands LF or CR LF (ISO 32000-1, 7.3.8.1).
void IndirectObjects::beginData() {
    const std::uint64_t offset = cursor_.position();
    int code = cursor_.next();
    if (code == '\r') code = cursor_.next();
    if (code != '\n') damaged(offset, "no line ending stands behind \"stream\"");
}

void IndirectObjects::checkEnd(std::uint64_t data, std::uint64_t length) {
    if (length > cursor_.size() - data) damaged(data, "the stream is longer than the file");
    if (length > dataLeft_) throw Flaw{LimitExceeded, data, "streams lie inside each other"};
    dataLeft_ -= length;
    cursor_.seek(data + length);
    start_ = cursor_.position();
    tokens_.keyword("endstream", "the stream does not end where its length says");
    checkObjectEnd(tokens_.word());
    charge();
}

/// "endobj", which may be missing where another part of the file begins, or the file ends.
void IndirectObjects::checkObjectEnd(std::string_view word) {
    constexpr const char* expected = "\"endobj\" was expected";
    if (word == "endobj") return;
    const std::uint64_t offset = tokens_.wordOffset();
    const bool ends = word.empty() && cursor_.next() == Host::Cursor::end;
    if (ends || word == "xref" || word == "startxref" || word == "trailer") return;
    if (!wholeNumber(word) || !wholeNumber(tokens_.word()) || tokens_.word() != "obj") {
        damaged(offset, expected);
    }
}

} // namespace Libraries::Files::PDF
