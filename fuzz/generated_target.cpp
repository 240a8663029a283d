// What holds for every document, over generated ones: loaded values are the written ones, writing
// is stable, and recompressing keeps the data or everything. Each four bytes of input are the seed
// of one document of values and one of streams.

#include "host/windows_1252.h"
#include "support/document_builder.h"
#include "target.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/scalars.h"

#include <algorithm>
#include <cstring>
#include <random>

using namespace Libraries::Files::PDF;

namespace {

using Fuzzing::claim;
using Libraries::Strings::Encodings::ANSI::Windows_1252;
using Support::DocumentBuilder;

/// A value and one of the ways to spell it.
struct Spelt {
    std::string text;
    Ref<Value> value;
};

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }
    std::string blank() {
        constexpr std::string_view blanks[] = {" ", "\n", "\r", "\t", "  ", " % note\n", "\r\n"};
        return std::string(blanks[below(std::size(blanks))]);
    }
    std::string bytes(std::size_t size) {
        std::string result(size, '\0');
        const std::size_t variety = below(2) == 0 ? 256 : 3;
        for (char& byte : result)
            byte = static_cast<char>(below(variety));
        return result;
    }

    /// A value that may stand anywhere (`nested`), or as an object.
    Spelt value(unsigned depth, bool nested) {
        // What may stand anywhere, what only in a list, and what leads a level down.
        const std::size_t kind = below(depth == 0 ? 7 : 9);
        if (kind == 0) return text();
        if (kind == 1) return hexadecimal();
        if (kind == 2) return name();
        if (kind == 3) return {"true", makeOrThrow<BooleanObj>(true)};
        if (kind == 4 && nested) return {"null", makeOrThrow<NullObj>()};
        if (kind == 5 && nested) return reference();
        if (kind == 7) return array(depth);
        return kind == 8 ? dictionary(depth) : number();
    }

private:
    Spelt number() {
        const auto integer = static_cast<std::int64_t>(below(100000)) - 50000;
        const std::uint64_t fraction = below(3) == 0 ? below(1000) : 0;
        std::string spelt = integer >= 0 && below(4) == 0 ? "+0" : "";
        spelt += std::to_string(integer);
        if (fraction != 0 || below(4) == 0) spelt += "." + std::to_string(fraction);
        return {spelt, makeOrThrow<NumberObj>(integer, fraction)};
    }

    // No backslash: a rewrite does not keep it.
    Spelt text() {
        Host::StringBuilder builder;
        std::string spelt = "(";
        for (std::size_t left = below(12); left > 0; --left) {
            const std::size_t code = below(256);
            const auto digit = [](std::size_t number) { return static_cast<char>('0' + number); };
            const auto character = static_cast<char>(code);
            if (character == '\\') continue;
            builder.append(Windows_1252::toUnicode(static_cast<char32_t>(code)));
            if (below(2) == 0 || std::string_view("()\r\n").find(character) < 4) {
                spelt += {'\\', digit(code / 64), digit(code / 8 % 8), digit(code % 8)};
            } else {
                spelt += character;
            }
            if (below(8) == 0) spelt += "\\\r\n";
        }
        return {spelt + ")", makeOrThrow<StringObj>(builder.build())};
    }

    Spelt hexadecimal() {
        std::vector<unsigned char> codes;
        std::string spelt = "<";
        for (char byte : bytes(below(6))) {
            codes.push_back(static_cast<unsigned char>(byte));
            spelt += {"0123456789abcdef"[codes.back() / 16], "0123456789ABCDEF"[codes.back() % 16]};
            if (below(4) == 0) spelt += ' ';
        }
        return {spelt + ">", String::create(Host::TConstArray<unsigned char>::create(codes))};
    }

    Spelt name() {
        std::string characters = "N";
        for (std::size_t left = below(4); left > 0; --left)
            characters += "ABab09#._-\xE9\x80"[below(12)];
        const auto* codes = reinterpret_cast<const std::uint8_t*>(characters.data());
        return {"/" + characters,
                Name::create(Host::String::create(std::span(codes, characters.size())))};
    }

    Spelt reference() {
        const auto id = static_cast<std::uint32_t>(below(1000));
        const auto generation = static_cast<std::uint16_t>(below(3));
        return {std::to_string(id) + blank() + std::to_string(generation) + " R",
                makeOrThrow<ObjectRefObj>(id, generation)};
    }

    Spelt array(unsigned depth) {
        const auto array = makeOrThrow<ArrayObj>();
        std::string spelt = "[";
        for (std::size_t left = below(5); left > 0; --left) {
            const Spelt element = value(depth - 1, true);
            spelt += blank() + element.text;
            array->add(element.value);
        }
        return {spelt + blank() + "]", array};
    }

    Spelt dictionary(unsigned depth) {
        const auto dict = makeOrThrow<DictionaryObj>();
        std::string spelt = "<<";
        for (std::size_t left = below(5); left > 0; --left) {
            const Spelt key = name();
            const Spelt entry = value(depth - 1, true);
            spelt += blank() + key.text + blank() + entry.text;
            dict->set(Host::cast<Name>(key.value)->name(), entry.value);
        }
        return {spelt + blank() + ">>", dict};
    }

    std::mt19937 random_;
};

