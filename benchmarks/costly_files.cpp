// Makes each kind of costly file at doubling sizes, does what is to be done with it, and fails
// where time or memory grow faster than the file, where a small file takes much, or where more is
// written than a small multiple of what was read.
//
//     files-pdf-costly-files [BYTES of the largest file, at least 50000 [NAME | --page PAGE]]
//
// With a name, or a part of one, only the kinds that have it. With a page, docs/robustness.md, it
// also fails where the table there says something else: of memory a quarter is allowed.
//
// Each work is done in a process of its own. Its time is that of the processor, its memory the
// largest resident size behind it, less that before it; of several runs the least counts, so that
// what else the machine does is left out.

#include "apart.h"
#include "costly.h"
#include "page_table.h"

#include <host/files.h>
#include <host/log.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace Benchmarks {

using Libraries::Files::PDF::Document;

Host::Ref<Document> opened(const std::string& path) {
    const auto source = Host::FileSource::open(path);
    return source ? Document::create(source) : nullptr;
}

bool saved(Document& document, const std::string& path) {
    const auto target = Host::FileTarget::create(path + ".saved");
    return target && document.write(target) && target->commit();
}

namespace {

// A doubling of the file may make this of a cost: twice as much, and what caches and the pages of
// memory add. Costs below the floors are noise.
constexpr double mostGrowth = 2.3;
constexpr double timeFloor = 0.02;
constexpr double memoryFloor = 4e6;

// What a file of up to 100 KB may take.
constexpr double smallFile = 100e3;
constexpr double mostTime = 2;
constexpr double mostMemory = 100e6;

// What may be written for a file.
constexpr double mostWritten = 64;
constexpr double alwaysWritten = 1 << 20;

struct Cost {
    Ending ending = Ending::NotOpened;
    double seconds = 0, bytes = 0;
};

struct Measured {
    std::size_t size = 0; ///< of the file
    double written = 0;
    Cost cost;
};

double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// What is allowed for a small file is allowed for each of the small files that a large one makes.
double multipleOfSmall(std::uintmax_t size) {
    return std::max(1.0, static_cast<double>(size) / smallFile);
}

// A file that costs far too much is stopped.
void limit(int resource, rlim_t most) {
    const rlimit limits{most, most};
    ::setrlimit(resource, &limits);
}

Cost costOf(const CostlyFile& kind, const std::string& path) {
    const double before = peakBytes();
    const double start = processorSeconds();
    Cost cost;
    cost.ending = kind.work(path);
    cost.seconds = processorSeconds() - start;
    cost.bytes = peakBytes() - before;
    return cost;
}

// Nothing where the work was stopped.
std::optional<Cost> runApart(const CostlyFile& kind, const std::string& path) {
    const double small = multipleOfSmall(std::filesystem::file_size(path));
    return toldApart<Cost>([&] {
        limit(RLIMIT_CPU, static_cast<rlim_t>(1 + mostTime * small));
        limit(RLIMIT_AS, static_cast<rlim_t>(1e9 + mostMemory * small));
        return costOf(kind, path);
    });
}

// A file at a path, which goes with what was written beside it.
class Sample {
public:
    Sample() {
        path_ = (std::filesystem::temp_directory_path() /
                 ("files-pdf-costly-" + std::to_string(::getpid()) + ".pdf"))
                    .string();
    }
    ~Sample() { remove(); }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

    bool make(const CostlyFile& kind, std::size_t size) {
        remove();
        return apart([&] {
            std::ofstream file(path_, std::ios::binary);
            file << kind.generate(size);
            file.close();
            return static_cast<bool>(file);
        });
    }

    [[nodiscard]] double written() const {
        std::error_code missing;
        const auto size = std::filesystem::file_size(path_ + ".saved", missing);
        return missing ? 0 : static_cast<double>(size);
    }

private:
    void remove() const {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
        std::filesystem::remove(path_ + ".saved", ignored);
    }

