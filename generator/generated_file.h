#pragma once

#include <cstdint>
#include <string>

namespace Generator {

/// A sound PDF file of any structure, the same for the same seed: object streams and
/// cross-reference streams of all widths and predictors, tables of several subsections, both in one
/// file, revisions that change, free and take numbers again, a section in front of the objects, and
/// every spelling that ISO 32000-1 allows. Its pages draw something.
[[nodiscard]] std::string generatedFile(std::uint32_t seed);

/// The same file where one thing in its structure is wrong, if it has what goes wrong: an offset, a
/// width, a count, the place of a section.
[[nodiscard]] std::string damagedFile(std::uint32_t seed);

} // namespace Generator