void checkValues(unsigned seed) {
    Generator generator(seed);
    DocumentBuilder builder;
    constexpr std::string_view lineEndings[] = {"\n", "\r", "\r\n"};
    builder.lineEnding(lineEndings[seed % 3]);
    std::vector<Spelt> values;
    for (std::size_t count = 1 + generator.below(5); values.size() < count;) {
        values.push_back(generator.value(4, false));
        builder.object(static_cast<std::uint32_t>(values.size()), values.back().text);
    }
    std::string bytes = builder.bytes();
    std::string former;
    for (int round = 0; round < 2; ++round) {
        const auto document = Support::open(bytes);
        claim(document != nullptr, "a generated document opens, and so does its rewrite");
        for (std::uint32_t id = 1; id <= values.size(); ++id) {
            const Ref<Value> loaded = Support::valueOf(*document, id);
            claim(loaded && loaded->equal(values[id - 1].value), "values are as they were spelt");
        }
        former = std::exchange(bytes, Support::write(*document));
    }
    claim(bytes == former, "the second writing gives the bytes of the first");
}

std::vector<std::string> decodedStreams(const std::string& bytes, std::size_t count) {
    std::vector<std::string> all;
    const auto document = Support::open(bytes);
    for (std::uint32_t id = 1; document && id <= count; ++id) {
        all.push_back(
            Support::contentsOf(document->readStreamData(Support::streamOf(*document, id), true)));
    }
    return all;
}

void checkRecompressing(unsigned seed) {
    Generator generator(seed);
    DocumentBuilder builder;
    std::vector<std::string> data;
    for (std::size_t count = 1 + generator.below(4); data.size() < count;) {
        data.push_back(generator.bytes(generator.below(2000)));
        const bool flate = generator.below(2) == 0;
        builder.stream(static_cast<std::uint32_t>(data.size()),
                       flate ? "/Filter /FlateDecode " : "",
                       flate ? Support::deflated(data.back()) : data.back());
    }
    const bool corrupt = generator.below(4) == 0;
    const auto broken = static_cast<std::uint32_t>(data.size() + 1);
    if (corrupt) builder.stream(broken, "/Filter /FlateDecode ", "no zlib data");
    const auto document = Support::open(builder.bytes());
    std::string former = Support::write(*document);
    bool changed = false;
    for (const Compression target :
         {Compression::FlateDecode, Compression::None, Compression::FlateDecode}) {
        const bool done = document->setCompression(target);
        const std::string written = Support::write(*document);
        if (done) {
            claim(decodedStreams(written, data.size()) == data, "the data is kept");
        } else {
            claim(corrupt && document->changed() == changed && written == former,
                  "only bad data makes it fail, and then nothing changes");
        }
        former = written;
        changed = document->changed();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    for (; size >= sizeof(std::uint32_t); size -= sizeof(std::uint32_t)) {
        std::uint32_t seed = 0;
        std::memcpy(&seed, data, sizeof(seed));
        data += sizeof(seed);
        checkValues(seed);
        checkRecompressing(seed);
    }
    return 0;
}
