// What a form costs: building its fields, finding each of them by its path, and filling ten of them
// in a document that was just opened.
//
// The tree is balanced, with ten kids for each field. Each benchmark reports
//   ns_per_field     nanoseconds of processor time for each field, in the fastest pass
//   vs_smallest      that as a multiple of what it was for the smallest tree: 1 is flat

#include "generate.h"

#include <host/memory_stripe.h>
#include <host/stripe.h>
#include <pdf/document.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <span>
#include <vector>

namespace Benchmarks {
namespace {

using Host::Ref;
using Libraries::Files::PDF::Document;
using Libraries::Files::PDF::Field;
using Libraries::Files::PDF::Form;

Ref<Document> openTree(std::size_t fields) {
    static Ref<Host::MemoryStripe> current; // of the last size asked for
    static std::size_t currentFields = 0;
    if (currentFields != fields) {
        current = nullptr;
        const Sample sample = generateFieldTree(fields);
        const auto* data = reinterpret_cast<const std::uint8_t*>(sample.bytes.data());
        current = Host::MemoryStripe::create(std::span(data, sample.bytes.size()));
        currentFields = fields;
    }
    return Document::create(current);
}

std::vector<Ref<Host::String>> allPaths(const Form& form) {
    std::vector<Ref<Host::String>> paths;
    std::vector<Ref<Field>> waiting;
    for (std::uint64_t index = 0; index < form.fieldCount(); ++index)
        waiting.push_back(form.field(index));
    while (!waiting.empty()) {
        const Ref<Field> field = waiting.back();
        waiting.pop_back();
        paths.push_back(field->fullName());
        for (std::uint64_t index = 0; index < field->childCount(); ++index)
            waiting.push_back(field->child(index));
    }
    return paths;
}

// In time of the processor, so that what else a machine does is not counted.
template <class Step>
double secondsOf(Step step) {
    const std::clock_t start = std::clock();
    step();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

constexpr long smallestTree = 2'000;

// Keeps the fastest pass, and what one field cost in the smallest tree.
class FieldCost {
public:
    void pass(benchmark::State& state, double seconds) {
        state.SetIterationTime(seconds);
        fastest_ = std::min(fastest_, seconds);
    }
    void report(benchmark::State& state, double& smallest) const {
        const double cost = fastest_ * 1e9 / static_cast<double>(state.range(0));
        if (state.range(0) == smallestTree) smallest = cost;
        state.counters["ns_per_field"] = cost;
        state.counters["vs_smallest"] = cost / smallest;
    }

private:
    double fastest_ = std::numeric_limits<double>::max();
};

void buildForm(benchmark::State& state) {
    static double smallest = 0;
    FieldCost cost;
    for (auto _ : state) {
        const auto document = openTree(static_cast<std::size_t>(state.range(0)));
        Ref<Form> form;
        if (document) cost.pass(state, secondsOf([&] { form = document->form(); }));
        if (!form || form->fieldCount() != 10) {
            state.SkipWithError("the form was not built");
            return;
        }
    }
    cost.report(state, smallest);
}

void findEveryField(benchmark::State& state) {
    static double smallest = 0;
    const auto document = openTree(static_cast<std::size_t>(state.range(0)));
    const auto form = document ? document->form() : nullptr;
    const auto paths = form ? allPaths(*form) : std::vector<Ref<Host::String>>();
    FieldCost cost;
    for (auto _ : state) {
        std::size_t found = 0;
        cost.pass(state, secondsOf([&] {
                      for (const auto& path : paths)
                          found += form->fieldByPath(path) ? 1U : 0U;
                  }));
        if (found != static_cast<std::size_t>(state.range(0))) {
            state.SkipWithError("a field was not found");
            return;
        }
    }
    cost.report(state, smallest);
}

// The form is built for it.
void fillTen(benchmark::State& state) {
    static double smallest = 0;
    FieldCost cost;
    for (auto _ : state) {
        const auto document = openTree(static_cast<std::size_t>(state.range(0)));
        bool filled = false;
        if (document) cost.pass(state, secondsOf([&] { filled = fillTenFields(*document); }));
        if (!filled) {
            state.SkipWithError("the fields were not filled");
            return;
        }
    }
    cost.report(state, smallest);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const std::int64_t fields : {smallestTree, 20'000L, 200'000L, 1'000'000L})
        benchmark->Arg(fields);
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(buildForm)->Apply(sizes);
BENCHMARK(findEveryField)->Apply(sizes);
BENCHMARK(fillTen)->Apply(sizes);

} // namespace
} // namespace Benchmarks
