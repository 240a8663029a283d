// What re-encoding all streams of a document costs, beside the bare codec on the same data.
//
// The codec's time is that of the library behind it, which is given each stream's data in one piece
// and memory that is large enough; what the codec needs for itself is made once. Each benchmark
// reports
//   bytes_per_second  bytes of decoded data for each second
//   of_codec          how much of the codec's speed is reached: its fastest pass over the fastest
//                     iteration, in the same run

#include "generate.h"

#include <host/memory_stripe.h>
#include <host/stripe.h>
#include <pdf/document.h>

#include <benchmark/benchmark.h>
#include <isa-l/igzip_lib.h>
#include <libdeflate.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace Benchmarks {
namespace {

using Host::Ref;
using Libraries::Files::PDF::Compression;
using Libraries::Files::PDF::Document;
using Libraries::Files::PDF::Value;
using Bytes = std::vector<std::uint8_t>;

// Of processor time, which other processes do not take part in.
template <class Step>
double seconds(Step step) {
    const std::clock_t start = std::clock();
    step();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

Ref<Host::MemoryStripe> stripe(const std::string& bytes) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return Host::MemoryStripe::create(std::span(data, bytes.size()));
}

std::vector<Bytes> storedStreams(Document& document) {
    std::vector<Bytes> streams;
    for (const auto& object : document.getObjects()) {
        if (object->valueType() != Value::Type::Stream) continue;
        const auto data = document.readStreamData(object->valueAsStream(), false);
        if (!data) return {};
        Bytes bytes(data->size());
        data->position(0);
        if (data->readBytes(bytes.data(), bytes.size()) != bytes.size()) return {};
        streams.push_back(std::move(bytes));
    }
    return streams;
}

// A document whose streams are stored as `compression`, and its streams.
struct Input {
    Input(const std::string& file, Compression compression) {
        const auto document = Document::create(stripe(file));
        source = Host::MemoryStripe::create();
        if (document && document->setCompression(compression) && document->write(source)) {
            streams = storedStreams(*document);
        }
    }

    Ref<Host::MemoryStripe> source;
    std::vector<Bytes> streams;
};

// The same document both ways, and the size of its decoded streams.
struct Inputs {
    explicit Inputs(const std::string& file)
        : plain(file, Compression::None), flate(file, Compression::FlateDecode) {
        for (const Bytes& stream : plain.streams) {
            largest = std::max(largest, stream.size());
            decoded += stream.size();
        }
    }

    Input plain;
    Input flate;
    std::size_t largest = 0;
    std::size_t decoded = 0;
};

double inflateAll(const Inputs& inputs) {
    const auto state = std::make_unique<inflate_state>();
    Bytes output(inputs.largest + 64);
    std::size_t decoded = 0;
    const double passed = seconds([&] {
        for (const Bytes& stream : inputs.flate.streams) {
            isal_inflate_init(state.get());
            state->crc_flag = ISAL_ZLIB;
            state->next_in = const_cast<std::uint8_t*>(stream.data());
            state->avail_in = static_cast<std::uint32_t>(stream.size());
            state->next_out = output.data();
            state->avail_out = static_cast<std::uint32_t>(output.size());
            if (isal_inflate(state.get()) == ISAL_DECOMP_OK) decoded += state->total_out;
        }
    });
    return decoded == inputs.decoded ? passed : 0;
}

double deflateAll(const Inputs& inputs) {
    libdeflate_compressor* const compressor = libdeflate_alloc_compressor(6);
    Bytes output(libdeflate_zlib_compress_bound(compressor, inputs.largest));
    bool done = true;
    const double passed = seconds([&] {
        for (const Bytes& stream : inputs.plain.streams) {
            done = libdeflate_zlib_compress(compressor, stream.data(), stream.size(), output.data(),
                                            output.size()) != 0 &&
                   done;
        }
    });
    libdeflate_free_compressor(compressor);
    return done ? passed : 0;
}

template <class Pass>
double fastest(int passes, Pass pass) {
    double best = std::numeric_limits<double>::max();
    for (int count = 0; count < passes; ++count)
        best = std::min(best, pass());
    return best;
}

template <class Make>
void recompress(benchmark::State& state, Make make, Compression target) {
    const Inputs inputs(make());
    const bool inflating = target == Compression::None;
    const auto& source = (inflating ? inputs.flate : inputs.plain).source;
    double best = std::numeric_limits<double>::max();
    while (state.KeepRunning()) {
        state.PauseTiming();
        auto document = Document::create(source);
        bool done = false;
        state.ResumeTiming();
        const double passed = seconds([&] { done = document && document->setCompression(target); });
        state.PauseTiming();
        document = {};
        if (!done) return state.SkipWithError("the streams were not re-encoded");
        best = std::min(best, passed);
        state.ResumeTiming();
    }
    const double codec =
        fastest(5, [&] { return inflating ? inflateAll(inputs) : deflateAll(inputs); });
    if (codec == 0) return state.SkipWithError("the codec failed");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(inputs.decoded));
    state.counters["of_codec"] = codec / best;
}

// Few large streams, half text and half what does not compress.
std::string largeStreams() {
    const std::string text = generate(Kind::Form, 8'000).bytes;
    std::string bytes = "%PDF-1.4\n";
    std::vector<std::size_t> offsets;
    std::uint32_t seed = 1;
    for (int number = 1; number <= 16; ++number) {
        std::string data = text;
        for (std::size_t index = data.size() / 2; index < data.size(); ++index) {
            seed = seed * 1664525U + 1013904223U;
            data[index] = static_cast<char>(seed >> 24);
        }
        offsets.push_back(bytes.size());
        bytes += std::to_string(number) + " 0 obj\n<</Length " + std::to_string(data.size()) +
                 ">>\nstream\n" + data + "\nendstream\nendobj\n";
    }
    const std::string start = std::to_string(bytes.size());
    bytes += "xref\n0 17\n0000000000 65535 f \n";
    for (const std::size_t offset : offsets) {
        const std::string digits = std::to_string(offset);
        bytes += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    return bytes + "trailer\n<</Size 17>>\nstartxref\n" + start + "\n%%EOF\n";
}

template <class Make>
void registerBoth(const std::string& name, Make make) {
    const auto add = [&](const std::string& step, Compression target) {
        benchmark::RegisterBenchmark((step + "/" + name).c_str(), [make, target](
                                                                      benchmark::State& state) {
            recompress(state, make, target);
        })->Unit(benchmark::kMillisecond);
    };
    add("uncompress", Compression::None);
    add("compress", Compression::FlateDecode);
}

[[maybe_unused]] const bool registered = [] {
    for (const std::size_t objects : {std::size_t{2'000}, std::size_t{20'000}}) {
        registerBoth("text/" + std::to_string(objects),
                     [objects] { return generate(Kind::Text, objects).bytes; });
    }
    registerBoth("large", largeStreams);
    return true;
}();

} // namespace
} // namespace Benchmarks
