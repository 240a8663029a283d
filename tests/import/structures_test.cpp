#include "generator/comparison.h"
#include "generator/damage.h"
#include "generator/generated_file.h"
#include "support/documents.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

using Generator::Compared;
using Generator::compareWithImport;
using Generator::Comparison;

constexpr std::uint32_t seeds = 200;

/// scripts/check-structures takes more of them.
TEST(Structures, BecomeWhatTheImportMakesOfThem) {
    // Behind them some that the import once took wrongly, for bytes in front of the header.
    std::vector<std::uint32_t> sound(seeds);
    std::iota(sound.begin(), sound.end(), 1U);
    sound.insert(sound.end(), {362, 383, 555});
    for (const std::uint32_t seed : sound) {
        const Compared compared = compareWithImport(Generator::generatedFile(seed));
        EXPECT_EQ(compared.comparison, Comparison::Same) << seed << ": " << compared.refusal;
        EXPECT_TRUE(compared.isImported) << "seed " << seed;
    }
}

/// The seeds are more than the others' so that some hit what holds a file together.
TEST(Structures, LackNothingWhereTheyAreDamaged) {
    std::size_t opened = 0, refused = 0;
    const auto look = [&](const std::string& name, const std::string& file) {
        const Comparison comparison = compareWithImport(file).comparison;
        EXPECT_NE(comparison, Comparison::Less) << name;
        EXPECT_NE(comparison, Comparison::Other) << name;
        ++(comparison == Comparison::Refused ? refused : opened);
    };
    const std::string modern = Support::sample("modern/object-streams.pdf");
    for (std::uint32_t seed = 1; seed <= seeds; ++seed) {
        look("damaged " + std::to_string(seed), Generator::damagedFile(seed));
        look("mutant " + std::to_string(seed), Generator::mutated(modern, seed));
    }
    EXPECT_GT(opened, seeds / 10);
    EXPECT_GT(refused, seeds / 10);
}

} // namespace
