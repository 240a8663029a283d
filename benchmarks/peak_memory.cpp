// Prints how much memory the steps of a document's life take at their peak, from a file: of
// documents of many objects, and of files that are made to take much.
//
// Each step opens the file and runs in a process of its own, so that the peak is that of the step
// alone: the largest resident size behind it, less that before it.

#include "apart.h"
#include "generate.h"
#include "hostile.h"

#include <host/files.h>
#include <pdf/document.h>

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

namespace {

using Benchmarks::Kind;

using Benchmarks::apart;
using Benchmarks::peakBytes;
using Host::Ref;
using Libraries::Files::PDF::Document;

bool touchEverything(Document& document) {
    const auto objects = document.getObjects();
    return !objects.empty() && std::ranges::all_of(objects, [](const auto& object) {
        return object->value() != nullptr;
    });
}

bool rewrite(Document& document, const std::string& path) {
    const auto target = Host::FileTarget::create(path + ".saved");
    return target && document.write(target) && target->commit();
}

// What is done to a document that was just opened from `path`.
struct Step {
    const char* name;
    bool (*run)(Document& document, const std::string& path);
};

constexpr Step open{"open", [](Document&, const std::string&) { return true; }};
constexpr Step touch{"touch everything", [](Document& document, const std::string&) {
                         return touchEverything(document);
                     }};
constexpr Step steps[] = {
    open,
    {"rewrite", rewrite},
    touch,
    {"list pages",
     [](Document& document, const std::string&) { return !document.getPages().empty(); }},
};
constexpr Step hostileSteps[] = {open, touch};
constexpr Step fillTen{"fill ten fields", [](Document& document, const std::string&) {
                           return Benchmarks::fillTenFields(document);
                       }};

// Whether the step is done with a document that can be opened.
bool measure(const Step& step, const char* kind, const std::string& path, std::size_t objects) {
    const double before = peakBytes();
    const auto source = Host::FileSource::open(path);
    const auto document = source ? Document::create(source) : nullptr;
    const bool done = document && step.run(*document, path);
    const double used = peakBytes() - before;
    const auto size = static_cast<double>(std::filesystem::file_size(path));
    std::printf("%-16s  %-19s  file %6.1f MB  peak %7.1f MB  %5.2f for each byte of it", step.name,
                kind, size / 1e6, used / 1e6, used / size);
    if (objects != 0) {
        std::printf("  %4.0f bytes for each of %zu objects", used / static_cast<double>(objects),
                    objects);
    }
    std::puts(done ? "" : document ? "  failed" : "  not opened");
    return done;
}

// The steps, on a file that `generate` makes. Whether all were done.
template <class Generate>
bool measureAll(std::span<const Step> of, const char* kind, std::size_t objects,
                Generate generate) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("files-pdf-peak-" + std::to_string(::getpid()) + ".pdf"))
                                 .string();
    bool done = apart([&] {
        std::ofstream file(path, std::ios::binary);
        file << generate();
        file.close();
        return static_cast<bool>(file);
    });
    for (const Step& step : of)
        done = apart([&] { return measure(step, kind, path, objects); }) && done;
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    std::filesystem::remove(path + ".saved", ignored);
    return done;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t objects = 200'000;
    if (argc > 1) {
        const char* end = argv[1] + std::strlen(argv[1]);
        const auto [stop, error] = std::from_chars(argv[1], end, objects);
        if (argc > 2 || error != std::errc{} || stop != end || objects < 200) {
            std::fprintf(stderr, "usage: files-pdf-peak-memory [OBJECTS, at least 200]\n");
            return 2;
        }
    }
    const bool form = measureAll(steps, "form", objects,
                                 [&] { return Benchmarks::generate(Kind::Form, objects).bytes; });
    const bool text = measureAll(steps, "text", objects,
                                 [&] { return Benchmarks::generate(Kind::Text, objects).bytes; });
    const bool fields = measureAll({&fillTen, 1}, "fields", objects, [&] {
        return Benchmarks::generateFieldTree(objects - 2).bytes;
    });
    // One that is refused has to be measured as well.
    for (const Benchmarks::HostileKind& kind : Benchmarks::hostileKinds()) {
        for (const std::size_t size : {std::size_t{100'000}, std::size_t{20'000'000}})
            measureAll(hostileSteps, kind.name, 0, [&] { return kind.generate(size); });
    }
    return form && text && fields ? 0 : 1;
}
