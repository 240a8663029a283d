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

#include "support/damage.h"
#include "support/documents.h"
#include "support/generated_file.h"
#include "support/recording_log.h"

#include <pdf/import.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <span>
#include <string>

namespace {

using namespace Libraries::Files::PDF;

/// What the import makes of a file: nothing where it fails.
struct Imported {
    std::string bytes;
    bool isSound = false; ///< libqpdf had nothing to say
};

Imported imported(const std::string& file) {
    const Support::RecordingLog log;
    const auto result = Import::normalise(Support::stripeOf(file));
    return {result ? Support::contentsOf(result) : "", result && log.text().empty()};
}

Host::Ref<Document> openAny(const std::string& file) {
    Host::Error::set(Host::NoError);
    return Document::create(Support::stripeOf(file), Structure::Any);
}

/// What is known of a file: `Any` may be sound, and libqpdf knows.
enum class Known { Sound, Any, Damaged };

class Check {
public:
    void look(const std::string& name, const std::string& file, Known known);
    /// Tells what there was; gives the exit status.
    [[nodiscard]] int end() const;

private:
    void bad(const std::string& name, const std::string& what);

    std::size_t same_ = 0, refused_ = 0, repaired_ = 0, bad_ = 0;
};

std::size_t countObjects(const std::string& bytes) {
    std::size_t count = 0;
    for (std::size_t at = bytes.find(" 0 obj\n"); at != std::string::npos;
         at = bytes.find(" 0 obj\n", at + 1))
        ++count;
    return count;
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

void Check::look(const std::string& name, const std::string& file, Known known) {
    const Imported wanted = imported(file);
    const bool isSound = known == Known::Sound || (known == Known::Any && wanted.isSound);
    if (known == Known::Sound && wanted.bytes.empty()) bad(name, "is not imported");
    const Support::RecordingLog log;
    const auto document = openAny(file);
    if (!document) {
        ++refused_;
        const std::string code = std::to_string(Host::Error::get());
        if (isSound) bad(name, "is refused with " + code + ": " + firstLine(log.text()));
        return;
    }
    const Imported got = imported(Support::write(*document));
    if (got.bytes == wanted.bytes) {
        ++same_;
    } else if (isSound || wanted.isSound) {
        bad(name, "becomes something else");
    } else if (countObjects(got.bytes) < countObjects(wanted.bytes)) {
        bad(name, "misses what libqpdf finds");
    } else {
        ++repaired_;
    }
}

void Check::bad(const std::string& name, const std::string& what) {
    ++bad_;
    std::printf("%s %s\n", name.c_str(), what.c_str());
}

int Check::end() const {
    std::printf(
        "%zu the same, %zu refused, %zu with as much as libqpdf finds by a repair, %zu wrong\n",
        same_, refused_, repaired_, bad_);
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
        write(std::filesystem::path(arguments[0]) / name, Support::generatedFile(seed));
    });
    return EXIT_SUCCESS;
}

int rewrite(std::span<char*> arguments) {
    const auto document = openAny(read(arguments[0]));
    if (!document) return EXIT_FAILURE;
    write(arguments[1], Support::write(*document));
    return EXIT_SUCCESS;
}

int checkSeeds(std::span<char*> range) {
    Check check;
    eachSeed(range, [&](std::uint32_t seed) {
        check.look("seed " + std::to_string(seed), Support::generatedFile(seed), Known::Sound);
    });
    return check.end();
}

int checkDamaged(std::span<char*> range) {
    Check check;
    eachSeed(range, [&](std::uint32_t seed) {
        check.look("damaged " + std::to_string(seed), Support::damagedFile(seed), Known::Damaged);
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
            check.look(name, Support::mutated(file, seed), Known::Damaged);
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
    std::fputs("usage: see the head of tests/check_structures.cpp\n", stderr);
    return 2;
}