    std::string path_;
};

bool grows(double before, double now, double floor) {
    return now > mostGrowth * std::max(before, floor);
}

// What is wrong; null where nothing is.
const char* faultOf(const CostlyFile& kind, const Measured* before, const Measured& now) {
    const auto size = static_cast<double>(now.size);
    const double small = multipleOfSmall(now.size);
    if (now.cost.ending == Ending::NotOpened) return "does not open";
    if (now.cost.ending == Ending::Refused && kind.expected == Ending::Done) return "is refused";
    if (now.cost.seconds > mostTime * small) return "takes too long for its size";
    if (now.cost.bytes > mostMemory * small) return "takes too much memory for its size";
    if (now.written > mostWritten * size + alwaysWritten) return "makes too much";
    if (before == nullptr) return nullptr;
    if (grows(before->cost.seconds, now.cost.seconds, timeFloor)) return "grows too fast in time";
    if (grows(before->cost.bytes, now.cost.bytes, memoryFloor)) return "grows too fast in memory";
    return nullptr;
}

// The least cost so far. False where the work was stopped.
bool measure(const CostlyFile& kind, std::size_t size, Measured& measured) {
    Sample sample;
    if (!sample.make(kind, size)) return false;
    measured.size = std::filesystem::file_size(sample.path());
    const auto cost = runApart(kind, sample.path());
    if (!cost) return false;
    const bool first = measured.cost.ending == Ending::NotOpened;
    measured.written = sample.written();
    measured.cost.ending = cost->ending;
    measured.cost.seconds = first ? cost->seconds : std::min(measured.cost.seconds, cost->seconds);
    measured.cost.bytes = first ? cost->bytes : std::min(measured.cost.bytes, cost->bytes);
    return true;
}

// Null where the file of this size is as it has to be. What looks wrong is measured again, and so
// is the smaller file that it is compared with.
const char* faultAt(const CostlyFile& kind, std::size_t size, Measured* before, Measured& now) {
    constexpr int runs = 6;
    const char* fault = nullptr;
    for (int run = 0; run < runs; ++run) {
        if (!measure(kind, size, now)) return "is stopped: it takes too much time or memory";
        fault = faultOf(kind, before, now);
        if (fault == nullptr || now.cost.ending == Ending::NotOpened) return fault;
        if (before != nullptr && !measure(kind, size / 2, *before)) return "is stopped";
    }
    return fault;
}

std::string figure(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", number);
    return text;
}

// The file of about 100 KB, and how the largest one ends.
void addRow(PageTable& table, const CostlyFile& kind, const std::vector<Measured>& measured) {
    const auto nearest = std::ranges::min_element(measured, {}, [](const Measured& one) {
        return std::abs(static_cast<double>(one.size) - smallFile);
    });
    table.add({kind.name, figure(nearest->cost.bytes / 1e6), figure(nearest->written / 1e3),
               kind.expected == Ending::Refused ? "refused" : "done"});
}

bool check(const CostlyFile& kind, std::size_t largest, PageTable& table) {
    std::size_t size = largest;
    while (size >= 20000)
        size /= 2;
    std::vector<Measured> measured;
    const char* fault = nullptr;
    for (; size <= largest && fault == nullptr; size *= 2) {
        Measured now;
        fault = faultAt(kind, size, measured.empty() ? nullptr : &measured.back(), now);
        measured.push_back(now);
    }
    // Small files may be within the bounds.
    if (fault == nullptr && measured.back().cost.ending != kind.expected) fault = "is not refused";
    std::printf("%s%s%s\n", kind.name, fault != nullptr ? ": FAILS: it " : "",
                fault != nullptr ? fault : "");
    for (const Measured& one : measured) {
        std::printf("    %8.1f KB %10.1f ms %8.1f MB %10.1f KB written\n",
                    static_cast<double>(one.size) / 1e3, one.cost.seconds * 1e3,
                    one.cost.bytes / 1e6, one.written / 1e3);
    }
    addRow(table, kind, measured);
    return fault == nullptr;
}

// The kinds that a table on the page has.
struct Group {
    const char* head;
    std::vector<std::span<const CostlyFile>> kinds;
};

std::vector<Group> groups() {
    return {
        {"Made to cost much", {costlyForms(), costlyPages(), costlyContents(), costlyStructures()}},
#if defined(FILES_PDF_HAS_IMPORT)
            {"Made to cost the import much", {costlyImport()}},
#endif
    };
}

struct Outcome {
    int checked = 0, failed = 0;
    bool same = true; ///< whether the page says what was measured
};

void run(const Group& group, std::size_t largest, const std::string& name, const std::string& page,
         Outcome& outcome) {
    PageTable table({{group.head},
                     {"100 KB take: MB", 0.25, 3},
                     {"become: KB", 0.02, 1},
                     {"and more of it is"}});
    const int before = outcome.checked;
    for (const auto kinds : group.kinds) {
        for (const CostlyFile& kind : kinds) {
            if (std::string(kind.name).find(name) == std::string::npos) continue;
            ++outcome.checked;
            outcome.failed += check(kind, largest, table) ? 0 : 1;
        }
    }
    if (outcome.checked == before) return;
    table.print();
    if (!page.empty() && !table.isOn(page)) outcome.same = false;
}

int run(std::size_t largest, const std::string& name, const std::string& page) {
    Outcome outcome;
    for (const Group& group : groups())
        run(group, largest, name, page, outcome);
    const auto [checked, failed, same] = outcome;
    if (checked == 0) std::fprintf(stderr, "There is no such kind of file: %s\n", name.c_str());
    if (failed != 0) std::fprintf(stderr, "%d kinds of files cost too much\n", failed);
    return checked != 0 && same && failed == 0 ? 0 : 1;
}

} // namespace
} // namespace Benchmarks

int main(int argc, char** argv) {
    std::size_t largest = 800'000;
    const std::string option = argc > 2 ? argv[2] : "";
    const bool compared = option == "--page";
    bool valid = argc <= (compared ? 4 : 3) && (!compared || argc == 4);
    if (argc > 1) {
        const char* end = argv[1] + std::strlen(argv[1]);
        const auto [stop, error] = std::from_chars(argv[1], end, largest);
        valid = valid && error == std::errc{} && stop == end && largest >= 50000;
    }
    if (!valid) {
        std::fprintf(stderr, "usage: files-pdf-costly-files [BYTES, at least 50000 [NAME | --page "
                             "PAGE]]\n");
        return 2;
    }
    for (const char* const filter : {"PDF", "Lib.File.PDF.Import"})
        Host::SysLogFilter::state(Host::SysLogFilter::reg(filter), false);
    return Benchmarks::run(largest, compared ? "" : option,
                           compared ? Benchmarks::pageAt(argv[3]) : "");
}
