// Prints how much memory the steps of a document's life take at their peak, from a file: of
// documents of many objects, and of files that are made to take much.
//
//     files-pdf-peak-memory [PAGE]
//
// The tables are those of docs/robustness.md. With that page it fails where one of them says
// something else. Figures depend on the machine's allocator: 2 % are allowed, and the little that a
// process takes at its start.
//
// Each step opens the file and runs in a process of its own, so that the peak is that of the step
// alone: the largest resident size behind it, less that before it.

#include "apart.h"
#include "generate.h"
#include "hostile.h"
#include "page_table.h"

#include <host/files.h>
#include <host/log.h>
#include <pdf/document.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace {

using Benchmarks::apart;
using Benchmarks::Kind;
using Benchmarks::PageTable;
using Benchmarks::peakBytes;
using Host::Ref;
using Libraries::Files::PDF::Document;

// What is done to a document that was just opened from `path`. Whether it went.
using Step = bool (*)(Document& document, const std::string& path);

bool open(Document& /*document*/, const std::string& /*path*/) {
    return true;
}

bool touchEverything(Document& document, const std::string& /*path*/) {
    const auto objects = document.getObjects();
    return !objects.empty() && std::ranges::all_of(objects, [](const auto& object) {
        return object->value() != nullptr;
    });
}

bool rewrite(Document& document, const std::string& path) {
    const auto target = Host::FileTarget::create(path + ".saved");
    return target && document.write(target) && target->commit();
}

bool listPages(Document& document, const std::string& /*path*/) {
    return !document.getPages().empty();
}

bool fillTen(Document& document, const std::string& /*path*/) {
    return Benchmarks::fillTenFields(document);
}

// A file that goes with this.
class Sample {
public:
    template <class Generate>
    explicit Sample(Generate generate)
        : path_((std::filesystem::temp_directory_path() /
                 ("files-pdf-peak-" + std::to_string(::getpid()) + "-" + std::to_string(next_++) +
                  ".pdf"))
                    .string()),
          made_(apart([&] {
              std::ofstream file(path_, std::ios::binary);
              file << generate();
              file.close();
              return static_cast<bool>(file);
          })) {}
    ~Sample() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
        std::filesystem::remove(path_ + ".saved", ignored);
    }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    struct Peak {
        bool opened = false, done = false;
        double bytes = 0;
    };

    // Nothing where the step could not be measured.
    [[nodiscard]] std::optional<Peak> peakOf(Step step) const {
        return made_ ? Benchmarks::toldApart<Peak>([&] { return measured(step); }) : std::nullopt;
    }
    [[nodiscard]] double size() const {
        return static_cast<double>(std::filesystem::file_size(path_));
    }

private:
    [[nodiscard]] Peak measured(Step step) const {
        Peak peak;
        const double before = peakBytes();
        const auto source = Host::FileSource::open(path_);
        const auto document = source ? Document::create(source) : nullptr;
        peak.opened = document != nullptr;
        peak.done = document && step(*document, path_);
        peak.bytes = peakBytes() - before;
        return peak;
    }

    inline static int next_ = 0; // each has a file of its own

    std::string path_;
    bool made_;
};

std::string withOneDigit(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", number);
    return text;
}

constexpr double machine = 0.02; // by which figures differ between machines

constexpr std::size_t objects = 200'000;

std::string eachObject(const Sample& sample, Step step) {
    const auto peak = sample.peakOf(step);
    if (!peak || !peak->done) return "failed";
    char text[32];
    std::snprintf(text, sizeof text, "%.0f", peak->bytes / static_cast<double>(objects));
    return text;
}

PageTable ordinary() {
    PageTable table({{"Of 200,000 objects"},
                     {"opened", machine, 2},
                     {"rewritten", machine, 2},
                     {"pages listed", machine, 2},
                     {"ten fields filled in", machine, 2},
                     {"every object touched", machine, 2}});
    const auto add = [&](const char* name, const Sample& sample, Step list, Step fill) {
        table.add({name, eachObject(sample, open), eachObject(sample, rewrite),
                   list ? eachObject(sample, list) : "", fill ? eachObject(sample, fill) : "",
                   eachObject(sample, touchEverything)});
    };
    const Step none = nullptr;
    add("a large form", Sample([] { return Benchmarks::generate(Kind::Form, objects).bytes; }),
        listPages, none);
    add("plain pages of text",
        Sample([] { return Benchmarks::generate(Kind::Text, objects).bytes; }), listPages, none);
    add("a tree of text fields",
        Sample([] { return Benchmarks::generateFieldTree(objects - 2).bytes; }), none, fillTen);
    return table;
}

// As a multiple of the file's size, or in MB; one that is refused has to be measured as well.
std::string ofHostile(const Sample& sample, Step step, double unit) {
    const auto peak = sample.peakOf(step);
    if (!peak) return "failed";
    if (!peak->opened && step != open) return "";
    return withOneDigit(peak->bytes / unit) + (peak->opened ? "" : ", refused");
}

PageTable hostile() {
    PageTable table({{"The file is"},
                     {"opened", machine, 0.1},
                     {"every object touched", machine, 0.1},
                     {"of 100 KB, opened: MB", machine, 1},
                     {"touched: MB", machine, 1}});
    for (const Benchmarks::HostileKind& kind : Benchmarks::hostileKinds()) {
        const Sample large([&] { return kind.generate(20'000'000); });
        const Sample small([&] { return kind.generate(100'000); });
        table.add({kind.name, ofHostile(large, open, large.size()),
                   ofHostile(large, touchEverything, large.size()), ofHostile(small, open, 1e6),
                   ofHostile(small, touchEverything, 1e6)});
    }
    return table;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        std::fprintf(stderr, "usage: files-pdf-peak-memory [PAGE]\n");
        return 2;
    }
    Host::SysLogFilter::state(Host::SysLogFilter::reg("PDF"), false);
    const PageTable tables[] = {ordinary(), hostile()};
    bool same = true;
    const std::string page = argc > 1 ? Benchmarks::pageAt(argv[1]) : "";
    for (const PageTable& table : tables) {
        table.print();
        if (argc > 1) same = table.isOn(page) && same;
    }
    return same ? 0 : 1;
}
