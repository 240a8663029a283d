// Prints how much memory the rewrite of a file to a file takes at its peak.
//
// Each step runs in a process of its own, so that the peak is that of the rewrite alone: the
// largest resident size behind it, less that before it. Pages of a mapped source count too.

#include "generate.h"

#include <host/files.h>
#include <pdf/document.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using Benchmarks::Kind;

double peakBytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

// Whether `step` succeeded, in a process of its own.
template <class Step>
bool apart(Step step) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const bool done = step();
        std::fflush(nullptr);
        ::_exit(done ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

bool generateFile(const std::string& path, Kind kind, std::size_t objects) {
    std::ofstream file(path, std::ios::binary);
    file << Benchmarks::generate(kind, objects).bytes;
    file.close();
    return static_cast<bool>(file);
}

bool rewrite(const std::string& path) {
    const auto source = Host::FileSource::open(path);
    const auto document = source ? Libraries::Files::PDF::Document::create(source) : nullptr;
    const auto target = Host::FileTarget::create(path + ".saved");
    return document && target && document->write(target) && target->commit();
}

bool measureRewrite(const char* name, const std::string& path, std::size_t objects) {
    const double before = peakBytes();
    if (!rewrite(path)) return false;
    const double used = peakBytes() - before;
    const auto size = static_cast<double>(std::filesystem::file_size(path));
    std::printf("%s: %zu objects, file %.1f MB, peak above baseline %.1f MB: %.0f bytes for each "
                "object, %.2f for each byte of the file\n",
                name, objects, size / 1e6, used / 1e6, used / static_cast<double>(objects),
                used / size);
    return true;
}

bool measure(const char* name, Kind kind, std::size_t objects) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("files-pdf-peak-" + std::to_string(::getpid()) + ".pdf"))
                                 .string();
    const bool done = apart([&] { return generateFile(path, kind, objects); }) &&
                      apart([&] { return measureRewrite(name, path, objects); });
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    std::filesystem::remove(path + ".saved", ignored);
    if (!done) std::fprintf(stderr, "%s: %zu objects: not measured\n", name, objects);
    return done;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t objects = 200'000;
    if (argc > 1) {
        const char* end = argv[1] + std::strlen(argv[1]);
        const auto [stop, error] = std::from_chars(argv[1], end, objects);
        if (argc > 2 || error != std::errc{} || stop != end || objects < 4) {
            std::fprintf(stderr, "usage: files-pdf-peak-memory [OBJECTS, at least 4]\n");
            return 2;
        }
    }
    const bool form = measure("form", Kind::Form, objects);
    const bool text = measure("text", Kind::Text, objects);
    return form && text ? 0 : 1;
}
