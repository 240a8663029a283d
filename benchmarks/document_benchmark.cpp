// What the steps of a document's life cost, in time, beside one plain copy of its bytes.
//
// Each benchmark reports
//   bytes_per_second         bytes of the file (decoding: bytes of decoded data) for each second
//   syntax_bytes_per_second  the same for the bytes of the file that are not stream data (not when
//                            decoding)
// and, of its fastest iteration,
//   ns_per_object            nanoseconds for each object of the document
//   vs_copy                  its time as a multiple of the time that one memcpy of the file's bytes
//                            takes, into memory that is already mapped: the fastest of several
//                            passes in the same run
// Opening includes releasing the document.

#include "generate.h"

#include <host/files.h>
#include <host/memory_stripe.h>
#include <host/stripe.h>
#include <pdf/document.h>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace Benchmarks {
namespace {

using Host::Ref;
using Libraries::Files::PDF::Document;

template <class Step>
double seconds(Step step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double copySeconds(const std::string& bytes) {
    std::vector<char> target(bytes.size(), 'x');
    double best = std::numeric_limits<double>::max();
    for (int pass = 0; pass < 15; ++pass) {
        best = std::min(best, seconds([&] {
                            std::memcpy(target.data(), bytes.data(), bytes.size());
                            benchmark::DoNotOptimize(target.data());
                            benchmark::ClobberMemory();
                        }));
    }
    return best;
}

// A sample in memory and in a file of its own, and what copying it costs.
class Input {
public:
    Input(Kind kind, std::size_t objects)
        : sample(generate(kind, objects)),
          copyTime(copySeconds(sample.bytes)),
          path(std::filesystem::temp_directory_path() /
               ("files-pdf-benchmark-" + std::to_string(::getpid()) + ".pdf")),
          savePath(path.string() + ".saved") {
        std::ofstream(path, std::ios::binary) << sample.bytes;
    }
    ~Input() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        std::filesystem::remove(savePath, ignored);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    [[nodiscard]] Ref<Host::MemoryStripe> memory() const {
        const auto* data = reinterpret_cast<const std::uint8_t*>(sample.bytes.data());
        return Host::MemoryStripe::create(std::span(data, sample.bytes.size()));
    }
    [[nodiscard]] Ref<Host::FileSource> file() const {
        return Host::FileSource::open(path.string());
    }

    const Sample sample;
    const double copyTime;
    const std::filesystem::path path;
    const std::filesystem::path savePath;
};

// The benchmarks' input; only the last one used is kept, as the large ones fill much memory.
const Input& input(Kind kind, std::int64_t objects) {
    static std::unique_ptr<Input> current;
    static std::pair<Kind, std::int64_t> key;
    if (!current || key != std::pair(kind, objects)) {
        current.reset();
        current = std::make_unique<Input>(kind, static_cast<std::size_t>(objects));
        key = {kind, objects};
    }
    return *current;
}

// `bytes` is 0 for a step that goes over no bytes.
void report(benchmark::State& state, const Input& input, std::size_t bytes, double fastest) {
    using benchmark::Counter;
    if (bytes != 0) {
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
    }
    if (bytes == input.sample.bytes.size()) {
        state.counters["syntax_bytes_per_second"] =
            Counter(static_cast<double>(input.sample.syntax()), Counter::kIsIterationInvariantRate,
                    Counter::kIs1024);
    }
    state.counters["ns_per_object"] = fastest * 1e9 / static_cast<double>(input.sample.objects);
    state.counters["vs_copy"] = fastest / input.copyTime;
}

// Runs `step`, which tells whether it succeeded, again and again. Each time `prepare` makes what
// the step is given; neither that nor its release is measured.
template <class Prepare, class Step>
void measureOn(benchmark::State& state, const Input& input, std::size_t bytes, Prepare prepare,
               Step step) {
    double fastest = std::numeric_limits<double>::max();
    while (state.KeepRunning()) {
        state.PauseTiming();
        auto subject = prepare();
        bool done = false;
        state.ResumeTiming();
        const double passed = seconds([&] { done = step(subject); });
        state.PauseTiming();
        subject = {};
        if (!done) return state.SkipWithError("the step failed");
        fastest = std::min(fastest, passed);
        state.ResumeTiming();
    }
    report(state, input, bytes, fastest);
}

template <class Step>
void measure(benchmark::State& state, const Input& input, std::size_t bytes, Step step) {
    double fastest = std::numeric_limits<double>::max();
    bool done = true;
    for (auto _ : state) {
        fastest = std::min(fastest, seconds([&] { done = step() && done; }));
    }
    if (!done) return state.SkipWithError("the step failed");
    report(state, input, bytes, fastest);
}

bool decodeAll(Document& document, std::size_t expected) {
    std::size_t decoded = 0;
    for (const auto& object : document.getObjects()) {
        if (object->valueType() != Libraries::Files::PDF::Value::Type::Stream) continue;
        const auto data = document.readStreamData(object->valueAsStream(), true);
        if (!data) return false;
        decoded += data->size();
    }
    return decoded == expected;
}

void openFromMemory(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    const auto source = in.memory();
    measure(state, in, in.sample.bytes.size(),
            [&] { return static_cast<bool>(Document::create(source)); });
}

void openFromFile(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    measure(state, in, in.sample.bytes.size(),
            [&] { return static_cast<bool>(Document::create(in.file())); });
}

void listPages(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    const auto document = Document::create(in.memory());
    measure(state, in, 0,
            [&] { return document && document->getPages().size() == in.sample.pages; });
}

// An object keeps its value, so that each pass takes a document of its own.
void touchEverything(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    const auto source = in.memory();
    measureOn(
        state, in, 0, [&] { return Document::create(source); },
        [](const Ref<Document>& document) {
            return document && std::ranges::all_of(document->getObjects(), [](const auto& object) {
                       return object->value() != nullptr;
                   });
        });
}

// A stream gives decoded data once, so that each pass takes a document of its own.
void decodeStreams(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    const auto source = in.memory();
    measureOn(
        state, in, in.sample.decodedStreams, [&] { return Document::create(source); },
        [&](const Ref<Document>& document) {
            return document && decodeAll(*document, in.sample.decodedStreams);
        });
}

// Writing alone, to memory, of a document that is open.
void writeToMemory(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    const auto document = Document::create(in.memory());
    measure(state, in, in.sample.bytes.size(), [&] {
        const auto target = Host::MemoryStripe::create();
        return document && target && document->write(target);
    });
}

// Opening and writing, from memory to memory.
void rewriteInMemory(benchmark::State& state, Kind kind) {
    const Input& in = input(kind, state.range(0));
    const auto source = in.memory();
    measure(state, in, in.sample.bytes.size(), [&] {
        const auto document = Document::create(source);
        const auto target = Host::MemoryStripe::create();
        return document && target && document->write(target);
    });
}

/// Where the data is when the clock stops: with the operating system, or forced to the device and
/// in the file's place.
enum class Until { Written, Committed };

// Opening and writing, from file to file.
void rewriteFile(benchmark::State& state, Kind kind, Until until) {
    const Input& in = input(kind, state.range(0));
    measure(state, in, in.sample.bytes.size(), [&] {
        const auto document = Document::create(in.file());
        const auto target = Host::FileTarget::create(in.savePath.string());
        if (!document || !target || !document->write(target)) return false;
        return until == Until::Committed ? target->commit() : static_cast<bool>(target->written());
    });
}

void registerAll(const char* name, Kind kind, std::int64_t objects) {
    const auto add = [&](const char* step, auto function, auto... arguments) {
        const std::string full = std::string(step) + "/" + name;
        return benchmark::RegisterBenchmark(full.c_str(), function, kind, arguments...)
            ->Arg(objects)
            ->Unit(benchmark::kMillisecond);
    };
    add("openFromMemory", openFromMemory);
    add("openFromFile", openFromFile);
    add("touchEverything", touchEverything);
    add("listPages", listPages);
    if (kind == Kind::Text) add("decodeStreams", decodeStreams);
    add("writeToMemory", writeToMemory);
    add("rewriteInMemory", rewriteInMemory);
    add("rewriteFile", rewriteFile, Until::Written);
    add("rewriteFileAndCommit", rewriteFile, Until::Committed)->UseRealTime();
}

[[maybe_unused]] const bool registered = [] {
    for (const std::int64_t objects : {2'000, 20'000, 200'000, 1'000'000}) {
        registerAll("form", Kind::Form, objects);
        registerAll("text", Kind::Text, objects);
    }
    return true;
}();

} // namespace
} // namespace Benchmarks
