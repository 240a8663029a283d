// Recipe: many files on several threads, a document on one each.

#include "program.h"

#include <pdf/tools/streams.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <thread>

namespace {

using namespace Libraries::Files::PDF;

// page begin
/// Recompresses each file beside itself; gives the exit status.
int recompress(const std::vector<std::string>& files, unsigned threads) {
    std::atomic<std::size_t> next = 0;
    std::atomic<int> status = Program::done;
    const auto work = [&] {
        for (std::size_t index = next++; index < files.size(); index = next++) {
            const auto document = Tools::open(files[index]); // of this thread alone
            const auto save = [&] { return Tools::save(*document, files[index] + ".new"); };
            const auto saved = document.and_then(Tools::compressStreams).and_then(save);
            if (!saved) status = Program::failure(files[index], saved.error());
        }
    };
    std::vector<std::jthread> pool;
    std::generate_n(std::back_inserter(pool), threads, [&] { return std::jthread(work); });
    pool.clear(); // waits for them
    return status;
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_threads FILE...",
         "Compresses the streams of each FILE, into FILE.new beside it."});
    if (!arguments.are(1, SIZE_MAX)) return arguments.refuse();
    std::vector<std::string> files;
    for (std::size_t index = 0; index < arguments.size(); ++index)
        files.emplace_back(arguments[index]);
    return recompress(files, 2);
}
