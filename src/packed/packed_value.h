#pragma once

#include <pdf/values.h>

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF {

/// A value in its packed spelling, which lies in a store or with the packer that made it.
///
/// The packed spelling of a value is what the serializer writes for it: keys ascend and differ,
/// single spaces stand between tokens, a reference is "7 0 R". So an object that nobody touches is
/// written by copying its bytes. What the written form alone does not say is said in two ways,
/// neither of which a canonical form can hold:
///
///   \t spelling \n number    a number that is written otherwise than it was read: "\t+1.05\n1.5"
///   \400 to \777             a character of a text that no octal escape of a byte stands for
///
/// A tabulator or a line feed inside a string is escaped, so that these are what they seem wherever
/// they stand. A backslash inside a string is "\\", which our own reader does not take for one:
/// that is why unpacking is not reading. Of a stream the packed spelling is that of its dictionary.
struct PackedValue {
    std::string_view bytes;
    Value::Type kind = Value::Type::Invalid;
    /// Some number has a spelling of its own.
    bool spelled = false;
    /// The written form is not all that there is to say, or there is none: it takes the value.
    bool unwritable = false;
    /// Of a stream: where its data begins in the file.
    std::uint64_t streamOffset = Stream::noOffset;
};

} // namespace Libraries::Files::PDF
