// Recipe: many files on several threads, a document on one each.

#include "program.h"

#include <pdf/tools/streams.h>

#include <atomic>
#include <thread>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Recompresses each file beside itself; gives the number of those that failed.
int recompress(const std::vector<std::string>& files, unsigned threads) {
    std::atomic<std::size_t> next{0};
    std::atomic<int> failed{0};
    const auto work = [&] {
        for (std::size_t index = next++; index < files.size(); index = next++) {
            const auto document = Tools::open(files[index]); // of this thread alone
            const bool smaller = document && Tools::compressStreams(*document);
            const auto target = smaller ? Host::FileTarget::create(files[index] + ".new") : nullptr;
            // The code is that of this thread, whatever the others do.
            if (target && document->write(target) && target->commit()) continue;
            std::fprintf(stderr, "%s: %s\n", files[index].c_str(), errorText(Host::Error::get()));
            ++failed;
        }
    };
    std::vector<std::jthread> others;
    for (unsigned count = 1; count < threads; ++count)
        others.emplace_back(work);
    work();
    others.clear(); // waits for them
    return failed;
}
// page end

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> files(argv + 1, argv + argc);
    if (files.empty()) return Program::usage("recipe_threads FILE...");
    return recompress(files, 2) == 0 ? 0 : 1;
}
