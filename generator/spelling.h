#pragma once

#include "generator/random.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Generator {

/// Spells values in all the ways that ISO 32000-1 allows.
class Spelling {
public:
    using Tokens = std::vector<std::string>;
    using Entries = std::vector<std::pair<std::string, std::string>>;

    /// `wild`: white space and comments of all kinds instead of single spaces.
    Spelling(Random& random, bool wild) : random_(random), wild_(wild) {}

    /// One white space at least, perhaps with comments; also two tokens apart.
    std::string blank();
    /// The tokens, apart where they must be.
    std::string join(const Tokens& tokens);
    std::string array(const Tokens& items);
    /// A dictionary of keys, with their slash, and values.
    std::string dictionary(const Entries& entries);

    std::string number();
    std::string string();
    std::string name();
    /// Any value. `references` are taken as they are.
    std::string value(unsigned depth, const Tokens& references);
    /// An array or a dictionary.
    std::string container(unsigned depth, const Tokens& references);

private:
    std::string literal();
    std::string literalPiece();
    std::string hexadecimal();
    Random& random_;
    bool wild_;
};

} // namespace Generator
