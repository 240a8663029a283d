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
            const std::string target = files[index] + ".new";
            if (smaller && Tools::save(*document, target) == Tools::Saved::Done) continue;
            // The code is that of this thread, whatever the others do.
            static_cast<void>(Program::failure(document ? target : files[index]));
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
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_threads FILE...",
         "Compresses the streams of each FILE, into FILE.new beside it."});
    if (!arguments.are(1, SIZE_MAX)) return arguments.refuse();
    std::vector<std::string> files;
    for (std::size_t index = 0; index < arguments.size(); ++index)
        files.emplace_back(arguments[index]);
    return recompress(files, 2) == 0 ? Program::done : Program::failed;
}
