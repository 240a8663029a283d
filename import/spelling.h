#pragma once

#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Import {

/// Spells scalars so that `Document::create` reads them as what they are, and others do as well.
namespace Spelling {

/// A name as libqpdf has it: with its solidus, nothing encoded. Whatever is not plain ASCII is
/// written with a number sign (ISO 32000-1, 7.3.5).
void appendName(std::string& text, std::string_view name);

/// A literal string where that keeps every byte and stays text; a hexadecimal one for everything
/// else: Unicode behind its byte-order mark, backslashes, binary data.
void appendString(std::string& text, std::string_view bytes);

/// A hexadecimal string, whatever the bytes are.
void appendHexString(std::string& text, std::string_view bytes);

/// A real number as it was spelled, as far as its parts fit into 64 bits: of a longer fraction the
/// first 19 digits are kept, and a greater number becomes the greatest.
void appendReal(std::string& text, std::string_view real);

} // namespace Spelling

} // namespace Libraries::Files::PDF::Import
