// What laying one foreign page beneath every page of a document costs.
//
// The page and the foreign page have a font and a content stream each; the foreign page's resources
// are copied for each page. Opening both documents is not counted. Each benchmark reports
//   ns_per_page     nanoseconds of processor time of the fastest iteration, for each page
//   vs_small        that as a multiple of what a page of the smallest document took in the same
//                   run: 1 as long as the time for each page stays flat

#include "generate.h"

#include <host/memory_stripe.h>
#include <host/stripe.h>
#include <pdf/document.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <limits>
#include <span>
#include <string>

namespace Benchmarks {
namespace {

using Host::Ref;
using Libraries::Files::PDF::Document;

constexpr std::int64_t smallest = 2'000;
constexpr std::uint32_t firstBeneathAll = 1;

Ref<Document> open(const Ref<Host::MemoryStripe>& source) {
    return Document::create(source);
}

Ref<Host::MemoryStripe> stripe(const std::string& bytes) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return Host::MemoryStripe::create(std::span(data, bytes.size()));
}

// A letterhead: one page with a font behind references and a content stream.
std::string letterhead() {
    const std::string content = "BT /Letter 12 Tf 72 800 Td (Letterhead) Tj ET";
    const std::string objects[] = {
        "<</Type/Catalog/Pages 2 0 R>>",
        "<</Type/Pages/Count 1/Kids[3 0 R]>>",
        "<</Type/Page/Parent 2 0 R/Contents 4 0 R/Resources<</Font<</Letter 5 0 R>>>>>>",
        "<</Length " + std::to_string(content.size()) + ">>\nstream\n" + content + "\nendstream",
        "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding 6 0 R>>",
        "<</Type/Encoding/BaseEncoding/WinAnsiEncoding>>"};
    std::string bytes = "%PDF-1.4\n";
    std::string table = "0000000000 65535 f \n";
    std::size_t id = 0;
    for (const std::string& object : objects) {
        const std::string offset = std::to_string(bytes.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        bytes += std::to_string(++id) + " 0 obj\n" + object + "\nendobj\n";
    }
    const std::string start = std::to_string(bytes.size());
    const std::string size = std::to_string(id + 1);
    return bytes + "xref\n0 " + size + "\n" + table + "trailer\n<</Size " + size +
           "/Root 1 0 R>>\nstartxref\n" + start + "\n%%EOF\n";
}

void addBackground(benchmark::State& state) {
    // Catalog and page tree, then two objects for each page.
    const auto pages = static_cast<std::size_t>(state.range(0));
    const auto source = stripe(generate(Kind::Text, 2 * pages + 2).bytes);
    const auto foreignSource = stripe(letterhead());
    double fastest = std::numeric_limits<double>::max();
    for (auto _ : state) {
        state.PauseTiming();
        auto document = open(source);
        auto foreign = open(foreignSource);
        state.ResumeTiming();
        const std::clock_t start = std::clock();
        const bool done = document && foreign && document->addBackground(foreign, firstBeneathAll);
        fastest = std::min(fastest, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
        state.PauseTiming();
        // For each page a font and its encoding are copied, and one content stream for all.
        const bool right = done && document->getObjects().size() == 2 * pages + 2 + 2 * pages + 1;
        document = nullptr;
        foreign = nullptr;
        state.ResumeTiming();
        if (!right) return state.SkipWithError("the pages were not laid beneath");
    }
    const double perPage = fastest * 1e9 / static_cast<double>(pages);
    static double small = 0;
    if (state.range(0) == smallest) small = perPage;
    state.counters["ns_per_page"] = perPage;
    if (small != 0) state.counters["vs_small"] = perPage / small;
}
BENCHMARK(addBackground)->Arg(smallest)->Arg(20'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Benchmarks
