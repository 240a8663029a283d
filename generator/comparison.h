#pragma once

#include <string>

namespace Generator {

/// What opening a file of any structure gives, beside what the import makes of it.
enum class Comparison {
    Same,    ///< written and imported it is the file imported, byte for byte
    Refused, ///< it does not open
    AsMuch,  ///< libqpdf repaired the file, and it has as many objects as that gave
    Less,    ///< libqpdf repaired the file, and found more
    Other    ///< libqpdf found the file sound, or nothing in it, and it is something else
};

struct Compared {
    Comparison comparison = Comparison::Same;
    bool isImported = false;
    bool isSound = false; ///< libqpdf had nothing to say
    std::string refusal;  ///< code and first message
};

[[nodiscard]] Compared compareWithImport(const std::string& file);

} // namespace Generator
