// usage: check-structures generate FOLDER FIRST LAST
//        check-structures seeds FIRST LAST
//        check-structures damaged FIRST LAST
//        check-structures files FILE...
//        check-structures mutants COUNT FILE...
//
// For maintainers: holds what opening files of any structure gives against libqpdf. A sound file
// becomes the same as by the import; one that is damaged has every object that libqpdf finds, or is
// refused. `generate` writes the files of the tests, for other programs to look at. A line for each
// file where that is not so; exit 1 where there is one.

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
    return Document::create(Support::stripeOf(file));
}

class Check {
public:
    /// What is known of a file: `Any` may be sound, and libqpdf knows.
    enum class Known { Sound, Any, Damaged };

    void look(const std::string& name, const std::string& file, Known known);
    /// Tells what there was; gives the exit status.
    [[nodiscard]] int end() const;

private:
    void bad(const std::string& name, const char* what);

    std::size_t same_ = 0, refused_ = 0, repaired_ = 0, bad_ = 0;
};

std::size_t countObjects(const std::string& bytes) {
    std::size_t count = 0;
    for (std::size_t at = bytes.find(" 0 obj\n"); at != std::string::npos;
         at = bytes.find(" 0 obj\n", at + 1))
        ++count;
    return count;
}

void Check::look(const std::string& name, const std::string& file, Known known) {
    const Imported wanted = imported(file);
    const bool isSound = known == Known::Sound || (known == Known::Any && wanted.isSound);
    if (known == Known::Sound && wanted.bytes.empty()) bad(name, "is not imported");
    const Support::RecordingLog log;
    const auto document = openAny(file);
    if (!document) {
        ++refused_;
        if (isSound) bad(name, ("is refused: " + log.text()).c_str());
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

void Check::bad(const std::string& name, const char* what) {
    ++bad_;
    std::printf("%s %s\n", name.c_str(), what);
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

void eachSeed(std::span<char*> range, const std::function<void(std::uint32_t)>& use) {
    const auto last = static_cast<std::uint32_t>(std::strtoul(range[1], nullptr, 10));
    for (auto seed = static_cast<std::uint32_t>(std::strtoul(range[0], nullptr, 10)); seed <= last;
         ++seed)
        use(seed);
}

int run(const std::string& mode, std::span<char*> arguments) {
    using Known = Check::Known;
    Check check;
    if (mode == "generate" && arguments.size() == 3) {
        eachSeed(arguments.subspan(1), [&](std::uint32_t seed) {
            const std::string name = "seed-" + std::to_string(seed) + ".pdf";
            std::ofstream(std::filesystem::path(arguments[0]) / name, std::ios::binary)
                << Support::generatedFile(seed);
        });
        return EXIT_SUCCESS;
    }
    if (mode == "seeds" && arguments.size() == 2) {
        eachSeed(arguments, [&](std::uint32_t seed) {
            check.look("seed " + std::to_string(seed), Support::generatedFile(seed), Known::Sound);
        });
    } else if (mode == "damaged" && arguments.size() == 2) {
        eachSeed(arguments, [&](std::uint32_t seed) {
            check.look("damaged " + std::to_string(seed), Support::damagedFile(seed),
                       Known::Damaged);
        });
    } else if (mode == "files" && !arguments.empty()) {
        for (const char* path : arguments)
            check.look(path, read(path), Known::Any);
    } else if (mode == "mutants" && arguments.size() > 1) {
        const std::uint32_t count =
            static_cast<std::uint32_t>(std::strtoul(arguments[0], nullptr, 10));
        for (const char* path : arguments.subspan(1)) {
            const std::string file = read(path);
            for (std::uint32_t seed = 0; seed < count; ++seed)
                check.look(path + (" mutant " + std::to_string(seed)), Support::mutated(file, seed),
                           Known::Damaged);
        }
    } else {
        std::fputs("usage: check-structures generate FOLDER FIRST LAST | seeds FIRST LAST |\n"
                   "       damaged FIRST LAST | files FILE... | mutants COUNT FILE...\n",
                   stderr);
        return 2;
    }
    return check.end();
}

} // namespace

int main(int count, char** values) {
    const std::span arguments(values, static_cast<std::size_t>(count));
    return arguments.size() < 2 ? run("", {}) : run(arguments[1], arguments.subspan(2));
}
