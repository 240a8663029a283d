#pragma once

#include "generator/random.h"
#include "generator/spelling.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Generator {

/// An object as one revision has it.
struct GeneratedObject {
    std::uint16_t generation = 0;
    std::string value; ///< all of it; of a stream everything from its dictionary to `endstream`
    /// Whether it may not lie in an object stream (ISO 32000-1, 7.5.7).
    bool outside = false;
};

/// What changes in one revision.
struct GeneratedRevision {
    std::map<std::uint32_t, GeneratedObject> objects;
    std::map<std::uint32_t, std::uint16_t> freed; ///< with the generation of the next use
    std::vector<std::uint32_t> spare;             ///< numbers for what stores the others
    std::string root;                             ///< the catalog: a reference, or itself
    std::string info;                             ///< a reference; may be empty
};

/// Pages that draw something, and values of all kinds, in several revisions.
class GeneratedDocument {
public:
    GeneratedDocument(Random& random, bool wild);

    [[nodiscard]] const std::vector<GeneratedRevision>& revisions() const { return revisions_; }

private:
    using Tokens = Spelling::Tokens;
    using Entries = Spelling::Entries;

    std::uint32_t take();
    std::string reference(std::uint32_t id);
    std::string put(std::uint32_t id, std::string value);
    /// The same of an object that must stand outside of object streams.
    std::string putOutside(std::uint32_t id, std::string value);
    /// The value, or a reference to a new object with it.
    std::string maybeBehind(std::string value, unsigned percent);
    std::string stream(Entries entries, const std::string& data);

    void begin();
    void change();
    void putCatalog();
    std::string putNode(const std::string& parent, unsigned depth);
    std::string putPage(const std::string& parent);
    std::string contents();
    std::string resources();
    std::string image();
    void putData(std::uint32_t id);
    void name(std::uint32_t id);
    std::string deepArray();

    Random& random_;
    Spelling spelling_;
    bool isDirect_; // catalog, page root and pages need not be objects
    bool shuffled_;
    unsigned gaps_; // in a hundred
    std::uint32_t next_ = 1;
    std::vector<std::uint32_t> numbers_; // those to be taken next, the last one first
    std::map<std::uint32_t, std::uint16_t> generations_;
    std::set<std::uint32_t> data_, free_, named_;
    Tokens references_; // to named data, to nothing, and to what stores other objects
    std::uint32_t catalog_ = 0, info_ = 0, list_ = 0; // 0: there is none
    std::string tree_;                                // its root: a reference, or itself
    std::vector<std::uint32_t> drawings_;
    std::size_t pages_ = 0;
    std::vector<GeneratedRevision> revisions_;
};

} // namespace Generator
