// usage: check-structures generate FOLDER FIRST LAST
//        check-structures rewrite FILE TARGET
//        check-structures seeds FIRST LAST
//        check-structures damaged FIRST LAST
//        check-structures files FILE...
//        check-structures mutants COUNT FILE...
//
// For maintainers: holds what opening files of any structure gives against libqpdf. A sound file
// becomes the same as by the import; one that is damaged has every object that libqpdf finds, or is
// refused. A line for each file where that is not so; exit 1 where there is one. `generate` and
// `rewrite` write files for other programs to look at.

#include "generator/comparison.h"
#include "generator/damage.h"
#include "generator/generated_file.h"
#include "support/documents.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <span>
#include <string>

namespace {

using namespace Libraries::Files::PDF;
using Generator::Compared;
using Generator::compareWithImport;
using Generator::Comparison;

/// What is known of a file: `Any` may be sound, and libqpdf knows.
enum class Known { Sound, Any, Damaged };

class Check {
public:
    void look(const std::string& name, const std::string& file, Known known);
    /// Tells what there was; gives the exit status.
    [[nodiscard]] int end();

private:
    void bad(const std::string& name, const std::string& what);

    std::map<Comparison, std::size_t> counts_;
    std::size_t bad_ = 0;
};

void Check::look(const std::string& name, const std::string& file, Known known) {
    const Compared compared = compareWithImport(file);
    const bool isSound = known == Known::Sound || (known == Known::Any && compared.isSound);
    if (known == Known::Sound && !compared.isImported) bad(name, "is not imported");
    ++counts_[compared.comparison];
    switch (compared.comparison) {
    case Comparison::Refused:
        if (isSound) bad(name, "is refused with " + compared.refusal);
        break;
    case Comparison::Less:
        bad(name, "misses what libqpdf finds");
        break;
    case Comparison::Other:
        bad(name, "becomes something else");
        break;
    case Comparison::AsMuch:
        if (isSound) bad(name, "becomes something else");
        break;
    case Comparison::Same:
        break;
    }
}

void Check::bad(const std::string& name, const std::string& what) {
    ++bad_;
    std::printf("%s %s\n", name.c_str(), what.c_str());
}

int Check::end() {
    std::printf(
        "%zu the same, %zu refused, %zu with as much as libqpdf finds by a repair, %zu wrong\n",
        counts_[Comparison::Same], counts_[Comparison::Refused], counts_[Comparison::AsMuch], bad_);
    return bad_ == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

std::string read(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

void eachSeed(std::span<char*> range, const std::function<void(std::uint32_t)>& use) {
    const auto last = static_cast<std::uint32_t>(std::strtoul(range[1], nullptr, 10));
    for (auto seed = static_cast<std::uint32_t>(std::strtoul(range[0], nullptr, 10)); seed <= last;
         ++seed)
        use(seed);
}

int generate(std::span<char*> arguments) {
    eachSeed(arguments.subspan(1), [&](std::uint32_t seed) {
        const std::string name = "seed-" + std::to_string(seed) + ".pdf";
        write(std::filesystem::path(arguments[0]) / name, Generator::generatedFile(seed));
    });
    return EXIT_SUCCESS;
}

int rewrite(std::span<char*> arguments) {
    const auto document = Document::create(Support::stripeOf(read(arguments[0])), Structure::Any);
    if (!document) return EXIT_FAILURE;
    write(arguments[1], Support::write(*document));
    return EXIT_SUCCESS;
}

int checkSeeds(std::span<char*> range) {
    Check check;
    eachSeed(range, [&](std::uint32_t seed) {
        check.look("seed " + std::to_string(seed), Generator::generatedFile(seed), Known::Sound);
    });
    return check.end();
}

int checkDamaged(std::span<char*> range) {
    Check check;
    eachSeed(range, [&](std::uint32_t seed) {
        check.look("damaged " + std::to_string(seed), Generator::damagedFile(seed), Known::Damaged);
    });
    return check.end();
}

int checkFiles(std::span<char*> paths) {
    Check check;
    for (const char* path : paths)
        check.look(path, read(path), Known::Any);
    return check.end();
}

int checkMutants(std::span<char*> arguments) {
    Check check;
    const auto count = static_cast<std::uint32_t>(std::strtoul(arguments[0], nullptr, 10));
    for (const char* path : arguments.subspan(1)) {
        const std::string file = read(path);
        for (std::uint32_t seed = 0; seed < count; ++seed) {
            const std::string name = path + (" mutant " + std::to_string(seed));
            check.look(name, Generator::mutated(file, seed), Known::Damaged);
        }
    }
    return check.end();
}

struct Mode {
    const char* name;
    std::size_t least, most; ///< arguments
    int (*run)(std::span<char*>);
};

constexpr Mode modes[] = {
    {"generate", 3, 3, generate},       {"rewrite", 2, 2, rewrite},
    {"seeds", 2, 2, checkSeeds},        {"damaged", 2, 2, checkDamaged},
    {"files", 1, SIZE_MAX, checkFiles}, {"mutants", 2, SIZE_MAX, checkMutants}};

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, static_cast<std::size_t>(count));
    for (const Mode& mode : modes) {
        const std::size_t given = arguments.size() < 2 ? 0 : arguments.size() - 2;
        if (given < mode.least || given > mode.most || mode.name != std::string_view(arguments[1]))
            continue;
        return mode.run(arguments.subspan(2));
    }
    std::fputs("usage: see the head of generator/check_structures.cpp\n", stderr);
    return 2;
}
