#include "generator/damage.h"

#include <algorithm>

namespace Generator {

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// The places behind words that lead to the structure, and those of all digits.
std::vector<std::size_t> sorePlaces(const std::string& file) {
    std::vector<std::size_t> places;
    for (const char* word :
         {"startxref", "xref",      "trailer", "/Prev",   "/XRefStm", "/Index",   "/W",
          "/Size",     "/First",    "/N ",     "/Length", "/Type",    "/Columns", "/Predictor",
          " obj",      "endstream", "stream",  "/Root",   "/Pages",   "/Kids"}) {
        for (std::size_t at = file.find(word); at != std::string::npos;
             at = file.find(word, at + 1)) {
            for (std::size_t behind = 0; behind < 3; ++behind)
                places.push_back(
                    std::min(at + std::string_view(word).size() + behind, file.size() - 1));
            places.push_back(at);
        }
    }
    return places;
}

void mutate(std::string& file, std::size_t at, Random& random) {
    switch (random.below(8)) {
    case 0:
        file.erase(at, random.between(1, 4));
        break;
    case 1:
        file.insert(at, file.substr(at, random.between(1, 30)));
        break;
    case 2:
        file.insert(at, 1, static_cast<char>(random.below(256)));
        break;
    case 3:
        file[at] = static_cast<char>(random.below(256));
        break;
    case 4:
        if (random.chance(20)) file.resize(at);
        break;
    case 5:
        std::swap(file[at], file[std::min(at + 1, file.size() - 1)]);
        break;
    default: // numbers are what most of the structure is
        at = std::min(file.find_first_of("0123456789", at), file.size() - 1);
        if (isDigit(file[at])) file[at] = static_cast<char>('0' + random.below(10));
    }
}

} // namespace

bool Damage::due(unsigned percent) {
    if (done_ || !random_.chance(percent)) return false;
    return done_ = true;
}

std::uint64_t Damage::otherNumber(std::uint64_t number) {
    const std::uint64_t others[] = {0,
                                    1,
                                    number + 1,
                                    number - 1,
                                    number / 2,
                                    number * 2,
                                    number + random_.below(1000),
                                    65535,
                                    4294967296,
                                    9999999999,
                                    18446744073709551615U};
    return others[random_.below(std::size(others))];
}

void Damage::spoil(CrossReferences& entries) {
    if (entries.size() < 2 || !due(20)) return;
    auto entry =
        std::next(entries.begin(), static_cast<std::ptrdiff_t>(random_.below(entries.size())));
    const auto other =
        std::next(entries.begin(), static_cast<std::ptrdiff_t>(random_.below(entries.size())));
    switch (random_.below(6)) {
    case 0:
        entries.erase(entry);
        break;
    case 1:
        std::swap(entry->second, other->second);
        break;
    case 2:
        entry->second.kind = random_.below(5);
        break;
    case 3:
        entry->second.part = otherNumber(entry->second.part) % 100000;
        break;
    default:
        entry->second.place = otherNumber(entry->second.place) % 10000000000;
        break;
    }
}

void Damage::spoil(Spelling::Entries& entries) {
    if (!due(20)) return;
    auto& [key, value] = entries[random_.below(entries.size())];
    if (random_.chance(10)) {
        key += "X";
    } else {
        value = spoilt(value);
    }
}

std::string Damage::spoilt(const std::string& value) {
    static constexpr std::string_view others[] = {
        "null",     "(text)",         "[]",      "/Name",   "<<>>", "-1", "1.5", "99999 0 R",
        "[-1 2 1]", "[1 4294967295]", "[1 9 1]", "[0 0 0]", "[1 2]"};
    const std::size_t digit = value.find_first_of("0123456789");
    if (digit == std::string::npos || random_.chance(25)) return std::string(random_.oneOf(others));
    std::vector<std::size_t> starts;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (isDigit(value[at]) && (at == 0 || !isDigit(value[at - 1]))) starts.push_back(at);
    }
    const std::size_t start = random_.oneOf(starts);
    const std::size_t end = std::min(value.find_first_not_of("0123456789", start), value.size());
    const std::string number = value.substr(start, std::min<std::size_t>(end - start, 18));
    return value.substr(0, start) + std::to_string(otherNumber(std::stoull(number))) +
           value.substr(end);
}

void Damage::spoil(std::string& bytes) {
    if (bytes.empty() || !due(20)) return;
    if (random_.chance(30)) {
        bytes.resize(random_.below(bytes.size()));
    } else {
        mutate(bytes, random_.below(bytes.size()), random_);
    }
}

std::string mutated(std::string file, std::uint32_t seed) {
    Random random(seed);
    const std::vector<std::size_t> places = sorePlaces(file);
    for (std::size_t left = random.chance(70) ? 1 : random.between(2, 6); left > 0 && !file.empty();
         --left) {
        const bool anywhere = places.empty() || random.chance(20);
        const std::size_t at = anywhere ? random.below(file.size()) : random.oneOf(places);
        mutate(file, std::min(at, file.size() - 1), random);
    }
    return file;
}

} // namespace Generator
